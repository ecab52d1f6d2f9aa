// The whole program, with the plug-in or a stand-in simple enough to predict by hand: what it
// writes, what it asks of the effect in what order, and that every failure leaves no file.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <regex>
#include <sstream>

#include "AllocationCounter.h"
#include "AtomicFile.h"
#include "CommandLine.h"
#include "DemoSignal.h"
#include "EffectSession.h"
#include "FloatWavWriter.h"
#include "LevelStats.h"
#include "ProgressDisplay.h"
#include "ScratchFolder.h"
#include "TarnRender.h"
#include "lice/LICE_PNG.h"

using namespace render;
using namespace test_files;
using namespace std::string_literals;

namespace {

const int kFloatWav = SF_FORMAT_WAV | SF_FORMAT_FLOAT;

struct Sound {
  int nChannels = 1, rate = 44100;
  std::vector<float> samples;  // interleaved
  int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  long long Frames() const { return static_cast<long long>(samples.size()) / nChannels; }
};

void WriteSound(const std::string& path, const Sound& s) {
  SF_INFO info{0, s.rate, s.nChannels, s.format, 0, 0};
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  EXPECT_EQ(sf_writef_float(file, s.samples.data(), s.Frames()), s.Frames());
  sf_close(file);
}

Sound ReadSound(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  Sound s{info.channels, info.samplerate, std::vector<float>(info.frames * info.channels),
          info.format};
  EXPECT_EQ(sf_readf_float(file, s.samples.data(), info.frames), info.frames) << path;
  sf_close(file);
  return s;
}

std::string Collapsed(const std::string& t) { return std::regex_replace(t, std::regex(" +"), " "); }
bool Contains(const std::string& text, const std::string& part) { return text.find(part) + 1; }

// A state as the effects save it: the parameters' values as doubles, in index order.
Bytes StateOf(std::vector<double> values) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(values.data());
  return Bytes(bytes, bytes + values.size() * sizeof(double));
}

// A square wave of +-level with a period of 50 frames, 1050 frames long.
std::vector<float> Square(float level) {
  std::vector<float> samples;
  for (int i = 0; i < 1050; ++i) samples.push_back((i / 25) % 2 ? -level : level);
  return samples;
}

// "Output Gain" (0 to 2, default 1) multiplies; "Mode" has the texts "A", "B", "C"; the state is
// the two as doubles. Calls are logged: "restore 1 0", "set 0 0.5", "block 512".
class FakeEffect : public RenderEffect {
 public:
  explicit FakeEffect(Names* log) : mLog(log) {}
  std::vector<ParamInfo> Params() override {
    const auto mode = [](const char* t, int* v) { return (*v = *t - 'A') >= 0 && *v < 3 && !t[1]; };
    return {{"Output Gain", 0, 2, {}, nullptr, 1, "1", ""},
            {"Mode", 0, 2, {"A", "B", "C"}, mode, 0, "A", ""}};
  }
  Bytes SaveState() override { return StateOf({mValues[0], mValues[1]}); }
  std::string RestoreState(const Bytes& state) override {
    std::memcpy(mValues, state.data(), 16);
    return std::isnan(mValues[0]) ? "holds NaN" : Log("restore", {mValues[0], mValues[1]});
  }
  void SetParameter(int index, double value) override {
    mValues[index] = std::clamp(value, 0.0, 2.0);
    Log("set", {double(index), value});
  }
  void Prepare(double rate, int nChannels, int maxBlock) override {
    Log("prepare", {rate, double(mChannels = nChannels), double(maxBlock)});
  }
  void Process(float** in, float** out, int n) override {
    for (int c = 0; c < mChannels; ++c)
      for (int i = 0; i < n; ++i) out[c][i] = in[c][i] * static_cast<float>(mValues[0]);
    Log("block", {double(n)});
  }
  double Needle() const override { return 0.125; }

