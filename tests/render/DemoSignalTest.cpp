#include "DemoSignal.h"
#include "LevelStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using render::DemoSignal;

namespace {

// The whole signal read in chunks of the given size, interleaved.
std::vector<float> ReadAll(long long chunk) {
  DemoSignal demo;
  std::vector<float> all;
  std::vector<float> buffer(static_cast<std::size_t>(chunk) * 2);
  std::string error;
  for (long long n; (n = demo.Read(buffer.data(), chunk, &error)) > 0;) {
    all.insert(all.end(), buffer.begin(), buffer.begin() + n * 2);
  }
  return all;
}

}  // namespace

TEST(DemoSignal, IsAFewSecondsOfStereoAt48kHz) {
  DemoSignal demo;
  EXPECT_EQ(demo.SampleRate(), 48000);
  EXPECT_EQ(demo.NChannels(), 2);
  const double seconds = static_cast<double>(demo.NFrames()) / demo.SampleRate();
  EXPECT_GE(seconds, 2.0);
  EXPECT_LE(seconds, 10.0);
  EXPECT_EQ(static_cast<long long>(ReadAll(4096).size()), 2 * demo.NFrames());
}

TEST(DemoSignal, IsTheSameWhateverTheChunkingAndRun) {
  const std::vector<float> whole = ReadAll(1 << 20);
  EXPECT_EQ(ReadAll(1), whole);
  EXPECT_EQ(ReadAll(333), whole);
  float left = 0.0f, right = 0.0f;
  DemoSignal::Frame(123457, &left, &right);
  EXPECT_EQ(left, whole[2 * 123457]);
  EXPECT_EQ(right, whole[2 * 123457 + 1]);
}

TEST(DemoSignal, PeaksBelowFullScaleYetIsClearlyAudibleOnBothSides) {
  const std::vector<float> all = ReadAll(4096);
  const std::size_t frames = all.size() / 2;
  std::vector<float> left(frames), right(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    left[i] = all[2 * i];
    right[i] = all[2 * i + 1];
  }
  render::LevelStats stats(2);
  const float* channels[] = {left.data(), right.data()};
  stats.Add(channels, static_cast<int>(frames));
  for (int c = 0; c < 2; ++c) {
    EXPECT_LT(stats.PeakDbfs(c), 0.0);
    EXPECT_GT(stats.PeakDbfs(c), -12.0);
    EXPECT_GT(stats.RmsDbfs(c), -30.0);
  }
  EXPECT_NE(left, right);  // a stereo picture, not one channel twice
}

TEST(DemoSignal, StartsFromSilenceAndFadesOutToSilence) {
  const std::vector<float> all = ReadAll(4096);
  EXPECT_EQ(all[0], 0.0f);
  EXPECT_EQ(all[1], 0.0f);
  EXPECT_EQ(all[all.size() - 1], 0.0f);
  EXPECT_EQ(all[all.size() - 2], 0.0f);
  // Half-way into the fade-out (0.3 s), the level is well down on the body of the signal.
  float tail = 0.0f;
  for (std::size_t i = all.size() - 2 * 7200; i < all.size(); ++i) tail = std::max(tail, std::fabs(all[i]));
  EXPECT_LT(tail, 0.1f);
}
