// The renderer with the real Tarn plug-in: the parameter table and state it reads from the
// plug-in, the host path it drives, and the program end to end.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>

#include "AllocationCounter.h"
#include "DemoSignal.h"
#include "EffectSession.h"
#include "ParamLookup.h"
#include "RenderTestFiles.h"
#include "TarnRender.h"

using render::EffectSession;
using render::ParamInfo;

namespace {

std::vector<double> StateValues(const std::vector<unsigned char>& state) {
  std::vector<double> values(state.size() / 8);
  std::memcpy(values.data(), state.data(), values.size() * 8);
  return values;
}

std::vector<unsigned char> StateOf(const std::vector<double>& values) {
  std::vector<unsigned char> state(values.size() * 8);
  std::memcpy(state.data(), values.data(), state.size());
  return state;
}

// The first nFrames of the demo signal through a fresh session at Drive 5, in blocks of
// blockFrames; the output interleaved.
std::vector<float> RenderDemo(int blockFrames, int nFrames) {
  EffectSession session;
  session.RestoreState(session.SaveState());
  session.SetParameter(1, 5.0);
  session.Prepare(48000.0, 2, blockFrames);
  std::vector<float> inL(blockFrames), inR(blockFrames), outL(blockFrames), outR(blockFrames), all;
  float* in[] = {inL.data(), inR.data()};
  float* out[] = {outL.data(), outR.data()};
  for (int start = 0; start < nFrames; start += blockFrames) {
    const int n = std::min(blockFrames, nFrames - start);
    for (int i = 0; i < n; ++i) render::DemoSignal::Frame(start + i, &inL[i], &inR[i]);
    session.Process(in, out, n);
    for (int i = 0; i < n; ++i) {
      all.push_back(outL[i]);
      all.push_back(outR[i]);
    }
  }
  return all;
}

}  // namespace

TEST(EffectSession, ParameterTableComesFromThePlugIn) {
  EffectSession session;
  const std::vector<ParamInfo> table = session.Params();
  ASSERT_EQ(table.size(), 8u);
  const char* names[] = {"Input Trim", "Drive",         "Output Compensation",
                         "Asymmetry",  "Freq Response", "Crosstalk Level",
                         "VU Mode",    "Bypass"};
  const double ranges[][2] = {{-20, 20}, {0, 10},     {-20, 20}, {0, 10},
                              {-10, 10}, {-120, -60}, {0, 2},    {0, 1}};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(table[i].name, names[i]);
    EXPECT_EQ(table[i].min, ranges[i][0]) << names[i];
    EXPECT_EQ(table[i].max, ranges[i][1]) << names[i];
  }
  EXPECT_EQ(table[6].displayTexts,
            (std::vector<std::string>{"Input", "RMS Difference Out-In", "Output"}));
  EXPECT_EQ(table[7].displayTexts, (std::vector<std::string>{"off", "on"}));
  int value = -1;
  EXPECT_TRUE(table[6].mapDisplayText("Output", &value));
  EXPECT_EQ(value, 2);
}

TEST(EffectSession, ShortKeysAndTextsResolveAgainstThePlugInsTable) {
  EffectSession session;
  const std::vector<ParamInfo> table = session.Params();
  const char* keys[] = {"trim", "drive",     "output", "asymmetry",
                        "freq", "crosstalk", "vumode", "bypass"};
  for (int i = 0; i < 8; ++i) {
    std::string error;
    EXPECT_EQ(render::FindParam(table, keys[i], &error), i) << keys[i] << ": " << error;
  }
  render::ParamSetting setting;
  std::string warning, error;
  ASSERT_TRUE(
      render::ResolveParam(table, {"vumode", "RMS Difference Out-In"}, &setting, &warning, &error))
      << error;
  EXPECT_EQ(setting.value, 1.0);
  ASSERT_TRUE(render::ResolveParam(table, {"bypass", "on"}, &setting, &warning, &error)) << error;
  EXPECT_EQ(setting.value, 1.0);
}

TEST(EffectSession, StateIsSixtyFourBytesOfPlainValues) {
  EffectSession session;
  const std::vector<unsigned char> state = session.SaveState();
  ASSERT_EQ(state.size(), 64u);
  EXPECT_EQ(StateValues(state), (std::vector<double>{0, 0, 0, 5, 0, -90, 0, 0}));
}

