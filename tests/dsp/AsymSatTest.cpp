#include "dsp/AsymSat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

constexpr double kTwoPi = 6.283185307179586;

bool AllZero(const RBJ& f) {
  const RBJ zero;
  return std::memcmp(&f, &zero, sizeof(RBJ)) == 0;
}

AsymSat Initialised(double fs, double driveDb, double freqResponse, double driftAmount, double asymmetry) {
  AsymSat sat;
  sat.init_all(fs, driveDb, freqResponse, driftAmount, asymmetry);
  return sat;
}

// The analogue corner a tone stage was designed for, recovered from b = w/(3·fs + w).
double CornerHz(const OnePoleStage& stage, double fs) { return 3.0 * fs * stage.b / (1.0 - stage.b) / kTwoPi; }

// Makes the curve stateless so that curve() returns its static shape y(x).
void BareCurve(AsymSat& sat) {
  sat.memIn = 1.0;
  sat.memFb = 0.0;
  sat.postFb = 0.0;
  sat.postScale = 1.0;
}

double CurveAt(const AsymSat& sat, double x) {
  double mem = 0.0, prev = 0.0;
  return sat.curve(x, mem, prev);
}

std::vector<double> StereoLeft(AsymSat& sat, const std::vector<double>& in) {
  std::vector<double> out;
  for (double x : in) out.push_back(sat.process_Stereo(x, x));
  return out;
}

}  // namespace

TEST(AsymSat, ConstructedState) {
  static_assert(std::is_trivially_destructible<AsymSat>::value,
                "the effect destroys its saturator twice; destruction must release nothing");
  const AsymSat sat;
  EXPECT_EQ(sat.detOffset, 106.0);
  EXPECT_EQ(sat.detSpare, 2.4);
  EXPECT_EQ(sat.detSlope, -0.5833333333333334);
  EXPECT_EQ(sat.detSlope, -7.0 / 12.0);
  EXPECT_EQ(sat.detHold, 1);
  EXPECT_EQ(sat.spareFlag, 1);
  EXPECT_EQ(sat.evenWeight, 0.05);
  for (double v : {sat.memIn, sat.memFb, sat.postScale, sat.postFb}) EXPECT_EQ(v, 0.5);
  for (double v : {sat.posKnee, sat.posKneeInv, sat.negKnee, sat.negKneeInv}) EXPECT_EQ(v, 1.0);
  EXPECT_EQ(sat.seedL, 0);
  EXPECT_EQ(sat.seedR, 0);
  EXPECT_EQ(sat.gainSmoothed, 0.0);
  EXPECT_EQ(sat.detEnv, 0.0);
  for (const RBJ& f : sat.eq) EXPECT_TRUE(AllZero(f));
  for (const DriftGenerator& d : sat.drift) {
    EXPECT_EQ(d.count, 4);
    EXPECT_EQ(d.step, 0.0);
    EXPECT_EQ(d.coef, 0.0);
    EXPECT_EQ(d.coefInv, 0.0);
    EXPECT_EQ(d.value, 1.0);
    EXPECT_EQ(d.target, 1.0);
  }
  EXPECT_EQ(sat.upL.oldOut + sat.downR.oldOut, 0.0);
}

TEST(AsymSat, InitAllSetsTheDetectorAndOversamplingConstants) {
  const AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.2, 0.5);
  EXPECT_EQ(sat.oversample, 2);
  EXPECT_EQ(sat.detOffset, 122.0);
  EXPECT_EQ(sat.detSpare, 2.1);
  EXPECT_EQ(sat.detSlope, -0.5238095238095238);
  EXPECT_EQ(sat.detSlope, -11.0 / 21.0);
  EXPECT_EQ(sat.detHold, 4);  // 4.41 truncated
  EXPECT_EQ(Initialised(96000.0, 0.0, 0.0, 0.2, 0.5).detHold, 9);
  // Unused slots stay as the constructor left them.
  for (int i : {4, 5, 8, 9}) EXPECT_TRUE(AllZero(sat.eq[i])) << i;
  for (const DriftGenerator& d : sat.drift) {
    EXPECT_EQ(d.count, 4);
    EXPECT_EQ(d.step, 0.25);
    EXPECT_EQ(d.coefInv, 1.0 - d.coef);
  }
}

