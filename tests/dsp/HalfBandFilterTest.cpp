#include "dsp/HalfBandFilter.h"

#include "FrequencyResponse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

namespace {

constexpr double kPi = 3.141592653589793;
const double kPathA[] = {0.036681502163648017, 0.2746317593794541, 0.5610989697879195,
                         0.769741833862266,    0.8922608180038789, 0.962094548378084};
const double kPathB[] = {0.13654762463195771, 0.42313861743656667, 0.6775400499741616,
                         0.839889624849638,   0.9315419599631839,  0.9878163707328971};

// H(z) = ½·(A(z²) + z⁻¹·B(z²)) with each path a product of (a + z⁻²)/(1 + a·z⁻²).
double AnalyticGain(double w) {
  const std::complex<double> z1 = std::polar(1.0, -w);
  const std::complex<double> z2 = z1 * z1;
  std::complex<double> a = 1.0, b = 1.0;
  for (double c : kPathA) a *= (c + z2) / (1.0 + c * z2);
  for (double c : kPathB) b *= (c + z2) / (1.0 + c * z2);
  return std::abs(0.5 * (a + z1 * b));
}

double MeasuredDb(double w) {
  return ToDb(MeasuredGain<HalfBandFilter>([] { return HalfBandFilter(); }, w, 20000));
}

}  // namespace

TEST(HalfBandFilter, ImpulseResponseStartsWithTheStatedValues) {
  HalfBandFilter f;
  EXPECT_EQ(f.process(1.0), 0.0018675060322128473);
  EXPECT_EQ(f.process(0.0), 0.015127691037798081);
}

TEST(HalfBandFilter, DirectCurrentPassesAtUnityGain) {
  HalfBandFilter f;
  double y = 0.0;
  for (int n = 0; n < 5000; ++n) y = f.process(1.0);
  EXPECT_NEAR(y, 1.0, 1e-12);
}

TEST(HalfBandFilter, CascadeSectionsStartZeroed) {
  const HalfBandFilter f;
  EXPECT_EQ(f.oldOut, 0.0);
  for (const AllPassStage& s : f.cascade.stages) {
    EXPECT_EQ(s.x0 + s.x1 + s.x2 + s.y0 + s.y1 + s.y2, 0.0);
  }
}

// One section realises (a + z⁻²)/(1 + a·z⁻²): y[n] = a·(x[n] - y[n-2]) + x[n-2].
TEST(HalfBandFilter, AllPassSectionRecurrence) {
  AllPassStage s;
  const double a = 0.42313861743656667;
  const double in[] = {1.0, -0.5, 0.25, 0.0, 0.8, -0.3, 0.0, 0.0};
  double x[10] = {}, y[10] = {};
  for (int n = 0; n < 8; ++n) {
    x[n + 2] = in[n];
    y[n + 2] = (x[n + 2] - y[n]) * a + x[n];
    EXPECT_EQ(s.process(in[n], a), y[n + 2]) << n;
  }
}

// Running sines through the filter reproduces the analytic half-band response: flat to a
// hair below a quarter of the rate, -3 dB at it, and more than 100 dB down just above.
TEST(HalfBandFilter, SinesFollowTheAnalyticHalfBandResponse) {
  for (double f : {0.01, 0.1, 0.2, 0.24, 0.25, 0.26, 0.3, 0.4, 0.49}) {
    const double w = 2.0 * kPi * f;
    const double expectedDb = ToDb(AnalyticGain(w));
    if (expectedDb > -90.0) {
      EXPECT_NEAR(MeasuredDb(w), expectedDb, 0.01) << f;
    } else {
      EXPECT_LT(MeasuredDb(w), -90.0) << f;
    }
  }
  EXPECT_NEAR(ToDb(AnalyticGain(0.5 * kPi)), -3.0103, 1e-4);
  for (double f : {0.02, 0.12, 0.22, 0.24}) EXPECT_NEAR(MeasuredDb(2.0 * kPi * f), 0.0, 1e-6) << f;
  for (double f : {0.26, 0.33, 0.45}) EXPECT_LT(MeasuredDb(2.0 * kPi * f), -100.0) << f;
}

// Interpolation as the saturator uses it: zero stuffing with a gain of two gives back a
// band-limited signal at the original level.
TEST(HalfBandFilter, ZeroStuffedInterpolationKeepsTheLevel) {
  HalfBandFilter f;
  const double w = 2.0 * kPi * 0.05;  // at the base rate
  double peak = 0.0;
  for (int n = 0; n < 20000; ++n) {
    const double a = f.process(2.0 * std::sin(w * n));
    const double b = f.process(0.0);
    if (n > 10000) peak = std::fmax(peak, std::fmax(std::fabs(a), std::fabs(b)));
  }
  EXPECT_NEAR(peak, 1.0, 1e-3);
}
