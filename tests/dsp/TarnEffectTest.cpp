// End-to-end behaviour of the Tarn effect through the host float path.
#include "AllocationCounter.h"
#include "dsp/RBJ.h"
#include "dsp/Tarn.h"
#include "editor/IGraphics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr double kRate = 48000.0;

// One instance driven as an offline host drives it.
struct Host {
  explicit Host(int channels, bool reset = true) : plug(MakePlug()), nCh(channels) {
    plug->SetIO(channels, channels);
    plug->SetSampleRate(kRate);
    if (reset) plug->Reset();
  }
  void Set(int idx, double value) { plug->SetParameter(idx, value); }

  // Runs the whole signal (one vector per channel) in blocks of blockSize.
  std::vector<std::vector<float>> Run(const std::vector<std::vector<float>>& in,
                                      int blockSize = 512) {
    const int n = static_cast<int>(in[0].size());
    std::vector<std::vector<float>> out(nCh, std::vector<float>(n));
    plug->SetBlockSize(blockSize);
    for (int start = 0; start < n; start += blockSize) {
      const int len = std::min(blockSize, n - start);
      float* ins[2] = {nullptr, nullptr};
      float* outs[2] = {nullptr, nullptr};
      for (int c = 0; c < nCh; ++c) {
        ins[c] = const_cast<float*>(in[c].data()) + start;
        outs[c] = out[c].data() + start;
      }
      plug->ProcessAudio(ins, outs, len);
    }
    return out;
  }
  Tarn& effect() { return *static_cast<Tarn*>(plug.get()); }

  std::unique_ptr<IPlugAdaptor> plug;
  int nCh;
};

using Signal = std::vector<std::vector<float>>;

std::vector<std::vector<float>> Constant(int channels, int n, float v) {
  return std::vector<std::vector<float>>(channels, std::vector<float>(n, v));
}

std::vector<std::vector<float>> Sine(int channels, int n, double freq, double amp) {
  std::vector<std::vector<float>> s(channels, std::vector<float>(n));
  for (int c = 0; c < channels; ++c)
    for (int i = 0; i < n; ++i)
      s[c][i] = static_cast<float>(amp * std::sin(6.283185307179586 * freq * i / kRate));
  return s;
}

// The effect's noise floor, modelled independently: a congruential generator per channel,
// scaled to -90 dB (moved by a tenth of the trim) and coloured by an 850 Hz high shelf.
struct NoiseModel {
  NoiseModel(double trimDb, double drive, double rate) {
    level = std::exp((0.1 * trimDb - 90.0) * 0.1151292546497);
    shelf.setup(8, 850.0, rate, 0.2, (6.0 * drive - 40.0) * 0.25 - 14.0, true);
  }
  double Next() {
    seed = (3877 * seed + 29573) % 139968;
    const double u = seed * 2 * -7.144490169181527e-06 + 1.0;
    return shelf.filter(u * level);
  }
  int seed = 0;
  double level;
  RBJ shelf{};
};

// The start-up fade as the effect steps it: +0.0001 per frame while at or below 1.
struct FadeModel {
  double Next() {
    if (value <= 1.0) value += 0.0001;
    return value;
  }
  double value;
};

// The bypass ramp: the wet share moves towards 1 (or 0 when bypassed) by 1 % per frame.
struct RampModel {
  double Next(bool bypassed) {
    value = 0.99 * value + (bypassed ? 0.0 : 0.010000000000000009);
    return value;
  }
  double value = 0.0;
};

class RecordingGraphics : public IGraphics {
public:
  void SetControlFromPlug(int controlIdx, double value) override {
    lastControl = controlIdx;
    lastValue = value;
    ++calls;
  }
  int lastControl = -1;
  double lastValue = -1.0;
  int calls = 0;
};

}  // namespace

// With "Bypass" on from the start the wet share stays exactly 0, so silence in leaves nothing
// but the effect's own noise floor: the congruential generator at -90 dB through the 850 Hz
// high shelf, times the fade (1.0001 after Reset).
TEST(TarnNoiseFloor, SilenceInGivesTheShelvedNoiseExactly) {
  for (int channels : {1, 2}) {
    Host host(channels);
    host.Set(kBypass, 1.0);
    const auto out = host.Run(Constant(channels, 6000, 0.0f));
    NoiseModel noise(0.0, 0.0, kRate);
    for (int n = 0; n < 6000; ++n) {
      const float expected = static_cast<float>(noise.Next() * 1.0001);
      ASSERT_EQ(out[0][n], expected) << "channels " << channels << " frame " << n;
      if (channels == 2) {
        ASSERT_EQ(out[1][n], expected) << "frame " << n;
      }
    }
  }
}

