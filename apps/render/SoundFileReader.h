#pragma once

#include <sndfile.h>

#include <memory>

#include "AudioSource.h"

namespace render {

// An input file in any format libsndfile reads, mono or stereo, at a rate the effect supports,
// with at least one frame.
class SoundFileReader : public AudioSource {
 public:
  // Opens and checks the file; on failure returns null and says why, naming the file.
  static std::unique_ptr<SoundFileReader> Open(const std::string& path, std::string* error);
  ~SoundFileReader() override;
  SoundFileReader(const SoundFileReader&) = delete;
  SoundFileReader& operator=(const SoundFileReader&) = delete;

  int NChannels() const override { return mInfo.channels; }
  int SampleRate() const override { return mInfo.samplerate; }
  long long NFrames() const override { return mInfo.frames; }
  std::string Describe() const override { return mPath; }
  long long Read(float* interleaved, long long nFrames, std::string* error) override;

 private:
  SoundFileReader(std::string path, SNDFILE* file, const SF_INFO& info);

  std::string mPath;
  SNDFILE* mFile;
  SF_INFO mInfo;
};

}  // namespace render
