#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "TestPlug.h"

namespace {

constexpr int kFrames = 32;

std::vector<float> Ramp(int n, float start, float step) {
  std::vector<float> v(n);
  for (int i = 0; i < n; ++i) v[i] = start + step * static_cast<float>(i);
  return v;
}

}  // namespace

TEST(ProcessingFrame, WidensToDoubleAndNarrowsBackByPlainConversion) {
  TestPlug plug("1-1 2-2", 0, 6);
  plug.scale = 1.0 / 3.0;
  std::vector<float> left = Ramp(kFrames, 0.1f, 0.37f), right = Ramp(kFrames, -1.7f, 0.11f);
  std::vector<float> outL(kFrames, 9.f), outR(kFrames, 9.f);
  float* in[] = {left.data(), right.data()};
  float* out[] = {outL.data(), outR.data()};
  plug.ProcessAudio(in, out, kFrames);
  for (int s = 0; s < kFrames; ++s) {
    EXPECT_EQ(outL[s], static_cast<float>(static_cast<double>(left[s]) * (1.0 / 3.0)));
    EXPECT_EQ(outR[s], static_cast<float>(static_cast<double>(right[s]) * (1.0 / 3.0)));
  }
  EXPECT_EQ(plug.lastFrames, kFrames);
}

TEST(ProcessingFrame, DisconnectedInputReadsZerosAndConsumesNoPointer) {
  TestPlug plug("1-1 2-2", 0, 6);
  plug.scale = 2.0;
  plug.SetInputChannelConnections(1, 1, false);
  std::vector<float> left = Ramp(kFrames, 1.f, 1.f), decoy(kFrames, 5.f);
  std::vector<float> outL(kFrames, 9.f), outR(kFrames, 9.f);
  float* in[] = {left.data(), decoy.data()};
  float* out[] = {outL.data(), outR.data()};
  plug.ProcessAudio(in, out, kFrames);
  for (int s = 0; s < kFrames; ++s) {
    EXPECT_EQ(outL[s], 2.f * left[s]);
    EXPECT_EQ(outR[s], 0.f);
  }

  // Only the first pointer is taken for the one connected channel, so a null second is fine.
  float* inWithNull[] = {left.data(), nullptr};
  plug.ProcessAudio(inWithNull, out, kFrames);
  EXPECT_EQ(outR[5], 0.f);
}

TEST(ProcessingFrame, DisconnectedOutputLeavesTheHostBufferAlone) {
  TestPlug plug("1-1 2-2", 0, 6);
  plug.scale = 2.0;
  plug.SetIO(2, 1);
  std::vector<float> left(kFrames, 1.f), right(kFrames, 3.f);
  std::vector<float> outL(kFrames, 9.f), outR(kFrames, 9.f);
  float* in[] = {left.data(), right.data()};
  float* out[] = {outL.data(), nullptr};
  plug.ProcessAudio(in, out, kFrames);
  EXPECT_EQ(outL[0], 2.f);
  float* both[] = {outL.data(), outR.data()};
  plug.ProcessAudio(in, both, kFrames);
  EXPECT_EQ(outR[0], 9.f);
}

TEST(ProcessingFrame, DefaultDoubleProcessingCopiesMatchingChannelsAndClearsTheRest) {
  TestPlug plug("1-2", 0, 0);
  std::vector<float> in0 = Ramp(kFrames, 0.5f, 0.25f);
  std::vector<float> out0(kFrames, 9.f), out1(kFrames, 9.f);
  float* in[] = {in0.data()};
  float* out[] = {out0.data(), out1.data()};
  plug.ProcessAudio(in, out, kFrames);
  for (int s = 0; s < kFrames; ++s) {
    EXPECT_EQ(out0[s], in0[s]);
    EXPECT_EQ(out1[s], 0.f);
  }
}

TEST(ProcessingFrame, DefaultSingleProcessingCopiesEveryInputWhateverTheOutputCount) {
  TestPlug wide("2-1", 0, 0);
  std::vector<float> in0(8, 1.f), in1(8, 2.f), out0(8, 9.f), out1(8, 9.f);
  float* in[] = {in0.data(), in1.data()};
  float* out[] = {out0.data(), out1.data()};
  wide.ProcessSingleReplacing(in, out, 8);
  EXPECT_EQ(out0[7], 1.f);
  EXPECT_EQ(out1[7], 2.f);  // beyond the one output: copied all the same

  TestPlug narrow("1-2", 0, 0);
  std::fill(out1.begin(), out1.end(), 9.f);
  narrow.ProcessSingleReplacing(in, out, 8);
  EXPECT_EQ(out0[0], 1.f);
  EXPECT_EQ(out1[0], 0.f);
}

TEST(ProcessingFrame, SetBlockSizeWithTheSameSizeKeepsTheScratchContents) {
  TestPlug plug("1-1", 0, 0);
  plug.scale = 1.0;
  plug.SetBlockSize(64);
  std::vector<float> input(64, 0.75f), output(64, 9.f);
  float* in[] = {input.data()};
  float* out[] = {output.data()};
  plug.ProcessAudio(in, out, 64);

  // Without attaching new input, processing reads what the scratch buffer still holds.
  plug.SetBlockSize(64);
  std::fill(output.begin(), output.end(), 9.f);
  plug.AttachOutputBuffers(0, 1, out);
  plug.ProcessBuffers(0.f, 64);
  EXPECT_EQ(output[63], 0.75f);

  plug.SetBlockSize(32);  // a new size clears
  plug.ProcessBuffers(0.f, 32);
  EXPECT_EQ(output[0], 0.f);
  EXPECT_EQ(plug.GetBlockSize(), 32);
}

TEST(ProcessingFrame, ZeroScratchBuffersSilencesHeldInput) {
  TestPlug plug("1-1", 0, 0);
  plug.scale = 1.0;
  std::vector<float> input(16, 0.5f), output(16, 9.f);
  float* in[] = {input.data()};
  float* out[] = {output.data()};
  plug.ProcessAudio(in, out, 16);
  plug.ZeroScratchBuffers();
  plug.ProcessBuffers(0.f, 16);
  EXPECT_EQ(output[3], 0.f);
}
