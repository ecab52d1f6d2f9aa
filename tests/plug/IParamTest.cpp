#include "TestPlug.h"

// Ranges never narrower than a step, a later initialiser keeps the kind, precision counts step
// digits; to plain, discrete kinds round halves up, only the top clamps, shape 2 squares.
TEST(IParam, InitialisersAndNormalisedMapping) {
  IParam p[7];
  p[1].InitDouble("Gain", 1.5, -20.0, 20.0, 0.1, "dB", "Main");
  p[2].InitDouble("x", 0.0, 0.0, 0.0, 1.0);
  p[3].InitEnum("Mode", 2, 3);
  p[4].InitBool("On", true);
  p[5].InitBool("On", false);
  p[5].InitDouble("On", 0.0, 0.0, 1.0, 0.5);
  p[6].InitInt("Count", 3, 1, 8);
  std::ostringstream all;
  for (const IParam& q : p)
    all << q.Type() << ' ' << q.GetMin() << ".." << q.GetMax() << '=' << q.Value() << '/'
        << q.GetDefault() << '/' << q.GetStep() << ' ' << q.GetShape() << q.GetCanAutomate() << ';';
  for (double step : {1.0, 2.0, 0.1, 0.25, 0.01, 0.001, 0.5, 1e-4, 1e-5, 1e-6, 1.0 / 3.0})
    p[0].InitDouble("x", 0.0, 0.0, 10.0, step), all << p[0].GetPrecision();
  all.precision(17);
  for (double n : {0.0, 0.24, 0.25, 0.5, 0.74, 0.75, 1.0, -0.5})
    p[3].SetNormalized(n), all << ' ' << p[3].Value();
  for (double n : {-0.1, 1.3, 0.625}) p[1].SetNormalized(n), all << ' ' << p[1].Value();
  p[2].InitDouble("x", 0.0, -4.0, 12.0, 0.01);
  p[2].SetShape(2.0);
  p[2].SetNormalized(0.5);
  all << ' ' << p[2].Value() << ' ' << p[2].GetNormalized() << ' ' << p[2].GetNormalized(5.0) << ' '
      << p[1].GetNormalized(-50.0) << ' ' << p[1].GetNormalized(50.0) << ' '
      << p[1].GetNormalized(10.0);
  EXPECT_EQ(all.str(),
            "0 0..1=0/0/1 11;4 -20..20=1.5/1.5/0.1 11;4 0..1=0/0/1 11;3 0..2=2/2/1 11;"
            "1 0..1=1/1/1 11;1 0..1=0/0/0.5 11;2 1..8=3/3/1 11;00122314566 0 0 1 1 1 2 2 -1 -24 20 "
            "5 0 0.5 0.75 0 1 0.75");
  p[1].Set(20.0);
  EXPECT_NEAR(p[1].DBToAmp(), 10.0, 1e-11);  // +20 dB is ten times
}

// Texts append, the first match wins; shown: a non-empty text for the truncated value (never
// negated), else the value at the step's precision, whole steps truncated.
TEST(IParam, DisplayTextsAndShownValues) {
  IParam b, cents, e, single;
  b.InitBool("Bypass", false);
  cents.InitDouble("x", 2.5, -10.0, 10.0, 0.01);
  e.InitEnum("Mode", 0, 4);
  for (const char* text : {"Input", "Output", "", "Again"})
    e.SetDisplayText(e.GetNDisplayTexts() % 3, text);
  single.InitEnum("One", 0, 1);
  single.SetDisplayText(0, "Only");  // a list of one text is a list too
  int value = 42;
  std::string shown = e.GetDisplayText(0) + std::string(e.GetDisplayText(3)) +
                      e.GetDisplayTextAtIdx(3, &value) + "|";
  EXPECT_TRUE(value == 0 && e.MapDisplayText("Output", &value) &&
              !e.MapDisplayText("output", &value) && value == 1);
  char out[64];
  auto show = [&](const IParam& p, double v, bool normalized = false, bool texts = true) {
    p.GetDisplayForHost(v, normalized, out, texts), shown += std::string(out) + "|";
  };
  show(b, 0), show(b, 1), show(b, 0, false, false), show(b, 1, false, false), show(cents, 2.4567);
  show(b, 2.7, false, false), show(b, -2.7, false, false), show(cents, 0.75, true);
  show(cents, 0.0, true), show(e, 1.9), show(e, 2.0), show(e, 3.0), show(e, 1.0 / 3.0, true);
  show(single, 0.0);
  cents.NegateDisplay(), e.NegateDisplay();
  show(cents, 2.5), show(e, 3.0), show(e, 0.0);
  cents.GetDisplayForHost(out);  // the current value, plain
  EXPECT_EQ(
      shown + out,
      "InputAgain|off|on|0|1|2.46|2|-2|5.00|-10.00|Output|2|3|Output|Only|-2.50|-3|Input|-2.50");
}
