// The saturator, by its stated numbers at chosen settings and by what it does to signals.
#include <gtest/gtest.h>

#include <complex>
#include <type_traits>

#include "Signals.h"
#include "dsp/AsymSat.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;

AsymSat Initialised(double fs, double driveDb, double tone, double drift, double asymmetry) {
  AsymSat sat;
  sat.init_all(fs, driveDb, tone, drift, asymmetry);
  return sat;
}

// The analogue corner a tone stage was designed for, recovered from b = w/(3·fs + w).
double CornerHz(const OnePoleStage& s, double fs) { return 3.0 * fs * s.b / (1.0 - s.b) / kTwoPi; }

// A biquad's level at hz, from its coefficients.
double GainDb(const RBJ& f, double hz, double fs) {
  const std::complex<double> z = std::polar(1.0, -kTwoPi * hz / fs);
  return ToDb(std::abs((f.b0 + f.b1 * z + f.b2 * z * z) / (1.0 + f.a1 * z + f.a2 * z * z)));
}

}  // namespace

static_assert(std::is_trivially_destructible_v<AsymSat>,
              "the effect destroys its saturator twice; destruction must release nothing");

TEST(AsymSat, ConstructedAndInitialisedConstants) {
  const AsymSat fresh;
  EXPECT_EQ(fresh.detOffset, 106.0);
  EXPECT_EQ(fresh.detSlope, -0.5833333333333334);
  EXPECT_EQ(fresh.detHold, 1);
  EXPECT_EQ(fresh.evenWeight, 0.05);
  EXPECT_EQ(fresh.oversample, 0);
  for (double v : {fresh.memIn, fresh.memFb, fresh.postScale, fresh.postFb}) EXPECT_EQ(v, 0.5);
  EXPECT_EQ(fresh.drift[0].count, 4);
  const AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.4, 0.5);
  EXPECT_EQ(sat.oversample, 2);
  EXPECT_EQ(sat.detOffset, 122.0);
  EXPECT_EQ(sat.detSlope, -0.5238095238095238);
  EXPECT_EQ(sat.detHold, 4);  // 4.41 truncated
  EXPECT_EQ(Initialised(96000.0, 0, 0, 0, 0).detHold, 9);
  EXPECT_DOUBLE_EQ(sat.driftDepth, 0.5 * std::pow(0.4, 5.0));
  EXPECT_EQ(sat.drift[0].step, 0.25);
  EXPECT_EQ(sat.drift[1].coefInv, 1.0 - sat.drift[1].coef);
  // Time constants: detector 0.8 ms, drift glide 5 ms, the curve's memory 1.7958 ms at 2·fs.
  EXPECT_NEAR(std::pow(sat.detCoef, 44100 * 0.0008), std::exp(-1.0), 1e-12);
  EXPECT_NEAR(std::pow(sat.drift[0].coef, 44100 * 0.005), std::exp(-1.0), 1e-12);
  EXPECT_NEAR(std::pow(sat.memIn, 2 * 44100 * 0.0017958), std::exp(-1.0), 1e-12);
  EXPECT_EQ(sat.memFb, 1.0 - sat.memIn);
  EXPECT_NEAR(sat.postScale, std::pow(sat.memIn, -3.131), 1e-12);
  EXPECT_NEAR(sat.postFb, std::pow(sat.memFb, 3.131), 1e-15);
  EXPECT_EQ(sat.gainTarget, 1.0);
  EXPECT_NEAR(Initialised(44100, -20, 0, 0, 0).gainTarget, 0.1, 1e-14);
}

// "Asymmetry" moves the positive knee by a tenth and the negative one by nine tenths; the even
// weight grows with the drive from 0.0125 at -40 dB to 0.74375 at +20 dB.
TEST(AsymSat, KneesAndEvenWeight) {
  const AsymSat flat = Initialised(48000.0, -40.0, 0.0, 0.2, 0.0);
  EXPECT_EQ(flat.posKnee, 1.0);
  EXPECT_EQ(flat.negKnee, 1.1);
  EXPECT_EQ(flat.evenWeight, 0.0125);
  const AsymSat full = Initialised(48000.0, 20.0, 0.0, 0.2, 1.0);
  EXPECT_NEAR(full.posKnee, 0.9, 1e-15);
  EXPECT_NEAR(full.posKneeInv, 1.0 / 0.9, 1e-15);
  EXPECT_NEAR(full.negKnee, 0.2, 1e-15);
  EXPECT_NEAR(full.negKneeInv, 5.0, 1e-14);
  EXPECT_NEAR(full.evenWeight, 0.74375, 1e-15);
}

