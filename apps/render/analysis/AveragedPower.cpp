#include "analysis/AveragedPower.h"

namespace render {

void AveragedPower::Add(const float* samples, long long n) {
  mPending.insert(mPending.end(), samples, samples + n);
  const std::size_t size = mFft.Size();
  std::size_t start = 0;
  for (; start + size <= mPending.size(); start += size / 2) AddSegment(mPending.data() + start);
  mPending.erase(mPending.begin(), mPending.begin() + start);
}

void AveragedPower::AddSegment(const float* segment) {
  mFft.Transform(segment);
  for (int k = 0; k < mFft.NBins(); ++k) mSum[k] += mFft.BinPower(k);
  ++mSegments;
}

std::vector<double> AveragedPower::Bins() {
  if (mSegments == 0 && !mPending.empty()) {
    mPending.resize(mFft.Size(), 0.0f);
    AddSegment(mPending.data());
    mPending.clear();
  }
  std::vector<double> average = mSum;
  for (double& power : average) power /= mSegments > 0 ? mSegments : 1;
  return average;
}

}  // namespace render
