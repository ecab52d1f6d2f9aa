#include "dsp/RBJ.h"

#include "FrequencyResponse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kRate = 48000.0;

std::complex<double> Response(const RBJ& f, double w) {
  const std::complex<double> z1 = std::polar(1.0, -w);
  const std::complex<double> z2 = z1 * z1;
  return (f.b0 + f.b1 * z1 + f.b2 * z2) / (1.0 + f.a1 * z1 + f.a2 * z2);
}

double GainAtHz(const RBJ& f, double hz) { return std::abs(Response(f, 2.0 * kPi * hz / kRate)); }

RBJ Designed(int type, double freq, double width, double gainDb, bool bandwidth) {
  RBJ f;
  f.setup(type, freq, kRate, width, gainDb, bandwidth);
  return f;
}

struct Adapter {
  RBJ f;
  double process(double x) { return f.filter(x); }
};

bool IsZeroOrNormal(double x) { return x == 0.0 || std::fpclassify(x) == FP_NORMAL; }

}  // namespace

// Each type, in both width readings, must filter exactly as its own coefficients say: a sine
// run through the difference equation settles to |H(e^jw)| to within 0.01 dB.
TEST(RBJ, SinesThroughEveryTypeFollowTheCoefficientsResponse) {
  std::vector<double> probesHz;
  for (double hz = 20.0; hz < 23500.0; hz *= 1.37) probesHz.push_back(hz);  // 23 probes, 20 Hz to 23 kHz
  for (int type = 0; type <= 8; ++type) {
    for (bool bandwidth : {false, true}) {
      const RBJ design = Designed(type, 1000.0, bandwidth ? 1.2 : 0.9, 4.5, bandwidth);
      for (double hz : probesHz) {
        const double w = 2.0 * kPi * hz / kRate;
        const double measured = MeasuredGain<Adapter>([&] { return Adapter{design}; }, w, 40000);
        const double expected = GainAtHz(design, hz);
        EXPECT_NEAR(ToDb(measured), ToDb(expected), 0.01) << "type " << type << " at " << hz << " Hz";
      }
    }
  }
}

// The designs land where the cookbook puts them: pass and stop bands, the Q peaks of the
// resonant types, the notch, and unit magnitude for the all-pass.
TEST(RBJ, DesignsHaveTheirTextbookShapes) {
  const double q = 2.5;
  const RBJ lp = Designed(0, 1000.0, q, 0.0, false);
  EXPECT_NEAR(GainAtHz(lp, 0.0), 1.0, 1e-12);
  EXPECT_NEAR(GainAtHz(lp, kRate / 2), 0.0, 1e-12);
  EXPECT_NEAR(GainAtHz(lp, 1000.0), q, 1e-9);

  const RBJ hp = Designed(1, 1000.0, q, 0.0, false);
  EXPECT_NEAR(GainAtHz(hp, 0.0), 0.0, 1e-12);
  EXPECT_NEAR(GainAtHz(hp, kRate / 2), 1.0, 1e-12);
  EXPECT_NEAR(GainAtHz(hp, 1000.0), q, 1e-9);

  // Type 2: the peak gain is Q itself.
  EXPECT_NEAR(GainAtHz(Designed(2, 1000.0, q, 0.0, false), 1000.0), q, 1e-9);
  EXPECT_NEAR(GainAtHz(Designed(2, 3000.0, 0.4, 0.0, false), 3000.0), 0.4, 1e-9);
  EXPECT_NEAR(GainAtHz(Designed(3, 1000.0, q, 0.0, false), 1000.0), 1.0, 1e-12);
  EXPECT_NEAR(GainAtHz(Designed(4, 1000.0, q, 0.0, false), 1000.0), 0.0, 1e-12);
  for (double hz : {10.0, 999.0, 7000.0, 23000.0}) {
    EXPECT_NEAR(GainAtHz(Designed(5, 1000.0, q, 0.0, true), hz), 1.0, 1e-12);
  }
}

// The gain law is doubled: a design with gainDb = g moves the level by 2·g dB.
TEST(RBJ, ShelvesAndPeakMoveTheLevelByTwiceTheirGainArgument) {
  for (double g : {-9.0, -3.1, 2.5, 6.0}) {
    EXPECT_NEAR(ToDb(GainAtHz(Designed(8, 2374.0, 0.4, g, true), kRate / 2)), 2.0 * g, 1e-9);
    EXPECT_NEAR(ToDb(GainAtHz(Designed(8, 2374.0, 0.4, g, true), 0.0)), 0.0, 1e-9);
    EXPECT_NEAR(ToDb(GainAtHz(Designed(7, 867.0, 0.24, g, true), 0.0)), 2.0 * g, 1e-9);
    EXPECT_NEAR(ToDb(GainAtHz(Designed(7, 867.0, 0.24, g, true), kRate / 2)), 0.0, 1e-9);
    EXPECT_NEAR(ToDb(GainAtHz(Designed(6, 56.0, 1.8, g, true), 56.0)), 2.0 * g, 1e-9);
  }
}

