#include "LevelStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using render::LevelStats;

namespace {

// Adds one channel's samples, or two channels' in one call.
void AddMono(LevelStats* stats, const std::vector<float>& samples) {
  const float* channels[] = {samples.data()};
  stats->Add(channels, static_cast<int>(samples.size()));
}

std::vector<float> Sine(double amplitude, double hz, int rate, int n) {
  std::vector<float> s(n);
  for (int i = 0; i < n; ++i) s[i] = static_cast<float>(amplitude * std::sin(2.0 * M_PI * hz * i / rate));
  return s;
}

}  // namespace

TEST(LevelStats, FullScaleSineReadsZeroPeakAndMinus3Point01Rms) {
  LevelStats stats(1);
  AddMono(&stats, Sine(1.0, 1000.0, 48000, 48000));  // whole periods: mean square exactly 1/2
  EXPECT_NEAR(stats.PeakDbfs(0), 0.0, 1e-6);
  EXPECT_NEAR(stats.RmsDbfs(0), -3.0103, 1e-4);  // 20 log10(1/sqrt 2)
}

TEST(LevelStats, SquareWaveAndDirectCurrent) {
  LevelStats square(1);
  std::vector<float> s(1000);
  for (int i = 0; i < 1000; ++i) s[i] = (i / 10) % 2 ? -0.5f : 0.5f;
  AddMono(&square, s);
  EXPECT_NEAR(square.PeakDbfs(0), -6.0206, 1e-4);  // 20 log10(0.5)
  EXPECT_NEAR(square.RmsDbfs(0), -6.0206, 1e-4);

  LevelStats dc(1);
  AddMono(&dc, std::vector<float>(100, 0.1f));
  EXPECT_NEAR(dc.PeakDbfs(0), -20.0, 1e-5);
  EXPECT_NEAR(dc.RmsDbfs(0), -20.0, 1e-5);
}

TEST(LevelStats, PeakIsOfTheMagnitude) {
  LevelStats stats(1);
  AddMono(&stats, {0.1f, -0.25f, 0.2f});
  EXPECT_DOUBLE_EQ(stats.Peak(0), 0.25);
  // RMS of (0.1, 0.25, 0.2): sqrt((0.01 + 0.0625 + 0.04) / 3) = sqrt(0.0375)
  EXPECT_NEAR(stats.Rms(0), std::sqrt(0.0375), 1e-7);
}

TEST(LevelStats, SilenceAndNothingAreMinusInfinity) {
  LevelStats silent(1);
  AddMono(&silent, std::vector<float>(64, 0.0f));
  EXPECT_EQ(silent.PeakDbfs(0), -INFINITY);
  EXPECT_EQ(silent.RmsDbfs(0), -INFINITY);
  LevelStats empty(2);
  EXPECT_EQ(empty.RmsDbfs(1), -INFINITY);
  EXPECT_EQ(empty.NFrames(), 0);
}

TEST(LevelStats, AccumulatesOverBlocksPerChannel) {
  // Left: a half-scale sine over two blocks; right: silence, then 0.5 for the second block.
  const std::vector<float> sine = Sine(0.5, 750.0, 48000, 2 * 64 * 10);  // 20 whole periods
  std::vector<float> right(sine.size() / 2, 0.0f);
  std::vector<float> half(sine.size() / 2, 0.5f);
  LevelStats stats(2);
  const float* first[] = {sine.data(), right.data()};
  stats.Add(first, static_cast<int>(sine.size() / 2));
  const float* second[] = {sine.data() + sine.size() / 2, half.data()};
  stats.Add(second, static_cast<int>(sine.size() / 2));
  EXPECT_EQ(stats.NFrames(), static_cast<long long>(sine.size()));
  EXPECT_NEAR(stats.RmsDbfs(0), -9.0309, 1e-4);  // 20 log10(0.5 / sqrt 2)
  EXPECT_NEAR(stats.PeakDbfs(1), -6.0206, 1e-4);
  EXPECT_NEAR(stats.RmsDbfs(1), -9.0309, 1e-4);  // 0.5 for half the time: sqrt(0.125)
}

TEST(LevelStats, DecibelConversion) {
  EXPECT_DOUBLE_EQ(render::ToDbfs(1.0), 0.0);
  EXPECT_DOUBLE_EQ(render::ToDbfs(0.1), -20.0);
  EXPECT_NEAR(render::ToDbfs(2.0), 6.0206, 1e-4);
  EXPECT_EQ(render::ToDbfs(0.0), -INFINITY);
}
