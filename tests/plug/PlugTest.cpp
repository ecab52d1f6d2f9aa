#include "AllocationCounter.h"
#include "RecordingControl.h"
#include "TestPlug.h"
#include "editor/HeadlessGraphics.h"
#include "plug/Hosts.h"

using Samples = std::vector<float>;

// "in-out" tokens (a bad one adds 0-0) size channels; disconnected inputs read silence, take no
// pointer, outputs stay; the same block size keeps the scratch, a new one clears it, cuts blocks.
TEST(ProcessingFrame, ConvertsAndRoutesChannelsWithinTheBlockSize) {
  TestPlug plug, copier("1-2", 0, 0), odd("1-2 x 3 "), none(nullptr);
  EXPECT_TRUE(odd.NChannelIO() == 4 && odd.NInChannels() == 3 && odd.NOutChannels() == 2 &&
              none.NChannelIO() == 0 && none.NInChannels() == 0);
  plug.scale = 2.0;
  plug.SetInputChannelConnections(-3, 4, false);  // clipped to input 0
  HostBuffers in(2, 32, 0.f), out(2, 32, 9.f);
  in[0] = Ramp(32), in[1] = Delayed(Ramp(32), 0, 0.1f);
  float* first[] = {in[1].data(), nullptr};
  plug.ProcessAudio(first, out.get(), 32);
  EXPECT_TRUE(out[0] == Samples(32, 0.f) && out[1] == Delayed(in[1], 0, 2.f));
  plug.SetIO(2, 1);
  out[1].assign(32, 9.f);
  plug.ProcessAudio(in.get(), out.get(), 32);
  EXPECT_TRUE(out[0] == Delayed(in[0], 0, 2.f) && out[1] == Samples(32, 9.f));
  copier.ProcessAudio(in.get(), out.get(), 32);
  EXPECT_TRUE(out[0] == in[0] && out[1] == Samples(32, 0.f));
  plug.SetBlockSize(1024);
  plug.ProcessBuffers(0.f, 32);  // no new input attached: reads what the scratch buffer holds
  EXPECT_EQ(out[0], Delayed(in[0], 0, 2.f));
  for (int size : {16, INT_MAX / 4}) plug.SetBlockSize(size);  // then more bytes than an int
  plug.ProcessBuffers(0.f, 32);
  plug.SetIO(1, 2);
  EXPECT_TRUE(out[0][15] == 0.f && out[0][16] == 34.f && !plug.IsInChannelConnected(1));
  plug.ProcessAudio(in.get(), out.get(), 16);
  plug.ZeroScratchBuffers();  // silences what the scratch buffer held
  plug.ProcessBuffers(0.f, 16);
  EXPECT_EQ(out[0][5], 0.f);
  plug.SetLatency(INT_MAX / 2);  // the line cannot be made: bypass no longer delays
  plug.ProcessAudioBypassed(nullptr, nullptr, 32);
}

// Bypass reads 2^32 mod L slots ahead in a line of L = latency slots: the delay is the least
// d >= 1 with d = -(2^32 mod L) mod L, whatever the blocks, on every channel.
TEST(PassThroughDelay, DelayFollowsTheUnsignedWrapAcrossBlocks) {
  const int latencies[] = {6, 3, 4, 5, 1, 7}, delays[] = {2, 2, 4, 4, 1, 3};
  Samples ramp = Ramp(40), negated = Delayed(ramp, 0, -2.f);
  for (int i = 0; i < 6; ++i)
    for (int block : {1, 3, 40}) {
      TestPlug plug;
      plug.SetLatency(latencies[i]);
      HostBuffers out(2, 40, 9.f);
      for (int at = 0; at < 40; at += block) {
        float* ins[] = {ramp.data() + at, negated.data() + at};
        float* outs[] = {out[0].data() + at, out[1].data() + at};
        plug.ProcessAudioBypassed(ins, outs, std::min(block, 40 - at));
      }
      EXPECT_TRUE(out[0] == Delayed(ramp, delays[i]) && out[1] == Delayed(negated, delays[i]))
          << "latency " << latencies[i] << " block " << block;
    }
}

