#pragma once

#include <vector>

#include "AudioSink.h"
#include "AudioSource.h"

namespace render {

// A mono signal in memory as the render loop's source, so that measurements take the very path
// a render takes.
class MemorySource : public AudioSource {
 public:
  MemorySource(const std::vector<float>& samples, int rate) : mSamples(samples), mRate(rate) {}

  int NChannels() const override { return 1; }
  int SampleRate() const override { return mRate; }
  long long NFrames() const override { return static_cast<long long>(mSamples.size()); }
  std::string Describe() const override { return "a test signal"; }
  long long Read(float* interleaved, long long nFrames, std::string* error) override;

 private:
  const std::vector<float>& mSamples;
  int mRate;
  long long mPosition = 0;
};

// The render loop's output kept in memory.
class MemorySink : public AudioSink {
 public:
  bool Write(const float* interleaved, long long nFrames, std::string* error) override;
  const std::vector<float>& Samples() const { return mSamples; }

 private:
  std::vector<float> mSamples;
};

}  // namespace render