TEST(TarnNoiseFloor, LevelFollowsTrimAndDrive) {
  auto rmsDb = [](const std::vector<float>& x) {
    double sum = 0.0;
    for (float v : x) sum += double(v) * v;
    return 10.0 * std::log10(sum / x.size());
  };
  double quietDb = 0.0;
  for (auto [trim, drive] : {std::pair{0.0, 0.0}, {20.0, 10.0}, {-20.0, 4.0}}) {
    Host host(2);
    host.Set(kInputTrim, trim);
    host.Set(kDrive, drive);
    const double measuredDb = rmsDb(host.Run(Constant(2, 48000, 0.0f))[0]);
    NoiseModel model(trim, drive, kRate);
    std::vector<float> modelled(48000);
    for (float& v : modelled) v = static_cast<float>(model.Next() * 1.0001);
    // Unbypassed, the saturator's own 1e-11 floor adds nothing measurable to the noise.
    EXPECT_NEAR(measuredDb, rmsDb(modelled), 0.01) << "trim " << trim << " drive " << drive;
    if (trim == 0.0) quietDb = measuredDb;
  }
  EXPECT_LT(quietDb, -110.0);
}

// From construction (no Reset) the fade rises from 0 over 10 000 frames; it scales both the
// input and the output, so a bypassed constant comes out as input * fade^2 plus faded noise.
TEST(TarnFade, RisesFromConstructionAndRestsAfterReset) {
  Host fresh(2, /*reset=*/false);
  fresh.Set(kBypass, 1.0);
  const auto out = fresh.Run(Constant(2, 12000, 0.5f));
  NoiseModel noise(0.0, 0.0, 44100.0);  // filters use the design rate, 44100 until a Reset
  FadeModel fade{0.0};
  for (int n = 0; n < 12000; ++n) {
    const double f = fade.Next();
    const double expected = (0.5 * (1.0 * f) + noise.Next()) * f;
    ASSERT_EQ(out[0][n], static_cast<float>(expected)) << "frame " << n;
  }
  EXPECT_GT(fade.value, 1.0);
  EXPECT_LT(fade.value, 1.0001 + 1e-9);

  Host reset(2);
  reset.Set(kBypass, 1.0);
  const auto settled = reset.Run(Constant(2, 100, 0.5f));
  NoiseModel noise2(0.0, 0.0, kRate);
  for (int n = 0; n < 100; ++n)
    ASSERT_EQ(settled[0][n], static_cast<float>((0.5 * 1.0001 + noise2.Next()) * 1.0001));
}

TEST(TarnClamp, OutputsAreHeldToTwentyBeforeNoiseAndFade) {
  Host host(2);
  host.Set(kBypass, 1.0);
  Signal in = {std::vector<float>(256, 100.0f), std::vector<float>(256, -1e6f)};
  const auto out = host.Run(in);
  NoiseModel noise(0.0, 0.0, kRate);
  for (int n = 0; n < 256; ++n) {
    const double w = noise.Next();
    ASSERT_EQ(out[0][n], static_cast<float>((20.0 + w) * 1.0001));
    ASSERT_EQ(out[1][n], static_cast<float>((-20.0 + w) * 1.0001));
  }

  Host wet(2);
  wet.Set(kDrive, 10.0);
  wet.Set(kOutputComp, 20.0);
  const auto loud = wet.Run(Sine(2, 24000, 100.0, 1000.0));
  for (const auto& ch : loud)
    for (float v : ch) ASSERT_LE(std::fabs(v), 20.0 * 1.0001 + 1e-3);
}

// Bypassed, the saturation goes but "Input Trim" and the noise stay.
TEST(TarnBypass, KeepsTheTrimmedDryInput) {
  Host host(2);
  host.Set(kInputTrim, 6.0);
  host.Set(kBypass, 1.0);
  const Signal in = Sine(2, 2000, 440.0, 0.25);
  const auto out = host.Run(in);
  NoiseModel noise(6.0, 0.0, kRate);
  const double g = std::exp(0.1151292546497 * 6.0) * 1.0001;
  for (int n = 0; n < 2000; ++n)
    ASSERT_EQ(out[0][n], static_cast<float>((in[0][n] * g + noise.Next()) * 1.0001));
}

