// The staged block forms against frame-by-frame processing: the saturator's
// process_StereoBlock / process_MonoBlock against process_Stereo / process_Mono per frame, and
// the whole effect at every block size against blocks of one frame. Every output bit and every
// piece of state must agree, also when the chunk boundaries inside a block fall anywhere.
#include "dsp/AsymSat.h"
#include "dsp/SplitHalfBand.h"
#include "dsp/Tarn.h"
#include "editor/IGraphics.h"

#include "TestNoise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr double kRate = 48000.0;
constexpr double kTwoPi = 6.283185307179586;
const int kBlockSizes[] = {1, 7, 64, 512, 4096};

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

using Signal = std::function<double(int n, int channel)>;

const Signal kSines = [](int n, int c) {
  return c == 0 ? 0.6 * std::sin(kTwoPi * 440.0 * n / kRate)
                : 0.3 * std::sin(kTwoPi * 97.0 * n / kRate) + 0.2 * std::sin(kTwoPi * 5100.0 * n / kRate);
};
const Signal kNoise = [](int n, int c) { return (c == 0 ? 0.8 : -0.5) * TestNoise(n + 7919 * c); };
const Signal kSilence = [](int, int) { return 0.0; };
// Loud bursts of noise and a low sine between stretches of silence of uneven length.
const Signal kBursts = [](int n, int c) {
  const int phase = n % 3001;
  if (phase < 700) return 2.5 * TestNoise(n + 31 * c);
  if (phase < 1900) return 0.0;
  return 1.5 * std::sin(kTwoPi * 60.0 * n / kRate + c);
};

struct Settings {
  double driveDb, freqResponse, driftAmount, asymmetry;
};
// Applied in turn at frames 0, 1000, 2000, ... (chosen so that changes land inside blocks and
// chunks of every size, not only on their edges).
const Settings kSettings[] = {{6.0, 3.0, 0.3, 0.5}, {20.0, -10.0, 0.4, 1.0}, {-40.0, 10.0, 0.0, 0.0},
                              {12.0, 0.0, 0.2, 0.7}};
constexpr int kChangeEvery = 1000;

void Configure(AsymSat& sat, int frame) {
  const Settings& s = kSettings[(frame / kChangeEvery) % 4];
  sat.init_all(kRate, s.driveDb, s.freqResponse, s.driftAmount, s.asymmetry);
}

void ExpectSameFilter(const HalfBandFilter& a, const HalfBandFilter& b) {
  for (int i = 0; i < 12; ++i) {
    const AllPassStage& x = a.cascade.stages[i];
    const AllPassStage& y = b.cascade.stages[i];
    const double ax[] = {x.x0, x.x1, x.x2, x.y0, x.y1, x.y2};
    const double bx[] = {y.x0, y.x1, y.x2, y.y0, y.y1, y.y2};
    for (int k = 0; k < 6; ++k) EXPECT_TRUE(SameBits(ax[k], bx[k])) << "section " << i << " value " << k;
  }
  EXPECT_TRUE(SameBits(a.oldOut, b.oldOut));
}

