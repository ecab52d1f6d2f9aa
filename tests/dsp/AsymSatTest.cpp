#include <type_traits>

#include "DspTesting.h"
#include "dsp/Decibels.h"

static AsymSat Initialised(double fs, double driveDb, double tone, double drift, double asymmetry) {
  AsymSat sat;
  sat.init_all(fs, driveDb, tone, drift, asymmetry);
  return sat;
}

// The analogue corner a tone stage was designed for, recovered from b = w/(3·fs + w).
static double CornerHz(const OnePoleStage& s, double fs) {
  return 3.0 * fs * s.b / (1.0 - s.b) / kTwoPi;
}

// A biquad's level at hz, from its coefficients.
static double GainDb(const RBJ& f, double hz, double fs) {
  const std::complex<double> z = std::polar(1.0, -kTwoPi * hz / fs);
  return ToDb(std::abs((f.b0 + f.b1 * z + f.b2 * z * z) / (1.0 + f.a1 * z + f.a2 * z * z)));
}

static_assert(std::is_trivially_destructible_v<AsymSat>, "the effect destroys its saturator twice");

// Stated constants after construction and after init_all, time constants as e-folding times;
// the knees follow "Asymmetry" and the even weight the drive (their S = 0 values: the curve test).
TEST(AsymSat, ConstructedAndInitialisedConstants) {
  const AsymSat f, s = Initialised(44100.0, 0.0, 0.0, 0.4, 0.5),
                   full = Initialised(48000.0, 20.0, 0.0, 0.2, 1.0);
  const DriftGenerator& d = f.drift[1];
  EXPECT_EQ(
      std::tuple(f.detOffset, f.detSlope, f.detHold, f.evenWeight, f.oversample, d.count, d.step,
                 d.coef, d.coefInv, d.value, d.target, f.memIn, f.memFb, f.postScale, f.postFb,
                 f.posKnee, f.posKneeInv, f.negKnee, f.negKneeInv, kDbToLinear, kLinearToDb),
      std::tuple(106.0, -0.5833333333333334, 1, 0.05, 0, 4, 0.0, 0.0, 0.0, 1.0, 1.0, 0.5, 0.5, 0.5,
                 0.5, 1.0, 1.0, 1.0, 1.0, 0.1151292546497, 8.685889638065037));
  EXPECT_EQ(
      std::tuple(s.oversample, s.detOffset, s.detSlope, s.detHold,
                 Initialised(96000.0, 0, 0, 0, 0).detHold, s.drift[0].step, s.memFb,
                 s.drift[1].coefInv),  // detHold: 4.41 and 9.6 truncated
      std::tuple(2, 122.0, -0.5238095238095238, 4, 9, 0.25, 1.0 - s.memIn, 1.0 - s.drift[1].coef));
  // Detector 0.8 ms, drift glide 5 ms, the curve's memory 1.7958 ms at 2·fs.
  ExpectNear({std::pow(s.detCoef, 44100 * 0.0008), std::pow(s.drift[0].coef, 44100 * 0.005),
              std::pow(s.memIn, 2 * 44100 * 0.0017958), s.postScale * std::pow(s.memIn, 3.131),
              s.postFb / std::pow(s.memFb, 3.131), s.driftDepth / 0.00512,
              Initialised(44100, -20, 0, 0, 0).gainTarget / 0.1, full.posKnee, full.posKneeInv,
              full.negKnee, full.negKneeInv, full.evenWeight},
             {std::exp(-1.0), std::exp(-1.0), std::exp(-1.0), 1, 1, 1, 1, 0.9, 1.0 / 0.9, 0.2, 5.0,
              0.74375},
             1e-12);
}

// Low-pass at 12 kHz for T >= 0 and 12000 - 6000·0.5^0.3 Hz at -10, emphasis ±T dB, the 10 kHz
// and 14 kHz boosts; the effect's mono/stereo test pins the right-channel twins.
TEST(AsymSat, ToneStagesAndShelvesFollowTheControls) {
  const double fs = kRate;
  const AsymSat dark = Initialised(fs, 0.0, -10.0, 0.2, 0.5),
                bright = Initialised(fs, 0.0, 8.0, 0.2, 0.5);
  // Shelves at Nyquist and half that at their corners; the 56 Hz bump at drive 0 is 2·(-0.2 + v).
  ExpectNear({CornerHz(dark.tone[0], fs), CornerHz(bright.tone[0], fs),
              CornerHz(bright.tone[2], fs), CornerHz(bright.tone[5], fs),
              GainDb(bright.eq[0], fs / 2, fs), GainDb(bright.eq[0], 2374.0, fs),
              GainDb(bright.eq[2], fs / 2, fs), GainDb(bright.eq[2], 3374.0, fs),
              GainDb(dark.eq[6], 56.0, fs), GainDb(bright.eq[6], 56.0, fs)},
             {12000.0 - 6000.0 * std::pow(0.5, 0.3), 12000.0, 10000.0, 14000.0, 8.0, 4.0, -8.0,
              -4.0, 0.6, 0.4},
             1e-9);
  ExpectNear({bright.tone[2].g, dark.tone[2].g, Initialised(fs, -40.0, 0.0, 0.2, 1.0).tone[4].g,
              Initialised(fs, 0.0, 0.0, 0.2, 0.0).tone[5].g,
              (1.0 - bright.tone[0].a) / 2.0 - bright.tone[0].b},
             {std::exp(8 * 0.7 * 0.115) - 1, 0, std::exp(60 * 0.17 * 0.115) - 1, 0, 0}, 1e-12);
  EXPECT_EQ(std::tuple(bright.tone[4].mode, bright.tone[0].mode), std::tuple(5, 0));
}

