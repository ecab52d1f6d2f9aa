#include "LevelStats.h"

#include <cmath>
#include <limits>

namespace render {

double ToDbfs(double linear) {
  if (linear <= 0.0) return -std::numeric_limits<double>::infinity();
  return 20.0 * std::log10(linear);
}

LevelStats::LevelStats(int nChannels) : mPeak(nChannels, 0.0), mSumOfSquares(nChannels, 0.0) {}

void LevelStats::Add(const float* const* channels, int nFrames) {
  for (int c = 0; c < NChannels(); ++c) {
    double peak = mPeak[c];
    double sum = 0.0;
    for (int i = 0; i < nFrames; ++i) {
      const double x = channels[c][i];
      peak = std::fmax(peak, std::fabs(x));
      sum += x * x;
    }
    mPeak[c] = peak;
    mSumOfSquares[c] += sum;
  }
  mFrames += nFrames;
}

double LevelStats::Rms(int channel) const {
  if (mFrames == 0) return 0.0;
  return std::sqrt(mSumOfSquares[channel] / static_cast<double>(mFrames));
}

}  // namespace render
