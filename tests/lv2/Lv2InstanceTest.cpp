// The LV2 binding driven as a host drives it: descriptors, runs of any length against the
// effect driven directly, in-place buffers, controls, the host's bypass, output controls,
// state and allocation-free runs.
#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/state/state.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "AllocationCounter.h"
#include "Lv2Descriptor.h"
#include "Lv2TestHost.h"
#include "dsp/Tarn.h"
#include "plug/ByteChunk.h"

namespace {

using Channels = std::vector<std::vector<float>>;
using Settings = std::vector<std::pair<int, double>>;

constexpr int kMono = 0;
constexpr int kStereo = 1;

// Two detuned tones with a loud burst in the middle, different on each channel, so the
// saturator, the crosstalk and the clamp all have work to do.
Channels TestSignal(int nChannels, int nFrames) {
  Channels signal(nChannels, std::vector<float>(nFrames));
  for (int c = 0; c < nChannels; ++c) {
    for (int i = 0; i < nFrames; ++i) {
      const double burst = (i > nFrames / 3 && i < nFrames / 2) ? 2.5 : 0.4;
      signal[c][i] =
          static_cast<float>(burst * std::sin(0.031 * i * (c + 1)) + 0.1 * std::sin(0.2 * i));
    }
  }
  return signal;
}

// The effect as the offline renderer drives it: its defaults restored, the settings applied
// as automation, then the whole signal in blocks of `block` frames.
Channels RenderDirectly(int nChannels, double rate, const Settings& settings, const Channels& in,
                        int block) {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  ByteChunk defaults;
  plug->SerializeState(&defaults);
  plug->UnserializeState(&defaults, 0);
  for (const auto& [index, value] : settings) plug->SetParameter(index, value);
  plug->SetSampleRate(rate);
  plug->Reset();
  plug->SetIO(nChannels, nChannels);
  plug->SetBlockSize(block);

  const int nFrames = static_cast<int>(in[0].size());
  Channels out(nChannels, std::vector<float>(nFrames));
  std::vector<float*> inPtrs(nChannels), outPtrs(nChannels);
  for (int done = 0; done < nFrames; done += block) {
    for (int c = 0; c < nChannels; ++c) {
      inPtrs[c] = const_cast<float*>(in[c].data()) + done;
      outPtrs[c] = out[c].data() + done;
    }
    plug->ProcessAudio(inPtrs.data(), outPtrs.data(), std::min(block, nFrames - done));
  }
  return out;
}

void SetControls(Lv2TestHost& host, const Settings& settings) {
  for (const auto& [index, value] : settings)
    host.Control(static_cast<uint32_t>(index)) = static_cast<float>(value);
}

double StoredValue(const std::vector<unsigned char>& chunk, int index) {
  double value = 0.0;
  std::memcpy(&value, chunk.data() + 8 * index, sizeof value);
  return value;
}

std::vector<unsigned char> StateOf(const std::vector<double>& values) {
  std::vector<unsigned char> bytes(values.size() * sizeof(double));
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

// Settings a float port carries exactly, so the binding and the direct drive see equal values.
const Settings kSettings = {{kInputTrim, 4.0}, {kDrive, 6.5},        {kOutputComp, -2.0},
                            {kAsymmetry, 2.5}, {kFreqResponse, 3.0}, {kCrosstalk, -70.0}};

}  // namespace

TEST(Lv2Descriptors, OnePluginPerChannelLayoutOfTheEffect) {
  ASSERT_NE(tarnlv2::Descriptor(0), nullptr);
  ASSERT_NE(tarnlv2::Descriptor(1), nullptr);
  EXPECT_EQ(tarnlv2::Descriptor(2), nullptr);
  EXPECT_STREQ(tarnlv2::Descriptor(0)->URI, "urn:tessmoral:tarn#mono");
  EXPECT_STREQ(tarnlv2::Descriptor(1)->URI, "urn:tessmoral:tarn#stereo");
  EXPECT_NE(tarnlv2::Descriptor(0)->extension_data(LV2_STATE__interface), nullptr);
  EXPECT_EQ(tarnlv2::Descriptor(0)->extension_data("urn:nothing"), nullptr);

  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  ASSERT_EQ(plug->NChannelIO(), tarnlv2::kNumVariants);
  for (int i = 0; i < tarnlv2::kNumVariants; ++i) {
    int nIn = 0, nOut = 0;
    plug->GetChannelIO(i, &nIn, &nOut);
    EXPECT_EQ(nIn, tarnlv2::kVariants[i].nChannels);
    EXPECT_EQ(nOut, tarnlv2::kVariants[i].nChannels);
  }
}

TEST(Lv2Descriptors, InstantiateRunAndCleanUpThroughTheCInterface) {
  const LV2_Descriptor* descriptor = tarnlv2::Descriptor(kStereo);
  const LV2_Feature* noFeatures[] = {nullptr};
  LV2_Handle handle = descriptor->instantiate(descriptor, 44100.0, "/nowhere", noFeatures);
  ASSERT_NE(handle, nullptr);
  std::vector<float> controls(11, 0.0f);
  controls[kAsymmetry] = 5.0f;
  controls[kCrosstalk] = -90.0f;
  controls[8] = 1.0f;
  std::vector<float> audio(4 * 32, 0.25f);
  for (uint32_t port = 0; port < 11; ++port)
    descriptor->connect_port(handle, port, &controls[port]);
  for (uint32_t c = 0; c < 4; ++c) descriptor->connect_port(handle, 11 + c, &audio[32 * c]);
  descriptor->activate(handle);
  descriptor->run(handle, 32);
  descriptor->deactivate(handle);
  descriptor->cleanup(handle);
  EXPECT_EQ(controls[9], 6.0f);
}

TEST(Lv2Port, LayoutNumbersControlsAlikeInEveryVariant) {
  const tarnlv2::PortLayout mono(kNumParams, 1), stereo(kNumParams, 2);
  EXPECT_EQ(mono.Enabled(), 8u);
  EXPECT_EQ(stereo.Enabled(), 8u);
  EXPECT_EQ(mono.Latency(), 9u);
  EXPECT_EQ(mono.Needle(), 10u);
  EXPECT_EQ(mono.AudioIn(0), 11u);
  EXPECT_EQ(mono.AudioOut(0), 12u);
  EXPECT_EQ(mono.NPorts(), 13u);
  EXPECT_EQ(stereo.AudioIn(1), 12u);
  EXPECT_EQ(stereo.AudioOut(0), 13u);
  EXPECT_EQ(stereo.NPorts(), 15u);
  EXPECT_EQ(stereo.AudioSymbol(true, 1), "in_r");
  EXPECT_EQ(mono.AudioSymbol(false, 0), "out");
  EXPECT_EQ(stereo.AudioName(false, 0), "Out L");
}

TEST(Lv2Port, SymbolsFromParameterNames) {
  EXPECT_EQ(tarnlv2::SymbolFromName("Input Trim"), "input_trim");
  EXPECT_EQ(tarnlv2::SymbolFromName("VU Mode"), "vu_mode");
  EXPECT_EQ(tarnlv2::SymbolFromName("Output Compensation"), "output_compensation");
  EXPECT_EQ(tarnlv2::SymbolFromName("  Out-In  (dB) "), "out_in_db");
  EXPECT_EQ(tarnlv2::SymbolFromName("3 Band"), "p3_band");
  EXPECT_EQ(tarnlv2::SymbolFromName(""), "p");
}

// Whatever the run lengths, the binding renders exactly what the effect renders when driven
// directly in blocks: runs longer than the largest block are split, never truncated.
TEST(Lv2Run, AnyRunLengthRendersLikeTheEffectDrivenDirectly) {
  constexpr int kFrames = 20000;
  for (int variant : {kMono, kStereo}) {
    const int nChannels = tarnlv2::kVariants[variant].nChannels;
    const Channels in = TestSignal(nChannels, kFrames);
    const Channels expected = RenderDirectly(nChannels, 48000.0, kSettings, in, 512);
    for (int run : {1, 7, 256, 8192, kFrames}) {
      Lv2TestHost host(variant, 48000.0, {});
      SetControls(host, kSettings);
      Channels input = in, out(nChannels, std::vector<float>(kFrames));
      host.ConnectAudio(input, out);
      host.Instance().Activate();
      host.RunInRuns(kFrames, run);
      EXPECT_EQ(out, expected) << "variant " << variant << ", runs of " << run;
      EXPECT_EQ(input, in) << "the input buffers are the host's and stay untouched";
    }
  }
}

TEST(Lv2Run, InPlaceBuffersRenderLikeSeparateOnes) {
  constexpr int kFrames = 9000;
  const Channels in = TestSignal(2, kFrames);
  const Channels expected = RenderDirectly(2, 44100.0, kSettings, in, 1024);
  for (int run : {1, 100, kFrames}) {
    Lv2TestHost host(kStereo, 44100.0, {true, true, 4096});
    SetControls(host, kSettings);
    Channels buffers = in;
    host.ConnectAudioInPlace(buffers);
    host.RunInRuns(kFrames, run);
    EXPECT_EQ(buffers, expected) << "runs of " << run;
  }
}

TEST(Lv2Run, LargestBlockComesFromTheHostOnlyWhenItPromisesABound) {
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {true, true, 64}).Instance().MaxBlock(), 64);
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {true, false, 64}).Instance().MaxBlock(), 8192);
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {true, true, 0}).Instance().MaxBlock(), 8192);
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {true, true, -5}).Instance().MaxBlock(), 8192);
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {true, true, 1 << 24}).Instance().MaxBlock(), 65536);
  EXPECT_EQ(Lv2TestHost(kMono, 48000.0, {false, true, 64}).Instance().MaxBlock(), 8192)
      << "without URID mapping the option cannot be read";

  // A run far longer than the host's bound is processed in bounded stretches.
  const Channels in = TestSignal(1, 1000);
  Lv2TestHost host(kMono, 48000.0, {true, true, 64});
  Channels input = in, out(1, std::vector<float>(1000));
  host.ConnectAudio(input, out);
  host.RunInRuns(1000, 1000);
  EXPECT_EQ(out, RenderDirectly(1, 48000.0, {}, in, 64));
}