// Everything a frame leaves behind, filters included.
void ExpectSameState(const AsymSat& a, const AsymSat& b) {
  ExpectSameFilter(a.upL, b.upL);
  ExpectSameFilter(a.upR, b.upR);
  ExpectSameFilter(a.downL, b.downL);
  ExpectSameFilter(a.downR, b.downR);
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(SameBits(a.tone[i].z, b.tone[i].z)) << "tone " << i;
    EXPECT_TRUE(SameBits(a.tone[i].out, b.tone[i].out)) << "tone " << i;
  }
  for (int i = 0; i < 10; ++i) EXPECT_EQ(std::memcmp(&a.eq[i], &b.eq[i], sizeof(RBJ)), 0) << "eq " << i;
  EXPECT_TRUE(SameBits(a.drift[0].value, b.drift[0].value));
  EXPECT_TRUE(SameBits(a.drift[0].target, b.drift[0].target));
  EXPECT_EQ(a.seedL, b.seedL);
  EXPECT_EQ(a.seedR, b.seedR);
  EXPECT_EQ(a.detState, b.detState);
  const double av[] = {a.gainSmoothed, a.dcL,         a.dcPrevL,    a.dcR,         a.dcPrevR,     a.workL,
                       a.workR,        a.osL,         a.osR,        a.memL,        a.memR,        a.curvePrevL,
                       a.curvePrevR,   a.driftGainL,  a.driftGainR, a.outScale,    a.outL,        a.outR,
                       a.detEnv,       a.detFeedback};
  const double bv[] = {b.gainSmoothed, b.dcL,         b.dcPrevL,    b.dcR,         b.dcPrevR,     b.workL,
                       b.workR,        b.osL,         b.osR,        b.memL,        b.memR,        b.curvePrevL,
                       b.curvePrevR,   b.driftGainL,  b.driftGainR, b.outScale,    b.outL,        b.outR,
                       b.detEnv,       b.detFeedback};
  for (std::size_t k = 0; k < sizeof av / sizeof av[0]; ++k) EXPECT_TRUE(SameBits(av[k], bv[k])) << "field " << k;
}

// Frame by frame on one object, block by block on another, with the settings changed at the
// same frames on both (a change inside a block splits it there, as a host would).
void ExpectBlocksMatchFrames(const Signal& signal, int frames, int blockSize, bool stereo) {
  AsymSat byFrame, byBlock;
  std::vector<double> inL(frames), inR(frames), outL(frames), outR(frames);
  for (int n = 0; n < frames; ++n) {
    inL[n] = signal(n, 0);
    inR[n] = signal(n, 1);
  }
  for (int start = 0; start < frames;) {
    if (start % kChangeEvery == 0) {
      Configure(byFrame, start);
      Configure(byBlock, start);
    }
    const int toChange = kChangeEvery - start % kChangeEvery;
    const int len = std::min({blockSize, frames - start, toChange});
    if (stereo) {
      byBlock.process_StereoBlock(&inL[start], &inR[start], &outL[start], &outR[start], len);
    } else {
      byBlock.process_MonoBlock(&inL[start], &outL[start], len);
    }
    for (int n = start; n < start + len; ++n) {
      if (stereo) {
        const double left = byFrame.process_Stereo(inL[n], inR[n]);
        ASSERT_TRUE(SameBits(outL[n], left)) << "left, frame " << n << ": " << outL[n] << " vs " << left;
        ASSERT_TRUE(SameBits(outR[n], byFrame.outR)) << "right, frame " << n;
      } else {
        const double out = byFrame.process_Mono(inL[n]);
        ASSERT_TRUE(SameBits(outL[n], out)) << "frame " << n << ": " << outL[n] << " vs " << out;
      }
    }
    start += len;
  }
  ExpectSameState(byBlock, byFrame);
}

}  // namespace