// "Asymmetry" moves the knees: the positive one by a tenth, the negative one much more.
TEST(AsymSat, KneesAndEvenWeightFollowAsymmetryAndDrive) {
  const AsymSat flat = Initialised(48000.0, -40.0, 0.0, 0.2, 0.0);
  EXPECT_EQ(flat.posKnee, 1.0);
  EXPECT_EQ(flat.negKnee, 1.1);
  EXPECT_EQ(flat.evenWeight, 0.0125);
  const AsymSat full = Initialised(48000.0, 20.0, 0.0, 0.2, 1.0);
  EXPECT_NEAR(full.posKnee, 0.9, 1e-15);
  EXPECT_NEAR(full.negKnee, 0.2, 1e-15);
  EXPECT_NEAR(full.negKneeInv, 5.0, 1e-14);
  EXPECT_NEAR(full.evenWeight, 60 * 0.0121875 + 0.0125, 1e-15);
}

TEST(AsymSat, LowPassCornerFollowsFreqResponse) {
  const double fs = 48000.0;
  const AsymSat dark = Initialised(fs, 0.0, -10.0, 0.2, 0.5);
  EXPECT_NEAR(CornerHz(dark.tone[0], fs), 7126.5, 0.05);  // 12000 - 6000·0.5^0.3
  EXPECT_EQ(dark.tone[1].b, dark.tone[0].b);

  // T = 0 lands exactly on 12 kHz.
  const AsymSat neutral = Initialised(fs, 0.0, 0.0, 0.2, 0.5);
  const double w12k = 12000.0 * kTwoPi;
  EXPECT_EQ(neutral.tone[0].b, w12k / (3.0 * fs + w12k));
  EXPECT_EQ(neutral.tone[0].a, (3.0 * fs - w12k) / (3.0 * fs + w12k));

  // Any positive T pins the low-pass at 12 kHz and opens the 10 kHz boost instead.
  const AsymSat bright = Initialised(fs, 0.0, 0.1, 0.2, 0.5);
  EXPECT_NEAR(CornerHz(bright.tone[0], fs), 12000.0, 1e-6);
  EXPECT_GT(bright.tone[2].g, 0.0);
  for (const AsymSat* sat : {&dark, &neutral}) {
    EXPECT_EQ(sat->tone[2].g, 0.0);
    EXPECT_EQ(sat->tone[3].g, 0.0);
  }
  EXPECT_NEAR(CornerHz(bright.tone[2], fs), 10000.0, 1e-6);
  EXPECT_NEAR(CornerHz(bright.tone[4], fs), 14000.0, 1e-6);
}

// The 14 kHz shelf opens with asymmetry and closes as the drive approaches +20 dB (t = 60).
TEST(AsymSat, FourteenKilohertzShelfShrinksWithDrive) {
  EXPECT_EQ(Initialised(48000.0, 20.0, 0.0, 0.2, 1.0).tone[4].g, 0.0);
  EXPECT_EQ(Initialised(48000.0, 0.0, 0.0, 0.2, 0.0).tone[4].g, 0.0);
  const double g = Initialised(48000.0, -40.0, 0.0, 0.2, 1.0).tone[4].g;
  EXPECT_NEAR(g, std::exp(60 * 0.17 * 0.115) - 1.0, 1e-12);
  EXPECT_EQ(Initialised(48000.0, -40.0, 0.0, 0.2, 1.0).tone[5].mode, OnePoleStage::kHighBoost);
}

// Pre-emphasis lifts the top by T dB and de-emphasis lowers it by T dB a full 1000 Hz higher.
TEST(AsymSat, EmphasisShelvesMoveByTheFullFreqResponse) {
  const AsymSat sat = Initialised(48000.0, 0.0, 8.0, 0.2, 0.5);
  auto nyquistDb = [](const RBJ& f) { return 20.0 * std::log10(std::fabs((f.b0 - f.b1 + f.b2) / (1.0 - f.a1 + f.a2))); };
  EXPECT_NEAR(nyquistDb(sat.eq[0]), 8.0, 1e-9);
  EXPECT_NEAR(nyquistDb(sat.eq[3]), -8.0, 1e-9);
  RBJ expectedDe;
  expectedDe.setup(8, 3374.0, 48000.0, 0.4, -4.0, true);
  EXPECT_EQ(std::memcmp(&expectedDe, &sat.eq[2], sizeof(RBJ)), 0);
}

