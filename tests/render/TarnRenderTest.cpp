// The whole program, driven with a stand-in effect: what it writes, in what order it asks the
// effect for what, and that every bad input fails with one line and leaves no file behind.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "DemoSignal.h"
#include "FakeEffect.h"
#include "RenderTestFiles.h"
#include "TarnRender.h"

using render_test::FakeEffect;
using render_test::Sound;

namespace {

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class TarnRender : public ::testing::Test {
 protected:
  TarnRender() : mHere(mDir.Path()) {
    // in.wav: 1050 frames of a mono square wave of +-0.5 at 44.1 kHz, exact in 16 bits.
    mInput.nChannels = 1;
    mInput.sampleRate = 44100;
    for (int i = 0; i < 1050; ++i) mInput.samples.push_back((i / 25) % 2 ? -0.5f : 0.5f);
    render_test::WriteSound("in.wav", mInput);
    mInput = render_test::ReadSound("in.wav");  // the samples as the renderer will read them
  }

  Result Run(
      const std::vector<std::string>& args,
      std::function<bool()> interrupted = [] { return false; }) {
    std::ostringstream out, err;
    const render::Console console{out, err, false};
    FakeEffect::Log* log = &mLog;
    const render::EffectFactory factory = [log](std::string*) {
      return std::make_unique<FakeEffect>(log);
    };
    Result r;
    r.status = render::RunTarnRender(args, factory, console, interrupted);
    r.out = out.str();
    r.err = err.str();
    return r;
  }

  std::vector<float> Scaled(float gain) const {
    std::vector<float> s = mInput.samples;
    for (float& x : s) x *= gain;
    return s;
  }

  render_test::TempDir mDir;
  render_test::WorkingFolder mHere;
  Sound mInput;
  FakeEffect::Log mLog;
};

TEST_F(TarnRender, RendersTheDemoSignalWhenNoInputIsGiven) {
  const Result r = Run({});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(mDir.List(), (std::vector<std::string>{"in.wav", "tarn-demo.wav"}));
  const Sound out = render_test::ReadSound("tarn-demo.wav");
  EXPECT_EQ(out.nChannels, 2);
  EXPECT_EQ(out.sampleRate, 48000);
  EXPECT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  ASSERT_EQ(out.NFrames(), render::DemoSignal::kFrames);
  float left = 0.0f, right = 0.0f;
  render::DemoSignal::Frame(100000, &left, &right);
  EXPECT_EQ(out.samples[200000], left);  // the fake's default gain is 1
  EXPECT_EQ(out.samples[200001], right);
  EXPECT_TRUE(Contains(r.out, "tarn-demo.wav") && Contains(r.out, "stereo, 48000 Hz")) << r.out;
  EXPECT_TRUE(Contains(r.out, "288000 frames, 6.000 s")) << r.out;
  EXPECT_EQ(r.err, "");  // not a terminal: no progress
}

TEST_F(TarnRender, AsksTheEffectInTheOrderAHostRestoringASessionWould) {
  const Result r =
      Run({"in.wav", "-p", "gain=0.5", "-p", "mode=C", "-p", "Mode=1", "--block", "100"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(mLog.calls, (std::vector<std::string>{"restore 1 0", "set 0 0.5", "set 1 2", "set 1 1",
                                                  "prepare 44100 1 100"}));
  std::vector<int> blocks(10, 100);
  blocks.push_back(50);  // the last block is short
  EXPECT_EQ(mLog.blocks, blocks);
  const Sound out = render_test::ReadSound("in-tarn.wav");
  EXPECT_EQ(out.nChannels, 1);
  EXPECT_EQ(out.sampleRate, 44100);
  EXPECT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  EXPECT_EQ(out.samples, Scaled(0.5f));
}

TEST_F(TarnRender, SummaryGivesLevelsNeedleAndTiming) {
  const Result r = Run({"in.wav", "-p", "gain=0.5"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Contains(r.out, "input:  in.wav (mono, 44100 Hz)")) << r.out;
  EXPECT_TRUE(Contains(r.out, "output: in-tarn.wav")) << r.out;
  // A square wave of +-0.5 reads 20 log10(0.5) = -6.02 dB peak and RMS; halved, -12.04.
  EXPECT_TRUE(Contains(r.out, "input   mono        -6.02      -6.02")) << r.out;
  EXPECT_TRUE(Contains(r.out, "output  mono       -12.04     -12.04")) << r.out;
  EXPECT_TRUE(Contains(r.out, "needle: 0.125000")) << r.out;
  EXPECT_TRUE(Contains(r.out, "1050 frames, 0.024 s of audio")) << r.out;
  EXPECT_TRUE(Contains(r.out, "times real time")) << r.out;
}

TEST_F(TarnRender, RateChangesOnlyTheEffectsRate) {
  const Result r = Run({"in.wav", "--rate", "96000", "-o", "fast.wav"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(mLog.calls.back(), "prepare 96000 1 512");
  EXPECT_EQ(render_test::ReadSound("fast.wav").sampleRate, 44100);
  EXPECT_TRUE(Contains(r.out, "effect ran at 96000 Hz")) << r.out;
  EXPECT_TRUE(Contains(r.out, "1050 frames, 0.024 s of audio")) << r.out;  // at the file's rate
}

// The effect is stable only at 8000 to 768000 Hz; files at other rates are refused.
TEST_F(TarnRender, RendersFilesOnlyAtTheSupportedRates) {
  for (int rate : {7999, 8000, 768000, 768001}) {
    Sound sound = mInput;
    sound.sampleRate = rate;
    render_test::WriteSound("rate.wav", sound);
    const Result r = Run({"rate.wav", "-o", "out.wav"});
    const bool supported = rate == 8000 || rate == 768000;
    EXPECT_EQ(r.status, supported ? 0 : render::kExitFailure) << r.err;
    EXPECT_EQ(std::remove("out.wav") == 0, supported) << rate;
    EXPECT_EQ(Contains(r.err, "\"rate.wav\" is at " + std::to_string(rate) +
                                  " Hz; the supported rates are 8000 to 768000 Hz"),
              !supported)
        << r.err;
  }
}

TEST_F(TarnRender, SavesTheStateAfterTheSettingsAndLoadsItBeforeThem) {
  ASSERT_EQ(Run({"in.wav", "-p", "gain=1.5", "-p", "mode=B", "--save-state", "s.state"}).status, 0);
  EXPECT_EQ(render_test::ReadBytes("s.state"), FakeEffect::State(1.5, 1.0));

  render_test::WriteBytes("l.state", FakeEffect::State(0.25, 2.0));
  mLog = {};
  const Result r = Run({"in.wav", "--load-state", "l.state", "-p", "mode=A", "-o", "loaded.wav"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(mLog.calls,
            (std::vector<std::string>{"restore 0.25 2", "set 1 0", "prepare 44100 1 512"}));
  EXPECT_EQ(render_test::ReadSound("loaded.wav").samples, Scaled(0.25f));
}

TEST_F(TarnRender, OutOfRangeSettingsAreClampedWithAWarning) {
  const Result r = Run({"in.wav", "-p", "gain=5"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Contains(r.err, "warning") && Contains(r.err, "\"Output Gain\" 5") &&
              Contains(r.err, "0 to 2"))
      << r.err;
  EXPECT_EQ(render_test::ReadSound("in-tarn.wav").samples, Scaled(2.0f));
}

TEST_F(TarnRender, ReplacesAnExistingOutput) {
  render_test::WriteBytes("in-tarn.wav", {'o', 'l', 'd'});
  ASSERT_EQ(Run({"in.wav", "--quiet"}).status, 0);
  EXPECT_EQ(render_test::ReadSound("in-tarn.wav").samples, mInput.samples);
}

bool IsKind(const char* path, mode_t kind) {
  struct stat st {};
  return lstat(path, &st) == 0 && (st.st_mode & S_IFMT) == kind;
}

// A FIFO (like a character device) is written to directly, not replaced by a file, and only by
// a run that gets as far as rendering. The reading ends are opened read-write, so that neither
// side waits for the other, and the pipes' buffers hold all of this short render.
TEST_F(TarnRender, WritesIntoFifosInsteadOfReplacingThem) {
  ASSERT_EQ(Run({"in.wav", "-o", "file.wav", "--save-state", "file.state"}).status, 0);
  std::vector<int> readers;
  for (const char* fifo : {"out.fifo", "state.fifo"}) {
    ASSERT_EQ(mkfifo(fifo, 0644), 0);
    readers.push_back(open(fifo, O_RDWR | O_NONBLOCK));
  }
  for (const char* setting : {"volume=1", "gain=1"}) {  // refused, then accepted
    const Result r = Run({"in.wav", "-o", "out.fifo", "--save-state", "state.fifo", "-p", setting});
    EXPECT_EQ(r.status == 0, setting[0] == 'g') << r.err;
  }
  EXPECT_EQ(render_test::Drain(readers[0]), render_test::ReadBytes("file.wav"));
  EXPECT_EQ(render_test::Drain(readers[1]), render_test::ReadBytes("file.state"));
  for (int fd : readers) close(fd);
  EXPECT_TRUE(IsKind("out.fifo", S_IFIFO) && IsKind("state.fifo", S_IFIFO));
  EXPECT_EQ(mDir.List(), (std::vector<std::string>{"file.state", "file.wav", "in.wav", "out.fifo",
                                                   "state.fifo"}));
}

// A link given as output, a chain of them or one to a file not there yet, stays a link: the file
// it ends at is replaced, atomically and in its own folder.
TEST_F(TarnRender, WritesThroughLinksAndKeepsThem) {
  ASSERT_EQ(mkdir("sub", 0755), 0);
  const char* links[][2] = {{"sub/old.wav", "link.wav"},
                            {"link.wav", "chain.wav"},
                            {"old.wav", "sub/relative.wav"},
                            {"sub/new.wav", "dangling.wav"}};
  for (const auto& link : links) ASSERT_EQ(symlink(link[0], link[1]), 0);
  for (const char* output : {"chain.wav", "sub/relative.wav", "dangling.wav"}) {
    render_test::WriteBytes("sub/old.wav", {'o', 'l', 'd'});
    const Result r = Run({"in.wav", "-o", output});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(render_test::ReadSound(output).samples, mInput.samples) << output;
  }
  for (const auto& link : links) EXPECT_TRUE(IsKind(link[1], S_IFLNK)) << link[1];
  EXPECT_EQ(mDir.List(),
            (std::vector<std::string>{"chain.wav", "dangling.wav", "in.wav", "link.wav", "sub"}));
  EXPECT_EQ(render_test::ListFolder("sub"),
            (std::vector<std::string>{"new.wav", "old.wav", "relative.wav"}));
}

TEST_F(TarnRender, HelpListsTheEffectsParameters) {
  const Result r = Run({"--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_TRUE(Contains(r.out, "usage: tarn-render")) << r.out;
  EXPECT_TRUE(Contains(r.out, "\"Output Gain\": 0 to 2")) << r.out;
  EXPECT_TRUE(Contains(r.out, "\"Mode\": 0 to 2 or \"A\", \"B\", \"C\"")) << r.out;
  EXPECT_EQ(mDir.List(), std::vector<std::string>{"in.wav"});
}

// Each bad input: a non-zero status, one line naming the culprit, no new file and the input
// untouched.
struct BadInput {
  std::string name;
  std::vector<std::string> args;
  std::string named;  // what the message must contain
};

void PrintTo(const BadInput& bad, std::ostream* os) { *os << bad.name; }

class TarnRenderBadInput : public TarnRender, public ::testing::WithParamInterface<BadInput> {};

TEST_P(TarnRenderBadInput, FailsWithOneLineAndLeavesNoFile) {
  render_test::WriteBytes("notes.txt", {'h', 'i', '\n'});
  Sound three;
  three.nChannels = 3;
  three.sampleRate = 48000;
  three.samples.assign(30, 0.1f);
  render_test::WriteSound("three.wav", three);
  Sound empty;
  empty.nChannels = 1;
  empty.sampleRate = 48000;
  render_test::WriteSound("empty.wav", empty);
  render_test::WriteBytes("short.state", std::vector<unsigned char>(15, 0));
  render_test::WriteBytes("good.state", FakeEffect::State(1.0, 0.0));
  render_test::WriteBytes("nan.state", FakeEffect::State(NAN, 0.0));
  const std::vector<std::string> before = mDir.List();
  const std::vector<unsigned char> input = render_test::ReadBytes("in.wav");

  const Result r = Run(GetParam().args);
  EXPECT_NE(r.status, 0);
  EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
  EXPECT_TRUE(Contains(r.err, GetParam().named)) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(mDir.List(), before);
  EXPECT_EQ(render_test::ReadBytes("in.wav"), input);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TarnRenderBadInput,
    ::testing::Values(
        BadInput{"MissingInput", {"missing.wav"}, "\"missing.wav\""},
        BadInput{"TextInput", {"notes.txt"}, "\"notes.txt\""},
        BadInput{"ThreeChannels", {"three.wav"}, "\"three.wav\" has 3 channels"},
        BadInput{"ZeroFrames", {"empty.wav"}, "\"empty.wav\" contains no audio"},
        BadInput{"UnknownParameter", {"in.wav", "-p", "volume=1"}, "\"volume\""},
        BadInput{"NonNumericValue", {"in.wav", "-p", "gain=loud"}, "\"loud\""},
        BadInput{"UnknownDisplayText", {"in.wav", "-p", "mode=D"}, "\"D\""},
        BadInput{"SettingWithoutValue", {"in.wav", "-p", "gain"}, "\"gain\""},
        BadInput{"BlockZero", {"in.wav", "--block", "0"}, "\"0\""},
        BadInput{"BlockAboveLimit", {"in.wav", "--block", "8193"}, "\"8193\""},
        BadInput{"RateZero", {"in.wav", "--rate", "0"}, "\"0\""},
        BadInput{"RateBelowLimit", {"in.wav", "--rate", "7999"}, "\"7999\""},
        BadInput{"RateAboveLimit", {"in.wav", "--rate", "768001"}, "\"768001\""},
        BadInput{"RateNotANumber", {"in.wav", "--rate", "fast"}, "\"fast\""},
        BadInput{"OutputIsInput", {"in.wav", "-o", "./in.wav"}, "\"./in.wav\""},
        BadInput{"OutputIsInputSpelledDifferently",
                 {"./in.wav", "-o", "sub/../in.wav"},
                 "\"sub/../in.wav\""},
        BadInput{"SavedStateOverInput", {"in.wav", "--save-state", "in.wav"}, "\"in.wav\""},
        BadInput{"SavedStateOverOutput",
                 {"in.wav", "-o", "x.wav", "--save-state", "./x.wav"},
                 "\"./x.wav\""},
        BadInput{"OutputOverLoadedState",
                 {"in.wav", "--load-state", "good.state", "-o", "good.state"},
                 "\"good.state\""},
        BadInput{"StateHoldingNaN",
                 {"in.wav", "--load-state", "nan.state", "--save-state", "s.state"},
                 "state file \"nan.state\" holds NaN for \"Output Gain\""},
        BadInput{"StateOfWrongSize",
                 {"in.wav", "--load-state", "short.state"},
                 "\"short.state\" is 15 bytes"},
        BadInput{"MissingState", {"in.wav", "--load-state", "none.state"}, "\"none.state\""},
        BadInput{
            "OutputFolderMissing", {"in.wav", "-o", "nofolder/out.wav"}, "\"nofolder/out.wav\""},
        BadInput{"StateFolderMissing",
                 {"in.wav", "--save-state", "nofolder/s.state"},
                 "\"nofolder/s.state\""},
        BadInput{"OutputIsAFolder", {"in.wav", "-o", "."}, "folder"},
        BadInput{"UnknownOption", {"in.wav", "--bogus"}, "\"--bogus\""},
        BadInput{"MissingOptionValue", {"in.wav", "-o"}, "\"-o\" needs a value"}),
    [](const ::testing::TestParamInfo<BadInput>& info) { return info.param.name; });

TEST_F(TarnRender, AnEffectThatCannotBeMadeLeavesNoFile) {
  std::ostringstream out, err;
  const render::Console console{out, err, false};
  const render::EffectFactory none =
      [](std::string* error) -> std::unique_ptr<render::RenderEffect> {
    *error = "no effect here";
    return nullptr;
  };
  EXPECT_EQ(render::RunTarnRender({"in.wav"}, none, console, [] { return false; }),
            render::kExitFailure);
  EXPECT_EQ(err.str(), "tarn-render: no effect here\n");
  EXPECT_EQ(mDir.List(), std::vector<std::string>{"in.wav"});
}

TEST_F(TarnRender, AnInterruptedRenderLeavesNoFile) {
  int polls = 0;
  const Result r =
      Run({"in.wav", "--block", "10", "--save-state", "s.state"}, [&polls] { return ++polls > 3; });
  EXPECT_EQ(r.status, render::kExitFailure);
  EXPECT_TRUE(Contains(r.err, "interrupted")) << r.err;
  EXPECT_EQ(mLog.blocks.size(), 3u);
  EXPECT_EQ(mDir.List(), std::vector<std::string>{"in.wav"});
}

}  // namespace