// The two-lane flush against the rule itself: a value whose exponent bits are all zero (a zero
// of either sign or a subnormal) becomes +0.0, anything else keeps its bits, in each lane alone.
TEST(LanePair, FlushDenormalFollowsTheExponentBitsInEachLane) {
  const double smallestSubnormal = std::numeric_limits<double>::denorm_min();
  const double largestSubnormal = std::nextafter(DBL_MIN, 0.0);
  const double flushed[] = {0.0, -0.0, smallestSubnormal, -smallestSubnormal, largestSubnormal, -largestSubnormal};
  const double kept[] = {DBL_MIN, -DBL_MIN, 1.0, -3.5e-300, DBL_MAX, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")};
  for (double tiny : flushed) {
    for (double normal : kept) {
      const LanePair a = FlushDenormal(LanePair{tiny, normal});
      const LanePair b = FlushDenormal(LanePair{normal, tiny});
      EXPECT_TRUE(SameBits(a[0], 0.0)) << tiny;
      EXPECT_TRUE(SameBits(a[1], normal)) << normal;
      EXPECT_TRUE(SameBits(b[0], normal)) << normal;
      EXPECT_TRUE(SameBits(b[1], 0.0)) << tiny;
    }
  }
}

// The chunked half-band against one HalfBandFilter::process call per sub-sample: outputs and
// every section's six stored values, for one filter alone and for a left and right pair, over
// chunks of several lengths in a row.
TEST(SplitHalfBand, ChunksEqualSubSampleCalls) {
  HalfBandFilter refL, refR, mono, pairL, pairR;
  int n = 0;
  for (int frames : {1, 2, 7, 64, 3, 128, 1}) {
    std::vector<double> inL(2 * frames), inR(2 * frames), single(2 * frames), scratch(2 * frames);
    std::vector<LanePair> pair(2 * frames), scratchPair(2 * frames);
    for (int k = 0; k < 2 * frames; ++k, ++n) {
      inL[k] = k % 2 == 0 ? kBursts(n, 0) : 0.1 * TestNoise(n);
      inR[k] = kNoise(n, 1);
      single[k] = inL[k];
      pair[k] = LanePair{inL[k], inR[k]};
    }
    SplitHalfBand<double>::process(mono, mono, single.data(), scratch.data(), frames);
    SplitHalfBand<LanePair>::process(pairL, pairR, pair.data(), scratchPair.data(), frames);
    for (int k = 0; k < 2 * frames; ++k) {
      const double left = refL.process(inL[k]);
      const double right = refR.process(inR[k]);
      ASSERT_TRUE(SameBits(single[k], left)) << "sub-sample " << k << " of " << frames << " frames";
      ASSERT_TRUE(SameBits(pair[k][0], left)) << "sub-sample " << k << " of " << frames << " frames";
      ASSERT_TRUE(SameBits(pair[k][1], right)) << "sub-sample " << k << " of " << frames << " frames";
    }
    ExpectSameFilter(mono, refL);
    ExpectSameFilter(pairL, refL);
    ExpectSameFilter(pairR, refR);
  }
}

TEST(AsymSatBlock, StereoBlocksEqualFramesOnEverySignalAndBlockSize) {
  for (const Signal* signal : {&kSines, &kNoise, &kSilence, &kBursts}) {
    for (int block : kBlockSizes) {
      SCOPED_TRACE(::testing::Message() << "block " << block);
      ExpectBlocksMatchFrames(*signal, 9000, block, true);
    }
  }
}

TEST(AsymSatBlock, MonoBlocksEqualFramesOnEverySignalAndBlockSize) {
  for (const Signal* signal : {&kSines, &kNoise, &kSilence, &kBursts}) {
    for (int block : kBlockSizes) {
      SCOPED_TRACE(::testing::Message() << "block " << block);
      ExpectBlocksMatchFrames(*signal, 9000, block, false);
    }
  }
}

namespace {

// Runs one object with the four-lane oversampled section and one with the two-lane section
// through the same stereo signal, settings and block size; `same` judges each output pair.
void RunBothSections(const Signal& signal, int frames, int blockSize,
                     const std::function<void(double wide, double narrow, int frame)>& same, AsymSat& wide,
                     AsymSat& narrow) {
  wide.wideLanes = true;
  narrow.wideLanes = false;
  std::vector<double> inL(frames), inR(frames), wideL(frames), wideR(frames), narrowL(frames), narrowR(frames);
  for (int n = 0; n < frames; ++n) {
    inL[n] = signal(n, 0);
    inR[n] = signal(n, 1);
  }
  for (int start = 0; start < frames;) {
    if (start % kChangeEvery == 0) {
      Configure(wide, start);
      Configure(narrow, start);
    }
    const int len = std::min({blockSize, frames - start, kChangeEvery - start % kChangeEvery});
    wide.process_StereoBlock(&inL[start], &inR[start], &wideL[start], &wideR[start], len);
    narrow.process_StereoBlock(&inL[start], &inR[start], &narrowL[start], &narrowR[start], len);
    start += len;
  }
  for (int n = 0; n < frames; ++n) {
    same(wideL[n], narrowL[n], n);
    same(wideR[n], narrowR[n], n);
  }
}

}  // namespace

// Where the processor has 256-bit vectors, stereo chunks take a four-lane oversampled section;
// elsewhere the two-lane one. Both must give the same bits and leave the same state.
TEST(AsymSatBlock, FourLaneSectionEqualsTwoLaneSection) {
  if (!WideLanesAvailable()) GTEST_SKIP() << "this processor has no 256-bit vectors";
  for (const Signal* signal : {&kSines, &kNoise, &kSilence, &kBursts}) {
    for (int block : kBlockSizes) {
      SCOPED_TRACE(::testing::Message() << "block " << block);
      AsymSat wide, narrow;
      RunBothSections(*signal, 9000, block, [](double w, double n, int frame) {
        ASSERT_TRUE(SameBits(w, n)) << "frame " << frame << ": " << w << " vs " << n;
      }, wide, narrow);
      ExpectSameState(wide, narrow);
    }
  }
}

// Infinite and NaN input turns the saturator's state into NaN. Which of two NaN operands an
// instruction passes on depends on the operand order the compiler picked, so there only
// "NaN on both sides" is asked for; every number must still agree to the bit.
TEST(AsymSatBlock, FourLaneSectionEqualsTwoLaneSectionOnNonFiniteInput) {
  if (!WideLanesAvailable()) GTEST_SKIP() << "this processor has no 256-bit vectors";
  const Signal broken = [](int n, int c) {
    if (n == 2500 + 300 * c) return c == 0 ? HUGE_VAL : std::nan("");
    return kBursts(n, c);
  };
  AsymSat wide, narrow;
  RunBothSections(broken, 4000, 64, [](double w, double n, int frame) {
    if (std::isnan(w) && std::isnan(n)) return;
    ASSERT_TRUE(SameBits(w, n)) << "frame " << frame << ": " << w << " vs " << n;
  }, wide, narrow);
}

// Outputs may overwrite the inputs they come from.
TEST(AsymSatBlock, RunsInPlace) {
  AsymSat apart, inPlace;
  Configure(apart, 0);
  Configure(inPlace, 0);
  std::vector<double> l(300), r(300), outL(300), outR(300);
  for (int n = 0; n < 300; ++n) {
    l[n] = kNoise(n, 0);
    r[n] = kNoise(n, 1);
  }
  apart.process_StereoBlock(l.data(), r.data(), outL.data(), outR.data(), 300);
  inPlace.process_StereoBlock(l.data(), r.data(), l.data(), r.data(), 300);
  EXPECT_EQ(l, outL);
  EXPECT_EQ(r, outR);
}

// Before init_all the oversampling factor is 0: no pass runs and the previous output goes on
// through the output stages. The block form must follow the frames there too.
TEST(AsymSatBlock, UnconfiguredObjectFollowsTheFrames) {
  std::vector<double> in(100), outL(100), outR(100);
  for (int n = 0; n < 100; ++n) in[n] = kSines(n, 0);

  AsymSat monoFrames, monoBlock;
  monoBlock.process_MonoBlock(in.data(), outL.data(), 100);
  for (int n = 0; n < 100; ++n) ASSERT_TRUE(SameBits(outL[n], monoFrames.process_Mono(in[n]))) << n;
  ExpectSameState(monoBlock, monoFrames);

  AsymSat stereoFrames, stereoBlock;
  stereoBlock.process_StereoBlock(in.data(), in.data(), outL.data(), outR.data(), 100);
  for (int n = 0; n < 100; ++n) {
    ASSERT_TRUE(SameBits(outL[n], stereoFrames.process_Stereo(in[n], in[n]))) << n;
    ASSERT_TRUE(SameBits(outR[n], stereoFrames.outR)) << n;
  }
  ExpectSameState(stereoBlock, stereoFrames);
}

namespace {

class RecordingGraphics : public IGraphics {
public:
  void SetControlFromPlug(int, double value) override { needles.push_back(value); }
  std::vector<double> needles;
};

struct Render {
  std::vector<float> left, right;
  double needle;
};

// The whole effect through the host float path in blocks of blockSize, with parameter changes
// (and a change of meter mode) at fixed frames; a block that would span a change ends there.
Render RenderEffect(int channels, int blockSize, const Signal& signal, int frames) {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetIO(channels, channels);
  plug->SetSampleRate(kRate);
  plug->SetBlockSize(blockSize);
  plug->Reset();
  auto* gui = new RecordingGraphics;
  plug->AttachGraphics(gui);

  std::vector<float> inL(frames), inR(frames), outL(frames), outR(frames);
  for (int n = 0; n < frames; ++n) {
    inL[n] = static_cast<float>(signal(n, 0));
    inR[n] = static_cast<float>(signal(n, 1));
  }
  constexpr int kChange = 1500;
  for (int start = 0; start < frames;) {
    if (start % kChange == 0) {
      const int step = start / kChange;
      plug->SetParameter(kDrive, 2.0 + 2.5 * (step % 4));
      plug->SetParameter(kInputTrim, -6.0 + 4.0 * (step % 3));
      plug->SetParameter(kFreqResponse, step % 2 == 0 ? 4.0 : -7.0);
      plug->SetParameter(kCrosstalk, step % 3 == 0 ? -120.0 : -65.0);
      plug->SetParameter(kBypass, step == 3 ? 1.0 : 0.0);
      plug->SetParameter(kVuMode, (step + 2) % 3);  // ends on the RMS difference
    }
    const int len = std::min({blockSize, frames - start, kChange - start % kChange});
    float* ins[2] = {&inL[start], &inR[start]};
    float* outs[2] = {&outL[start], &outR[start]};
    plug->ProcessAudio(ins, outs, len);
    start += len;
  }
  return {outL, outR, gui->needles.back()};
}

}  // namespace

TEST(TarnBlock, EveryBlockSizeEqualsSingleFrames) {
  for (int channels : {1, 2}) {
    for (const Signal* signal : {&kSines, &kNoise, &kSilence, &kBursts}) {
      const Render single = RenderEffect(channels, 1, *signal, 9000);
      for (int block : kBlockSizes) {
        SCOPED_TRACE(::testing::Message() << "channels " << channels << ", block " << block);
        const Render got = RenderEffect(channels, block, *signal, 9000);
        EXPECT_EQ(got.left, single.left);
        if (channels == 2) {
          EXPECT_EQ(got.right, single.right);
        }
        EXPECT_TRUE(SameBits(got.needle, single.needle));
      }
    }
  }
}

// Coefficient designs are skipped while their inputs stay the same, so a change must still act
// at the next block, also a change back to an earlier value. Bypassed with silence in, the
// output is the noise floor alone, shaped by a shelf whose gain follows "Drive": modelled here
// with its own biquad, redesigned at the same frames and keeping its memory.
TEST(TarnBlock, DriveChangesReshapeTheNoiseFloorAtTheNextBlock) {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetIO(2, 2);
  plug->SetSampleRate(kRate);
  plug->Reset();
  plug->SetParameter(kBypass, 1.0);

  RBJ shelf{};
  int seed = 0;
  const double level = std::exp(-90.0 * 0.1151292546497);
  std::vector<float> silence(500, 0.0f), outL(500), outR(500);
  float* ins[2] = {silence.data(), silence.data()};
  float* outs[2] = {outL.data(), outR.data()};
  for (double drive : {0.0, 10.0, 10.0, 0.0, 5.0}) {
    plug->SetParameter(kDrive, drive);
    shelf.setup(8, 850.0, kRate, 0.2, (6.0 * drive - 40.0) * 0.25 - 14.0, true);
    plug->ProcessAudio(ins, outs, 500);
    for (int n = 0; n < 500; ++n) {
      seed = (3877 * seed + 29573) % 139968;
      const double u = seed * 2 * -7.144490169181527e-06 + 1.0;
      const float expected = static_cast<float>(shelf.filter(u * level) * 1.0001);
      ASSERT_EQ(outL[n], expected) << "drive " << drive << ", frame " << n;
    }
  }
}