// Curve shape at chosen points, with the memory and post filter made transparent.
TEST(AsymSat, CurveBendsTheHalfWavesDifferently) {
  AsymSat sat = Initialised(48000.0, -40.0, 0.0, 0.2, 0.0);  // evenWeight 0.0125, knees 1 and 1.1
  BareCurve(sat);
  const double r2 = std::sqrt(2.0);
  EXPECT_NEAR(CurveAt(sat, 1.0), 1.0 / r2 - 0.0125 / r2, 1e-15);
  EXPECT_NEAR(CurveAt(sat, -1.0), -1.0 / r2 - 0.0125 * (1.1 / std::sqrt(2.21)) / 1.1, 1e-15);
  EXPECT_NEAR(CurveAt(sat, 3.0), 3.0 / std::sqrt(10.0) - 0.0125 * 9.0 / std::sqrt(82.0), 1e-15);
  // Both even terms pull down: the curve of a symmetric pair sums below zero.
  for (double x : {0.1, 0.5, 2.0, 10.0}) EXPECT_LT(CurveAt(sat, x) + CurveAt(sat, -x), 0.0) << x;
  EXPECT_EQ(CurveAt(sat, 0.0), 0.0);
}

// The branch follows the sign of the incoming sample, not of the smoothed value; zero goes to
// the negative side.
TEST(AsymSat, CurveBranchFollowsTheInputSign) {
  AsymSat sat = Initialised(48000.0, 20.0, 0.0, 0.2, 1.0);  // posKnee 0.9, negKnee 0.2
  sat.memIn = 0.5;
  sat.memFb = 0.5;
  sat.postFb = 0.0;
  sat.postScale = 1.0;
  const double w = sat.evenWeight;
  auto positive = [&](double s) {
    const double p = 0.9 * s;
    return p / std::sqrt(p * p + 1.0) / 0.9 - w * s * s / std::sqrt(s * s * s * s + 1.0);
  };
  auto negative = [&](double s) {
    const double u = 0.2 * s * s;
    return s / std::sqrt(s * s + 1.0) - w * (u / std::sqrt(u * u + 1.0)) / 0.2;
  };
  for (double x : {0.0, -0.2}) {  // s = 0.5·x + 0.5·1.0 > 0 but the input is not positive
    double mem = 1.0, prev = 0.0;
    const double s = 0.5 * x + 0.5;
    EXPECT_NEAR(sat.curve(x, mem, prev), negative(s), 1e-12) << x;
    EXPECT_EQ(mem, s);
    EXPECT_NE(negative(s), positive(s));
  }
  double mem = -1.0, prev = 0.0;
  EXPECT_NEAR(sat.curve(0.2, mem, prev), positive(-0.4), 1e-12);  // s < 0, input positive
}

// Around the curve: s = memIn·x + memFb·mem, and the output is (y - postFb·previous y)·postScale.
TEST(AsymSat, CurveMemoryAndPostFilter) {
  AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.2, 0.0);  // knees 1 and 1.1
  const double w = sat.evenWeight;
  auto shape = [&](double x, double s) {
    if (x > 0.0) return s / std::sqrt(s * s + 1.0) - w * s * s / std::sqrt(s * s * s * s + 1.0);
    const double u = 1.1 * s * s;
    return s / std::sqrt(s * s + 1.0) - w * (u / std::sqrt(u * u + 1.0)) / 1.1;
  };
  double mem = 0.0, prev = 0.0;
  double expectedMem = 0.0, expectedPrev = 0.0;
  for (double x : {0.3, -0.7, 1.2, 0.0, 0.05}) {
    const double s = sat.memIn * x + sat.memFb * expectedMem;
    const double y = shape(x, s);
    EXPECT_NEAR(sat.curve(x, mem, prev), (y - sat.postFb * expectedPrev) * sat.postScale, 1e-12) << x;
    EXPECT_EQ(mem, s);
    EXPECT_NEAR(prev, y, 1e-15);
    expectedMem = s;
    expectedPrev = prev;
  }
}

// Quiet signals leave e ≤ 0, so the gain computer applies its ceiling G = 25.
TEST(AsymSat, QuietDetectorGainIs25OverSqrt626) {
  AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.0, 0.5);
  const double x = 0.01;
  sat.process_Stereo(x, x);
  const double gain = 0.0010000000000000009 * sat.gainTarget;
  EXPECT_EQ(sat.gainSmoothed, gain);
  const double noise = 1.0 + 2 * 29573 * -7.144490169181527e-06;
  const double beforeDetector = sat.eq[0].b0 * (gain * x + 1e-11 * noise);
  EXPECT_NEAR(sat.workL / (4.0 * beforeDetector), 25.0 / std::sqrt(626.0), 1e-15);
  EXPECT_NEAR(25.0 / std::sqrt(626.0), 0.9992, 1e-4);
}