 private:
  std::string Log(std::string call, std::initializer_list<double> values) {
    std::ostringstream s(call, std::ios::ate);
    for (double v : values) s << " " << v;
    return mLog->push_back(s.str()), "";
  }
  Names* mLog;
  int mChannels = 0;
  double mValues[2] = {1.0, 0.0};
};

struct Result {
  int status;
  std::string out, err;
};

// in.wav: the square wave of +-0.5, mono at 44.1 kHz, exact in 16 bits; links "1" to "41" each
// to the one before, "0" not there.
class TarnRender : public ::testing::Test {
 protected:
  TarnRender() {
    WriteSound("in.wav", mInput);
    for (int i = 1; i <= 41; ++i) symlink(std::to_string(i - 1).c_str(), std::to_string(i).c_str());
  }
  Result Run(const Names& args, EffectFactory factory = nullptr) {
    std::ostringstream out, err;
    if (!factory) factory = [&](bool, std::string*) { return std::make_unique<FakeEffect>(&mLog); };
    const int status = RunTarnRender(args, factory, {out, err, false}, mInterrupted);
    return {status, out.str(), err.str()};
  }
  ScratchFolder mHere;
  Sound mInput{1, 44100, Square(0.5f)};
  Names mLog;
  std::function<bool()> mInterrupted = [] { return false; };
};

// Without an input the built-in demo goes to tarn-demo.wav: six seconds of stereo 32-bit float at
// 48 kHz, and no progress, standard error being no terminal. The first eighth (kick, chord, bass)
// starts without a click: no step reaches 0.05, where the kick (0.27 at 145 Hz) moves 0.005.
TEST_F(TarnRender, RendersTheDemoWithoutAnInput) {
  Result r = Run({});
  const Sound out = ReadSound("tarn-demo.wav");
  EXPECT_EQ(std::make_tuple(r.status, out.nChannels, out.rate, out.format, out.Frames(), r.err),
            std::make_tuple(0, 2, 48000, kFloatWav, 288000LL, ""s));
  float step = 0.0f;
  for (int i = 2; i < 24000; ++i)
    step = std::max(step, std::fabs(out.samples[i] - out.samples[i - 2]));
  EXPECT_LT(step, 0.05f);
}

// The effect is asked as a host restoring a session asks: the state, each -p in order (out of
// range passes, warned, as the plug-in clamps it), rate, channels and largest block, then blocks,
// the last short. --rate sets the effect's rate, not the file's; effect time is within the run's.
TEST_F(TarnRender, DrivesTheEffectAsAHostRestoringASession) {
  const auto start = std::chrono::steady_clock::now();
  const Result r = Run({"in.wav", "-p", "gain=5", "-p", "mode=C", "-p", "Mode=1", "--block", "100",
                        "--rate", "96000"});
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  Names calls = {"restore 1 0", "set 0 5", "set 1 2", "set 1 1", "prepare 96000 1 100"};
  calls.resize(15, "block 100");
  calls.push_back("block 50");
  EXPECT_EQ(mLog, calls);
  EXPECT_EQ(r.err,
            "tarn-render: warning: \"Output Gain\" 5 is outside its range 0 to 2; using 2\n");
  const Sound out = ReadSound("in-tarn.wav");
  EXPECT_EQ(std::make_tuple(out.nChannels, out.rate, out.format, out.samples),
            std::make_tuple(1, 44100, kFloatWav, Square(1.0f)));
  // +-0.5 reads 20 log10(0.5) = -6.02 dBFS, peak and RMS; doubled, 0.00.
  EXPECT_TRUE(Contains(Collapsed(r.out),
                       "effect ran at 96000 Hz\n peak dBFS RMS dBFS\n input mono "
                       "-6.02 -6.02\n output mono 0.00 0.00\nneedle: 0.125000\n"
                       "1050 frames, 0.024 s of audio processed in "))
      << r.out;
  EXPECT_LE(std::stod(r.out.substr(r.out.find("processed in ") + 13)), wall.count() + 5e-4);
}