// Freq Response: the low-pass sits at 12 kHz for T ≥ 0 and falls to 12000 - 6000·0.5^0.3 Hz at
// -10; positive T opens the 10 kHz boost; the 14 kHz boost opens with asymmetry and closes at
// +20 dB drive; the emphasis shelves move the top by ±T dB, the de-emphasis 1000 Hz higher.
TEST(AsymSat, ToneStagesAndShelvesFollowTheControls) {
  const double fs = 48000.0;
  const AsymSat dark = Initialised(fs, 0.0, -10.0, 0.2, 0.5);
  EXPECT_NEAR(CornerHz(dark.tone[0], fs), 12000.0 - 6000.0 * std::pow(0.5, 0.3), 1e-9);
  EXPECT_NEAR(CornerHz(dark.tone[1], fs), CornerHz(dark.tone[0], fs), 0.0);
  EXPECT_NEAR(GainDb(dark.eq[7], 56.0, fs), 2 * ((30 - 40) * 0.02 + 0.5), 1e-9);  // the low bump
  const AsymSat neutral = Initialised(fs, 0.0, 0.0, 0.2, 0.5);
  EXPECT_NEAR(CornerHz(neutral.tone[0], fs), 12000.0, 1e-9);
  EXPECT_NEAR((1.0 - neutral.tone[0].a) / 2.0, neutral.tone[0].b, 1e-16);
  const AsymSat bright = Initialised(fs, 0.0, 8.0, 0.2, 0.5);
  EXPECT_NEAR(CornerHz(bright.tone[0], fs), 12000.0, 1e-9);
  EXPECT_NEAR(CornerHz(bright.tone[3], fs), 10000.0, 1e-9);
  EXPECT_NEAR(CornerHz(bright.tone[5], fs), 14000.0, 1e-9);
  EXPECT_NEAR(bright.tone[2].g, std::exp(8.0 * 0.7 * 0.115) - 1.0, 1e-15);
  EXPECT_EQ(dark.tone[2].g, 0.0);
  EXPECT_EQ(neutral.tone[3].g, 0.0);
  EXPECT_NEAR(GainDb(bright.eq[1], fs / 2, fs), 8.0, 1e-9);
  EXPECT_NEAR(GainDb(bright.eq[2], fs / 2, fs), -8.0, 1e-9);
  EXPECT_NEAR(CornerHz(bright.tone[4], fs), 14000.0, 1e-9);
  EXPECT_NEAR(GainDb(bright.eq[0], 2374.0, fs), 4.0, 1e-9);  // half the shelf at its corner
  EXPECT_NEAR(GainDb(bright.eq[3], 3374.0, fs), -4.0, 1e-9);
  EXPECT_NEAR(GainDb(bright.eq[6], 56.0, fs), 2 * ((30 - 40) * 0.02 + 0.4), 1e-9);
  EXPECT_EQ(Initialised(fs, 20.0, 0.0, 0.2, 1.0).tone[4].g, 0.0);
  EXPECT_EQ(Initialised(fs, 0.0, 0.0, 0.2, 0.0).tone[5].g, 0.0);
  EXPECT_NEAR(Initialised(fs, -40.0, 0.0, 0.2, 1.0).tone[4].g, std::exp(60 * 0.17 * 0.115) - 1.0,
              1e-12);
  EXPECT_EQ(bright.tone[4].mode, OnePoleStage::kHighBoost);
  EXPECT_EQ(bright.tone[0].mode, OnePoleStage::kLowPass);
}

