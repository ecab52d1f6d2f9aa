#include "CommandLine.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "Quoted.h"
#include "SupportedRates.h"

namespace render {

namespace {

bool ParseBlockFrames(const std::string& text, int* frames, std::string* error) {
  errno = 0;
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0') {
    *error = "block size " + Quoted(text) + " is not a whole number of frames";
    return false;
  }
  if (errno == ERANGE || value < 1 || value > kMaxBlockFrames) {
    *error = "block size " + Quoted(text) + " is outside 1 to " + std::to_string(kMaxBlockFrames) +
             " frames";
    return false;
  }
  *frames = static_cast<int>(value);
  return true;
}

bool ParseRate(const std::string& text, double* rate, std::string* error) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || std::isnan(value)) {
    *error = "rate " + Quoted(text) + " is not a number of Hz";
    return false;
  }
  if (!IsSupportedSampleRate(value)) {
    *error = "rate " + Quoted(text) + " is outside the supported " + SupportedRatesText();
    return false;
  }
  *rate = value;
  return true;
}

bool ParseParamArgument(const std::string& text, std::vector<ParamArgument>* params,
                        std::string* error) {
  const std::string::size_type equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    *error = "parameter setting " + Quoted(text) + " is not of the form NAME=VALUE";
    return false;
  }
  params->push_back({text.substr(0, equals), text.substr(equals + 1)});
  return true;
}

// The options that take a value, each with what it does with that value.
struct ValueOption {
  const char* shortName;  // null: long form only
  const char* longName;
  bool (*apply)(const std::string& value, CommandLine* cli, std::string* error);
};

const ValueOption kValueOptions[] = {
    {"-o", "--output",
     [](const std::string& v, CommandLine* cli, std::string*) {
       cli->output = v;
       return true;
     }},
    {"-p", "--param",
     [](const std::string& v, CommandLine* cli, std::string* error) {
       return ParseParamArgument(v, &cli->params, error);
     }},
    {nullptr, "--block",
     [](const std::string& v, CommandLine* cli, std::string* error) {
       return ParseBlockFrames(v, &cli->blockFrames, error);
     }},
    {nullptr, "--rate",
     [](const std::string& v, CommandLine* cli, std::string* error) {
       return ParseRate(v, &cli->effectRate, error);
     }},
    {nullptr, "--load-state",
     [](const std::string& v, CommandLine* cli, std::string*) {
       cli->loadState = v;
       return true;
     }},
    {nullptr, "--save-state",
     [](const std::string& v, CommandLine* cli, std::string*) {
       cli->saveState = v;
       return true;
     }},
    {nullptr, "--analyze",
     [](const std::string& v, CommandLine* cli, std::string* error) {
       if (v.empty()) *error = "the analysis report's file name is empty";
       cli->analyze = v;
       return !v.empty();
     }},
    {nullptr, "--editor-snapshot",
     [](const std::string& v, CommandLine* cli, std::string*) {
       cli->editorSnapshot = v;
       return true;
     }},
};

const ValueOption* FindValueOption(const std::string& option) {
  for (const ValueOption& candidate : kValueOptions) {
    if ((candidate.shortName && option == candidate.shortName) || option == candidate.longName)
      return &candidate;
  }
  return nullptr;
}

// Reads the option at args[*i], and its value, which may be the next argument (then *i moves on).
// Long options also take their value after an equals sign: --block=256.
bool ParseOption(const std::vector<std::string>& args, std::size_t* i, CommandLine* cli,
                 std::string* error) {
  const std::string& arg = args[*i];
  const std::string::size_type equals = arg.rfind("--", 0) == 0 ? arg.find('=') : std::string::npos;
  const std::string option = arg.substr(0, equals);
  const bool hasValue = equals != std::string::npos;
  if (option == "-h" || option == "--help" || option == "-q" || option == "--quiet") {
    if (hasValue) {
      *error = "option " + Quoted(option) + " takes no value";
      return false;
    }
    (option == "-q" || option == "--quiet" ? cli->quiet : cli->help) = true;
    return true;
  }
  const ValueOption* valueOption = FindValueOption(option);
  if (!valueOption) {
    *error = "unknown option " + Quoted(option);
    return false;
  }
  if (!hasValue && *i + 1 >= args.size()) {
    *error = "option " + Quoted(option) + " needs a value";
    return false;
  }
  const std::string value = hasValue ? arg.substr(equals + 1) : args[++*i];
  return valueOption->apply(value, cli, error);
}

