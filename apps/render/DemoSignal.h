#pragma once

#include "AudioSource.h"

namespace render {

// The signal rendered when no input file is given: a few bars of music made in code (a decaying
// chord, a bass line and drum-like hits), stereo at 48 kHz, the same on every run and machine
// that share a C library, so that a user's first command already produces sound.
class DemoSignal : public AudioSource {
public:
  static constexpr int kSampleRate = 48000;
  static constexpr int kChannels = 2;
  static constexpr long long kFrames = 6LL * kSampleRate;  // six seconds: three bars

  int NChannels() const override { return kChannels; }
  int SampleRate() const override { return kSampleRate; }
  long long NFrames() const override { return kFrames; }
  std::string Describe() const override { return "the built-in demo signal"; }
  long long Read(float* interleaved, long long nFrames, std::string* error) override;

  // The stereo sample pair at a frame index, a pure function of that index.
  static void Frame(long long frame, float* left, float* right);

private:
  long long mPosition = 0;
};

}  // namespace render