// A loud, steady signal drives the envelope above the detector's offset and the gain down.
TEST(AsymSat, LoudSignalsPullTheGainDown) {
  AsymSat quiet = Initialised(48000.0, 0.0, 0.0, 0.0, 0.5);
  AsymSat loud = Initialised(48000.0, 20.0, 0.0, 0.0, 0.5);
  double quietPeak = 0.0, loudPeak = 0.0;
  for (int n = 0; n < 48000; ++n) {
    const double x = std::sin(kTwoPi * 200.0 * n / 48000.0);
    quiet.process_Stereo(0.01 * x, 0.01 * x);
    loud.process_Stereo(x, x);
    if (n > 40000) {
      quietPeak = std::fmax(quietPeak, std::fabs(quiet.detFeedback));
      loudPeak = std::fmax(loudPeak, std::fabs(loud.detFeedback));
    }
  }
  const double e = 8.685889638065037 * std::log(loud.detEnv) + 122.0;
  EXPECT_GT(e, 0.0);
  const double G = 25.0 * std::exp(e * -0.5238095238095238 * 0.1151292546497);
  EXPECT_LT(G, 25.0);
  // 20 dB more drive on a signal 40 dB louder: without the detector the feed would be 1000
  // times the quiet one.
  EXPECT_LT(loudPeak, 0.5 * 1000.0 * quietPeak);
}

TEST(AsymSat, GainGlidesWhileOutputCompensationFollowsAtOnce) {
  AsymSat sat = Initialised(48000.0, 12.0, 0.0, 0.2, 0.5);
  double expected = 0.0;
  for (int n = 1; n <= 3000; ++n) {
    sat.process_Stereo(0.1, -0.1);
    expected = 0.999 * expected + 0.0010000000000000009 * sat.gainTarget;
    ASSERT_EQ(sat.outScale, 0.28061551207734 / sat.gainSmoothed) << n;
  }
  EXPECT_EQ(0.0010000000000000009, 1.0 - 0.999);
  EXPECT_EQ(sat.gainSmoothed, expected);
  EXPECT_NEAR(sat.gainSmoothed / sat.gainTarget, 1.0 - std::pow(0.999, 3000), 1e-9);
}

TEST(AsymSat, NoiseSeedsStepThroughTheirSequence) {
  AsymSat sat = Initialised(48000.0, 0.0, 0.0, 0.2, 0.5);
  EXPECT_NEAR(-7.144490169181527e-06, -1.0 / 139968.0, 1e-20);
  int expected = 0;
  for (int n = 0; n < 500; ++n) {
    sat.process_Stereo(0.0, 0.0);
    expected = static_cast<int>((expected * 3877LL + 29573) % 139968);
    ASSERT_EQ(sat.seedL, expected);
    ASSERT_EQ(sat.seedR, expected);
  }
  sat.process_Mono(0.0);
  EXPECT_NE(sat.seedL, sat.seedR);  // the mono pass runs the left generator only
}

TEST(AsymSat, SilenceGivesAFaintFiniteFloor) {
  AsymSat sat = Initialised(44100.0, 0.0, 0.0, 0.2, 0.5);
  double peak = 0.0;
  for (int n = 0; n < 441000; ++n) {
    const double l = sat.process_Stereo(0.0, 0.0);
    ASSERT_TRUE(std::isfinite(l) && std::isfinite(sat.outR)) << n;
    if (n > 44100) peak = std::fmax(peak, std::fmax(std::fabs(l), std::fabs(sat.outR)));
  }
  EXPECT_GT(peak, 0.0);
  EXPECT_LT(peak, 1e-9);
}

TEST(AsymSat, WithoutDriftAmountTheDriftGainIsExactlyOne) {
  AsymSat sat = Initialised(48000.0, 0.0, 0.0, 0.0, 0.5);
  for (int n = 0; n < 20000; ++n) {
    sat.process_Stereo(std::sin(n * 0.01), 0.0);
    ASSERT_EQ(sat.driftGainL, 1.0);
    ASSERT_EQ(sat.driftGainR, 1.0);
  }
}

