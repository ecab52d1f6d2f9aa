#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "TestPlug.h"

namespace {

constexpr int kParams = 8;

// Eight parameters ranging over -10 ... 10, parameter i holding the value i.
struct CountingPlug : TestPlug {
  CountingPlug() : TestPlug("1-1", kParams, 0) {
    for (int i = 0; i < kParams; ++i) GetParam(i)->Set(i);
  }
};

ByteChunk& Fill(ByteChunk& chunk, const std::vector<double>& values) {
  for (double v : values) chunk.Put(&v);
  return chunk;
}

std::vector<double> Values(const IPlugBase& plug) {
  std::vector<double> v;
  for (int i = 0; i < plug.NParams(); ++i) v.push_back(plug.GetParam(i)->Value());
  return v;
}

const std::vector<int> kAllInOrder = {0, 1, 2, 3, 4, 5, 6, 7};

}  // namespace

TEST(State, IsEachPlainValueAsLittleEndianDoubles) {
  TestPlug plug("1-1", kParams, 0);
  for (int i = 0; i < kParams; ++i) plug.GetParam(i)->Set(i);
  ByteChunk chunk;
  EXPECT_TRUE(plug.SerializeState(&chunk));
  ASSERT_EQ(chunk.Size(), 64);
  const unsigned char zero[8] = {0, 0, 0, 0, 0, 0, 0, 0};
  const unsigned char one[8] = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
  const unsigned char seven[8] = {0, 0, 0, 0, 0, 0, 0x1C, 0x40};  // 1.75 x 2^2
  EXPECT_EQ(std::memcmp(chunk.GetBytes(), zero, 8), 0);
  EXPECT_EQ(std::memcmp(chunk.GetBytes() + 8, one, 8), 0);
  EXPECT_EQ(std::memcmp(chunk.GetBytes() + 56, seven, 8), 0);

  EXPECT_TRUE(plug.SerializeState(&chunk));  // appended to what is there
  EXPECT_EQ(chunk.Size(), 128);
}

TEST(State, RoundTripRestoresValuesAndNotifiesInIndexOrder) {
  TestPlug source("1-1", kParams, 0);
  for (int i = 0; i < kParams; ++i) source.GetParam(i)->Set(0.37 * i - 1.1);
  ByteChunk chunk;
  source.SerializeState(&chunk);

  TestPlug fresh("1-1", kParams, 0);
  EXPECT_EQ(fresh.UnserializeState(&chunk, 0), 64);
  EXPECT_EQ(Values(fresh), Values(source));
  EXPECT_EQ(fresh.changes, kAllInOrder);
}