// The curve at chosen points with memory and post filter transparent; then with both acting,
// where an input of 0 takes the negative branch although the smoothed s is positive.
TEST(AsymSat, CurveAtChosenPoints) {
  AsymSat sat = Initialised(48000.0, -40.0, 0.0, 0.2, 0.0);  // evenWeight 0.0125, knees 1 and 1.1
  sat.memIn = 1.0, sat.memFb = 0.0, sat.postFb = 0.0, sat.postScale = 1.0;
  double mem = 0.0, prev = 0.0;
  ExpectNear({sat.curve(1.0, mem, prev), sat.curve(-1.0, mem, prev), sat.curve(3.0, mem, prev)},
             {(1.0 - 0.0125) / std::sqrt(2.0), -1.0 / std::sqrt(2.0) - 0.0125 / std::sqrt(2.21),
              3.0 / std::sqrt(10.0) - 0.0125 * 9.0 / std::sqrt(82.0)},
             1e-15);
  sat.memIn = 0.5, sat.memFb = 0.5, sat.postFb = 0.25, sat.postScale = 2.0, mem = 1.0, prev = 0.4;
  const double y = 1.0 / std::sqrt(5.0) - 0.0125 * 0.25 / std::sqrt(1.075625);  // s = 0.5
  ExpectNear({sat.curve(0.0, mem, prev), mem, prev}, {(y - 0.25 * 0.4) * 2.0, 0.5, y}, 1e-15);
}

// Quiet, the gain computer applies r = 25/√626 before the fixed ×4, the input gain glides by 0.999
// and the compensation follows at once; loud, the linked detector pulls the gain down.
TEST(AsymSat, GainComputerGlideAndLinkedDetector) {
  AsymSat sat = Initialised(44100.0, 12.0, 0.0, 0.0, 0.5);
  const double in = 0.01, noise = 1.0 + 2 * 29573 * -1.0 / 139968;
  sat.process_Stereo(in, in);
  ExpectNear({sat.gainSmoothed / ((1.0 - 0.999) * std::pow(10.0, 12.0 / 20.0)),
              sat.workL / (4.0 * sat.eq[0].b0 * (sat.gainSmoothed * in + 1e-11 * noise))},
             {1.0, 25 / std::sqrt(626.0)}, 1e-13);
  for (int n = 2; n <= 3000; ++n) sat.process_Stereo(0.1, -0.1);
  EXPECT_NEAR(sat.gainSmoothed / sat.gainTarget, 1.0 - std::pow(0.999, 3000), 1e-9);
  EXPECT_EQ(sat.outScale, 0.28061551207734 / sat.gainSmoothed);
  // Unreduced, a full-scale sine at +20 dB would feed the detector 0.1·10·25/√626 ≈ 1 at its peaks.
  AsymSat loud = Initialised(48000, 20, 0, 0, 0.5), loudRight = loud;
  double loudPeak = 0.0, rightEffect = 0.0;
  for (int n = 0; n < 48000; ++n) {
    const double x = std::sin(kTwoPi * 200.0 * n / 48000.0), l = loud.process_Stereo(x, x);
    rightEffect = std::fmax(rightEffect, std::fabs(l - loudRight.process_Stereo(x, 3.0 * x)));
    if (n > 40000) loudPeak = std::fmax(loudPeak, std::fabs(loud.detFeedback));
  }
  EXPECT_GT(8.685889638065037 * std::log(loud.detEnv) + 122.0, 0.0);
  EXPECT_LT(loudPeak, 0.2);
  EXPECT_GT(rightEffect, 1e-3);
}

// Drift targets come from the instance's own never-seeded rand() sequence, drawn only when the
// value has come within 0.1; a NaN distance keeps the target; no drift amount means a gain of 1.
TEST(AsymSat, DriftFollowsItsOwnRandomSequence) {
  AsymSat sat = Initialised(48000.0, 0.0, 0.0, 0.4, 0.5), still = Initialised(48000, 0, 0, 0, 0.5);
  SystemRand expected;
  double target = 1.0;
  for (int n = 0; n < 48000; ++n) {
    if (std::fabs(sat.drift[0].value - target) <= 0.1) target = ((expected.next() % 4) + 1) * 0.25;
    sat.process_Stereo(0.2, 0.2), still.process_Stereo(std::sin(n * 0.01), 0.0);
    ASSERT_EQ(std::tuple(n, sat.drift[0].target, sat.driftGainR, still.driftGainL),
              std::tuple(n, target, sat.drift[0].value * sat.driftDepth + 1.0, 1.0));
  }
  DriftGenerator broken{4, 0.25, 0.5, 0.5, std::nan(""), 0.75};
  broken.advance(expected);
  EXPECT_EQ(broken.target, 0.75);
  // From its start at 1.0 the value glides a quarter of the way to the target each step: one
  // step to 10 gives 10·0.25 + 1·0.75, the next 10·0.25 + 3.25·0.75.
  DriftGenerator glide;
  glide.count = 1, glide.step = 10.0, glide.coef = 0.75, glide.coefInv = 0.25;
  const double first = glide.advance(expected);
  EXPECT_EQ(std::pair(first, glide.advance(expected)), std::pair(3.25, 4.9375));
}
