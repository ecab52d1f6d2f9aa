// The renderer with the real Tarn plug-in: the table and state it reads from the plug-in, the
// host path it drives, and whole renders through the program.

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "AllocationCounter.h"
#include "EffectSession.h"
#include "ScratchFolder.h"
#include "TarnRender.h"

using namespace render;
using namespace test_files;

namespace {

std::vector<double> Values(const Bytes& state) {
  std::vector<double> values(state.size() / 8);
  std::memcpy(values.data(), state.data(), state.size());
  return values;
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
  EXPECT_EQ(Values(session.SaveState()), (std::vector<double>{0, 0, 0, 5, 0, -90, 0, 0}));
  session.Prepare(44100.0, 2, 256);
  std::vector<float> l(256, 0.25f), r(256, 0.25f), outL(256), outR(256);
  float* in[] = {l.data(), r.data()};
  float* out[] = {outL.data(), outR.data()};
  AllocationScope scope;
  for (int i = 0; i < 20; ++i) session.Process(in, out, i % 3 ? 256 : 100);
  EXPECT_EQ(scope.Count(), 0);
  EXPECT_GT(session.Needle(), 0.0);
}

// The same command gives the same file to the byte, run again or in any block size. Every
// parameter is reached by the short key users are told of, a text in any letter case, and the
// saved state holds the settings, clamped into range as host automation is.
TEST(EffectSession, DemoRendersAreTheSameToTheByteInAnyBlockSize) {
  ScratchFolder here;
  Names settings;
  for (const char* s : {"trim=-3", "drive=16", "output=2.5", "asymmetry=1", "freq=-1e1",
                        "crosstalk=-70", "vumode=rms difference out-in", "bypass=0"})
    settings.insert(settings.end(), {"-p", s});
  const auto render = [&](const std::string& block, const std::string& name) {
    Names args = settings;
    args.insert(args.end(), {"--block", block, "-o", name, "--save-state", name + ".state"});
    std::ostringstream out, err;
    EXPECT_EQ(RunTarnRender(args, MakeTarnEffect, {out, err, false}, [] { return false; }), 0);
    return ReadBytes(name);
  };
  const Bytes reference = render("512", "first.wav");
  EXPECT_EQ(render("512", "again.wav"), reference);
  for (const char* block : {"1", "64", "8192"}) EXPECT_EQ(render(block, block), reference) << block;
  EXPECT_EQ(Values(ReadBytes("first.wav.state")),
            (std::vector<double>{-3, 10, 2.5, 1, -10, -70, 1, 0}));
}

}  // namespace