// --save-state writes the state after the -p settings; --load-state restores it in place of the
// defaults, before them. Files get the usual permissions under the umask. One frame at 768 kHz
// renders like any. Long options take --name=VALUE, and "--" ends the options.
TEST_F(TarnRender, SavesTheStateAfterTheSettingsAndLoadsItBefore) {
  const mode_t umaskBefore = umask(022);
  ASSERT_EQ(Run({"--param=gain=1.5", "-p", "mode=B", "--save-state=s", "--", "in.wav"}).status, 0);
  umask(umaskBefore);
  EXPECT_EQ(std::make_pair(ReadBytes("s"), ReadSound("in-tarn.wav").samples),
            std::make_pair(StateOf({1.5, 1.0}), Square(0.75f)));
  EXPECT_EQ(fs::status("in-tarn.wav").permissions(), fs::perms(0644));  // as open() under umask
  WriteBytes("l", StateOf({0.25, 2.0}));
  WriteSound("one.wav", Sound{1, 768000, {0.5f}});
  mLog.clear();
  ASSERT_EQ(Run({"one.wav", "--load-state", "l", "-p", "mode=A"}).status, 0);
  EXPECT_EQ(mLog, (Names{"restore 0.25 2", "set 1 0", "prepare 768000 1 512", "block 1"}));
  EXPECT_EQ(ReadSound("one-tarn.wav").samples, std::vector<float>{0.125f});
}

// NaNs and infinities reach the effect as 0.0, at the start of a block too, and the summary
// counts them. Left is 0.5, 0, 0: -6.02 dBFS peak, 10 log10(1/12) = -10.79 RMS; nothing, -inf.
TEST_F(TarnRender, NonFiniteInputReachesTheEffectAsSilence) {
  WriteSound("nan.wav", Sound{2, 8000, {0.5f, 0.5f, NAN, 0.25f, -INFINITY, -0.5f}, kFloatWav});
  const Result r = Run({"nan.wav", "--block", "2"});
  EXPECT_EQ(ReadSound("nan-tarn.wav").samples,
            (std::vector<float>{0.5f, 0.5f, 0, 0.25f, 0, -0.5f}));
  EXPECT_TRUE(Contains(Collapsed(r.out), "input left -6.02 -10.79\n input right -6.02 -7.27\n") &&
              Contains(r.out,
                       "warning: 2 input samples were not finite numbers (NaN or infinity) "
                       "and were replaced with 0.0; the first at frame 1\n"))
      << r.out;
  EXPECT_EQ(std::pair(LevelStats(1).PeakDbfs(0), LevelStats(1).RmsDbfs(0)),
            std::pair(-HUGE_VAL, -HUGE_VAL));  // nothing: no level at all
}

// Links, chains of up to the 40 Linux follows and dangling ones stay links. A FIFO is written to
// as a file is, not replaced, and only by a run that renders; its reader gone, the render fails.
TEST_F(TarnRender, WritesIntoFifosAndThroughLinks) {
  ASSERT_EQ(mkdir("sub", 0755) | symlink("sub/old.wav", "link") | symlink("link", "chain") |
                symlink("new.wav", "sub/dangling"),
            0);
  WriteBytes("sub/old.wav", {'o', 'l', 'd'});
  for (const char* output : {"chain", "sub/dangling", "40"}) {
    Run({"in.wav", "-o", output});
    EXPECT_TRUE(ReadSound(output).samples == mInput.samples && fs::is_symlink(output)) << output;
  }
  EXPECT_EQ(List("sub"), (Names{"dangling", "new.wav", "old.wav"}));
  EXPECT_TRUE(fs::is_symlink("link") && fs::is_regular_file(fs::symlink_status("0")));
  ASSERT_EQ(mkfifo("out.fifo", 0644) | mkfifo("state.fifo", 0644), 0);
  int out = open("out.fifo", O_RDWR | O_NONBLOCK), state = open("state.fifo", O_RDWR | O_NONBLOCK);
  for (const char* setting : {"volume=1", "gain=1"})  // refused, then rendered
    Run({"in.wav", "-o", "out.fifo", "--save-state", "state.fifo", "-p", setting});
  EXPECT_EQ(std::make_pair(Drain(out), Drain(state)),
            std::make_pair(ReadBytes("sub/old.wav"), StateOf({1, 0})));
  std::signal(SIGPIPE, SIG_IGN);
  mInterrupted = [&] { return out >= 0 && close(std::exchange(out, -1)); };  // once it is open
  EXPECT_EQ(Run({"in.wav", "-o", "out.fifo"}).err,
            "tarn-render: cannot write \"out.fifo\": Broken pipe\n");
  EXPECT_TRUE(fs::is_fifo("out.fifo") && fs::is_fifo("state.fifo") && !close(state));
}

