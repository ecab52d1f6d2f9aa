#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "TestPlug.h"

namespace {

// Runs `input` (one value per frame, the same on every input channel, channel c scaled by c + 1)
// through the bypass path in blocks of `block` frames and returns output channel `channel`.
std::vector<float> Bypass(TestPlug& plug, const std::vector<float>& input, int block, int channel) {
  int n = static_cast<int>(input.size());
  int nCh = plug.NInChannels();
  std::vector<std::vector<float>> ins(nCh, std::vector<float>(n)), outs(nCh, std::vector<float>(n, 99.f));
  for (int c = 0; c < nCh; ++c) {
    for (int s = 0; s < n; ++s) ins[c][s] = input[s] * static_cast<float>(c + 1);
  }
  for (int start = 0; start < n; start += block) {
    int frames = std::min(block, n - start);
    std::vector<float*> in, out;
    for (int c = 0; c < nCh; ++c) {
      in.push_back(ins[c].data() + start);
      out.push_back(outs[c].data() + start);
    }
    plug.ProcessAudioBypassed(in.data(), out.data(), frames);
  }
  return outs[channel];
}

std::vector<float> Ramp(int n) {
  std::vector<float> v(n);
  for (int i = 0; i < n; ++i) v[i] = static_cast<float>(i + 1);
  return v;
}

// Expected output of a line of `delay` frames that starts silent.
std::vector<float> Delayed(const std::vector<float>& x, int delay, float gain) {
  std::vector<float> y(x.size(), 0.f);
  for (size_t s = delay; s < x.size(); ++s) y[s] = x[s - delay] * gain;
  return y;
}

}  // namespace

TEST(PassThroughDelay, LatencySixDelaysAnImpulseByTwoFrames) {
  TestPlug plug("1-1", 0, 6);
  std::vector<float> impulse(12, 0.f);
  impulse[0] = 1.f;
  std::vector<float> out = Bypass(plug, impulse, 12, 0);
  std::vector<float> expected(12, 0.f);
  expected[2] = 1.f;
  EXPECT_EQ(out, expected);
}

// The read slot runs 2^32 mod length ahead of the write slot: for length L the delay is the
// smallest d >= 1 with d = -(2^32 mod L) modulo L.
TEST(PassThroughDelay, EffectiveDelayFollowsTheUnsignedWrapForEachLength) {
  const struct {
    int latency, delay;
  } cases[] = {{6, 2}, {3, 2}, {4, 4}, {5, 4}, {1, 1}, {7, 3}};
  std::vector<float> ramp = Ramp(40);
  for (const auto& c : cases) {
    TestPlug plug("2-2", 0, 6);
    plug.SetLatency(c.latency);
    EXPECT_EQ(Bypass(plug, ramp, 40, 0), Delayed(ramp, c.delay, 1.f)) << "latency " << c.latency;
  }
}

TEST(PassThroughDelay, IsContinuousAcrossBlocksOfAnySizeAndPerChannel) {
  std::vector<float> ramp = Ramp(50);
  for (int block : {1, 3, 7, 50}) {
    TestPlug plug("1-1 2-2", 0, 6);
    EXPECT_EQ(Bypass(plug, ramp, block, 0), Delayed(ramp, 2, 1.f)) << "block " << block;
    TestPlug again("1-1 2-2", 0, 6);
    EXPECT_EQ(Bypass(again, ramp, block, 1), Delayed(ramp, 2, 2.f)) << "block " << block;
  }
}

TEST(PassThroughDelay, ResizingClearsBytesNotSamples) {
  TestPlug plug("1-1", 0, 6);
  Bypass(plug, Ramp(6), 6, 0);  // the line now holds 1 ... 6 in slots 0 ... 5
  plug.SetLatency(6);
  // Only the first 6 bytes are cleared; the next two reads come from slots 4 and 5.
  std::vector<float> out = Bypass(plug, std::vector<float>(4, 0.f), 4, 0);
  EXPECT_EQ(out, (std::vector<float>{5.f, 6.f, 0.f, 0.f}));
}

TEST(PassThroughDelay, WithoutLatencyBypassCopiesAndClears) {
  TestPlug plug("1-2", 0, 0);
  std::vector<float> in0 = Ramp(8), out0(8, 9.f), out1(8, 9.f);
  float* in[] = {in0.data()};
  float* out[] = {out0.data(), out1.data()};
  plug.ProcessAudioBypassed(in, out, 8);
  EXPECT_EQ(out0, in0);
  EXPECT_EQ(out1, std::vector<float>(8, 0.f));
}

TEST(PassThroughDelay, OutputsWithoutMatchingInputAreLeftToTheFrame) {
  TestPlug plug("1-2", 0, 6);
  std::vector<float> in0 = Ramp(8), out0(8, 9.f), out1(8, 9.f);
  float* in[] = {in0.data()};
  float* out[] = {out0.data(), out1.data()};
  plug.ProcessAudioBypassed(in, out, 8);
  EXPECT_EQ(out0, Delayed(in0, 2, 1.f));
  EXPECT_EQ(out1, std::vector<float>(8, 0.f));  // its scratch buffer, never written, is silent
}