// Two instances see the same saturator output; one is bypassed at frame kSwitch. Before and
// after, each output is wet * gain * mix + (1 - mix) * dry + noise, so the wet part recovered
// from the never-bypassed instance predicts the bypassed one through the ramp.
TEST(TarnBypass, CrossfadesWithTheOnePercentRamp) {
  constexpr int kSwitch = 4800;
  constexpr int kLength = 6000;
  const Signal in = Sine(2, kLength, 220.0, 0.3);
  Host steady(2), switched(2);
  const Signal head = {std::vector<float>(in[0].begin(), in[0].begin() + kSwitch),
                       std::vector<float>(in[1].begin(), in[1].begin() + kSwitch)};
  const Signal tail = {std::vector<float>(in[0].begin() + kSwitch, in[0].end()),
                       std::vector<float>(in[1].begin() + kSwitch, in[1].end())};
  const auto a1 = steady.Run(head), b1 = switched.Run(head);
  EXPECT_EQ(a1, b1);
  switched.Set(kBypass, 1.0);
  const auto a2 = steady.Run(tail), b2 = switched.Run(tail);

  NoiseModel noise(0.0, 0.0, kRate);
  RampModel rampA, rampB;
  for (int n = 0; n < kSwitch; ++n) {
    noise.Next();
    rampA.Next(false);
    rampB.Next(false);
  }
  int settledAt = -1;
  for (int n = 0; n < kLength - kSwitch; ++n) {
    const double f = 1.0001, w = noise.Next();
    const double dry = in[0][kSwitch + n] * f;
    const double mixA = rampA.Next(false), mixB = rampB.Next(true);
    const double wet = (a2[0][n] / f - w - (1.0 - mixA) * dry) / mixA;  // wet * output gain
    const double predicted = (wet * mixB + (1.0 - mixB) * dry + w) * f;
    ASSERT_NEAR(b2[0][n], predicted, 2e-6) << "frame " << n;
    if (settledAt < 0 && mixB < 0.01 * 0.99) settledAt = n;
  }
  EXPECT_NEAR(settledAt, 458, 2);  // the wet share is down to 1 % after about 458 frames
}

// The output gain carries a fixed -1.2 dB once "Output Compensation" has been set; until the
// first change arrives the constructed gain is plain 1.0.
TEST(TarnOutputGain, AppliesTheCompensationWithItsFixedTrim) {
  const Signal in = Sine(2, 8000, 330.0, 0.2);
  Host plain(2), zero(2), boosted(2);
  zero.Set(kOutputComp, 0.0);
  boosted.Set(kOutputComp, 6.0);
  const auto p = plain.Run(in), z = zero.Run(in), b = boosted.Run(in);
  NoiseModel noise(0.0, 0.0, kRate);
  RampModel ramp;
  for (int n = 0; n < 8000; ++n) {
    const double w = noise.Next(), mix = ramp.Next(false);
    if (n < 1000) continue;  // let the wet share rise
    const double dry = (1.0 - mix) * in[0][n] * 1.0001;
    const double wetP = p[0][n] / 1.0001 - w - dry;
    const double wetZ = z[0][n] / 1.0001 - w - dry;
    const double wetB = b[0][n] / 1.0001 - w - dry;
    if (std::fabs(wetP) < 1e-2) continue;
    ASSERT_NEAR(wetZ / wetP, 0.870963589956083, 2e-4) << "frame " << n;
    ASSERT_NEAR(wetB / wetZ, std::exp(6.0 * 0.1151292546497), 2e-4) << "frame " << n;
  }
}

// A mono instance runs the left channel of the stereo chain: with both stereo channels equal
// and the crosstalk off, the stereo left output is the mono output, sample for sample.
TEST(TarnChannels, MonoEqualsStereoLeftWithoutCrosstalk) {
  const Signal stereoIn = Sine(2, 9000, 150.0, 0.6);
  const Signal monoIn = {stereoIn[0]};
  for (double crosstalk : {-120.0, -119.9}) {
    Host mono(1), stereo(2);
    for (Host* h : {&mono, &stereo}) {
      h->Set(kDrive, 6.0);
      h->Set(kAsymmetry, 8.0);
      h->Set(kFreqResponse, -4.0);
      h->Set(kCrosstalk, crosstalk);
    }
    const auto m = mono.Run(monoIn), s = stereo.Run(stereoIn);
    if (crosstalk == -120.0) {
      EXPECT_EQ(m[0], s[0]);
      EXPECT_EQ(s[0], s[1]);
    } else {
      EXPECT_NE(m[0], s[0]) << "at -119.9 dB the leak is on";
    }
  }
}