// The audio path must not touch the heap, whatever the block size up to the configured one.
TEST(RealTime, ProcessingAndBypassAllocateNothing) {
  for (TestPlug plug; plug.scale < 1.0; plug.scale += 0.5) {
    plug.SetBlockSize(2048);
    plug.changes.reserve(32);  // the recorder itself must not allocate inside the scope
    HostBuffers in(2, 2048, 0.25f), out(2, 2048, 0.f);
    for (int n : {1, 7, 64, 512, 2048}) {
      AllocationScope scope;
      plug.ProcessAudio(in.get(), out.get(), n);
      plug.ProcessAudioBypassed(in.get(), out.get(), n);
      plug.SetParameter(1, 3.0);
      plug.SetParameterFromGUI(2, 0.5);
      EXPECT_EQ(scope.Count(), 0) << "block " << n;
    }
  }
}

// The editor gets normalised values, then its surface; redraws and automation reach its controls
// normalised too; edits set normalised values, then notify; stray indices are ignored; the
// plug-in owns the editor, which owns its controls.
TEST(EditorLink, ValuesFlowBetweenEditorHostAndEffect) {
  std::string log;
  {
    TestPlug plug("1-1", 2, 0);
    plug.GetParam(1)->Set(5.0);
    auto* editor = new HeadlessGraphics(&plug, 10, 10);
    for (int idx : {0, 1}) editor->AttachControl(new RecordingControl(&plug, idx, &log));
    plug.AttachGraphics(nullptr);
    plug.AttachGraphics(editor);
    EXPECT_TRUE(plug.GetGUI() == editor && editor->GetDrawBitmap());
    plug.RedrawParamControls();
    plug.SetParameter(0, 30.0), plug.SetParameter(1, 1.234);  // 1.234 is kept: clamped, not stepped
    plug.SetParameterFromGUI(0, 0.25);
    for (int stray : {2, -1}) plug.SetParameterFromGUI(stray, 0.5), plug.SetParameter(stray, 1.0);
    EXPECT_EQ(plug.Values(), (std::vector<double>{-5.0, 1.234}));
    EXPECT_EQ(plug.changes, (std::vector<int>{0, 1, 0}));
  }
  EXPECT_EQ(log, "0:0.5,1:0.75,0:0.5,1:0.75,0:1,1:0.5617,deleteddeleted");
}

// The first keyword of the table in the lower-cased name decides ("oLIVEr" is Live).
TEST(Hosts, NamesMapToCodesInTableOrderAndVersionsUnpack) {
  std::istringstream names(
      "cubase reaper nuendo cakewalk samplitude fruity live melodyne vstmanlib aulab garageband "
      "forte chainer audition orion sawstudio logic digital audiomulch presonus vst3plugintesthost "
      "protools ardour standalone REAPER64 reapercubase LiveLogic Oliver Other");
  std::string codes;
  for (std::string name; names >> name;) codes += std::to_string(LookUpHost(name.c_str())) + " ";
  EXPECT_EQ(codes, "3 1 4 5 8 7 9 12 13 14 22 15 16 17 18 20 21 23 25 26 27 2 28 24 1 3 9 9 0 ");
  TestPlug plug;  // made with version 0x10203
  EXPECT_TRUE(plug.GetHost() == -1 && plug.GetHostVersion(false) == 0 && LookUpHost(nullptr) == 0);
  EXPECT_FALSE(plug.SetHost("ProTools", 0x00080102));
  EXPECT_TRUE(plug.GetHost() == 2 && plug.GetHostVersion(true) == 80102);
  EXPECT_TRUE(plug.GetHostVersion(false) == 0x80102 && plug.GetEffectVersion(true) == 10203);
  EXPECT_TRUE(plug.IsRenderingOffline() && plug.GetTempo() == 120.0 && !plug.SendMidiMsg(nullptr));
}