TEST(Lv2Run, RendersAtTheHostSampleRate) {
  const Channels in = TestSignal(2, 3000);
  Lv2TestHost host(kStereo, 96000.0, {});
  SetControls(host, kSettings);
  Channels input = in, out(2, std::vector<float>(3000));
  host.ConnectAudio(input, out);
  host.RunInRuns(3000, 3000);
  EXPECT_EQ(out, RenderDirectly(2, 96000.0, kSettings, in, 3000));
  EXPECT_NE(out, RenderDirectly(2, 44100.0, kSettings, in, 3000));
}

TEST(Lv2Run, MonoWritesItsOneOutputOnly) {
  const Channels in = TestSignal(1, 500);
  Lv2TestHost host(kMono, 48000.0, {});
  Channels input = in, out(1, std::vector<float>(500, 0.0f));
  host.ConnectAudio(input, out);
  host.RunInRuns(500, 500);
  EXPECT_EQ(out, RenderDirectly(1, 48000.0, {}, in, 500));
}

// The designated "enabled" port is the host's bypass: 0 sends the input through the plug-in's
// pass-through delay, whose read slot runs four ahead of its write slot, so an impulse at
// frame 0 leaves at frame 2; 1 runs the effect again.
TEST(Lv2Enabled, ZeroTakesThePassThroughPath) {
  Lv2TestHost host(kStereo, 48000.0, {});
  Channels in(2, std::vector<float>(16, 0.0f)), out(2, std::vector<float>(16, -1.0f));
  in[0][0] = 1.0f;
  in[1][0] = -0.5f;
  host.ConnectAudio(in, out);
  host.Control(host.Layout().Enabled()) = 0.0f;
  host.RunInRuns(16, 16);
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(out[0][i], i == 2 ? 1.0f : 0.0f) << "frame " << i;
    EXPECT_EQ(out[1][i], i == 2 ? -0.5f : 0.0f) << "frame " << i;
  }

  host.Control(host.Layout().Enabled()) = 1.0f;
  host.RunInRuns(16, 16);
  EXPECT_NE(out[0], std::vector<float>(16, 0.0f))
      << "the effect runs again and adds its noise floor";
}

