#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "TestPlug.h"

TEST(BadInput, BlockLongerThanTheScratchBuffersIsCutToThem) {
  TestPlug plug("1-1 2-2", 0, 6);
  plug.scale = 2.0;
  plug.SetBlockSize(64);
  std::vector<float> l(1000, 1.f), r(1000, 1.f), ol(1000, 9.f), orr(1000, 9.f);
  float* in[] = {l.data(), r.data()};
  float* out[] = {ol.data(), orr.data()};
  plug.ProcessAudio(in, out, 1000);
  EXPECT_EQ(plug.lastFrames, 64);
  EXPECT_EQ(ol[63], 2.f);
  EXPECT_EQ(ol[64], 9.f);
  plug.ProcessAudioBypassed(in, out, 1000);
  EXPECT_EQ(orr[999], 9.f);
  plug.ProcessAudio(in, out, -5);
  EXPECT_EQ(plug.lastFrames, 0);
}

TEST(BadInput, NullBuffersAreSilenceOrSkipped) {
  TestPlug plug("1-1 2-2", 0, 6);
  plug.scale = 1.0;
  plug.SetIO(1, 1);
  std::vector<float> l(32, 1.f), ol(32, 9.f);
  float* in[] = {l.data(), nullptr};
  float* out[] = {ol.data(), nullptr};
  plug.ProcessAudio(in, out, 32);
  EXPECT_EQ(ol[0], 1.f);

  plug.SetIO(2, 2);
  float* nulls[] = {nullptr, nullptr};
  plug.ProcessAudio(nulls, nulls, 32);  // connected but given nothing: silent in, nowhere out
  plug.ProcessAudio(nullptr, nullptr, 32);
  plug.ProcessAudioBypassed(nullptr, nullptr, 32);
}

TEST(BadInput, ParameterIndexOutOfRangeIsIgnored) {
  TestPlug plug("1-1", 3, 0);
  EXPECT_EQ(plug.GetParam(3), nullptr);
  EXPECT_EQ(plug.GetParam(-1), nullptr);
  plug.SetParameterFromGUI(3, 0.5);
  plug.SetParameterFromGUI(-1, 0.5);
  plug.SetParameter(17, 1.0);
  plug.SetParameter(-2, 1.0);
  EXPECT_TRUE(plug.changes.empty());

  plug.SetParameter(1, 50.0);  // a value out of range is clamped, not rounded
  EXPECT_EQ(plug.GetParam(1)->Value(), 10.0);
  plug.SetParameter(1, 1.234);
  EXPECT_EQ(plug.GetParam(1)->Value(), 1.234);
  EXPECT_EQ(plug.changes, (std::vector<int>{1, 1}));
}

TEST(BadInput, ProcessingBeforeAnyBlockSizeDoesNothing) {
  TestPlug plug("1-1", 0, 6);
  plug.scale = 1.0;
  plug.SetBlockSize(0);
  std::vector<float> l(8, 1.f), ol(8, 9.f);
  float* in[] = {l.data()};
  float* out[] = {ol.data()};
  plug.ProcessAudio(in, out, 8);
  plug.ProcessAudioBypassed(in, out, 8);
  EXPECT_EQ(ol[0], 9.f);
  plug.SetLatency(-3);
  EXPECT_EQ(plug.GetLatency(), 0);
}

TEST(BadInput, SizesTooLargeToAllocateKeepProcessingInBounds) {
  TestPlug plug("1-1", 0, 6);
  plug.scale = 1.0;
  plug.SetBlockSize(256);
  plug.SetBlockSize(INT_MAX / 4);  // more bytes than an int can count: the buffers stay as they are
  std::vector<float> l(1000, 1.f), ol(1000, 9.f);
  float* in[] = {l.data()};
  float* out[] = {ol.data()};
  plug.ProcessAudio(in, out, 1000);
  EXPECT_EQ(plug.lastFrames, 256);

  plug.SetLatency(INT_MAX / 2);  // the delay line cannot be made: bypass no longer delays
  plug.ProcessAudioBypassed(in, out, 1000);
  EXPECT_EQ(ol[999], 9.f);
}