TEST(State, ReadsFromAStartPositionAndIgnoresTrailingBytes) {
  TestPlug plug("1-1", kParams, 0);
  ByteChunk chunk;
  Fill(chunk, {9.5, 1, 2, 3, 4, 5, 6, 7, 8, 9.25});
  EXPECT_EQ(plug.UnserializeState(&chunk, 8), 72);
  EXPECT_EQ(Values(plug), (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(plug.UnserializeState(&chunk, 0), 64);
  EXPECT_EQ(plug.GetParam(0)->Value(), 9.5);
}

TEST(State, ShortStateAppliesWhatItHoldsAndZeroesTheParameterWhereItEnds) {
  CountingPlug plug;
  plug.GetParam(7)->InitDouble("p", 3.0, 2.0, 5.0, 0.1);  // so that 0.0 clamps visibly
  ByteChunk chunk;
  Fill(chunk, {-1, -2, -3, -4, -5, -6, -7});
  chunk.PutBytes("\x01\x02\x03\x04", 4);  // 60 bytes in all
  EXPECT_EQ(plug.UnserializeState(&chunk, 0), -1);
  EXPECT_EQ(Values(plug), (std::vector<double>{-1, -2, -3, -4, -5, -6, -7, 2.0}));
  EXPECT_EQ(plug.changes, kAllInOrder);

  CountingPlug early;
  ByteChunk twenty;
  Fill(twenty, {9, 8}).PutBytes("\x01\x02\x03\x04", 4);
  EXPECT_EQ(early.UnserializeState(&twenty, 0), -1);
  EXPECT_EQ(Values(early), (std::vector<double>{9, 8, 0, 3, 4, 5, 6, 7}));  // later ones keep theirs
  EXPECT_EQ(early.changes, kAllInOrder);
}

TEST(State, EmptyNullAndNegativeStartsStillNotifyEveryParameter) {
  CountingPlug plug;
  plug.GetParam(0)->Set(4.0);
  ByteChunk empty;
  EXPECT_EQ(plug.UnserializeState(&empty, 0), -1);
  EXPECT_EQ(Values(plug), (std::vector<double>{0, 1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(plug.changes, kAllInOrder);

  CountingPlug negative;
  negative.GetParam(0)->Set(4.0);
  ByteChunk full;
  Fill(full, {1, 1, 1, 1, 1, 1, 1, 1});
  EXPECT_EQ(negative.UnserializeState(&full, -8), -1);
  EXPECT_EQ(negative.GetParam(0)->Value(), 4.0);  // nothing read
  EXPECT_EQ(negative.changes, kAllInOrder);

  EXPECT_EQ(negative.UnserializeState(nullptr, 0), -1);
  EXPECT_EQ(negative.GetParam(0)->Value(), 0.0);
}

TEST(State, RestoredValuesAreClampedButNeverRounded) {
  TestPlug plug("1-1", 3, 0);
  plug.GetParam(2)->InitEnum("e", 0, 3);
  ByteChunk chunk;
  Fill(chunk, {25.0, -1e300, 1.5});
  plug.UnserializeState(&chunk, 0);
  EXPECT_EQ(Values(plug), (std::vector<double>{10.0, -10.0, 1.5}));

  // Garbage: 0x7F... is a huge positive double, 0xC1... a huge negative one.
  ByteChunk garbage;
  std::vector<unsigned char> bytes(24, 0x7F);
  std::memset(bytes.data() + 8, 0xC1, 8);
  garbage.PutBytes(bytes.data(), 24);
  plug.UnserializeState(&garbage, 0);
  EXPECT_EQ(Values(plug), (std::vector<double>{10.0, -10.0, 2.0}));
}

TEST(State, CompareStateMatchesInSinglePrecision) {
  TestPlug plug("1-1", 2, 0);
  plug.GetParam(0)->Set(0.1);
  plug.GetParam(1)->Set(-3.0);
  double same[] = {0.1, -3.0};
  double close[] = {0.100001, -3.0};
  double apart[] = {0.10002, -3.0};
  double second[] = {0.1, -3.00003};
  auto bytes = [](const double* d) { return reinterpret_cast<const unsigned char*>(d); };
  EXPECT_TRUE(plug.CompareState(bytes(same), 0));
  EXPECT_TRUE(plug.CompareState(bytes(close), 0));
  EXPECT_FALSE(plug.CompareState(bytes(apart), 0));
  EXPECT_FALSE(plug.CompareState(bytes(second), 0));

  double shifted[] = {99.0, 0.1, -3.0};  // the start counts doubles, not bytes
  EXPECT_TRUE(plug.CompareState(bytes(shifted), 1));
  EXPECT_FALSE(plug.CompareState(bytes(shifted), 0));

  unsigned char unaligned[17];
  std::memcpy(unaligned + 1, same, 16);
  EXPECT_TRUE(plug.CompareState(unaligned + 1, 0));

  TestPlug none("1-1", 0, 0);
  EXPECT_TRUE(none.CompareState(nullptr, 0));
}

TEST(Presets, SlotsStartEmptyAndTheDefaultPresetCapturesTheValues) {
  TestPlug plug("1-1", 2, 0, 3);
  ASSERT_EQ(plug.NPresets(), 3);
  EXPECT_STREQ(plug.GetPreset(0)->mName, "empty");
  EXPECT_FALSE(plug.GetPreset(0)->mInitialized);
  EXPECT_EQ(plug.GetPreset(0)->mChunk.Size(), 0);

  plug.GetParam(1)->Set(1.0);
  plug.MakeDefaultPreset("-", 1);
  const PresetSlot* first = plug.GetPreset(0);
  EXPECT_TRUE(first->mInitialized);
  EXPECT_STREQ(first->mName, "-");
  ASSERT_EQ(first->mChunk.Size(), 16);
  const unsigned char expected[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
  EXPECT_EQ(std::memcmp(first->mChunk.GetBytes(), expected, 16), 0);
  EXPECT_FALSE(plug.GetPreset(1)->mInitialized);
}

TEST(Presets, NullNameIsEmptyCapitalisedAndSurplusRoundsAreIgnored) {
  TestPlug plug("1-1", 2, 0, 3);
  plug.MakeDefaultPreset("first", 1);
  plug.MakeDefaultPreset(nullptr, 5);
  EXPECT_STREQ(plug.GetPreset(0)->mName, "first");
  EXPECT_STREQ(plug.GetPreset(1)->mName, "Empty");
  EXPECT_STREQ(plug.GetPreset(2)->mName, "Empty");
  EXPECT_TRUE(plug.GetPreset(2)->mInitialized);
  EXPECT_EQ(plug.NPresets(), 3);
}

TEST(Presets, PruningDropsUnfilledSlotsAndKeepsOrder) {
  TestPlug plug("1-1", 2, 0, 4);
  plug.MakeDefaultPreset("a", 1);
  plug.MakeDefaultPreset("b", 1);
  plug.PruneUninitializedPresets();
  ASSERT_EQ(plug.NPresets(), 2);
  EXPECT_STREQ(plug.GetPreset(0)->mName, "a");
  EXPECT_STREQ(plug.GetPreset(1)->mName, "b");

  TestPlug unused("1-1", 2, 0, 2);
  unused.PruneUninitializedPresets();
  EXPECT_EQ(unused.NPresets(), 0);
  EXPECT_EQ(unused.GetPreset(0), nullptr);
}
