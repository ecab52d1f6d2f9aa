#pragma once

#include <vector>

namespace render {

// Decibels relative to full scale (1.0) of a linear level; silence is minus infinity.
double ToDbfs(double linear);

// Peak and RMS level per channel of everything that passed through, for the summary.
class LevelStats {
public:
  explicit LevelStats(int nChannels = 0);

  // channels[c][0 .. nFrames-1] for every channel c.
  void Add(const float* const* channels, int nFrames);

  int NChannels() const { return static_cast<int>(mPeak.size()); }
  long long NFrames() const { return mFrames; }
  double Peak(int channel) const { return mPeak[channel]; }
  double Rms(int channel) const;
  double PeakDbfs(int channel) const { return ToDbfs(Peak(channel)); }
  double RmsDbfs(int channel) const { return ToDbfs(Rms(channel)); }

private:
  std::vector<double> mPeak;
  std::vector<double> mSumOfSquares;
  long long mFrames = 0;
};

}  // namespace render