TEST(RBJ, HighShelfWithoutGainIsExactlyFlat) {
  const RBJ f = Designed(8, 3374.0, 0.4, 0.0, true);
  EXPECT_EQ(f.b0, 1.0);
  EXPECT_EQ(f.b1, f.a1);
  EXPECT_EQ(f.b2, f.a2);
}

// Shelves read width as Q whatever the flag says; the other types honour it.
TEST(RBJ, ShelvesIgnoreTheBandwidthFlag) {
  for (int type : {7, 8}) {
    const RBJ asQ = Designed(type, 850.0, 0.2, -3.0, false);
    const RBJ asBandwidth = Designed(type, 850.0, 0.2, -3.0, true);
    EXPECT_EQ(std::memcmp(&asQ, &asBandwidth, sizeof(RBJ)), 0) << "type " << type;
  }
  const RBJ peakQ = Designed(6, 850.0, 0.2, -3.0, false);
  const RBJ peakBandwidth = Designed(6, 850.0, 0.2, -3.0, true);
  EXPECT_NE(peakQ.b0, peakBandwidth.b0);
}

TEST(RBJ, KeepsTheDesignedA0) {
  const double w0 = 2.0 * kPi * 1000.0 / kRate;
  const double alpha = std::sin(w0) / (2.0 * 0.7);
  EXPECT_EQ(Designed(0, 1000.0, 0.7, 0.0, false).a0, 1.0 + alpha);
}

// An unknown type writes nothing but the normalisation still divides by the stored a0, every
// time it is asked to.
TEST(RBJ, UnknownTypeOnlyRenormalisesWhatIsStored) {
  RBJ f = Designed(0, 1000.0, 0.7, 0.0, false);
  const RBJ before = f;
  for (int type : {9, -1}) {
    const RBJ prev = f;
    f.setup(type, 5000.0, kRate, 3.0, 12.0, true);
    EXPECT_EQ(f.a0, before.a0);
    EXPECT_EQ(f.b0, prev.b0 / prev.a0);
    EXPECT_EQ(f.b1, prev.b1 / prev.a0);
    EXPECT_EQ(f.b2, prev.b2 / prev.a0);
    EXPECT_EQ(f.a1, prev.a1 / prev.a0);
    EXPECT_EQ(f.a2, prev.a2 / prev.a0);
  }
}

TEST(RBJ, ZeroedSectionIsSilentAndSetupKeepsTheMemories) {
  RBJ f;
  EXPECT_EQ(f.filter(1.0), 0.0);
  f.setup(8, 2374.0, kRate, 0.4, 3.0, true);
  f.filter(0.5);
  f.filter(-0.25);
  const RBJ running = f;
  f.setup(6, 56.0, 96000.0, 1.8, -2.0, true);
  EXPECT_EQ(f.x1, running.x1);
  EXPECT_EQ(f.x2, running.x2);
  EXPECT_EQ(f.y1, running.y1);
  EXPECT_EQ(f.y2, running.y2);
}

// The difference equation in direct form I, terms summed in the stated order.
TEST(RBJ, FilterStepsTheDifferenceEquation) {
  RBJ f;
  f.b0 = 0.3;
  f.b1 = -0.7;
  f.b2 = 0.11;
  f.a1 = -1.3;
  f.a2 = 0.45;
  const double in[] = {1.0, 0.25, -0.5, 0.0, 0.75, 1e-3};
  double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
  for (double x : in) {
    double y = 0.3 * x;
    y += -0.7 * x1;
    y += 0.11 * x2;
    y -= -1.3 * y1;
    y -= 0.45 * y2;
    EXPECT_EQ(f.filter(x), y);
    x2 = x1;
    x1 = x;
    y2 = y1;
    y1 = y;
  }
}

// A decaying response never passes through subnormal numbers: it steps from normal values
// straight to exactly +0.0 and stays there.
TEST(RBJ, DecayFlushesToExactZero) {
  RBJ f = Designed(0, 200.0, 0.707, 0.0, false);
  f.filter(1.0);
  bool reachedZero = false;
  for (int n = 0; n < 200000; ++n) {
    const double y = f.filter(0.0);
    ASSERT_TRUE(IsZeroOrNormal(y)) << n;
    ASSERT_FALSE(std::signbit(y) && y == 0.0) << n;
    if (reachedZero) {
      ASSERT_EQ(y, 0.0);
    }
    reachedZero = reachedZero || (y == 0.0 && f.y2 == 0.0);
  }
  EXPECT_TRUE(reachedZero);
}

TEST(RBJ, NegativeZeroAndSubnormalOutputsBecomePositiveZero) {
  RBJ f;
  f.b0 = 1.0;
  const double tiny = 1e-310;
  EXPECT_EQ(f.filter(tiny), 0.0);
  const double negZero = f.filter(-0.0);
  EXPECT_EQ(negZero, 0.0);
  EXPECT_FALSE(std::signbit(negZero));
  EXPECT_EQ(f.filter(2.2250738585072014e-308), 2.2250738585072014e-308);  // smallest normal
}