// Every bad input: status 2 for a wrong command line (the message points to --help), else 1, one
// line naming the culprit, no output, no new file, the input untouched; also when interrupted.
TEST_F(TarnRender, BadInputsFailWithOneLineAndLeaveNoFile) {
  WriteSound("three.wav", Sound{3, 48000, {0.1f, 0.1f, 0.1f}});
  WriteSound("empty.wav", Sound{});
  WriteSound("fast.wav", Sound{1, 768001, {0.5f}});
  WriteBytes("short.state", Bytes(15));
  WriteBytes("nan.state", StateOf({NAN, 0.0}));
  ASSERT_EQ(link("in.wav", "hard.wav") | symlink("loop", "loop") | symlink("loop2", "loop2"), 0);
  const Names before = List();
  const Bytes input = ReadBytes("in.wav");
  const std::pair<Names, std::string> cases[] = {
      {{"missing.wav"}, "cannot read input \"missing.wav\": No such file or directory"},
      {{"three.wav"}, "input \"three.wav\" has 3 channels; only mono and stereo"},
      {{"empty.wav"}, "input \"empty.wav\" contains no audio frames"},
      {{"fast.wav"}, "\"fast.wav\" is at 768001 Hz; the supported rates are 8000 to 768000 Hz"},
      {{"in.wav", "-p", "volume=1"}, "unknown parameter \"volume\"; the parameters are"},
      {{"in.wav", "-o", "hard.wav"}, "output \"hard.wav\" is the same file as the input"},
      {{"in.wav", "-o", "x", "--save-state", "./x"}, "save \"./x\" is the same file as the output"},
      {{"in.wav", "--load-state", "nan.state"}, "state file \"nan.state\" holds NaN"},
      {{"in.wav", "--load-state", "short.state"}, "\"short.state\" is 15 bytes; a state is 16"},
      {{"in.wav", "--save-state", "no/s"}, "cannot write \"no/s\" in folder \"no\": No such file"},
      {{"in.wav", "-o", "loop", "--save-state", "loop2"}, "\"loop\": Too many levels of symbolic"},
      {{"in.wav", "-o", "41"}, "cannot write \"41\": Too many levels of symbolic links"},
      {{"in.wav", "--editor-snapshot", "s.png"}, "the effect has no editor to draw for \"s.png\""},
      {{"in.wav", "-o", "x", "--editor-snapshot", "x"}, "snapshot \"x\" is the same file as the"},
      {{"in.wav", "--bogus"}, "unknown option \"--bogus\" (see tarn-render --help)"},
      {{"in.wav", "--rate", "7999"},
       "\"7999\" is outside the supported 8000 to 768000 Hz (see tarn-render --help)"},
      {{"-p", "gain"}, "setting \"gain\" is not of the form NAME=VALUE (see tarn-render --help)"},
      {{"in.wav", "fast.wav"},
       "\"fast.wav\": only one input file can be rendered at a time (see tarn-render --help)"},
      {{"--", "-p"}, "cannot read input \"-p\": No such file or directory"},
      {{"--block", "8193"}, "\"8193\" is outside 1 to 8192 frames (see tarn-render --help)"},
  };
  for (const auto& [args, named] : cases) {
    const Result r = Run(args);
    EXPECT_EQ(r.status, Contains(named, "--help") ? 2 : 1) << named;
    EXPECT_TRUE(std::regex_match(r.err, std::regex("tarn-render: .*\n")) && Contains(r.err, named))
        << r.err;
    EXPECT_TRUE(r.out.empty() && List() == before && ReadBytes("in.wav") == input);
  }
  mInterrupted = [calls = 0]() mutable { return ++calls > 3; };  // after the third block
  EXPECT_EQ(Run({"in.wav", "--block", "10"}).err, "tarn-render: interrupted\n");
  EXPECT_EQ(std::make_pair(mLog.back(), List()), std::make_pair("block 10"s, before));
}

