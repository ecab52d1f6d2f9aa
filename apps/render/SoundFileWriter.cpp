#include "SoundFileWriter.h"

#include "Quoted.h"

namespace render {

std::unique_ptr<SoundFileWriter> SoundFileWriter::Create(const std::string& path, int nChannels,
                                                         int sampleRate, std::string* error) {
  std::unique_ptr<AtomicFile> file = AtomicFile::Create(path, error);
  if (!file) return nullptr;
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = nChannels;
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  // The descriptor stays the AtomicFile's: it closes it after libsndfile has let go.
  SNDFILE* sound = sf_open_fd(file->Descriptor(), SFM_WRITE, &info, SF_FALSE);
  if (!sound) {
    *error = "cannot write " + Quoted(path) + ": " + sf_strerror(nullptr);
    return nullptr;
  }
  // The peak chunk carries the time of writing, which would make two renders of the same
  // input differ; the file is exactly reproducible without it.
  sf_command(sound, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  return std::unique_ptr<SoundFileWriter>(new SoundFileWriter(std::move(file), sound));
}

SoundFileWriter::SoundFileWriter(std::unique_ptr<AtomicFile> file, SNDFILE* sound)
    : mFile(std::move(file)), mSound(sound) {}

SoundFileWriter::~SoundFileWriter() {
  if (mSound) sf_close(mSound);
}

bool SoundFileWriter::Write(const float* interleaved, long long nFrames, std::string* error) {
  if (sf_writef_float(mSound, interleaved, nFrames) != nFrames) {
    *error = "cannot write " + Quoted(Path()) + ": " + sf_strerror(mSound);
    return false;
  }
  return true;
}

bool SoundFileWriter::Commit(std::string* error) {
  // Closing lets libsndfile complete the header with the final sizes before the rename.
  const int closed = sf_close(mSound);
  mSound = nullptr;
  if (closed != 0) {
    *error = "cannot write " + Quoted(Path()) + ": " + sf_error_number(closed);
    return false;
  }
  return mFile->Commit(error);
}

}  // namespace render
