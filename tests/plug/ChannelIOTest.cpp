#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "TestPlug.h"

namespace {

std::vector<std::pair<int, int>> Pairs(const IPlugBase& plug) {
  std::vector<std::pair<int, int>> pairs;
  for (int i = 0; i < plug.NChannelIO(); ++i) {
    int in = -1, out = -1;
    plug.GetChannelIO(i, &in, &out);
    pairs.emplace_back(in, out);
  }
  return pairs;
}

using PairList = std::vector<std::pair<int, int>>;

}  // namespace

TEST(ChannelIO, ParsesEachTokenAndSizesChannelsByTheMaxima) {
  TestPlug plug("1-1 2-2");
  EXPECT_EQ(Pairs(plug), (PairList{{1, 1}, {2, 2}}));
  EXPECT_EQ(plug.NInChannels(), 2);
  EXPECT_EQ(plug.NOutChannels(), 2);

  TestPlug single("2-2");
  EXPECT_EQ(Pairs(single), (PairList{{2, 2}}));

  TestPlug uneven("1-2 4-3");
  EXPECT_EQ(Pairs(uneven), (PairList{{1, 2}, {4, 3}}));
  EXPECT_EQ(uneven.NInChannels(), 4);
  EXPECT_EQ(uneven.NOutChannels(), 3);
}

TEST(ChannelIO, MalformedTokensStillAddALayout) {
  TestPlug junk("x");
  EXPECT_EQ(Pairs(junk), (PairList{{0, 0}}));
  EXPECT_EQ(junk.NInChannels(), 0);
  EXPECT_EQ(junk.NOutChannels(), 0);

  TestPlug mixed("1-2 x 3");
  EXPECT_EQ(Pairs(mixed), (PairList{{1, 2}, {0, 0}, {3, 0}}));  // "3" scans its input count only
  EXPECT_EQ(mixed.NInChannels(), 3);
  EXPECT_EQ(mixed.NOutChannels(), 2);
}

TEST(ChannelIO, TrailingAndDoubleSpacesMakeExtraTokens) {
  TestPlug trailing("1-1 ");
  EXPECT_EQ(Pairs(trailing), (PairList{{1, 1}, {0, 0}}));

  // " 2-2" scans as 2-2 (the number skips the blank) and then "2-2" follows it again.
  TestPlug doubled("1-1  2-2");
  EXPECT_EQ(Pairs(doubled), (PairList{{1, 1}, {2, 2}, {2, 2}}));
}

TEST(ChannelIO, NullStringGivesNoLayoutsAndNoChannels) {
  TestPlug none(nullptr);
  EXPECT_EQ(none.NChannelIO(), 0);
  EXPECT_EQ(none.NInChannels(), 0);
  EXPECT_EQ(none.NOutChannels(), 0);
  float* nothing = nullptr;
  none.ProcessAudio(&nothing, &nothing, 16);  // a plug-in without channels still runs
  none.ProcessAudioBypassed(&nothing, &nothing, 16);
}

TEST(ChannelIO, ConnectionsAreClippedToTheChannelCount) {
  TestPlug plug("1-1 2-2");
  EXPECT_TRUE(plug.IsInChannelConnected(0));  // the adaptor connects everything at first
  EXPECT_TRUE(plug.IsInChannelConnected(1));
  plug.SetInputChannelConnections(1, 5, false);
  EXPECT_TRUE(plug.IsInChannelConnected(0));
  EXPECT_FALSE(plug.IsInChannelConnected(1));
  EXPECT_FALSE(plug.IsInChannelConnected(2));
  EXPECT_FALSE(plug.IsInChannelConnected(-1));
  plug.SetInputChannelConnections(-3, 4, false);  // a negative start must not reach outside
  EXPECT_FALSE(plug.IsInChannelConnected(0));

  plug.SetIO(1, 2);
  EXPECT_TRUE(plug.IsInChannelConnected(0));
  EXPECT_FALSE(plug.IsInChannelConnected(1));
  EXPECT_TRUE(plug.IsOutChannelConnected(1));
}
