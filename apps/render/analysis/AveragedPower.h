#pragma once

#include <vector>

#include "analysis/RealFft.h"

namespace render {

// The average power spectrum of a signal that arrives in pieces of any length: Hann-windowed
// segments with half overlap, each bin the average of its power over the segments. A signal
// shorter than one segment is taken as one segment padded with silence.
class AveragedPower {
 public:
  explicit AveragedPower(int size) : mFft(size, WindowShape::kHann) {}

  void Add(const float* samples, long long n);
  // The averaged bin powers (RealFft::BinPower), NBins() of them.
  std::vector<double> Bins();
  double BinHz(double rate) const { return mFft.BinHz(rate); }

 private:
  void AddSegment(const float* segment);

  RealFft mFft;
  std::vector<float> mPending;
  std::vector<double> mSum = std::vector<double>(mFft.NBins());
  long long mSegments = 0;
};

}  // namespace render
