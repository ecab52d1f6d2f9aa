#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "dsp/Tarn.h"

namespace {

std::unique_ptr<IPlugAdaptor> NewTarn() { return std::unique_ptr<IPlugAdaptor>(MakePlug()); }

std::string Display(const IParam* p, double value) {
  char out[64];
  p->GetDisplayForHost(value, false, out, true);
  return out;
}

}  // namespace

TEST(TarnParams, TableMatchesNamesRangesStepsDefaultsAndUnits) {
  auto plug = NewTarn();
  ASSERT_EQ(plug->NParams(), 8);
  const struct {
    const char* name;
    int type;
    double def, min, max, step;
    const char* label;
  } table[] = {
      {"Input Trim", IParam::kTypeDouble, 0.0, -20.0, 20.0, 0.1, "dB"},
      {"Drive", IParam::kTypeDouble, 0.0, 0.0, 10.0, 0.01, ""},
      {"Output Compensation", IParam::kTypeDouble, 0.0, -20.0, 20.0, 0.1, "dB"},
      {"Asymmetry", IParam::kTypeDouble, 5.0, 0.0, 10.0, 0.01, ""},
      {"Freq Response", IParam::kTypeDouble, 0.0, -10.0, 10.0, 0.1, ""},
      {"Crosstalk Level", IParam::kTypeDouble, -90.0, -120.0, -60.0, 0.1, "dB"},
      {"VU Mode", IParam::kTypeEnum, 0.0, 0.0, 2.0, 1.0, ""},
      {"Bypass", IParam::kTypeBool, 0.0, 0.0, 1.0, 1.0, ""},
  };
  for (int i = 0; i < 8; ++i) {
    const IParam* p = plug->GetParam(i);
    SCOPED_TRACE(table[i].name);
    EXPECT_STREQ(p->GetNameForHost(), table[i].name);
    EXPECT_EQ(p->Type(), table[i].type);
    EXPECT_EQ(p->GetDefault(), table[i].def);
    EXPECT_EQ(p->Value(), table[i].def);
    EXPECT_EQ(p->GetMin(), table[i].min);
    EXPECT_EQ(p->GetMax(), table[i].max);
    EXPECT_EQ(p->GetStep(), table[i].step);
    EXPECT_EQ(p->GetShape(), 1.0);
    EXPECT_STREQ(p->GetLabelForHost(), table[i].label);
    EXPECT_STREQ(p->GetGroupForHost(), "");
    EXPECT_TRUE(p->GetCanAutomate());
  }
  EXPECT_EQ(kNumParams, 8);
  EXPECT_EQ(kCrosstalk, 5);
}

TEST(TarnParams, DiscreteParametersShowTheirTexts) {
  auto plug = NewTarn();
  const IParam* vu = plug->GetParam(kVuMode);
  EXPECT_EQ(vu->GetNDisplayTexts(), 3);
  EXPECT_EQ(Display(vu, 0), "Input");
  EXPECT_EQ(Display(vu, 1), "RMS Difference Out-In");
  EXPECT_EQ(Display(vu, 2), "Output");
  const IParam* bypass = plug->GetParam(kBypass);
  EXPECT_EQ(Display(bypass, 0), "off");
  EXPECT_EQ(Display(bypass, 1), "on");
  EXPECT_EQ(Display(plug->GetParam(kDrive), 2.5), "2.50");
  EXPECT_EQ(Display(plug->GetParam(kInputTrim), -3.25), "-3.2");  // %.1f of -3.25 rounds to even
}

TEST(TarnParams, CrosstalkStaysBetweenMinus120AndMinus60) {
  auto plug = NewTarn();
  IParam* xtalk = plug->GetParam(kCrosstalk);
  xtalk->SetNormalized(1.0);
  EXPECT_EQ(xtalk->Value(), -60.0);
  plug->SetParameter(kCrosstalk, -30.0);
  EXPECT_EQ(xtalk->Value(), -60.0);
  plug->SetParameter(kCrosstalk, -200.0);
  EXPECT_EQ(xtalk->Value(), -120.0);
}

TEST(TarnIdentity, DescribesItselfToTheHost) {
  auto plug = NewTarn();
  EXPECT_STREQ(plug->GetEffectName(), "Tarn");
  EXPECT_STREQ(plug->GetProductName(), "");
  EXPECT_STREQ(plug->GetMfrName(), "Tessmoral");
  EXPECT_EQ(plug->GetEffectVersion(false), 65536);
  EXPECT_EQ(plug->GetUniqueID(), 0x5461726E);  // 'T' 'a' 'r' 'n'
  EXPECT_EQ(plug->GetMfrID(), 0x54734D72);     // 'T' 's' 'M' 'r'
  EXPECT_EQ(plug->GetLatency(), 6);
  EXPECT_FALSE(plug->DoesStateChunks());
  EXPECT_FALSE(plug->IsInst());
  EXPECT_FALSE(plug->DoesMidi());
  ASSERT_EQ(plug->NChannelIO(), 2);
  int in = 0, out = 0;
  plug->GetChannelIO(0, &in, &out);
  EXPECT_EQ(in * 10 + out, 11);
  plug->GetChannelIO(1, &in, &out);
  EXPECT_EQ(in * 10 + out, 22);
  EXPECT_EQ(plug->NInChannels(), 2);
  EXPECT_EQ(plug->NOutChannels(), 2);
  EXPECT_EQ(plug->GetGUI(), nullptr);
}

// The default preset's state is the eight defaults as little-endian doubles: all zero except
// Asymmetry (5.0 = 0x4014000000000000) and Crosstalk Level (-90.0 = 0xC056800000000000).
TEST(TarnPresets, DefaultPresetHoldsTheDefaultsByteForByte) {
  auto plug = NewTarn();
  ASSERT_EQ(plug->NPresets(), 1);
  const PresetSlot* preset = plug->GetPreset(0);
  EXPECT_TRUE(preset->mInitialized);
  EXPECT_STREQ(preset->mName, "-");
  unsigned char expected[64] = {};
  expected[3 * 8 + 6] = 0x14;
  expected[3 * 8 + 7] = 0x40;
  expected[5 * 8 + 5] = 0x80;
  expected[5 * 8 + 6] = 0x56;
  expected[5 * 8 + 7] = 0xC0;
  ASSERT_EQ(preset->mChunk.Size(), 64);
  EXPECT_EQ(std::memcmp(preset->mChunk.GetBytes(), expected, 64), 0);

  ByteChunk state;
  plug->SerializeState(&state);
  ASSERT_EQ(state.Size(), 64);
  EXPECT_EQ(std::memcmp(state.GetBytes(), expected, 64), 0);
  EXPECT_TRUE(plug->CompareState(expected, 0));
}

TEST(TarnPresets, StateMovesBetweenInstances) {
  auto a = NewTarn();
  auto b = NewTarn();
  a->SetParameter(kDrive, 7.25);
  a->SetParameter(kVuMode, 2.0);
  a->SetParameter(kBypass, 1.0);
  ByteChunk state;
  a->SerializeState(&state);
  EXPECT_FALSE(b->CompareState(state.GetBytes(), 0));
  EXPECT_EQ(b->UnserializeState(&state, 0), 64);
  EXPECT_TRUE(b->CompareState(state.GetBytes(), 0));
  EXPECT_EQ(b->GetParam(kDrive)->Value(), 7.25);
  EXPECT_EQ(b->GetParam(kVuMode)->Value(), 2.0);
  EXPECT_EQ(b->GetParam(kBypass)->Value(), 1.0);
}
