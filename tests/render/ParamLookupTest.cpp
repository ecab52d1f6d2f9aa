#include "ParamLookup.h"

#include "FakeEffect.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using render::FindParam;
using render::ParamArgument;
using render::ParamInfo;
using render::ParamSetting;
using render::ResolveParam;
using render_test::FakeParam;

namespace {

const std::vector<ParamInfo> kTable = {
    FakeParam("Input Trim", -20, 20),
    FakeParam("Drive", 0, 10),
    FakeParam("Output Compensation", -20, 20),
    FakeParam("Asymmetry", 0, 10),
    FakeParam("Freq Response", -10, 10),
    FakeParam("Crosstalk Level", -120, -60),
    FakeParam("VU Mode", 0, 2, {"Input", "RMS Difference Out-In", "Output"}),
    FakeParam("Bypass", 0, 1, {"off", "on"}),
};

int Find(const std::string& name) {
  std::string error;
  const int index = FindParam(kTable, name, &error);
  EXPECT_GE(index, 0) << error;
  return index;
}

struct Resolved {
  bool ok = false;
  ParamSetting setting;
  std::string warning;
  std::string error;
};

Resolved Resolve(const std::string& name, const std::string& value, const std::vector<ParamInfo>& table = kTable) {
  Resolved r;
  r.ok = ResolveParam(table, ParamArgument{name, value}, &r.setting, &r.warning, &r.error);
  return r;
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST(ParamLookup, TheShortKeysFindTheirParameters) {
  const std::map<std::string, int> keys = {{"trim", 0},      {"drive", 1},     {"output", 2}, {"asymmetry", 3},
                                           {"freq", 4},      {"crosstalk", 5}, {"vumode", 6}, {"bypass", 7}};
  for (const auto& [key, index] : keys) EXPECT_EQ(Find(key), index) << key;
}

TEST(ParamLookup, FullNamesInAnyCaseWithOrWithoutSpaces) {
  EXPECT_EQ(Find("Drive"), 1);
  EXPECT_EQ(Find("DRIVE"), 1);
  EXPECT_EQ(Find("VU Mode"), 6);
  EXPECT_EQ(Find("vu mode"), 6);
  EXPECT_EQ(Find("Input Trim"), 0);
  EXPECT_EQ(Find("inputtrim"), 0);
  EXPECT_EQ(Find("Crosstalk Level"), 5);
}

TEST(ParamLookup, UnknownNamesAreRefusedWithTheListOfNames) {
  std::string error;
  EXPECT_EQ(FindParam(kTable, "gain", &error), -1);
  EXPECT_TRUE(Contains(error, "\"gain\"")) << error;
  EXPECT_TRUE(Contains(error, "\"Drive\"")) << error;
  EXPECT_TRUE(Contains(error, "\"VU Mode\"")) << error;
  EXPECT_EQ(FindParam(kTable, "driv", &error), -1);
  EXPECT_EQ(FindParam(kTable, "", &error), -1);
}

TEST(ParamLookup, AWordSharedByTwoNamesIsAmbiguousButAFullNameWins) {
  const std::vector<ParamInfo> table = {FakeParam("Low Gain", 0, 1), FakeParam("High Gain", 0, 1),
                                        FakeParam("Tone", 0, 1), FakeParam("Tone Shift", 0, 1)};
  std::string error;
  EXPECT_EQ(FindParam(table, "gain", &error), -1);
  EXPECT_TRUE(Contains(error, "\"gain\"") && Contains(error, "\"Low Gain\"") && Contains(error, "\"High Gain\""))
      << error;
  EXPECT_EQ(FindParam(table, "tone", &error), 2);
  EXPECT_EQ(FindParam(table, "shift", &error), 3);
}

TEST(ParamLookup, NumbersAreTakenInPlainUnits) {
  Resolved r = Resolve("drive", "3.25");
  ASSERT_TRUE(r.ok) << r.error;
  EXPECT_EQ(r.setting.index, 1);
  EXPECT_EQ(r.setting.value, 3.25);
  EXPECT_EQ(r.warning, "");
  r = Resolve("trim", "-1.5e1");
  EXPECT_EQ(r.setting.value, -15.0);
  r = Resolve("crosstalk", "-120");  // the bound itself is in range
  EXPECT_EQ(r.setting.value, -120.0);
  EXPECT_EQ(r.warning, "");
}

TEST(ParamLookup, DisplayTextsGiveTheirValues) {
  EXPECT_EQ(Resolve("vumode", "Input").setting.value, 0.0);
  EXPECT_EQ(Resolve("vumode", "RMS Difference Out-In").setting.value, 1.0);
  EXPECT_EQ(Resolve("VU Mode", "Output").setting.value, 2.0);
  EXPECT_EQ(Resolve("vumode", "output").setting.value, 2.0);  // letter case does not matter
  EXPECT_EQ(Resolve("bypass", "on").setting.value, 1.0);
  EXPECT_EQ(Resolve("bypass", "OFF").setting.value, 0.0);
  EXPECT_EQ(Resolve("vumode", "1").setting.value, 1.0);  // numbers still work
}

TEST(ParamLookup, TextIsMappedByTheParametersOwnMapping) {
  std::vector<ParamInfo> table = {FakeParam("Mode", 0, 9, {"Wide"})};
  table[0].mapDisplayText = [](const char*, int* value) {
    *value = 7;
    return true;
  };
  EXPECT_EQ(Resolve("mode", "Wide", table).setting.value, 7.0);
}

TEST(ParamLookup, NonNumbersAreRefusedNamingValueAndParameter) {
  for (const char* bad : {"abc", "3x", "", "nan", "inf", "1e999"}) {
    const Resolved r = Resolve("drive", bad);
    EXPECT_FALSE(r.ok) << bad;
    EXPECT_TRUE(Contains(r.error, std::string("\"") + bad + "\"")) << r.error;
    EXPECT_TRUE(Contains(r.error, "\"Drive\"")) << r.error;
  }
  const Resolved r = Resolve("vumode", "Loud");
  EXPECT_FALSE(r.ok);
  EXPECT_TRUE(Contains(r.error, "\"Loud\"") && Contains(r.error, "\"RMS Difference Out-In\"")) << r.error;
  EXPECT_FALSE(Resolve("nothing", "1").ok);
}

TEST(ParamLookup, OutOfRangeValuesPassWithAWarningNamingTheRange) {
  Resolved r = Resolve("drive", "12");
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.setting.value, 12.0);  // the plug-in's own host path clamps it
  EXPECT_TRUE(Contains(r.warning, "\"Drive\"") && Contains(r.warning, "12") && Contains(r.warning, "0 to 10") &&
              Contains(r.warning, "using 10"))
      << r.warning;
  r = Resolve("crosstalk", "-130");
  EXPECT_TRUE(Contains(r.warning, "-120 to -60") && Contains(r.warning, "using -120")) << r.warning;
  r = Resolve("drive", "10");
  EXPECT_EQ(r.warning, "");
}

TEST(ParamLookup, DescriptionListsNamesRangesAndTexts) {
  const std::string text = render::DescribeParams(kTable);
  EXPECT_TRUE(Contains(text, "\"Crosstalk Level\": -120 to -60")) << text;
  EXPECT_TRUE(Contains(text, "\"VU Mode\": 0 to 2 or \"Input\", \"RMS Difference Out-In\", \"Output\"")) << text;
}
