#include <cstring>

#include "DspTesting.h"

const int kBlockSizes[] = {1, 7, 64, 512, 4096};

// Loud noise bursts, silence of uneven length, a low sine; `broken` adds an infinity and a NaN.
static double Source(int n, int c, bool broken) {
  if (broken && n == 2500 + 300 * c) return c == 0 ? HUGE_VAL : std::nan("");
  const int phase = n % 3001;
  if (phase < 700) return 2.5 * TestNoise(n + 31 * c);
  return phase < 1900 ? 0.0 : 1.5 * std::sin(kTwoPi * 60.0 * n / kRate + c);
}

// Runs `sat` over the source in place in blocks and returns left then right (mono blocks unless
// `stereo`). Settings change every 1000 frames, splitting blocks as a host would; blocks of one
// frame are what process_Stereo and process_Mono run.
static std::vector<double> RunBlocks(AsymSat& sat, bool broken, int frames, int block,
                                     bool stereo) {
  const double settings[4][4] = {
      {6, 3, 0.3, 0.5}, {20, -10, 0.4, 1}, {-40, 10, 0, 0}, {12, 0, 0.2, 0.7}};
  std::vector<double> lr(2 * frames);
  for (int n = 0; n < frames; ++n)
    lr[n] = Source(n, 0, broken), lr[frames + n] = stereo ? Source(n, 1, broken) : 0.0;
  for (int start = 0, len = 0; start < frames; start += len) {
    const double* v = settings[(start / 1000) % 4];
    if (start % 1000 == 0) sat.init_all(kRate, v[0], v[1], v[2], v[3]);
    len = std::min({block, frames - start, 1000 - start % 1000});
    double *l = &lr[start], *r = &lr[frames + start];
    stereo ? sat.process_StereoBlock(l, r, l, r, len) : sat.process_MonoBlock(l, l, len);
  }
  return lr;
}

// Same bits, or NaN on both sides (which NaN an instruction passes on depends on operand order).
static void ExpectSame(const std::vector<double>& a, const std::vector<double>& b) {
  for (std::size_t i = 0; i < a.size(); ++i)
    ASSERT_TRUE(SameBits(a[i], b[i]) || (std::isnan(a[i]) && std::isnan(b[i]))) << i;
}

// Blocks of every size, run in place, with the oversampled section's sub-samples in vector lanes
// (four or two wide), equal frames of the plain section, also on hostile input, and leave the same
// state.
TEST(AsymSatBlock, BlocksEqualFramesAndLeaveTheSameState) {
  for (int k = 0; k < 20; ++k) {  // clean or hostile input, stereo or mono, every block size
    const bool broken = k >= 10, stereo = k % 10 < 5;
    AsymSat byBlock, byFrame;
    byFrame.laneSections = false;
    byBlock.wideLanes = byBlock.wideLanes && k % 2 == 0;  // both lane forms, where there are two
    ExpectSame(RunBlocks(byBlock, broken, 9000, kBlockSizes[k % 5], stereo),
               RunBlocks(byFrame, broken, 9000, 1, stereo));
    // Blocks leave the oversampling filters' memory and last sub-samples as frames do, to the bit.
    const auto same = [&](HalfBandFilter AsymSat::*f) {
      return !std::memcmp(&(byBlock.*f), &(byFrame.*f), sizeof(HalfBandFilter));
    };
    EXPECT_TRUE(broken || (same(&AsymSat::upL) && same(&AsymSat::upR) && same(&AsymSat::downL) &&
                           same(&AsymSat::downR) && SameBits(byBlock.osL, byFrame.osL) &&
                           SameBits(byBlock.osR, byFrame.osR)))
        << k;
    ExpectSame(RunBlocks(byBlock, false, 2100, 1, stereo),
               RunBlocks(byFrame, false, 2100, 1, stereo));
  }
  AsymSat unconfigured, frames;  // oversampling 0 before init_all: no pass runs
  std::vector<double> in(100, 0.3), out(100);
  unconfigured.process_MonoBlock(in.data(), out.data(), 100);
  for (int n = 0; n < 100; ++n) ASSERT_TRUE(SameBits(out[n], frames.process_Mono(0.3)));
}

// The whole effect, mono and stereo, every control moving: each block size gives single frames.
TEST(TarnBlock, EveryBlockSizeEqualsSingleFrames) {
  Signal in(2, std::vector<float>(9000));
  for (int n = 0; n < 9000; ++n)
    in[0][n] = float(Source(n, 0, false)), in[1][n] = float(Source(n, 1, false));
  for (int channels : {1, 2}) {
    const Signal single = Automated(in, channels, 1, -65.0);
    for (int block : kBlockSizes) EXPECT_EQ(Automated(in, channels, block, -65.0), single) << block;
  }
}
