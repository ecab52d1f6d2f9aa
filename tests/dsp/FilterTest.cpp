#include "DspTesting.h"
#include "dsp/SplitHalfBand.h"

namespace {

// A biquad designed at kRate from a type, corner, width, gain and bandwidth flag, run as a block.
struct Section {
  Section(int t, double f0, double w, double g, bool oct) : type(t), hz(f0), width(w), gainDb(g) {
    f.setup(t, f0, kRate, w, g, oct);
  }
  double process(double x) { return f.filter(x); }
  int type;
  double hz, width, gainDb;
  RBJ f;
};

// Each type's analogue prototype at s = j·tan(w/2)/tan(w0/2) (the bilinear map warped to meet at
// w0). A = 10^(gainDb/20): the designs move the level by twice their argument.
double PrototypeGain(const Section& c, double hz) {
  const double A = std::pow(10.0, c.gainDb / 20.0), w = kTwoPi / 2 / kRate;
  const std::complex<double> s(0.0, std::tan(w * hz) / std::tan(w * c.hz));
  const auto s2 = s * s, sq = s / c.width, d = s2 + sq + 1.0, sh = std::sqrt(A) * sq;
  const auto u = s2 + sh + A, v = A * s2 + sh + 1.0, p = s2 + sq / A + 1.0;    // shelves mirrored
  const std::complex<double> n[] = {1.0, s2, s, sq, s2 + 1.0, s2 - sq + 1.0};  // over d
  const std::complex<double> h[] = {(s2 + A * sq + 1.0) / p, A * u / v, A * v / u};
  return std::abs(c.type < 6 ? n[c.type] / d : h[c.type - 6]);
}

double SineGain(const Section& s, double hz) {
  return MeasuredGain<Section>([&] { return s; }, kTwoPi * hz / kRate, 40000);
}

// Where the measured response falls to `level` from the centre `from` towards `to`, by bisection.
double Crossing(const Section& f, double level, double from, double to) {
  for (int i = 0; i < 40; ++i)
    (SineGain(f, std::sqrt(from * to)) > level ? from : to) = std::sqrt(from * to);
  return from;
}

}  // namespace

// Sines through every design follow its prototype: corner, Q, peak and shelf gains, shelf slope;
// shelves read the width as Q whatever the flag says, and a 0 dB shelf is flat.
TEST(RBJ, SinesFollowTheAnaloguePrototypes) {
  const Section cases[] = {
      {0, 1000, 0.7, 0, false},  {1, 3000, 2.5, 0, false},    {2, 1000, 2.5, 0, false},
      {3, 500, 0.9, 0, false},   {4, 2000, 1.3, 0, false},    {5, 7000, 0.6, 0, false},
      {6, 56, 1.8, 3.0, false},  {6, 4000, 0.5, -6.0, false}, {7, 867, 0.24, -3.1, true},
      {7, 300, 0.9, 5.0, false}, {8, 2374, 0.4, 4.5, true},   {8, 850, 0.2, -14.0, false},
      {8, 3374, 0.4, 0.0, true}};
  for (const Section& c : cases) {
    for (double hz : {40.0, 400.0, 0.8 * c.hz, c.hz, 1.7 * c.hz, 15000.0})
      EXPECT_NEAR(SineGain(c, hz), PrototypeGain(c, hz), 1e-9 * (1.0 + PrototypeGain(c, hz)))
          << "type " << c.type << " at " << hz << " Hz of " << c.hz;
  }
  // With the flag, width is octaves between the band-pass's -3 dB points and the peak's half-gain
  // (in dB) points; low centres, as the bilinear warp makes it exact only there.
  const Section bandPass({3, 200, 1.2, 0, true}), peak({6, 56, 1.8, 3.0, true});
  const double edge = std::sqrt(0.5), half = std::pow(10.0, 3.0 / 20.0);
  EXPECT_NEAR(std::log2(Crossing(bandPass, edge, 200, 2000) / Crossing(bandPass, edge, 200, 20)),
              1.2, 1e-3);
  EXPECT_NEAR(std::log2(Crossing(peak, half, 56, 1000) / Crossing(peak, half, 56, 5)), 1.8, 1e-3);
}