// The snapshot shows the panel as the render left it: the mode's lamp lit, the needle's line in
// the column its last value gives. (bad_inputs.sh runs it without its images.)
TEST_F(TarnRender, EditorSnapshotShowsThePanelAsTheRenderLeftIt) {
  const Result r =
      Run({"in.wav", "-p", "mode=Output", "--editor-snapshot", "s.png"}, MakeTarnEffect);
  const std::unique_ptr<LICE_IBitmap> panel(LICE_LoadPNG("s.png", nullptr));
  ASSERT_TRUE(r.status == 0 && r.err.empty() && panel && panel->getWidth() == 304);
  const auto red = [&](int x, int y) {
    return LICE_GETR(panel->getBits()[y * panel->getRowSpan() + x]);
  };
  EXPECT_TRUE(red(252, 25) > 200 && red(114, 25) < 150);  // OUT lit, IN not
  int line = 56;  // the darkest column of a row of the face below the scale
  for (int x = 56; x < 254; ++x) line = red(x, 88) < red(line, 88) ? x : line;
  const double needle = std::stod(r.out.substr(r.out.find("needle: ") + 8));
  EXPECT_EQ(line, 55 + static_cast<int>(196 * needle) + 3) << needle;
}

// One line on a terminal, drawn not in the first tenth of a second (short renders stay silent)
// and then at most ten times a second; erased once at the end; nothing at all when disabled.
TEST(ProgressDisplay, DrawsAtMostTenTimesASecondAndErasesOnce) {
  std::ostringstream out, off;
  double now = 0.0;
  ProgressDisplay bar(out, 400, true, [&] { return now; }), disabled(off, 400, false);
  for (const auto& [at, frames] : {std::pair(0.09, 50), {0.15, 100}, {0.2, 150}, {0.26, 200}})
    bar.Update((now = at, frames));
  EXPECT_EQ(out.str(), "\rrendering [" + std::string(10, '#') + std::string(30, ' ') +
                           "] 25%\rrendering [" + std::string(20, '#') + std::string(20, ' ') +
                           "] 50%");
  bar.Finish();
  bar.Finish();
  disabled.Finish();
  EXPECT_TRUE(std::regex_match(out.str().substr(2 * 57), std::regex("\r {57,}\r")) &&
              off.str() == "");
}

