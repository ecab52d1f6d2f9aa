#include "HostBypass.h"

#include <algorithm>
#include <cmath>

namespace tarnlv2 {

void HostBypass::Prepare(int nChannels, int latency, int maxBlock, double sampleRate) {
  mLatency = latency;
  mFadeFrames = std::max(1, static_cast<int>(std::lround(kCrossfadeSeconds * sampleRate)));
  mLines.assign(nChannels, std::vector<float>(latency + maxBlock, 0.0f));
  Reset();
}

void HostBypass::Reset() {
  for (auto& line : mLines) std::fill(line.begin(), line.end(), 0.0f);
  mStarted = false;
}

void HostBypass::TakeInput(int channel, const float* in, int nFrames) {
  float* stretch = mLines[channel].data() + mLatency;
  if (in) {
    std::copy(in, in + nFrames, stretch);
  } else {
    std::fill(stretch, stretch + nFrames, 0.0f);
  }
}

void HostBypass::Mix(float* const* out, int nFrames, bool enabled) {
  const int target = enabled ? mFadeFrames : 0;
  if (!mStarted) mWet = target, mStarted = true;
  const int nChannels = static_cast<int>(mLines.size());
  for (int i = 0; i < nFrames && !(mWet == target && enabled); ++i) {
    mWet += mWet < target ? 1 : mWet > target ? -1 : 0;
    if (mWet == mFadeFrames) continue;  // the fade has just ended: the effect's own output
    const double wet = static_cast<double>(mWet) / mFadeFrames;
    for (int c = 0; c < nChannels; ++c) {
      if (!out[c]) continue;
      const float dry = mLines[c][i];  // the input `latency` frames ago
      out[c][i] = mWet == 0 ? dry : static_cast<float>(out[c][i] * wet + dry * (1.0 - wet));
    }
  }
  // The stretch's last `latency` inputs are the next stretch's history.
  for (auto& line : mLines)
    std::copy(line.begin() + nFrames, line.begin() + nFrames + mLatency, line.begin());
}

}  // namespace tarnlv2