TEST(TarnChannels, MonoWritesOnlyTheFirstOutput) {
  Host host(1);
  std::vector<double> in(64, 0.25), out0(64, 7.0), out1(64, 7.0), in1(64, 0.0);
  double* ins[2] = {in.data(), in1.data()};
  double* outs[2] = {out0.data(), out1.data()};
  host.effect().ProcessDoubleReplacing(ins, outs, 64);
  EXPECT_NE(out0, std::vector<double>(64, 7.0));
  EXPECT_EQ(out1, std::vector<double>(64, 7.0));
}

TEST(TarnChannels, ReportsTheLatencyOfItsOversampling) { EXPECT_EQ(Host(2).plug->GetLatency(), 6); }

TEST(TarnRender, BlockSizeNeverChangesTheOutput) {
  const Signal in = Sine(2, 20000, 97.0, 0.8);
  Signal reference;
  for (int block : {1, 64, 512, 4096}) {
    Host host(2);
    host.Set(kDrive, 7.5);
    host.Set(kAsymmetry, 2.0);
    host.Set(kFreqResponse, 3.0);
    host.Set(kCrosstalk, -70.0);
    host.Set(kInputTrim, 4.0);
    const auto out = host.Run(in, block);
    if (reference.empty()) reference = out;
    EXPECT_EQ(out, reference) << "block " << block;
  }
}

// Without an editor the needle is the meter's ballistics value. With one, the block's needle is
// scaled (+18 dB, or the RMS difference), compressed above the 0.638 mark, kept between 0.015
// and 0.98 and sent to the meter control.
TEST(TarnMeter, NeedleFollowsTheInputAndReachesTheEditor) {
  const double dc = 0.125;  // -18 dBFS
  constexpr int kFrames = 480000;  // long enough for the 0.24 s averaging to settle fully
  Host bare(2);
  bare.Run(Constant(2, kFrames, float(dc)));
  // The averaging low-pass has unity gain at DC; the fade after Reset is 1.0001.
  EXPECT_NEAR(bare.effect().GetNeedle(), dc * 1.0001, 1e-9);

  Host shown(2);
  auto* gui = new RecordingGraphics;
  shown.plug->AttachGraphics(gui);
  shown.effect().SetMeterControl(3);
  shown.Run(Constant(2, kFrames, float(dc)));
  const double scaled = dc * 1.0001 * std::exp(2.0723265836946);
  EXPECT_EQ(gui->lastControl, 3);
  EXPECT_EQ(gui->calls, (kFrames + 511) / 512);
  EXPECT_NEAR(gui->lastValue, 0.638 + (scaled - 0.638) * 0.43, 1e-8);
  EXPECT_EQ(shown.effect().GetNeedle(), gui->lastValue);

  shown.Run(Constant(2, kFrames, 0.0f));
  EXPECT_EQ(gui->lastValue, 0.015);  // silence rests above the end stop

  shown.Run(Constant(2, kFrames, 10.0f));
  EXPECT_EQ(gui->lastValue, 0.98);  // and a huge level below the other
}

// "RMS Difference Out-In": output over input in dB, read 3.95 dB low, so unity gain sits just
// below the scale's 0 mark; with no input at all the difference is undefined and shows 0.638.
TEST(TarnMeter, RmsDifferenceMode) {
  Host silent(2);
  auto* gui = new RecordingGraphics;
  silent.plug->AttachGraphics(gui);
  silent.Set(kVuMode, 1.0);
  silent.Run(Constant(2, 4096, 0.0f));
  EXPECT_EQ(gui->lastValue, 0.638);

  Host bypassed(2);
  auto* gui2 = new RecordingGraphics;
  bypassed.plug->AttachGraphics(gui2);
  bypassed.Set(kVuMode, 1.0);
  bypassed.Set(kBypass, 1.0);
  bypassed.Run(Sine(2, 96000, 1000.0, 0.5));
  // Bypassed, the output is the input times one more fade step of 1.0001.
  const double diffDb = 20.0 * std::log10(1.0001);
  EXPECT_NEAR(gui2->lastValue, std::pow(10.0, (diffDb - 3.95) / 20.0), 1e-6);
}

TEST(TarnRealTime, ProcessingAllocatesNothing) {
  for (int channels : {1, 2}) {
    Host host(channels);
    host.plug->SetBlockSize(4096);
    std::vector<float> buf(4 * 4096, 0.1f);
    float* ins[2] = {buf.data(), buf.data() + 4096};
    float* outs[2] = {buf.data() + 8192, buf.data() + 12288};
    for (int n : {1, 7, 64, 512, 4096}) {
      AllocationScope scope;
      host.plug->ProcessAudio(ins, outs, n);
      host.plug->ProcessAudioBypassed(ins, outs, n);
      EXPECT_EQ(scope.Count(), 0) << "channels " << channels << " block " << n;
    }
  }
}
