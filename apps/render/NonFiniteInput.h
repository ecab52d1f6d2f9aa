#pragma once

namespace render {

// The input samples that were not finite numbers. A single NaN or infinity handed to the effect
// turns its filter state to NaN for good, which pins the output at the clamp for the rest of the
// render, so each one is replaced with 0.0 before the effect sees it and counted for the summary.
class NonFiniteInput {
 public:
  // Replaces the non-finite samples among nFrames interleaved frames of nChannels, the first of
  // which is frame `firstFrame` of the input, with 0.0.
  void Replace(float* interleaved, int nFrames, int nChannels, long long firstFrame);

  long long Count() const { return mCount; }
  // The input frame of the first one; -1 while there is none.
  long long FirstFrame() const { return mFirstFrame; }

 private:
  long long mCount = 0;
  long long mFirstFrame = -1;
};

}  // namespace render
