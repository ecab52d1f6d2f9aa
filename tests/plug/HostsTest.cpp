#include <gtest/gtest.h>

#include <string>

#include "TestPlug.h"
#include "plug/Hosts.h"
#include "plug/Version.h"

TEST(Hosts, EveryKeywordMapsToItsCode) {
  const struct {
    const char* name;
    int code;
  } table[] = {{"cubase", 3},     {"reaper", 1},     {"nuendo", 4},        {"cakewalk", 5},
               {"samplitude", 8}, {"fruity", 7},     {"live", 9},          {"melodyne", 12},
               {"vstmanlib", 13}, {"aulab", 14},     {"garageband", 22},   {"forte", 15},
               {"chainer", 16},   {"audition", 17},  {"orion", 18},        {"sawstudio", 20},
               {"logic", 21},     {"digital", 23},   {"audiomulch", 25},   {"presonus", 26},
               {"vst3plugintesthost", 27},           {"protools", 2},      {"ardour", 28},
               {"standalone", 24}};
  for (const auto& host : table) {
    EXPECT_EQ(LookUpHost(host.name), host.code) << host.name;
    std::string wrapped = "My " + std::string(host.name) + " 5";
    EXPECT_EQ(LookUpHost(wrapped.c_str()), host.code) << wrapped;
  }
}

TEST(Hosts, CaseIsIgnoredAndTheFirstKeywordInTableOrderWins) {
  EXPECT_EQ(LookUpHost("ProTools"), 2);
  EXPECT_EQ(LookUpHost("REAPER64"), 1);
  EXPECT_EQ(LookUpHost("Ableton Live 8"), 9);
  EXPECT_EQ(LookUpHost("reaper cubase"), 3);       // cubase comes first in the table
  EXPECT_EQ(LookUpHost("Live Logic"), 9);          // live before logic
  EXPECT_EQ(LookUpHost("Digital Performer"), 23);
  EXPECT_EQ(LookUpHost("Oliver"), 9);              // "oLIVEr": substrings, not words
  EXPECT_EQ(LookUpHost(""), 0);
  EXPECT_EQ(LookUpHost("Some Other Host"), 0);
  EXPECT_EQ(LookUpHost(nullptr), 0);
}

TEST(Hosts, LongNamesAreJudgedByTheirBeginning) {
  std::string longName(kMaxHostNameLength - 6, 'x');
  EXPECT_EQ(LookUpHost((longName + "reaper").c_str()), 1);
  EXPECT_EQ(LookUpHost((longName + "xreaper").c_str()), 0);
}

TEST(Hosts, ToLowerCopiesLowerCased) {
  char out[32];
  ToLower(out, "ReAPER 6.0 x64");
  EXPECT_STREQ(out, "reaper 6.0 x64");
  ToLower(out, "");
  EXPECT_STREQ(out, "");
}

TEST(Hosts, SetHostStoresCodeAndVersion) {
  TestPlug plug;
  EXPECT_EQ(plug.GetHost(), -1);
  EXPECT_FALSE(plug.SetHost("ProTools", 0x00080102));
  EXPECT_EQ(plug.GetHost(), 2);
  EXPECT_EQ(plug.GetHostVersion(false), 0x00080102);
  EXPECT_EQ(plug.GetHostVersion(true), 80102);
  plug.SetHost("unheard of", 0);
  EXPECT_EQ(plug.GetHost(), 0);
}

TEST(Version, PacksMajorMinorPatch) {
  char text[40];
  GetVersionText(0x10000, text);
  EXPECT_STREQ(text, "v1.0.0");
  GetVersionText(0x000A0B0C, text);
  EXPECT_STREQ(text, "v10.11.12");
  GetVersionText(0x01020304, text);
  EXPECT_STREQ(text, "v258.3.4");
  TestPlug plug;  // made with 0x10203
  EXPECT_EQ(plug.GetEffectVersion(false), 0x10203);
  EXPECT_EQ(plug.GetEffectVersion(true), 10203);
}