// The curve's shape at chosen points with its memory and post filter made transparent:
// y(1) = (1 - w)/√2 on the positive branch; the negative branch is s/√(s²+1) minus the weighted
// knee term; both even terms pull down; exactly 0 takes the negative branch.
TEST(AsymSat, CurveAtChosenPoints) {
  AsymSat sat = Initialised(48000.0, -40.0, 0.0, 0.2, 0.0);  // evenWeight 0.0125, knees 1 and 1.1
  sat.memIn = 1.0, sat.memFb = 0.0, sat.postFb = 0.0, sat.postScale = 1.0;
  auto at = [&](double x) {
    double mem = 0.0, prev = 0.0;
    return sat.curve(x, mem, prev);
  };
  EXPECT_NEAR(at(1.0), (1.0 - 0.0125) / std::sqrt(2.0), 1e-15);
  EXPECT_NEAR(at(-1.0), -1.0 / std::sqrt(2.0) - 0.0125 / std::sqrt(2.21), 1e-15);
  EXPECT_NEAR(at(3.0), 3.0 / std::sqrt(10.0) - 0.0125 * 9.0 / std::sqrt(82.0), 1e-15);
  for (double x : {0.1, 0.5, 2.0, 10.0}) EXPECT_LT(at(x) + at(-x), 0.0) << x;
  EXPECT_EQ(at(0.0), 0.0);
  // The branch follows the incoming sample, not the smoothed s; memory and post filter act.
  sat.memIn = 0.5, sat.memFb = 0.5, sat.postFb = 0.25, sat.postScale = 2.0;
  double mem = 1.0, prev = 0.4;
  const double s = 0.5 * -0.2 + 0.5 * 1.0,
               y = s / std::sqrt(s * s + 1.0) -
                   0.0125 * 1.1 * s * s / std::sqrt(1.21 * s * s * s * s + 1.0) / 1.1;
  EXPECT_NEAR(sat.curve(-0.2, mem, prev), (y - 0.25 * 0.4) * 2.0, 1e-15);
  EXPECT_EQ(mem, s);
  EXPECT_NEAR(prev, y, 1e-16);
}

// At quiet levels the gain computer applies G = 25, r = 25/√626, before the fixed ×4; the input
// gain glides with the 0.999 smoother while the output compensation follows it at once.
TEST(AsymSat, QuietGainGlideAndCompensation) {
  AsymSat sat = Initialised(44100.0, 12.0, 0.0, 0.0, 0.5);
  const double x = 0.01, noise = 1.0 + 2 * 29573 * -1.0 / 139968;
  sat.process_Stereo(x, x);
  const double gain = (1.0 - 0.999) * std::pow(10.0, 12.0 / 20.0);
  EXPECT_NEAR(sat.gainSmoothed / gain, 1.0, 1e-13);
  EXPECT_NEAR(sat.workL / (4.0 * sat.eq[0].b0 * (sat.gainSmoothed * x + 1e-11 * noise)),
              25 / std::sqrt(626.0), 1e-14);
  for (int n = 2; n <= 3000; ++n) sat.process_Stereo(0.1, -0.1);
  EXPECT_NEAR(sat.gainSmoothed / sat.gainTarget, 1.0 - std::pow(0.999, 3000), 1e-9);
  EXPECT_EQ(sat.outScale, 0.28061551207734 / sat.gainSmoothed);
}

// A loud steady signal lifts the detector's level above its offset and pulls the gain down;
// the detector hears both channels, so the right channel moves the left.
TEST(AsymSat, LoudSignalsPullTheLinkedGainDown) {
  AsymSat quiet = Initialised(48000.0, 0.0, 0.0, 0.0, 0.5),
          loud = Initialised(48000, 20, 0, 0, 0.5);
  AsymSat loudRight = loud;
  double quietPeak = 0.0, loudPeak = 0.0, rightEffect = 0.0;
  for (int n = 0; n < 48000; ++n) {
    const double x = std::sin(kTwoPi * 200.0 * n / 48000.0);
    quiet.process_Stereo(0.01 * x, 0.01 * x);
    const double l = loud.process_Stereo(x, x);
    rightEffect = std::fmax(rightEffect, std::fabs(l - loudRight.process_Stereo(x, 3.0 * x)));
    if (n > 40000) quietPeak = std::fmax(quietPeak, std::fabs(quiet.detFeedback));
    if (n > 40000) loudPeak = std::fmax(loudPeak, std::fabs(loud.detFeedback));
  }
  EXPECT_GT(8.685889638065037 * std::log(loud.detEnv) + 122.0, 0.0);
  EXPECT_LT(loudPeak, 0.5 * 1000.0 * quietPeak);  // 60 dB more in, far less than 60 dB more out
  EXPECT_GT(rightEffect, 1e-3);
}

