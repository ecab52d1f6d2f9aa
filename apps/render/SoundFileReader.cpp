#include "SoundFileReader.h"

#include <cstdio>

#include "Quoted.h"
#include "ReadableFile.h"
#include "SupportedRates.h"

namespace render {

namespace {

// libsndfile's own message for a file that exists but cannot be opened is about its format;
// trying a plain open first gives a missing or unreadable file the system's clearer reason.
bool CheckReadable(const std::string& path, std::string* error) {
  std::FILE* f = OpenForReading(path, "input", ", not an audio file", error);
  if (!f) return false;
  std::fclose(f);
  return true;
}

}  // namespace

std::unique_ptr<SoundFileReader> SoundFileReader::Open(const std::string& path,
                                                       std::string* error) {
  if (!CheckReadable(path, error)) return nullptr;
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (!file) {
    *error = "cannot read input " + Quoted(path) + " as audio: " + sf_strerror(nullptr);
    return nullptr;
  }
  std::unique_ptr<SoundFileReader> reader(new SoundFileReader(path, file, info));
  if (info.channels > 2) {
    *error = "input " + Quoted(path) + " has " + std::to_string(info.channels) +
             " channels; only mono and stereo files can be rendered";
    return nullptr;
  }
  if (!IsSupportedSampleRate(info.samplerate)) {
    *error = "input " + Quoted(path) + " is at " + std::to_string(info.samplerate) +
             " Hz; the supported rates are " + SupportedRatesText();
    return nullptr;
  }
  if (info.frames <= 0) {
    *error = "input " + Quoted(path) + " contains no audio frames";
    return nullptr;
  }
  return reader;
}

SoundFileReader::SoundFileReader(std::string path, SNDFILE* file, const SF_INFO& info)
    : mPath(std::move(path)), mFile(file), mInfo(info) {}

SoundFileReader::~SoundFileReader() { sf_close(mFile); }

long long SoundFileReader::Read(float* interleaved, long long nFrames, std::string* error) {
  const sf_count_t n = sf_readf_float(mFile, interleaved, nFrames);
  if (n == 0 && sf_error(mFile) != SF_ERR_NO_ERROR) {
    *error = "cannot read input " + Quoted(mPath) + ": " + sf_strerror(mFile);
    return -1;
  }
  return n;
}

}  // namespace render