// The demo: six seconds of stereo at 48 kHz, from silence to silence, peaking below full scale
// yet clearly audible on both sides; read in any chunks (and never past them) as frame by frame.
// Progress shows unless -q is given.
TEST(DemoSignal, SixSecondsFromSilenceToSilenceAudibleAndAlikeInAnyChunks) {
  DemoSignal demo;
  std::vector<float> all, chunk(2 * 333 + 1, 7.0f), channel[2];
  std::string error;
  for (long long n; (n = demo.Read(chunk.data(), 333, &error)) > 0;) {
    all.insert(all.end(), chunk.begin(), chunk.begin() + 2 * n);
    ASSERT_EQ(chunk.back(), 7.0f);
  }
  ASSERT_EQ(all.size(), 2u * 288000);
  for (size_t i = 0; i < all.size(); ++i) channel[i % 2].push_back(all[i]);
  float left, right;
  DemoSignal::Frame(123457, &left, &right);
  EXPECT_TRUE(left == channel[0][123457] && right == channel[1][123457] &&
              channel[0] != channel[1]);
  EXPECT_TRUE(all[0] == 0 && all[1] == 0 && all.back() == 0 && all[all.size() - 2] == 0);
  LevelStats stats(2);
  const float* channels[] = {channel[0].data(), channel[1].data()};
  stats.Add(channels, 288000);
  for (int c = 0; c < 2; ++c)
    EXPECT_TRUE(stats.PeakDbfs(c) < 0 && stats.PeakDbfs(c) > -12 && stats.RmsDbfs(c) > -30) << c;
  CommandLine cli, quiet;
  EXPECT_TRUE(ParseCommandLine({}, &cli, &error) && ParseCommandLine({"-q"}, &quiet, &error) &&
              !cli.quiet && quiet.quiet);
}

// A file without samples is what libsndfile writes to a file it can seek in. The RIFF size (file
// length less 8) is 32 bits: the most frames a file holds follow from the header's size, one more
// is refused before anything is created, and so is a render short of the frames announced.
TEST(FloatWavWriter, NeverLeavesAFileWhoseHeaderIsWrong) {
  ScratchFolder here;
  std::string error;
  for (int nChannels : {1, 2}) {
    WriteSound("ref.wav", Sound{nChannels, 8000, {}, kFloatWav});
    auto empty = FloatWavWriter::Create("out.wav", nChannels, 8000, 0, &error);
    ASSERT_TRUE(empty && empty->Commit(&error)) << error;
    const Bytes header = ReadBytes("ref.wav");
    EXPECT_EQ(ReadBytes("out.wav"), header);
    const long long most = (0xFFFFFFFFLL - (header.size() - 8)) / (4 * nChannels);
    EXPECT_FALSE(FloatWavWriter::Create("big.wav", nChannels, 8000, most + 1, &error));
    EXPECT_EQ(error, "cannot write \"big.wav\": " + std::to_string(most + 1) +
                         " frames are more than a WAV file holds (" + std::to_string(most) + ")");
    EXPECT_TRUE(FloatWavWriter::Create("big.wav", nChannels, 8000, most, &error)) << error;
  }
  auto writer = FloatWavWriter::Create("short.wav", 1, 8000, 4, &error);
  const float samples[3] = {};
  ASSERT_TRUE(writer && writer->Write(samples, 3, &error)) << error;
  EXPECT_FALSE(writer->Commit(&error));
  EXPECT_EQ(error, "cannot write \"short.wav\": 3 frames were rendered where its header says 4");
}

// Writes at offsets as libsndfile makes them: a header with sizes yet unknown, samples (the first
// straddling the header's end), one going back into the samples (refused), the final header. Only
// the predicted header and the samples reach the file; Finish fails unless the two headers match.
TEST(HeaderFirstStream, SendsThePredictedHeaderFirstAndChecksItAtTheEnd) {
  ScratchFolder here;
  for (const std::string finalHeader : {"HDR!", "HDR?"}) {
    std::string error;
    auto file = AtomicFile::Create("out", &error);
    HeaderFirstStream stream(*file, {'H', 'D', 'R', '!'});
    const auto writeAt = [&](sf_count_t offset, const std::string& bytes) {
      HeaderFirstStream::Io()->seek(offset, SEEK_SET, &stream);
      return HeaderFirstStream::Io()->write(bytes.data(), bytes.size(), &stream);
    };
    EXPECT_EQ(writeAt(0, "hdr?") + writeAt(2, "R!ab") + writeAt(5, "c") + writeAt(6, "cd"), 10);
    EXPECT_EQ(stream.Error(),
              "cannot write \"out\": libsndfile wrote at byte 5 where the file, "
              "written front to back, is at byte 6");
    EXPECT_EQ(writeAt(0, finalHeader), 4);
    EXPECT_EQ(stream.Finish(&error), finalHeader == "HDR!");
    EXPECT_EQ(error, finalHeader == "HDR!" ? ""
                                           : "cannot write \"out\": the WAV header libsndfile "
                                             "ended with is not the one predicted for it");
    ASSERT_TRUE(file->Commit(&error)) << error;
    EXPECT_EQ(ReadBytes("out"), (Bytes{'H', 'D', 'R', '!', 'a', 'b', 'c', 'd'}));
  }
}

