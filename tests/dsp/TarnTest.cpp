#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>

#include "DspTesting.h"
#include "RecordingControl.h"
#include "editor/HeadlessGraphics.h"

namespace {

constexpr double kFade = 1.0001;  // the fade rests at 1.0001 after Reset

Signal Constant(int channels, int n, float v) { return Signal(channels, std::vector<float>(n, v)); }

Signal Sine(int channels, int n, double freq, double amp) {
  std::vector<float> s(n);
  for (int i = 0; i < n; ++i) s[i] = float(amp * std::sin(kTwoPi * freq * i / kRate));
  return Signal(channels, s);
}

// A parameter as one line: name, kind, default, range, step, shape, unit, group, display of 0..2.
std::string Describe(const IParam* p) {
  char line[400], shown[3][64];
  for (int v = 0; v < 3; ++v) p->GetDisplayForHost(v, false, shown[v], true);
  std::snprintf(line, sizeof line, "%s|%d|%g|%g|%g|%g|%g|%s|%s|%s,%s,%s", p->GetNameForHost(),
                p->Type(), p->Value(), p->GetMin(), p->GetMax(), p->GetStep(), p->GetShape(),
                p->GetLabelForHost(), p->GetGroupForHost(), shown[0], shown[1], shown[2]);
  return line;
}

}  // namespace

// The eight parameters (kinds: 4 double, 3 enumeration, 1 boolean), the identity and channel
// layouts, and the one preset "-" holding the defaults as little-endian doubles.
TEST(TarnParams, TableIdentityAndDefaultPreset) {
  const std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  const char* expected[] = {"Input Trim|4|0|-20|20|0.1|1|dB||0.0,1.0,2.0",
                            "Drive|4|0|0|10|0.01|1|||0.00,1.00,2.00",
                            "Output Compensation|4|0|-20|20|0.1|1|dB||0.0,1.0,2.0",
                            "Asymmetry|4|5|0|10|0.01|1|||0.00,1.00,2.00",
                            "Freq Response|4|0|-10|10|0.1|1|||0.0,1.0,2.0",
                            "Crosstalk Level|4|-90|-120|-60|0.1|1|dB||0.0,1.0,2.0",
                            "VU Mode|3|0|0|2|1|1|||Input,RMS Difference Out-In,Output",
                            "Bypass|1|0|0|1|1|1|||off,on,2"};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(Describe(plug->GetParam(i)), expected[i]);
  int in1, out1, in2, out2;
  plug->GetChannelIO(0, &in1, &out1), plug->GetChannelIO(1, &in2, &out2);
  std::ostringstream identity;
  identity << plug->GetEffectName() << '|' << plug->GetProductName() << '|' << plug->GetMfrName()
           << '|' << plug->GetEffectVersion(false) << std::hex << '|' << plug->GetUniqueID() << '|'
           << plug->GetMfrID() << std::dec << '|' << plug->GetLatency() << '|'
           << plug->DoesStateChunks() << plug->IsInst() << plug->DoesMidi() << '|'
           << plug->NChannelIO() << ':' << in1 << out1 << in2 << out2 << '|' << plug->NPresets()
           << '|' << plug->GetPreset(0)->mName << '|' << plug->GetPreset(0)->mChunk.Size();
  ASSERT_EQ(identity.str(), "Tarn||Tessmoral|65536|5461726e|54734d72|6|000|2:1122|1|-|64");
  const double defaults[8] = {0, 0, 0, 5, 0, -90, 0, 0};
  EXPECT_EQ(std::memcmp(plug->GetPreset(0)->mChunk.GetBytes(), defaults, 64), 0);
}

// Bypassed silence leaves the floor: noise at 10^((0.1·trim - 90)/20) through the drive's 850 Hz
// shelf; from construction the fade rises 0.0001 per frame on input and output, ±20 clamp between.
TEST(TarnProcessor, NoiseFloorFadeAndClamp) {
  for (auto [drive, trim] : {std::pair(0.0, 0.0), std::pair(10.0, 20.0)}) {
    RBJ shelf{};
    shelf.setup(8, 850.0, kRate, 0.2, (6.0 * drive - 40.0) * 0.25 - 14.0, true);
    const Signal quiet =
        Host(2).Set(kBypass, 1).Set(kDrive, drive).Set(kInputTrim, trim).Run(Constant(2, 64, 0));
    for (int n = 0, seed = 29573; n < 64; ++n, seed = (3877 * seed + 29573) % 139968) {
      const double u = (1.0 - 2.0 * seed / 139968) * std::pow(10.0, (0.1 * trim - 90.0) / 20.0);
      EXPECT_FLOAT_EQ(quiet[0][n], shelf.filter(u) * kFade) << n;
    }
  }
  auto run = [](const Signal& in) { return Host(2, false).Set(kBypass, 1).Run(in); };
  const Signal floor = run(Constant(2, 12000, 0)), half = run(Constant(2, 12000, 0.5f)),
               loud = run({std::vector<float>(12000, 1e6f), std::vector<float>(12000, -1e6f)});
  for (int n : {0, 1, 4999, 9998, 9999, 10000, 11999}) {
    const double fade = std::min(n + 1, 10001) * 0.0001;
    EXPECT_NEAR(half[0][n] - floor[0][n], 0.5 * fade * fade, 2e-7) << n;
    EXPECT_FLOAT_EQ(loud[0][n], float(20.0 * fade + floor[0][n])) << n;
    EXPECT_FLOAT_EQ(loud[1][n], float(-20.0 * fade + floor[1][n])) << n;
  }
}