TEST(Lv2Enabled, TheEffectsOwnBypassIsAParameterLikeAnyOther) {
  const Channels in = TestSignal(2, 2000);
  const Settings bypassed = {{kDrive, 8.0}, {kBypass, 1.0}};
  Lv2TestHost host(kStereo, 48000.0, {});
  SetControls(host, bypassed);
  Channels input = in, out(2, std::vector<float>(2000));
  host.ConnectAudio(input, out);
  host.RunInRuns(2000, 300);
  EXPECT_EQ(out, RenderDirectly(2, 48000.0, bypassed, in, 300));
}

TEST(Lv2OutputControls, LatencyAndNeedleAfterEveryRun) {
  const Channels in = TestSignal(2, 4000);
  Lv2TestHost host(kStereo, 48000.0, {});
  Channels input = in, out(2, std::vector<float>(4000));
  host.ConnectAudio(input, out);
  host.Control(host.Layout().Latency()) = -1.0f;
  host.RunInRuns(4000, 4000);
  EXPECT_EQ(host.Control(host.Layout().Latency()), 6.0f);

  // The needle is the meter's hold value after the run, fed by the input (mode 0).
  const float needle = host.Control(host.Layout().Needle());
  EXPECT_GT(needle, 0.0f);

  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetSampleRate(48000.0);
  plug->Reset();
  plug->SetIO(2, 2);
  plug->SetBlockSize(4000);
  Channels reference = in;
  std::vector<float*> ptrs = {reference[0].data(), reference[1].data()};
  ByteChunk defaults;
  plug->SerializeState(&defaults);
  plug->UnserializeState(&defaults, 0);
  plug->ProcessAudio(ptrs.data(), ptrs.data(), 4000);
  EXPECT_EQ(needle, static_cast<float>(static_cast<Tarn*>(plug.get())->GetNeedle()));
}

