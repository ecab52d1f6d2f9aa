#include "FloatWavWriter.h"

#include "Quoted.h"
#include "WavHeaderPrediction.h"

namespace render {

std::unique_ptr<FloatWavWriter> FloatWavWriter::Create(const std::string& path, int nChannels,
                                                       int sampleRate, long long nFrames,
                                                       std::string* error) {
  std::vector<unsigned char> header;
  std::string why;
  if (!PredictFloatWavHeader(nChannels, sampleRate, nFrames, &header, &why)) {
    *error = "cannot write " + Quoted(path) + ": " + why;
    return nullptr;
  }
  std::unique_ptr<OutputFile> file = OutputFile::Open(path, error);
  if (!file) return nullptr;
  std::unique_ptr<FloatWavWriter> writer(
      new FloatWavWriter(std::move(file), std::move(header), nFrames));
  writer->mSound = OpenFloatWav(writer->mStream, nChannels, sampleRate, &why);
  if (!writer->mSound) {
    *error = writer->Failure(why);
    return nullptr;
  }
  return writer;
}

FloatWavWriter::FloatWavWriter(std::unique_ptr<OutputFile> file, std::vector<unsigned char> header,
                               long long nFrames)
    : mFile(std::move(file)), mStream(*mFile, std::move(header)), mAnnouncedFrames(nFrames) {}

std::string FloatWavWriter::Failure(const std::string& libraryReason) const {
  if (!mStream.Error().empty()) return mStream.Error();
  return "cannot write " + Quoted(Path()) + ": " + libraryReason;
}

bool FloatWavWriter::Write(const float* interleaved, long long nFrames, std::string* error) {
  const sf_count_t written = sf_writef_float(mSound.get(), interleaved, nFrames);
  mWrittenFrames += written;
  if (written == nFrames) return true;
  *error = Failure(sf_strerror(mSound.get()));
  return false;
}

bool FloatWavWriter::Commit(std::string* error) {
  if (mWrittenFrames != mAnnouncedFrames) {
    *error = "cannot write " + Quoted(Path()) + ": " + std::to_string(mWrittenFrames) +
             " frames were rendered where its header says " + std::to_string(mAnnouncedFrames);
    return false;
  }
  // Closing is when libsndfile writes the final header, for the stream to check.
  const int closed = sf_close(mSound.release());
  if (closed != 0) {
    *error = Failure(sf_error_number(closed));
    return false;
  }
  return mStream.Finish(error) && mFile->Commit(error);
}

}  // namespace render
