#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "RenderEffect.h"

namespace render {

// Where the program talks: the summary goes to `out`, messages and progress to `err`.
struct Console {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal;  // progress is drawn only on a terminal
};

// Exit statuses besides 0.
constexpr int kExitFailure = 1;     // a file or the render failed
constexpr int kExitUsageError = 2;  // the command line is wrong

// The whole program: parses the arguments (those after the program name), renders, prints the
// summary and returns the exit status. Every failure prints one line naming the file or value
// and leaves no output file behind; a FIFO or a device given as output gets nothing unless the
// render starts, and then what was rendered. `interrupted` is polled between blocks.
int RunTarnRender(const std::vector<std::string>& args, const EffectFactory& makeEffect,
                  const Console& console, const std::function<bool()>& interrupted);

}  // namespace render
