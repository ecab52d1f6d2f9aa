#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"

using render::CommandLine;
using render::ParseCommandLine;

namespace {

CommandLine Parse(const std::vector<std::string>& args) {
  CommandLine cli;
  std::string error;
  EXPECT_TRUE(ParseCommandLine(args, &cli, &error)) << error;
  return cli;
}

// The message for arguments that must be refused.
std::string Refusal(const std::vector<std::string>& args) {
  CommandLine cli;
  std::string error;
  EXPECT_FALSE(ParseCommandLine(args, &cli, &error));
  EXPECT_EQ(error.find('\n'), std::string::npos) << "one line: " << error;
  return error;
}

}  // namespace

TEST(CommandLine, NoArgumentsMeansTheDemoWithDefaults) {
  const CommandLine cli = Parse({});
  EXPECT_EQ(cli.input, "");
  EXPECT_EQ(cli.output, "");
  EXPECT_TRUE(cli.params.empty());
  EXPECT_EQ(cli.blockFrames, 512);
  EXPECT_EQ(cli.effectRate, 0.0);
  EXPECT_EQ(cli.loadState, "");
  EXPECT_EQ(cli.saveState, "");
  EXPECT_FALSE(cli.quiet);
  EXPECT_FALSE(cli.help);
}

TEST(CommandLine, ReadsEveryOption) {
  const CommandLine cli =
      Parse({"in.flac", "-o", "out.wav", "-p", "drive=3.5", "-p", "VU Mode=RMS Difference Out-In",
             "--block", "256", "--rate", "96000", "--load-state", "a.state", "--save-state",
             "b.state", "--quiet"});
  EXPECT_EQ(cli.input, "in.flac");
  EXPECT_EQ(cli.output, "out.wav");
  ASSERT_EQ(cli.params.size(), 2u);
  EXPECT_EQ(cli.params[0].name, "drive");
  EXPECT_EQ(cli.params[0].value, "3.5");
  EXPECT_EQ(cli.params[1].name, "VU Mode");
  EXPECT_EQ(cli.params[1].value, "RMS Difference Out-In");
  EXPECT_EQ(cli.blockFrames, 256);
  EXPECT_EQ(cli.effectRate, 96000.0);
  EXPECT_EQ(cli.loadState, "a.state");
  EXPECT_EQ(cli.saveState, "b.state");
  EXPECT_TRUE(cli.quiet);
}

TEST(CommandLine, LongFormsAndOptionsInAnyOrder) {
  const CommandLine cli = Parse({"--output=x.wav", "--param", "trim=-3", "--block=64",
                                 "--rate=44100.5", "-q", "song.wav", "--param=a=b=c"});
  EXPECT_EQ(cli.input, "song.wav");
  EXPECT_EQ(cli.output, "x.wav");
  ASSERT_EQ(cli.params.size(), 2u);
  EXPECT_EQ(cli.params[0].value, "-3");
  EXPECT_EQ(cli.params[1].name, "a");
  EXPECT_EQ(cli.params[1].value, "b=c");  // only the first '=' separates name and value
  EXPECT_EQ(cli.blockFrames, 64);
  EXPECT_EQ(cli.effectRate, 44100.5);
  EXPECT_TRUE(cli.quiet);
  EXPECT_TRUE(Parse({"-h"}).help);
  EXPECT_TRUE(Parse({"--help"}).help);
}

TEST(CommandLine, ParameterSettingsKeepTheirOrderAndRepeats) {
  const CommandLine cli = Parse({"-p", "drive=1", "-p", "trim=2", "-p", "drive=3"});
  ASSERT_EQ(cli.params.size(), 3u);
  EXPECT_EQ(cli.params[0].value, "1");
  EXPECT_EQ(cli.params[1].name, "trim");
  EXPECT_EQ(cli.params[2].value, "3");
}

TEST(CommandLine, DoubleDashEndsOptionsSoAFileMayStartWithADash) {
  EXPECT_EQ(Parse({"--", "-odd.wav"}).input, "-odd.wav");
  EXPECT_EQ(Parse({"-"}).input, "-");
}

