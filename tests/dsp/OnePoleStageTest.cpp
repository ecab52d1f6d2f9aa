#include "dsp/OnePoleStage.h"

#include "dsp/FilterLanes.h"
#include "dsp/LanePair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

OnePoleStage Stage(int mode, double fs, double cornerHz, double g) {
  OnePoleStage s;
  const double w = 6.283185307179586 * cornerHz;
  s.mode = mode;
  s.b = w / (3.0 * fs + w);
  s.a = (3.0 * fs - w) / (3.0 * fs + w);
  s.g = g;
  return s;
}

}  // namespace

// Each mode combines the integrator z = 2·b·x + a·z with the input its own way.
TEST(OnePoleStage, ModesCombineInputAndIntegrator) {
  const double in[] = {1.0, -0.5, 0.25, 0.8};
  for (int mode : {0, 1, 4, 5}) {
    OnePoleStage s = Stage(mode, 48000.0, 3000.0, 0.7);
    double z = 0.0;
    for (double x : in) {
      z = 2.0 * s.b * x + s.a * z;
      const double expected = mode == 0 ? z : mode == 1 ? x - z : mode == 4 ? x + 0.7 * z : x + 0.7 * (x - z);
      EXPECT_EQ(s.process(x), expected) << "mode " << mode;
    }
  }
}

TEST(OnePoleStage, UnknownModeKeepsTheLastOutputWhileTheIntegratorRuns) {
  OnePoleStage s = Stage(0, 48000.0, 3000.0, 0.0);
  const double last = s.process(1.0);
  s.mode = 3;
  const double zBefore = s.z;
  EXPECT_EQ(s.process(0.5), last);
  EXPECT_NE(s.z, zBefore);
}

TEST(OnePoleStage, LowPassHasUnityGainAtDirectCurrent) {
  OnePoleStage s = Stage(0, 44100.0, 12000.0, 0.0);
  double y = 0.0;
  for (int n = 0; n < 1000; ++n) y = s.process(1.0);
  EXPECT_NEAR(y, 1.0, 1e-12);
}

TEST(OnePoleStage, SubnormalOutputIsFlushed) {
  OnePoleStage s;
  s.mode = 1;  // high-pass: out = x - z, with b = a = 0 simply x
  EXPECT_EQ(s.process(std::numeric_limits<double>::denorm_min()), 0.0);
  EXPECT_FALSE(std::signbit(s.process(-0.0)));
}

// A left and right stage run in step as lanes, with the same mode or with different ones (an
// unknown mode included): each lane must give exactly what its own stage gives alone.
TEST(OnePoleStage, LanesFollowEachStageInAnyPairOfModes) {
  const int modes[] = {OnePoleStage::kLowPass, OnePoleStage::kHighPass, OnePoleStage::kLowBoost,
                       OnePoleStage::kHighBoost, 7};
  for (int leftMode : modes) {
    for (int rightMode : modes) {
      OnePoleStage left = Stage(leftMode, 48000.0, 9000.0, 0.7), right = Stage(rightMode, 44100.0, 300.0, -0.4);
      left.out = 0.25;  // what an unknown mode keeps
      OnePoleLanes<LanePair> lanes(left, right);
      for (int n = 0; n < 200; ++n) {
        const double x = std::sin(0.37 * n) + (n % 17 == 0 ? 1e-310 : 0.0);
        const double y = n < 100 ? std::cos(0.05 * n) : 0.0;
        const LanePair out = lanes.process(LanePair{x, y});
        ASSERT_EQ(out[0], left.process(x)) << leftMode << "/" << rightMode << " frame " << n;
        ASSERT_EQ(out[1], right.process(y)) << leftMode << "/" << rightMode << " frame " << n;
      }
      OnePoleStage storedLeft = left, storedRight = right;
      lanes.store(storedLeft, storedRight);
      EXPECT_EQ(storedLeft.z, left.z);
      EXPECT_EQ(storedRight.out, right.out);
    }
  }
}