// Controls reach the effect as host automation: clamped into range, never rounded.
TEST(Lv2Controls, ApplyAsAutomationClampedNotRounded) {
  Lv2TestHost host(kMono, 48000.0, {});
  host.Control(kInputTrim) = 50.0f;
  host.Control(kCrosstalk) = -200.0f;
  host.Control(kVuMode) = 1.5f;
  host.Control(kBypass) = 0.25f;
  host.Control(kDrive) = 2.75f;
  host.Instance().Run(0);
  const std::vector<unsigned char> state = host.SavedChunk();
  ASSERT_EQ(state.size(), 64u);
  EXPECT_EQ(StoredValue(state, kInputTrim), 20.0);
  EXPECT_EQ(StoredValue(state, kCrosstalk), -120.0);
  EXPECT_EQ(StoredValue(state, kVuMode), 1.5);
  EXPECT_EQ(StoredValue(state, kBypass), 0.25);
  EXPECT_EQ(StoredValue(state, kDrive), 2.75);
  EXPECT_EQ(StoredValue(state, kOutputComp), 0.0);
}

TEST(Lv2Controls, NaNIsIgnored) {
  Lv2TestHost host(kMono, 48000.0, {});
  host.Control(kDrive) = 3.0f;
  host.Instance().Run(0);
  host.Control(kDrive) = std::nanf("");
  host.Instance().Run(0);
  EXPECT_EQ(StoredValue(host.SavedChunk(), kDrive), 3.0);
}

// A control reaches the effect only when it moved, so a state restored between runs stays
// until the host moves a port.
TEST(Lv2Controls, OnlyMovedPortsOverrideARestoredState) {
  Lv2TestHost host(kStereo, 48000.0, {});
  host.Instance().Run(0);

  const std::vector<double> restored = {1.0, 7.0, -3.0, 2.0, 4.0, -100.0, 2.0, 0.0};
  host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__Chunk, StateOf(restored));
  ASSERT_EQ(host.Restore(), LV2_STATE_SUCCESS);
  host.Instance().Run(0);
  EXPECT_EQ(host.SavedChunk(), StateOf(restored));

  host.Control(kDrive) = 9.0f;
  host.Instance().Run(0);
  std::vector<double> moved = restored;
  moved[kDrive] = 9.0;
  EXPECT_EQ(host.SavedChunk(), StateOf(moved));
}

// Before the first run, a restored state meets ports still at their defaults: the first run
// compares them with the instance's own values, so those ports win.
TEST(Lv2Controls, FirstRunAppliesEveryPortThatDiffersFromTheInstance) {
  Lv2TestHost host(kStereo, 48000.0, {});
  host.Control(kFreqResponse) = -4.0f;
  host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__Chunk,
                StateOf({1.0, 7.0, -3.0, 2.0, 4.0, -100.0, 2.0, 0.0}));
  ASSERT_EQ(host.Restore(), LV2_STATE_SUCCESS);
  host.Instance().Run(0);
  EXPECT_EQ(host.SavedChunk(), StateOf({0.0, 0.0, 0.0, 5.0, -4.0, -90.0, 0.0, 0.0}));
}

TEST(Lv2State, SavesTheSixtyFourByteChunk) {
  Lv2TestHost host(kStereo, 48000.0, {});
  SetControls(host, kSettings);
  host.Control(kVuMode) = 2.0f;
  host.Instance().Run(0);
  EXPECT_EQ(host.SavedChunk(), StateOf({4.0, 6.5, -2.0, 2.5, 3.0, -70.0, 2.0, 0.0}));
}