// Drift targets are drawn from the instance's own rand() sequence only when the value has come
// within 0.1 of the target; the idle second generator never moves.
TEST(AsymSat, DriftTargetsComeFromTheInstancesRandomSequence) {
  AsymSat sat = Initialised(48000.0, 0.0, 0.0, 0.4, 0.5);
  SystemRand expectedSource;
  double target = 1.0, value = 1.0;
  for (int n = 0; n < 48000; ++n) {
    if (std::fabs(value - target) <= 0.1) target = ((expectedSource.next() % 4) + 1) * 0.25;
    sat.process_Stereo(0.2, 0.2);
    value = sat.drift[0].value;
    ASSERT_EQ(sat.drift[0].target, target) << n;
    ASSERT_EQ(sat.driftGainL, value * sat.driftDepth + 1.0);
  }
  EXPECT_EQ(sat.drift[1].value, 1.0);
  EXPECT_EQ(sat.drift[1].target, 1.0);
  EXPECT_EQ(sat.driftDepth, 0.5 * std::pow(0.4, 5.0));
}

// The mono pass is the left channel of a stereo pass fed the same signal on both sides.
TEST(AsymSat, MonoPassEqualsTheLeftOfAStereoPassOnIdenticalInput) {
  AsymSat stereo, mono;
  for (int n = 0; n < 40000; ++n) {
    if (n % 5000 == 0) {
      const double drive = -40.0 + 0.0015 * n, tone = -10.0 + 0.0005 * n, asym = 0.000025 * n;
      stereo.init_all(48000.0, drive, tone, 0.4, asym);
      mono.init_all(48000.0, drive, tone, 0.4, asym);
    }
    const double x = (n / 7000) % 2 ? 2.5 * std::sin(n * 0.031) : 0.4 * std::sin(n * 0.0021);
    const double left = stereo.process_Stereo(x, x);
    ASSERT_EQ(mono.process_Mono(x), left) << n;
    ASSERT_EQ(stereo.outR, left) << n;
  }
}

// Re-running init_all with unchanged controls (as the effect does every block) must not touch
// the sound.
TEST(AsymSat, InitAllKeepsTheRunningState) {
  AsymSat once = Initialised(44100.0, 6.0, 3.0, 0.3, 0.5);
  AsymSat everyBlock = once;
  for (int n = 0; n < 10000; ++n) {
    if (n % 64 == 0) everyBlock.init_all(44100.0, 6.0, 3.0, 0.3, 0.5);
    const double x = 0.8 * std::sin(n * 0.05);
    ASSERT_EQ(everyBlock.process_Stereo(x, -x), once.process_Stereo(x, -x)) << n;
    ASSERT_EQ(everyBlock.outR, once.outR);
  }
}

// Two instances in one process never influence each other's sound, random drift included.
TEST(AsymSat, InstancesAreIndependent) {
  AsymSat alone = Initialised(48000.0, 10.0, 2.0, 0.4, 0.3);
  std::vector<double> in;
  for (int n = 0; n < 20000; ++n) in.push_back(std::sin(n * 0.013));
  const std::vector<double> expected = StereoLeft(alone, in);

  AsymSat a = Initialised(48000.0, 10.0, 2.0, 0.4, 0.3);
  AsymSat b = Initialised(48000.0, 10.0, 2.0, 0.4, 0.3);
  for (int n = 0; n < 20000; ++n) {
    ASSERT_EQ(a.process_Stereo(in[n], in[n]), expected[n]) << n;
    b.process_Stereo(-in[n], 0.5);  // draws from its own random source in between
    b.process_Stereo(0.9, in[n]);
  }
}

// The level detector links the channels: what happens on the right moves the left.
TEST(AsymSat, ChannelsMeetOnlyInTheLevelDetector) {
  AsymSat quietRight = Initialised(48000.0, 20.0, 0.0, 0.0, 0.5);
  AsymSat loudRight = quietRight;
  double difference = 0.0;
  for (int n = 0; n < 4800; ++n) {
    const double l = 0.5 * std::sin(n * 0.02);
    difference = std::fmax(difference, std::fabs(quietRight.process_Stereo(l, 0.0) - loudRight.process_Stereo(l, 3.0)));
  }
  EXPECT_GT(difference, 1e-3);
}
