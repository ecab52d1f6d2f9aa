#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "plug/IParam.h"

namespace {

std::string Display(const IParam& p, double value, bool normalized = false, bool texts = true) {
  char out[64];
  p.GetDisplayForHost(value, normalized, out, texts);
  return out;
}

}  // namespace

TEST(IParam, FreshParameterHasDocumentedDefaults) {
  IParam p;
  EXPECT_EQ(p.Type(), IParam::kTypeNone);
  EXPECT_EQ(p.Value(), 0.0);
  EXPECT_EQ(p.GetMin(), 0.0);
  EXPECT_EQ(p.GetMax(), 1.0);
  EXPECT_EQ(p.GetStep(), 1.0);
  EXPECT_EQ(p.GetShape(), 1.0);
  EXPECT_TRUE(p.GetCanAutomate());
  EXPECT_FALSE(p.GetNegateDisplay());
  EXPECT_STREQ(p.GetNameForHost(), "");
  EXPECT_EQ(p.GetNDisplayTexts(), 0);
}

TEST(IParam, InitDoubleStoresRangeAndNeverNarrowerThanOneStep) {
  IParam p;
  p.InitDouble("Gain", 1.5, -20.0, 20.0, 0.1, "dB", "Main");
  EXPECT_EQ(p.Type(), IParam::kTypeDouble);
  EXPECT_EQ(p.Value(), 1.5);
  EXPECT_EQ(p.GetDefault(), 1.5);
  EXPECT_EQ(p.GetMin(), -20.0);
  EXPECT_EQ(p.GetMax(), 20.0);
  EXPECT_STREQ(p.GetNameForHost(), "Gain");
  EXPECT_STREQ(p.GetLabelForHost(), "dB");
  EXPECT_STREQ(p.GetGroupForHost(), "Main");

  IParam empty;
  empty.InitDouble("x", 0.0, 0.0, 0.0, 1.0);
  EXPECT_EQ(empty.GetMax(), 1.0);
  IParam inverted;
  inverted.InitDouble("x", 0.0, 5.0, 2.0, 0.5);
  EXPECT_EQ(inverted.GetMax(), 5.5);
}

TEST(IParam, DisplayPrecisionCountsDigitsOfTheStep) {
  const struct {
    double step;
    int precision;
  } cases[] = {{1.0, 0}, {2.0, 0}, {0.1, 1}, {0.25, 2}, {0.01, 2}, {0.001, 3},
               {0.5, 1}, {0.0001, 4}, {0.00001, 5}, {0.000001, 6}, {1.0 / 3.0, 6}};
  for (const auto& c : cases) {
    IParam p;
    p.InitDouble("x", 0.0, 0.0, 10.0, c.step);
    EXPECT_EQ(p.GetPrecision(), c.precision) << "step " << c.step;
  }
}

TEST(IParam, EnumAndBoolKeepTheirKindAndRange) {
  IParam e;
  e.InitEnum("Mode", 2, 3);
  EXPECT_EQ(e.Type(), IParam::kTypeEnum);
  EXPECT_EQ(e.GetMin(), 0.0);
  EXPECT_EQ(e.GetMax(), 2.0);
  EXPECT_EQ(e.Value(), 2.0);

  IParam b;
  b.InitBool("On", true);
  EXPECT_EQ(b.Type(), IParam::kTypeBool);
  EXPECT_EQ(b.Value(), 1.0);
  EXPECT_EQ(b.GetNDisplayTexts(), 2);
  EXPECT_STREQ(b.GetDisplayText(0), "off");
  EXPECT_STREQ(b.GetDisplayText(1), "on");

  // A later initialiser keeps the kind set first.
  b.InitDouble("On", 0.0, 0.0, 1.0, 0.5);
  EXPECT_EQ(b.Type(), IParam::kTypeBool);

  IParam i;
  i.InitInt("Count", 3, 1, 8);
  EXPECT_EQ(i.Type(), IParam::kTypeInt);
  EXPECT_EQ(i.GetMin(), 1.0);
  EXPECT_EQ(i.GetMax(), 8.0);
}

TEST(IParam, SetNormalizedRoundsDiscreteKindsToNearestStepHalvesUp) {
  IParam e;
  e.InitEnum("Mode", 0, 3);
  const struct {
    double n, plain;
  } cases[] = {{0.0, 0.0}, {0.24, 0.0}, {0.25, 1.0}, {0.5, 1.0},
               {0.74, 1.0}, {0.75, 2.0}, {0.76, 2.0}, {1.0, 2.0}};
  for (const auto& c : cases) {
    e.SetNormalized(c.n);
    EXPECT_EQ(e.Value(), c.plain) << "normalised " << c.n;
  }
}

TEST(IParam, SetNormalizedClampsOnlyAtTheTop) {
  IParam p;
  p.InitDouble("x", 0.0, 0.0, 10.0, 0.01);
  p.SetNormalized(-0.2);
  EXPECT_EQ(p.Value(), -2.0);
  p.SetNormalized(1.3);
  EXPECT_EQ(p.Value(), 10.0);
  p.SetNormalized(0.25);
  EXPECT_EQ(p.Value(), 2.5);  // a double is not rounded to its step

  IParam e;
  e.InitEnum("Mode", 0, 3);
  e.SetNormalized(-0.5);  // -1.0, rounded to the step and left below the range
  EXPECT_EQ(e.Value(), -1.0);
}

