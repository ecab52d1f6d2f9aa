#pragma once

#include <vector>

namespace tarnlv2 {

// The host's bypass (lv2:enabled 0) as a host can trust it. While bypassed, the output is the
// input delayed by exactly the latency the plug-in reports, so a host that keeps compensating
// that latency keeps the track aligned with its neighbours. Each switch crossfades, frame by
// frame over kCrossfadeSeconds and alike both ways, between the effect's output and that aligned
// input, so neither direction clicks. The effect itself runs on throughout: switched back, it
// is the saturator a never-bypassed instance would be.
class HostBypass {
 public:
  static constexpr double kCrossfadeSeconds = 0.005;

  // Allocates the delay lines, for stretches of up to maxBlock frames.
  void Prepare(int nChannels, int latency, int maxBlock, double sampleRate);
  // Silent lines; the next stretch starts where the enabled port says, without a fade.
  void Reset();
  // Keeps a channel's input for the aligned path, before the effect may overwrite it (hosts
  // may hand the same buffer for input and output); null is silence.
  void TakeInput(int channel, const float* in, int nFrames);
  // `out` holds the effect's output for the stretch; mixes in the aligned input as the fade
  // toward `enabled` goes. Null outputs are skipped. Allocates nothing.
  void Mix(float* const* out, int nFrames, bool enabled);
  // Frames a fade takes.
  int CrossfadeFrames() const { return mFadeFrames; }

 private:
  // Per channel: the last `latency` inputs, then the stretch's.
  std::vector<std::vector<float>> mLines;
  int mLatency = 0;
  int mFadeFrames = 1;
  int mWet = 0;  // how far the fade is toward the effect's output: 0 ... mFadeFrames
  bool mStarted = false;
};

}  // namespace tarnlv2