// Names, ranges and texts as the plug-in defines them; the state is 64 bytes of plain values, the
// defaults at first, and a state that is not whole is refused, keeping the one there was. Nothing
// on the audio path allocates, in blocks of any size up to the announced largest.
TEST(EffectSession, TableStateAndAudioPathComeFromThePlugIn) {
  EffectSession session;
  EXPECT_EQ(DescribeParams(session.Params()),
            "  \"Input Trim\": -20 to 20\n  \"Drive\": 0 to 10\n  \"Output Compensation\": -20 to "
            "20\n  \"Asymmetry\": 0 to 10\n  \"Freq Response\": -10 to 10\n  \"Crosstalk Level\": "
            "-120 to -60\n  \"VU Mode\": 0 to 2 or \"Input\", \"RMS Difference Out-In\", "
            "\"Output\"\n  \"Bypass\": 0 to 1 or \"off\", \"on\"\n");
  EXPECT_EQ(session.RestoreState(Bytes(63)), "is 63 bytes; a state is 64 bytes");
  EXPECT_EQ(session.SaveState(), StateOf({0, 0, 0, 5, 0, -90, 0, 0}));
  session.Prepare(44100.0, 2, 256);
  std::vector<float> l(256, 0.25f), r(256, 0.25f);
  float* inPlace[] = {l.data(), r.data()};
  AllocationScope scope;
  for (int i = 0; i < 20; ++i) session.Process(inPlace, inPlace, i % 3 ? 256 : 100);
  EXPECT_EQ(scope.Count(), 0);
  EXPECT_GT(session.Needle(), 0.0);
}

// The same settings give the same file to the byte in any block size, and from the state they
// saved, which holds them clamped as host automation is; --rate reaches the plug-in. Every
// parameter is reached by the short key users are told of, a text in any letter case.
TEST_F(TarnRender, DemoRendersThroughThePlugInAreTheSameToTheByteInAnyBlockSize) {
  Names settings;
  for (const char* s : {"trim=-3", "drive=16", "output=2.5", "asymmetry=1", "freq=-1e1",
                        "crosstalk=-70", "vumode=rms difference out-in", "bypass=0"})
    settings.insert(settings.end(), {"-p", s});
  const auto render = [&](const std::string& block, const std::string& name) {
    Names args = settings;
    args.insert(args.end(), {"--block", block, "-o", name, "--save-state", name + ".state"});
    EXPECT_EQ(Run(args, MakeTarnEffect).status, 0);
    return ReadBytes(name);
  };
  const Bytes reference = render("512", "first.wav");
  for (const char* block : {"1", "64", "8192"}) EXPECT_EQ(render(block, block), reference) << block;
  EXPECT_EQ(ReadBytes("first.wav.state"), StateOf({-3, 10, 2.5, 1, -10, -70, 1, 0}));
  settings = {"--load-state", "first.wav.state"};
  EXPECT_EQ(render("512", "loaded.wav"), reference);
  settings.insert(settings.end(), {"--rate", "96000"});
  EXPECT_NE(render("512", "fast.wav"), reference);
}

}  // namespace
