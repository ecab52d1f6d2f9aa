// Block processing gives every bit that frame-by-frame processing gives, with settings changing
// inside blocks: the saturator, its four-lane section, and the whole effect.
#include <gtest/gtest.h>

#include <functional>

#include "DspTesting.h"
#include "Signals.h"
#include "dsp/AsymSat.h"

namespace {

const int kBlockSizes[] = {1, 7, 64, 512, 4096};

using Source = std::function<double(int n, int channel)>;
// Loud noise bursts, silence of uneven length, a low sine; and the same with a NaN and an
// infinity in it.
const Source kBursts = [](int n, int c) {
  const int phase = n % 3001;
  if (phase < 700) return 2.5 * TestNoise(n + 31 * c);
  return phase < 1900 ? 0.0 : 1.5 * std::sin(6.283185307179586 * 60.0 * n / kRate + c);
};
const Source kBroken = [](int n, int c) {
  return n == 2500 + 300 * c ? (c == 0 ? HUGE_VAL : std::nan("")) : kBursts(n, c);
};

// Settings in turn every 1000 frames, so changes land inside blocks of every size.
void Configure(AsymSat& sat, int frame) {
  const double s[4][4] = {{6, 3, 0.3, 0.5}, {20, -10, 0.4, 1}, {-40, 10, 0, 0}, {12, 0, 0.2, 0.7}};
  const double* v = s[(frame / 1000) % 4];
  sat.init_all(kRate, v[0], v[1], v[2], v[3]);
}

// Runs `sat` over the source in place in blocks (a settings change splits a block, as a host
// would) and returns left then right; mono blocks when `stereo` is false. Blocks of one frame are
// what process_Stereo and process_Mono run.
std::vector<double> RunBlocks(AsymSat& sat, const Source& src, int frames, int block, bool stereo) {
  std::vector<double> lr(2 * frames);
  for (int n = 0; n < frames; ++n) lr[n] = src(n, 0), lr[frames + n] = stereo ? src(n, 1) : 0.0;
  for (int start = 0, len = 0; start < frames; start += len) {
    if (start % 1000 == 0) Configure(sat, start);
    len = std::min({block, frames - start, 1000 - start % 1000});
    double *l = &lr[start], *r = &lr[frames + start];
    if (stereo) sat.process_StereoBlock(l, r, l, r, len);
    if (!stereo) sat.process_MonoBlock(l, l, len);
  }
  return lr;
}

// Same bits, or NaN on both sides (which NaN an instruction passes on depends on operand order).
void ExpectSame(const std::vector<double>& a, const std::vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i)
    ASSERT_TRUE(SameBits(a[i], b[i]) || (std::isnan(a[i]) && std::isnan(b[i]))) << i;
}

}  // namespace

// Blocks of every size, run in place, equal frames of the two-lane section (stereo blocks take
// the four-lane one where the processor has it), also on hostile input, and leave the same state.
TEST(AsymSatBlock, BlocksEqualFramesAndLeaveTheSameState) {
  for (const Source* src : {&kBursts, &kBroken}) {
    for (bool stereo : {true, false}) {
      for (int block : kBlockSizes) {
        AsymSat byBlock, byFrame;
        byFrame.wideLanes = false;
        ExpectSame(RunBlocks(byBlock, *src, 9000, block, stereo),
                   RunBlocks(byFrame, *src, 9000, 1, stereo));
        ExpectSame(RunBlocks(byBlock, kBursts, 2100, 1, stereo),
                   RunBlocks(byFrame, kBursts, 2100, 1, stereo));
      }
    }
  }
  AsymSat unconfigured, frames;  // oversampling 0 before init_all: no pass runs
  std::vector<double> in(100, 0.3), out(100);
  unconfigured.process_MonoBlock(in.data(), out.data(), 100);
  for (int n = 0; n < 100; ++n) ASSERT_TRUE(SameBits(out[n], frames.process_Mono(0.3)));
}

// The whole effect, mono and stereo: every block size gives the single-frame render, with every
// parameter changing inside blocks.
TEST(TarnBlock, EveryBlockSizeEqualsSingleFrames) {
  Signal in(2, std::vector<float>(9000));
  for (int n = 0; n < 9000; ++n) in[0][n] = float(kBursts(n, 0)), in[1][n] = float(kBursts(n, 1));
  auto render = [&](int channels, int block) {
    Host host(channels);
    Signal out = host.Run(in, block, 1500, [&](int step) {
      host.Set(kDrive, 2.0 + 2.5 * (step % 4)).Set(kInputTrim, -6.0 + 4.0 * (step % 3));
      host.Set(kFreqResponse, step % 2 == 0 ? 4.0 : -7.0).Set(kBypass, step == 3);
      host.Set(kCrosstalk, step % 3 == 0 ? -120.0 : -65.0);
    });
    out.push_back({float(host.effect().GetNeedle())});
    return out;
  };
  for (int channels : {1, 2}) {
    const Signal single = render(channels, 1);
    for (int block : kBlockSizes) EXPECT_EQ(render(channels, block), single) << block;
  }
}
