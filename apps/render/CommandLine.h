#pragma once

#include <string>
#include <vector>

namespace render {

// The largest block handed to the effect in one call, and so the largest size given to its
// SetBlockSize, which sizes the plug-in's scratch buffers.
constexpr int kMaxBlockFrames = 8192;
constexpr int kDefaultBlockFrames = 512;

// One "-p NAME=VALUE" as typed; the parameter table gives it meaning (ParamLookup.h).
struct ParamArgument {
  std::string name;
  std::string value;
};

struct CommandLine {
  std::string input;                  // empty: render the built-in demo signal
  std::string output;                 // empty: the default name (OutputPath.h)
  std::vector<ParamArgument> params;  // in the order given
  int blockFrames = kDefaultBlockFrames;
  double effectRate = 0.0;  // 0: run the effect at the input's own rate
  std::string loadState;
  std::string saveState;
  std::string editorSnapshot;  // empty: no snapshot of the editor
  std::string analyze;         // the analysis report to write instead of rendering
  bool quiet = false;
  bool help = false;
};

// Reads the arguments after the program name. On a bad argument returns false with one line in
// *error that names the option or value.
bool ParseCommandLine(const std::vector<std::string>& args, CommandLine* cli, std::string* error);

// The text printed for --help.
std::string Usage();

}  // namespace render
