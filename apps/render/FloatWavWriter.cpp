#include "FloatWavWriter.h"

#include "Quoted.h"
#include "WavHeader.h"

namespace render {

// The samples go out as they lie in memory, which is the byte order of WAV only on a
// little-endian machine.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "WAV samples are little-endian");

std::unique_ptr<FloatWavWriter> FloatWavWriter::Create(const std::string& path, int nChannels,
                                                       int sampleRate, long long nFrames,
                                                       std::string* error) {
  if (nFrames > MaxFloatWavFrames(nChannels)) {
    *error = "cannot write " + Quoted(path) + ": " + std::to_string(nFrames) +
             " frames are more than a WAV file holds (" +
             std::to_string(MaxFloatWavFrames(nChannels)) + ")";
    return nullptr;
  }
  std::unique_ptr<OutputFile> file = OutputFile::Open(path, error);
  if (!file) return nullptr;
  const FloatWavHeader header = MakeFloatWavHeader(nChannels, sampleRate, nFrames);
  if (!file->Write(header.data(), header.size(), error)) return nullptr;
  return std::unique_ptr<FloatWavWriter>(new FloatWavWriter(std::move(file), nChannels, nFrames));
}

FloatWavWriter::FloatWavWriter(std::unique_ptr<OutputFile> file, int nChannels, long long nFrames)
    : mFile(std::move(file)), mNChannels(nChannels), mAnnouncedFrames(nFrames) {}

bool FloatWavWriter::Write(const float* interleaved, long long nFrames, std::string* error) {
  mWrittenFrames += nFrames;
  return mFile->Write(interleaved, static_cast<std::size_t>(nFrames) * mNChannels * sizeof(float),
                      error);
}

bool FloatWavWriter::Commit(std::string* error) {
  if (mWrittenFrames != mAnnouncedFrames) {
    *error = "cannot write " + Quoted(Path()) + ": " + std::to_string(mWrittenFrames) +
             " frames were rendered where its header says " + std::to_string(mAnnouncedFrames);
    return false;
  }
  return mFile->Commit(error);
}

}  // namespace render