TEST(Lv2State, RestoredStateSoundsLikeTheSameSettingsSetDirectly) {
  const Channels in = TestSignal(2, 5000);
  Lv2TestHost host(kStereo, 48000.0, {});
  SetControls(host, kSettings);
  host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__Chunk,
                StateOf({4.0, 6.5, -2.0, 2.5, 3.0, -70.0, 0.0, 0.0}));
  ASSERT_EQ(host.Restore(), LV2_STATE_SUCCESS);
  Channels input = in, out(2, std::vector<float>(5000));
  host.ConnectAudio(input, out);
  host.RunInRuns(5000, 5000);
  EXPECT_EQ(out, RenderDirectly(2, 48000.0, kSettings, in, 5000));
}

// A state is restored whole or not at all: wrong sizes and non-finite values leave every
// setting as it was, and a good state afterwards restores as usual.
TEST(Lv2State, RefusesAnythingButAWholeFiniteState) {
  const std::vector<double> good = {1.0, 2.0, 3.0, 4.0, 5.0, -80.0, 1.0, 1.0};
  std::vector<std::vector<unsigned char>> bad = {StateOf({1.0, 2.0}), StateOf(good), StateOf(good)};
  bad[1].resize(63);
  bad[2].push_back(0);
  for (double nonFinite : {NAN, INFINITY, -INFINITY}) {
    for (int index : {kDrive, kVuMode}) {
      std::vector<double> values = good;
      values[index] = nonFinite;
      bad.push_back(StateOf(values));
    }
  }
  Lv2TestHost host(kStereo, 48000.0, {});
  host.Control(kDrive) = 5.0f;
  host.Instance().Run(0);
  const std::vector<unsigned char> before = host.SavedChunk();
  for (const auto& state : bad) {
    host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__Chunk, state);
    EXPECT_EQ(host.Restore(), LV2_STATE_ERR_UNKNOWN) << state.size() << " bytes";
    EXPECT_EQ(host.SavedChunk(), before);
  }
  host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__Chunk, StateOf(good));
  EXPECT_EQ(host.Restore(), LV2_STATE_SUCCESS);
  EXPECT_EQ(host.SavedChunk(), StateOf(good));
}

TEST(Lv2State, RefusesWhatItCannotRead) {
  Lv2TestHost host(kMono, 48000.0, {});
  const std::vector<unsigned char> before = host.SavedChunk();
  host.PutState(tarnlv2::kStateKeyUri, LV2_ATOM__String,
                StateOf({1.0, 2.0, 3.0, 4.0, 5.0, -80.0, 1.0, 1.0}));
  EXPECT_EQ(host.Restore(), LV2_STATE_ERR_BAD_TYPE);
  host.PutState("urn:someone:else#state", LV2_ATOM__Chunk,
                StateOf({1.0, 2.0, 3.0, 4.0, 5.0, -80.0, 1.0, 1.0}));
  EXPECT_EQ(host.Restore(), LV2_STATE_ERR_NO_PROPERTY);
  EXPECT_EQ(host.SavedChunk(), before);

  Lv2TestHost unmapped(kMono, 48000.0, {false, false, 0});
  EXPECT_EQ(unmapped.Save(), LV2_STATE_ERR_NO_FEATURE);
  EXPECT_EQ(unmapped.Restore(), LV2_STATE_ERR_NO_FEATURE);
}

// Runs of 1, 64 and 8192 frames, with controls moving, a NaN in the input, the host's bypass
// switching and runs longer than the largest block, allocate nothing.
TEST(Lv2RealTime, RunsAllocateNothing) {
  for (int variant : {kMono, kStereo}) {
    const int nChannels = tarnlv2::kVariants[variant].nChannels;
    Lv2TestHost host(variant, 48000.0, {true, true, 4096});
    Channels in = TestSignal(nChannels, 8192), out(nChannels, std::vector<float>(8192));
    in[0][100] = NAN;  // the way round a non-finite sample allocates nothing either
    host.ConnectAudio(in, out);
    SetControls(host, kSettings);
    AllocationScope scope;
    host.Instance().Run(1);
    host.Control(kDrive) = 9.0f;
    host.Instance().Run(64);
    host.Control(host.Layout().Enabled()) = 0.0f;
    host.Instance().Run(64);
    host.Control(host.Layout().Enabled()) = 1.0f;
    host.Control(kVuMode) = 1.0f;
    host.Instance().Run(8192);
    EXPECT_EQ(scope.Count(), 0) << "variant " << variant;
  }
}
