#include "NonFiniteInput.h"

#include <cmath>

namespace render {

void NonFiniteInput::Replace(float* interleaved, int nFrames, int nChannels, long long firstFrame) {
  const int nSamples = nFrames * nChannels;
  for (int i = 0; i < nSamples; ++i) {
    if (std::isfinite(interleaved[i])) continue;
    interleaved[i] = 0.0f;
    if (mCount++ == 0) mFirstFrame = firstFrame + i / nChannels;
  }
}

}  // namespace render
