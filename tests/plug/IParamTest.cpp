#include "TestPlug.h"

// Ranges never narrower than a step; a later initialiser keeps the kind; precision: step digits.
TEST(IParam, InitialisersSetKindRangeAndValue) {
  IParam p[6];
  p[1].InitDouble("Gain", 1.5, -20.0, 20.0, 0.1, "dB", "Main");
  p[2].InitDouble("x", 0.0, 0.0, 0.0, 1.0);
  p[3].InitEnum("Mode", 2, 3);
  p[4].InitBool("On", true);
  p[5].InitBool("On", false);
  p[5].InitDouble("On", 0.0, 0.0, 1.0, 0.5);
  std::ostringstream all;
  for (const IParam& q : p) {
    all << q.Type() << ' ' << q.GetMin() << ".." << q.GetMax() << '=' << q.Value() << '/'
        << q.GetDefault() << '/' << q.GetStep() << ' ' << q.GetShape() << q.GetCanAutomate() << ';';
  }
  EXPECT_EQ(all.str(),
            "0 0..1=0/0/1 11;4 -20..20=1.5/1.5/0.1 11;4 0..1=0/0/1 11;3 0..2=2/2/1 11;"
            "1 0..1=1/1/1 11;1 0..1=0/0/0.5 11;");
  std::string digits;
  for (double step : {1.0, 2.0, 0.1, 0.25, 0.01, 0.001, 0.5, 1e-4, 1e-5, 1e-6, 1.0 / 3.0}) {
    p[0].InitDouble("x", 0.0, 0.0, 10.0, step);
    digits += std::to_string(p[0].GetPrecision());
  }
  EXPECT_EQ(digits, "00122314566");
}

// To plain: discrete kinds round halves up, only the top clamps, shape 2 squares; back to
// normalised clamps and inverts. +20 dB is ten times.
TEST(IParam, NormalisedMappingAndDecibels) {
  IParam e, d, shaped;
  e.InitEnum("Mode", 0, 3);
  d.InitDouble("x", 0.0, -20.0, 20.0, 0.01);
  shaped.InitDouble("x", 0.0, -4.0, 12.0, 0.01);
  shaped.SetShape(2.0);
  std::ostringstream plain;
  plain.precision(17);
  for (double n : {0.0, 0.24, 0.25, 0.5, 0.74, 0.75, 1.0, -0.5})
    e.SetNormalized(n), plain << e.Value() << ' ';
  for (double n : {-0.1, 1.3, 0.625}) d.SetNormalized(n), plain << d.Value() << ' ';
  shaped.SetNormalized(0.5);
  plain << shaped.Value() << ' ' << shaped.GetNormalized() << ' ' << shaped.GetNormalized(5.0)
        << ' ' << d.GetNormalized(-50.0) << ' ' << d.GetNormalized(50.0) << ' '
        << d.GetNormalized(10.0);
  EXPECT_EQ(plain.str(), "0 0 1 1 1 2 2 -1 -24 20 5 0 0.5 0.75 0 1 0.75");
  d.Set(20.0);
  EXPECT_NEAR(d.DBToAmp(), 10.0, 1e-11);
}

// Texts append, the first match wins; shown: a non-empty text for the truncated value (never
// negated), else the value at the step's precision, whole steps truncated.
TEST(IParam, DisplayTextsAndShownValues) {
  IParam b, cents, whole, trim, e;
  b.InitBool("Bypass", false);
  cents.InitDouble("x", 2.5, -10.0, 10.0, 0.01);
  whole.InitDouble("x", 0.0, -10.0, 10.0, 1.0);
  trim.InitDouble("x", 0.0, -20.0, 20.0, 0.1);
  e.InitEnum("Mode", 0, 4);
  for (const char* text : {"Input", "Output", "", "Again"})
    e.SetDisplayText(e.GetNDisplayTexts() % 3, text);
  int value = 42;
  EXPECT_EQ(
      std::string(e.GetDisplayText(0)) + e.GetDisplayText(3) + e.GetDisplayTextAtIdx(3, &value),
      "InputAgain");
  EXPECT_TRUE(value == 0 && e.MapDisplayText("Output", &value) &&
              !e.MapDisplayText("output", &value) && value == 1);
  char out[64];
  std::string shown;
  auto show = [&](const IParam& p, double v, bool normalized = false, bool texts = true) {
    p.GetDisplayForHost(v, normalized, out, texts);
    shown += std::string(out) + "|";
  };
  show(b, 0), show(b, 1), show(b, 0, false, false), show(b, 1, false, false), show(cents, 2.4567);
  show(whole, 2.7), show(whole, -2.7), show(trim, 0.75, true), show(trim, 0.0, true);
  show(e, 1.9), show(e, 2.0), show(e, 3.0), show(e, 1.0 / 3.0, true);
  cents.NegateDisplay(), e.NegateDisplay();
  show(cents, 2.5), show(e, 3.0), show(e, 0.0);
  cents.GetDisplayForHost(out);  // the current value, plain
  EXPECT_EQ(shown + out, "off|on|0|1|2.46|2|-2|10.0|-20.0|Output|2|3|Output|-2.50|-3|Input|-2.50");
}