TEST(CommandLine, BlockSizeRunsFromOneToTheScratchLimit) {
  EXPECT_EQ(render::kMaxBlockFrames, 8192);
  EXPECT_EQ(Parse({"--block", "1"}).blockFrames, 1);
  EXPECT_EQ(Parse({"--block", "8192"}).blockFrames, 8192);
  for (const char* bad : {"0", "8193", "-1", "100000000000000000000"}) {
    const std::string error = Refusal({"--block", bad});
    EXPECT_NE(error.find(std::string("\"") + bad + "\""), std::string::npos) << error;
    EXPECT_NE(error.find("8192"), std::string::npos) << error;
  }
  for (const char* bad : {"abc", "12x", "1.5", ""}) {
    const std::string error = Refusal({"--block", bad});
    EXPECT_NE(error.find(std::string("\"") + bad + "\""), std::string::npos) << error;
  }
}

TEST(CommandLine, RateIsWithinTheSupportedRange) {
  for (double rate : {8000.0, 44100.5, 768000.0}) {
    EXPECT_EQ(Parse({"--rate", std::to_string(rate)}).effectRate, rate);
  }
  for (const char* bad : {"7999", "7999.99", "768000.1", "768001", "0", "-44100", "inf"}) {
    const std::string error = Refusal({"--rate", bad});
    EXPECT_NE(error.find(std::string("\"") + bad + "\""), std::string::npos) << error;
    EXPECT_NE(error.find("8000 to 768000 Hz"), std::string::npos) << error;
  }
  for (const char* bad : {"abc", "nan", "44100Hz", ""}) {
    const std::string error = Refusal({"--rate", bad});
    EXPECT_NE(error.find(std::string("\"") + bad + "\""), std::string::npos) << error;
  }
}

TEST(CommandLine, EveryOptionWithAValueRefusesToEndWithout) {
  for (const char* option :
       {"-o", "--output", "-p", "--param", "--block", "--rate", "--load-state", "--save-state"}) {
    const std::string error = Refusal({"in.wav", option});
    EXPECT_NE(error.find(std::string("\"") + option + "\""), std::string::npos) << error;
    EXPECT_NE(error.find("needs a value"), std::string::npos) << error;
  }
}

TEST(CommandLine, RefusesUnknownOptionsNamingThem) {
  for (const char* option : {"--bogus", "-x", "--blocks", "-block"}) {
    const std::string error = Refusal({option, "1"});
    EXPECT_NE(error.find("unknown option"), std::string::npos) << error;
  }
  EXPECT_NE(Refusal({"--blocks=4"}).find("\"--blocks\""), std::string::npos);
  EXPECT_NE(Refusal({"--quiet=yes"}).find("\"--quiet\" takes no value"), std::string::npos);
}

TEST(CommandLine, ParameterSettingNeedsNameEqualsValue) {
  for (const char* bad : {"drive", "=3", ""}) {
    const std::string error = Refusal({"-p", bad});
    EXPECT_NE(error.find(std::string("\"") + bad + "\""), std::string::npos) << error;
    EXPECT_NE(error.find("NAME=VALUE"), std::string::npos) << error;
  }
  // An empty value is the parameter table's to judge.
  EXPECT_EQ(Parse({"-p", "drive="}).params[0].value, "");
}

TEST(CommandLine, OnlyOneInput) {
  const std::string error = Refusal({"a.wav", "b.wav"});
  EXPECT_NE(error.find("\"b.wav\""), std::string::npos) << error;
  EXPECT_NE(Refusal({""}).find("empty"), std::string::npos);
}

TEST(CommandLine, UsageNamesEveryOption) {
  const std::string usage = render::Usage();
  for (const char* option :
       {"-o", "-p NAME=VALUE", "--block", "--rate", "--load-state", "--save-state", "--quiet",
        "--help", "8192", "8000 to 768000 Hz", "tarn-demo.wav", "[INPUT]"}) {
    EXPECT_NE(usage.find(option), std::string::npos) << option;
  }
}