// Without a design nothing passes; direct form I summed in the written order; a zero exponent
// gives +0.0; a new design keeps the memories; an unknown type writes nothing but divides what is
// stored by the kept a0 again.
TEST(RBJ, StepsTheDifferenceEquationAndFlushes) {
  RBJ f;
  const double first = f.filter(2.0);
  EXPECT_EQ(std::pair(first, f.filter(1.0)), std::pair(0.0, 0.0));
  f.b0 = 0.3, f.b1 = -0.7, f.b2 = 0.11, f.a1 = -1.3, f.a2 = 0.45;
  double x1 = 1.0, x2 = 2.0, y1 = 0.0, y2 = 0.0;
  for (double x : {0.25, -0.5, 0.0, 0.75, 1e-3}) {
    const double y = 0.3 * x + -0.7 * x1 + 0.11 * x2 - -1.3 * y1 - 0.45 * y2;
    EXPECT_EQ(f.filter(x), y);
    x2 = x1, x1 = x, y2 = y1, y1 = y;
  }
  RBJ pass{1.0};
  EXPECT_TRUE(SameBits(pass.filter(1e-310), 0.0) && SameBits(pass.filter(-0.0), 0.0));
  EXPECT_EQ(pass.filter(2.2250738585072014e-308), 2.2250738585072014e-308);
  for (int type : {6, 9, -1}) {
    const RBJ b = f;
    f.setup(type, 56.0, 96000.0, 1.8, -2.0, true);
    EXPECT_EQ(std::tuple(f.x1, f.x2, f.y1, f.y2), std::tuple(b.x1, b.x2, b.y1, b.y2));
    if (type == 6) continue;
    EXPECT_EQ(std::tuple(f.a0, f.b0, f.b1, f.b2, f.a1, f.a2),
              std::tuple(b.a0, b.b0 / b.a0, b.b1 / b.a0, b.b2 / b.a0, b.a1 / b.a0, b.a2 / b.a0));
  }
}

// Silent from the start; the stated first impulse outputs; flat to 0.24 of the rate, -3 dB at
// 0.25, -100 dB from 0.26.
TEST(HalfBandFilter, StatedImpulseAndAQuarterRateCutoff) {
  LanePair sub[9] = {{1.0, 2.0}}, scratch[9];  // 4 frames, then a guard past each buffer
  scratch[8] = LanePair{7.0, 7.0}, sub[8] = LanePair{5.0, 5.0};
  HalfBandFilter left, right;
  SplitHalfBand<LanePair>::process(left, right, sub, scratch, 4);
  EXPECT_TRUE(scratch[8][0] == 7.0 && sub[8][1] == 5.0);
  HalfBandFilter f, quiet;  // a fresh filter starts silent: silence in, silence out
  for (int n = 0; n < 16; ++n) ASSERT_EQ(quiet.process(0.0), 0.0) << n;
  EXPECT_EQ(f.process(1.0), 0.0018675060322128473);  // half the product of path A
  EXPECT_EQ(f.process(0.0), 0.015127691037798081);   // path B joins
  auto fresh = [] { return HalfBandFilter(); };
  auto db = [&](double c) { return ToDb(MeasuredGain<HalfBandFilter>(fresh, kTwoPi * c, 20000)); };
  for (double c : {0.02, 0.12, 0.22, 0.24}) EXPECT_NEAR(db(c), 0.0, 1e-6) << c;
  EXPECT_NEAR(db(0.25), -3.0103, 1e-3);
  for (double c : {0.26, 0.33, 0.45}) EXPECT_LT(db(c), -100.0) << c;
}

// One step: z = 2·b·x + a·z, then the mode's output; unknown modes keep the last output. Two
// stages run as lanes give what each gives alone, in any pair of modes, flushing alike.
TEST(OnePoleStage, ModesLanesAndFlush) {
  const std::pair<int, double> modes[] = {
      {0, 0.375}, {1, 0.625}, {4, 1.2625}, {5, 1.4375}, {7, 0.125}};
  // A fresh stage starts silent: its last output and its integrator (held whole by a = 1).
  EXPECT_EQ(OnePoleStage{7}.process(1.0) + (OnePoleStage{0, 0.0, 1.0}.process(0.0)), 0.0);
  for (auto [mode, expected] : modes) {
    OnePoleStage s{mode, 0.125, 0.5, 0.7, 0.25, 0.125}, left = s;  // an input of 1 makes z 0.375
    EXPECT_DOUBLE_EQ(s.process(1.0), expected) << mode;
    EXPECT_EQ(s.z, 0.375);
    for (auto [other, unused] : modes) {
      OnePoleStage right{other, 0.3, -0.2, -0.4, 0.0, 0.5};
      OnePoleLanes<LanePair> lanes(left, right);
      for (double x = -2.0; x < 2.0; x += 0.2) {
        const LanePair y = lanes.process(LanePair{x, 1e-310 * x});
        ASSERT_TRUE(SameBits(y[0], left.process(x)) && SameBits(y[1], right.process(1e-310 * x)));
      }
    }
  }
}