TEST(EffectSession, AutomationAndRestoredStatesAreClampedIntoRange) {
  EffectSession session;
  session.SetParameter(1, 12.0);
  session.SetParameter(5, -130.0);
  session.SetParameter(4, 2.5);
  EXPECT_EQ(StateValues(session.SaveState()), (std::vector<double>{0, 10, 0, 5, 2.5, -120, 0, 0}));
  ASSERT_EQ(session.RestoreState(StateOf({1, 99, -3, 0.5, -11, -70, 2, 1})), "");
  EXPECT_EQ(StateValues(session.SaveState()),
            (std::vector<double>{1, 10, -3, 0.5, -10, -70, 2, 1}));
}

// A state that is not whole is refused as a whole: the session keeps the one it had.
TEST(EffectSession, RestoreRefusesStatesThatAreNotWhole) {
  const struct {
    std::vector<unsigned char> state;
    const char* problem;
  } cases[] = {
      {StateOf({1, 2, 3, 4, 5, -70, NAN, 0}), "holds NaN for \"VU Mode\""},
      {StateOf({1, INFINITY, 3, 4, 5, -70, 1, 0}), "holds +infinity for \"Drive\""},
      {StateOf({1, 2, 3, 4, 5, -INFINITY, 1, 0}), "holds -infinity for \"Crosstalk Level\""},
      {std::vector<unsigned char>(63), "is 63 bytes; a state is 64 bytes"},
  };
  for (const auto& c : cases) {
    EffectSession session;
    session.SetParameter(1, 7.0);
    const std::vector<unsigned char> before = session.SaveState();
    EXPECT_EQ(session.RestoreState(c.state), c.problem);
    EXPECT_EQ(session.SaveState(), before) << c.problem;
  }
}

TEST(EffectSession, OutputDoesNotDependOnTheBlockSize) {
  const int frames = 20000;
  const std::vector<float> reference = RenderDemo(512, frames);
  EXPECT_EQ(RenderDemo(1, frames), reference);
  EXPECT_EQ(RenderDemo(333, frames), reference);
  EXPECT_EQ(RenderDemo(render::kMaxBlockFrames, frames), reference);
}

TEST(EffectSession, ProcessingAllocatesNothing) {
  EffectSession session;
  session.RestoreState(session.SaveState());
  session.Prepare(44100.0, 2, 256);
  std::vector<float> l(256, 0.25f), r(256, 0.25f), outL(256), outR(256);
  float* in[] = {l.data(), r.data()};
  float* out[] = {outL.data(), outR.data()};
  AllocationScope scope;
  for (int i = 0; i < 20; ++i) session.Process(in, out, i == 19 ? 100 : 256);
  EXPECT_EQ(scope.Count(), 0);
  EXPECT_TRUE(std::isfinite(session.Needle()));
  EXPECT_GT(session.Needle(), 0.0);
}