bool SetInput(const std::string& arg, CommandLine* cli, std::string* error) {
  if (!cli->input.empty()) {
    *error =
        "unexpected argument " + Quoted(arg) + ": only one input file can be rendered at a time";
    return false;
  }
  if (arg.empty()) {
    *error = "the input file name is empty";
    return false;
  }
  cli->input = arg;
  return true;
}

// An analysis writes its report and nothing else.
bool CheckAnalysisOptions(const CommandLine& cli, std::string* error) {
  const std::pair<const char*, const std::string*> renderOutputs[] = {
      {"--output", &cli.output},
      {"--save-state", &cli.saveState},
      {"--editor-snapshot", &cli.editorSnapshot}};
  for (const auto& [option, value] : renderOutputs) {
    if (!cli.analyze.empty() && !value->empty()) {
      *error = "option " + Quoted(option) + " cannot be used with --analyze";
      return false;
    }
  }
  return true;
}

}  // namespace

bool ParseCommandLine(const std::vector<std::string>& args, CommandLine* cli, std::string* error) {
  *cli = CommandLine();
  bool optionsEnded = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
      if (!SetInput(arg, cli, error)) return false;
    } else if (arg == "--") {
      optionsEnded = true;
    } else if (!ParseOption(args, &i, cli, error)) {
      return false;
    }
  }
  return CheckAnalysisOptions(*cli, error);
}

std::string Usage() {
  return "usage: tarn-render [INPUT] [-o OUTPUT] [-p NAME=VALUE]... [--block N] [--rate HZ]\n"
         "                   [--load-state FILE] [--save-state FILE] [--editor-snapshot PNG]\n"
         "                   [--quiet]\n"
         "       tarn-render --analyze REPORT.png [-p NAME=VALUE]... [--rate HZ] [INPUT]\n"
         "\n"
         "Renders INPUT (any mono or stereo file libsndfile reads, at " +
         SupportedRatesText() +
         ")\n"
         "through Tarn and writes a 32-bit float WAV of the same rate and channel count.\n"
         "Without INPUT it renders a built-in demo signal to tarn-demo.wav.\n"
         "\n"
         "  -o, --output FILE    output file (default: <input stem>-tarn.wav here)\n"
         "  -p, --param NAME=VALUE\n"
         "                       set a parameter, after any loaded state, in the order given;\n"
         "                       NAME is its name, in any case, with or without spaces, or one\n"
         "                       word of it; VALUE is in the parameter's own units or one of\n"
         "                       its display texts (parameters are listed below)\n"
         "  --block N            frames per processing block, 1 to 8192 (default 512)\n"
         "  --rate HZ            run the effect at this rate instead of the file's own,\n"
         "                       without resampling (" +
         SupportedRatesText() +
         ")\n"
         "  --load-state FILE    start from a saved state instead of the defaults\n"
         "  --save-state FILE    save the state after the -p settings\n"
         "  --editor-snapshot PNG\n"
         "                       draw the effect's editor as it stands after the render\n"
         "                       (its images: resources/img under $TARN_RESOURCE_ROOT, or\n"
         "                       else under the source tree tarn-render was built from)\n"
         "  --analyze PNG        instead of rendering, measure the effect at these settings with\n"
         "                       test signals (at --rate, INPUT's rate or 48000 Hz) and draw\n"
         "                       the results as a 1600 x 992 report; with INPUT, also its\n"
         "                       spectrum before and after and its levels (1600 x 1442)\n"
         "  -q, --quiet          no progress display\n"
         "  -h, --help           this text\n";
}

}  // namespace render