// "Output Compensation" scales the wet signal with a fixed -1.2 dB; bypass drops the wet share
// by 0.99 per frame (against a never-bypassed twin) and keeps "Input Trim" on the dry path.
TEST(TarnProcessor, BypassRampTrimAndOutputGain) {
  const double plus6 = std::pow(10, 0.3);  // +6 dB of trim on every run, and of compensation
  const Signal in = Sine(2, 6000, 220.0, 0.3),
               floor = Host(2).Set(kBypass, 1).Set(kInputTrim, 6).Run(Constant(2, 6000, 0));
  const Signal plain = Host(2).Set(kInputTrim, 6).Run(in),
               six = Host(2).Set(kInputTrim, 6).Set(kOutputComp, 6).Run(in);
  Host host(2);  // bypassed from frame 4800 on
  const auto b = host.Run(in, 512, 4800, [&](int k) { host.Set(kInputTrim, 6).Set(kBypass, k); });
  for (int n = 2000; n < 6000; ++n) {
    const double dry = in[0][n] * plus6 * kFade, wet = (plain[0][n] - floor[0][n]) / kFade;
    if (std::fabs(wet) > 1e-2 && n < 4800) {
      ASSERT_NEAR((six[0][n] - floor[0][n]) / kFade / wet, 0.870963589956083 * plus6, 4e-4) << n;
    }
    if (n < 4800 || std::fabs(wet - dry) < 0.05) continue;
    const double mix = ((b[0][n] - floor[0][n]) / kFade - dry) / (wet - dry);
    ASSERT_NEAR(mix, std::pow(0.99, n - 4799), 1e-4) << n;
  }
}

// Mono is the stereo chain's left side at any controls: equal inputs give it on both sides with
// the crosstalk off at -120 dB, not when on at -119.9. A mono instance writes only output 0.
TEST(TarnProcessor, MonoStereoAndCrosstalk) {
  const Signal in = Sine(2, 9000, 150.0, 1.5);
  for (double xt : {-120.0, -119.9}) {
    const Signal m = Automated(in, 1, 512, xt), s = Automated(in, 2, 512, xt);
    EXPECT_EQ(std::tuple(m[0] == s[0], s[0] == s[1], m[1] == s[2]),
              std::tuple(xt == -120.0, xt == -120.0, true));  // the meter reads the same input
  }
  std::vector<double> out0(64, 0.25), out1(64, 7.0);
  double *ins[2] = {out0.data(), out0.data()}, *outs[2] = {out0.data(), out1.data()};
  Host(1).effect().ProcessDoubleReplacing(ins, outs, 64);
  EXPECT_EQ(out1, std::vector<double>(64, 7.0));
}

// The needle: the ballistics (unity at DC) +18 dB, 0.43 above 0.638, within 0.015..0.98, sent
// once per block; mode 2 reads the (DC-free) output, mode 1 output over input 3.95 dB low.
TEST(TarnProcessor, Meter) {
  Host host(2);
  auto* editor = new HeadlessGraphics(host.plug.get(), 10, 10);
  RecordingControl* controls[4];
  for (auto*& c : controls) editor->AttachControl(c = new RecordingControl(host.plug.get(), -1));
  RecordingControl* gui = controls[3];
  host.plug->AttachGraphics(editor), host.effect().SetMeterControl(3);
  host.Set(kVuMode, 1).Run(Constant(2, 4096, 0.0f));  // no level at all: no difference to show
  EXPECT_EQ(gui->last, 0.638);
  host.Set(kBypass, 1).Run(Sine(2, 96000, 1000.0, 0.5));
  EXPECT_NEAR(gui->last, std::pow(10.0, (20 * std::log10(kFade) - 3.95) / 20.0), 1e-5);
  const double dc = 0.125, up = 0.638 + (dc * kFade * std::pow(10, 0.9) - 0.638) * 0.43;
  const std::tuple<int, double, double> steps[] = {
      {0, dc, up}, {0, 0, .015}, {0, 10, .98}, {2, dc, .015}};
  for (auto [mode, level, needle] : steps) {
    host.Set(kBypass, 0).Set(kVuMode, mode).Run(Constant(2, 480000, level));
    EXPECT_NEAR(gui->last, needle, 1e-8) << mode << " " << level;
  }
  EXPECT_EQ(gui->calls + controls[0]->calls + controls[2]->calls, 8 + 188 + 4 * 938);
  EXPECT_EQ(controls[0]->calls + controls[2]->calls, 0);
}

// The drift's generator gives rand() as a never-seeded process sees it; a separate program
// prints that, so nothing here can have drawn from it first.
TEST(SystemRand, MatchesAFreshProcess) {
  FILE* pipe = popen(TARN_FRESH_RAND, "r");
  ASSERT_NE(pipe, nullptr);
  SystemRand random;
  int expected = 0, count = 0;
  for (; std::fscanf(pipe, "%d", &expected) == 1; ++count) ASSERT_EQ(random.next(), expected);
  EXPECT_EQ(std::pair(pclose(pipe), count), std::pair(0, 2000));
}