// With Bypass on from the start the wet share never rises, so the output is the trimmed input
// (times the resting fade of 1.0001 at input and at output) plus the faint noise floor.
TEST(EffectSession, BypassedMonoRenderIsTheTrimmedInput) {
  render_test::TempDir dir;
  render_test::WorkingFolder here(dir.Path());
  render_test::Sound input;
  input.nChannels = 1;
  input.sampleRate = 44100;
  for (int i = 0; i < 5000; ++i)
    input.samples.push_back(static_cast<float>(0.5 * std::sin(0.01 * i)));
  render_test::WriteSound("in.wav", input, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  std::ostringstream out, err;
  const render::Console console{out, err, false};
  const int status =
      render::RunTarnRender({"in.wav", "-p", "bypass=on", "-p", "trim=-6.020599913279624"},
                            render::MakeTarnEffect, console, [] { return false; });
  ASSERT_EQ(status, 0) << err.str();
  const render_test::Sound rendered = render_test::ReadSound("in-tarn.wav");
  ASSERT_EQ(rendered.nChannels, 1);
  ASSERT_EQ(rendered.samples.size(), input.samples.size());
  for (std::size_t i = 0; i < input.samples.size(); ++i) {
    ASSERT_NEAR(rendered.samples[i], input.samples[i] * 0.5 * 1.0001 * 1.0001, 1e-4)
        << "frame " << i;
  }
  EXPECT_NE(out.str().find("needle"), std::string::npos);
}

TEST(EffectSession, DemoRenderEndToEnd) {
  render_test::TempDir dir;
  render_test::WorkingFolder here(dir.Path());
  std::ostringstream out, err;
  const render::Console console{out, err, false};
  ASSERT_EQ(render::RunTarnRender({"-p", "drive=6", "--save-state", "s.state"},
                                  render::MakeTarnEffect, console, [] { return false; }),
            0)
      << err.str();
  const render_test::Sound rendered = render_test::ReadSound("tarn-demo.wav");
  EXPECT_EQ(rendered.nChannels, 2);
  EXPECT_EQ(rendered.sampleRate, 48000);
  EXPECT_EQ(rendered.NFrames(), render::DemoSignal::kFrames);
  float peak = 0.0f;
  for (float x : rendered.samples) {
    ASSERT_TRUE(std::isfinite(x));
    peak = std::max(peak, std::fabs(x));
  }
  EXPECT_GT(peak, 0.01f);
  EXPECT_LE(peak, 20.1f);
  EXPECT_EQ(StateValues(render_test::ReadBytes("s.state")),
            (std::vector<double>{0, 6, 0, 5, 0, -90, 0, 0}));
}

// The same command gives the same file to the byte, run twice or in any block size.
TEST(EffectSession, RendersAreReproducibleToTheByte) {
  render_test::TempDir dir;
  render_test::WorkingFolder here(dir.Path());
  std::ostringstream out, err;
  const render::Console console{out, err, false};
  auto render = [&](const std::string& block, const std::string& name) {
    const int status = render::RunTarnRender(
        {"-p", "drive=7", "-p", "asymmetry=3", "-p", "crosstalk=-65", "--block", block, "-o", name},
        render::MakeTarnEffect, console, [] { return false; });
    EXPECT_EQ(status, 0) << err.str();
    return render_test::ReadBytes(name);
  };
  const std::vector<unsigned char> reference = render("512", "first.wav");
  ASSERT_GT(reference.size(), 44u);
  EXPECT_EQ(render("512", "again.wav"), reference);
  for (const char* block : {"1", "64", "4096"}) {
    EXPECT_EQ(render(block, std::string("block") + block + ".wav"), reference) << "block " << block;
  }
}

// A NaN or infinity in the input (in the last channel only: at the start of a block, and across a
// block boundary) is rendered as if it had been silence, and the summary says how many there were
// and where.
TEST(EffectSession, NonFiniteInputRendersAsSilenceWithAWarning) {
  const float kNaN = std::nanf(""), kInf = INFINITY;
  const struct {
    int nChannels, frame;
    std::vector<float> burst;  // from `frame` on
    const char* warning;
  } cases[] = {
      {1,
       1024,
       {kNaN},
       "warning: 1 input sample was not a finite number (NaN or infinity) and was replaced with "
       "0.0, at frame 1024\n"},
      {2,
       1020,
       {kNaN, kInf, -kInf, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, kInf},
       "warning: 10 input samples were not finite numbers (NaN or infinity) and were replaced with "
       "0.0; the first at frame 1020\n"},
  };
  render_test::TempDir dir;
  render_test::WorkingFolder here(dir.Path());
  for (const auto& c : cases) {
    render_test::Sound zeros{c.nChannels, 44100, 0, {}};
    for (int i = 0; i < 4000 * c.nChannels; ++i)
      zeros.samples.push_back(0.5f * std::sin(0.03f * i));
    render_test::Sound burst = zeros;
    for (std::size_t i = 0; i < c.burst.size(); ++i) {
      burst.samples[(c.frame + 1 + i) * c.nChannels - 1] = c.burst[i];
      zeros.samples[(c.frame + 1 + i) * c.nChannels - 1] = 0.0f;
    }
    std::ostringstream out, err;
    for (const auto* sound : {&zeros, &burst}) {
      const std::string name = sound == &zeros ? "zeros.wav" : "burst.wav";
      render_test::WriteSound(name, *sound, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
      ASSERT_EQ(
          render::RunTarnRender({name, "-p", "drive=6", "--block", "256"}, render::MakeTarnEffect,
                                render::Console{out, err, false}, [] { return false; }),
          0)
          << err.str();
    }
    EXPECT_EQ(render_test::ReadBytes("burst-tarn.wav"), render_test::ReadBytes("zeros-tarn.wav"));
    EXPECT_NE(out.str().find(c.warning), std::string::npos) << out.str();
  }
}