TEST(IParam, ShapeBendsTheMappingBothWays) {
  IParam p;
  p.InitDouble("x", 0.0, -4.0, 12.0, 0.01);
  p.SetShape(2.0);
  p.SetNormalized(0.5);
  EXPECT_EQ(p.Value(), -4.0 + 0.25 * 16.0);
  EXPECT_EQ(p.GetNormalized(), 0.5);
  EXPECT_DOUBLE_EQ(p.GetNormalized(8.0), std::sqrt(0.75));  // (8 + 4) / 16, square-rooted
}

TEST(IParam, GetNormalizedClampsIntoTheRange) {
  IParam p;
  p.InitDouble("x", 0.0, -20.0, 20.0, 0.1);
  EXPECT_EQ(p.GetNormalized(-50.0), 0.0);
  EXPECT_EQ(p.GetNormalized(50.0), 1.0);
  EXPECT_EQ(p.GetNormalized(10.0), 0.75);
}

TEST(IParam, DBToAmpReadsTheValueAsDecibels) {
  IParam p;
  p.InitDouble("x", 20.0, -20.0, 20.0, 0.1);
  EXPECT_NEAR(p.DBToAmp(), 10.0, 1e-11);
  p.Set(-6.0);
  EXPECT_NEAR(p.DBToAmp(), 0.501187233627272, 1e-12);
  p.Set(0.0);
  EXPECT_EQ(p.DBToAmp(), 1.0);
}

TEST(IParam, DisplayTextTableAppendsAndFindsTheFirstEntry) {
  IParam p;
  p.InitEnum("Mode", 0, 3);
  p.SetDisplayText(0, "Zero");
  p.SetDisplayText(1, "One");
  p.SetDisplayText(1, "Uno");
  EXPECT_EQ(p.GetNDisplayTexts(), 3);
  EXPECT_STREQ(p.GetDisplayText(1), "One");
  EXPECT_STREQ(p.GetDisplayText(2), "");

  int value = -1;
  EXPECT_STREQ(p.GetDisplayTextAtIdx(2, &value), "Uno");
  EXPECT_EQ(value, 1);
  EXPECT_STREQ(p.GetDisplayTextAtIdx(0, nullptr), "Zero");

  value = 42;
  EXPECT_TRUE(p.MapDisplayText("Uno", &value));
  EXPECT_EQ(value, 1);
  value = 42;
  EXPECT_FALSE(p.MapDisplayText("uno", &value));  // case matters
  EXPECT_EQ(value, 42);
}

TEST(IParam, BoolShowsItsTextsOrItsDigits) {
  IParam b;
  b.InitBool("Bypass", false);
  EXPECT_EQ(Display(b, 0.0), "off");
  EXPECT_EQ(Display(b, 1.0), "on");
  EXPECT_EQ(Display(b, 0.0, false, false), "0");
  EXPECT_EQ(Display(b, 1.0, false, false), "1");
}

TEST(IParam, DisplayRoundsToThePrecisionAndTruncatesWholeSteps) {
  IParam p;
  p.InitDouble("x", 0.0, -10.0, 10.0, 0.01);
  EXPECT_EQ(Display(p, 2.5), "2.50");
  EXPECT_EQ(Display(p, 2.4567), "2.46");
  p.NegateDisplay();
  EXPECT_EQ(Display(p, 2.5), "-2.50");

  IParam whole;
  whole.InitDouble("x", 0.0, -10.0, 10.0, 1.0);
  EXPECT_EQ(Display(whole, 2.7), "2");  // truncated toward zero, not rounded
  EXPECT_EQ(Display(whole, -2.7), "-2");

  IParam trim;
  trim.InitDouble("x", 0.0, -20.0, 20.0, 0.1);
  EXPECT_EQ(Display(trim, 0.75, true), "10.0");  // normalised input is mapped first
  EXPECT_EQ(Display(trim, 0.0, true), "-20.0");
}

TEST(IParam, DisplayTextLooksUpTheTruncatedValueAndFallsBackToDigits) {
  IParam e;
  e.InitEnum("Mode", 0, 4);
  e.SetDisplayText(0, "Input");
  e.SetDisplayText(1, "Output");
  e.SetDisplayText(2, "");
  EXPECT_EQ(Display(e, 1.9), "Output");
  EXPECT_EQ(Display(e, 2.0), "2");  // an empty text is no text
  EXPECT_EQ(Display(e, 3.0), "3");  // no entry at all
  EXPECT_EQ(Display(e, 1.0 / 3.0, true), "Output");
  e.NegateDisplay();
  EXPECT_EQ(Display(e, 3.0), "-3");
  EXPECT_EQ(Display(e, 0.0), "Input");  // texts win over negation
}