// Silence gives a faint floor: the congruential seeds (the same sequence left and right) at
// 1e-11 through the chain; finite, non-zero, far below audibility.
TEST(AsymSat, SilenceLeavesTheSeededNoiseFloor) {
  AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.2, 0.5);
  int seed = 0;
  double peak = 0.0;
  for (int n = 0; n < 441000; ++n) {
    const double l = sat.process_Stereo(0.0, 0.0);
    seed = static_cast<int>((seed * 3877LL + 29573) % 139968);
    ASSERT_TRUE(sat.seedL == seed && sat.seedR == seed && std::isfinite(l + sat.outR)) << n;
    if (n > 44100) peak = std::fmax(peak, std::fmax(std::fabs(l), std::fabs(sat.outR)));
  }
  EXPECT_GT(peak, 1e-13);
  EXPECT_LT(peak, 1e-9);
  sat.process_Mono(0.0);
  EXPECT_NE(sat.seedL, sat.seedR);  // the mono pass runs the left generator only
}

// Drift targets come from the instance's own never-seeded rand() sequence, drawn only when the
// value has come within 0.1; a NaN distance keeps the target; no drift amount means a gain of 1.
TEST(AsymSat, DriftFollowsItsOwnRandomSequence) {
  AsymSat sat = Initialised(48000.0, 0.0, 0.0, 0.4, 0.5);
  SystemRand expected;
  double target = 1.0, value = 1.0;
  for (int n = 0; n < 48000; ++n) {
    if (std::fabs(value - target) <= 0.1) target = ((expected.next() % 4) + 1) * 0.25;
    sat.process_Stereo(0.2, 0.2);
    value = sat.drift[0].value;
    ASSERT_EQ(sat.drift[0].target, target) << n;
    ASSERT_EQ(sat.driftGainR, value * sat.driftDepth + 1.0);
  }
  EXPECT_EQ(sat.drift[1].value, 1.0);
  DriftGenerator broken{4, 0.25, 0.5, 0.5, std::nan(""), 0.75};
  broken.advance(expected);
  EXPECT_EQ(broken.target, 0.75);
  AsymSat still = Initialised(48000.0, 0.0, 0.0, 0.0, 0.5);
  for (int n = 0; n < 20000; ++n) {
    still.process_Stereo(std::sin(n * 0.01), 0.0);
    ASSERT_EQ(still.driftGainL, 1.0);
  }
}

// The mono pass is the left of a stereo pass fed the same on both sides; re-running init_all
// with unchanged controls (the effect does so every block) changes nothing; two instances in one
// process never meet, random drift included.
TEST(AsymSat, MonoEqualsStereoLeftAndInstancesAreIndependent) {
  AsymSat stereo, mono, everyBlock, other;
  for (int n = 0; n < 40000; ++n) {
    if (n % 5000 == 0) {
      const double drive = -40.0 + 0.0015 * n, tone = -10.0 + 0.0005 * n, asym = 0.000025 * n;
      for (AsymSat* s : {&stereo, &mono, &everyBlock, &other})
        s->init_all(48000, drive, tone, 0.4, asym);
    }
    if (n % 64 == 0)
      everyBlock.init_all(48000, -40.0 + 0.0015 * (n - n % 5000), -10.0 + 0.0005 * (n - n % 5000),
                          0.4, 0.000025 * (n - n % 5000));
    const double x = (n / 7000) % 2 ? 2.5 * std::sin(n * 0.031) : 0.4 * std::sin(n * 0.0021);
    const double left = stereo.process_Stereo(x, x);
    other.process_Stereo(TestNoise(n), 0.5);
    ASSERT_EQ(mono.process_Mono(x), left) << n;
    ASSERT_EQ(stereo.outR, left) << n;
    ASSERT_EQ(everyBlock.process_Stereo(x, x), left) << n;
  }
}
