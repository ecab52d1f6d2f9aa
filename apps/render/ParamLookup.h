#pragma once

#include <functional>
#include <string>
#include <vector>

#include "CommandLine.h"

namespace render {

// What the command line needs to know of one parameter of the effect, read from the plug-in's
// parameter table at run time.
struct ParamInfo {
  std::string name;  // as the host sees it, e.g. "VU Mode"
  double min = 0.0;
  double max = 1.0;
  std::vector<std::string> displayTexts;  // e.g. "Input", "Output"; empty for plain numbers
  // The parameter's own text-to-value mapping; false when the text is none of its texts.
  std::function<bool(const char* text, int* value)> mapDisplayText;
  double value = 0.0;   // the value when the table was read
  std::string display;  // that value as the effect shows it, e.g. "6.00" or "Output"
  std::string unit;     // e.g. "dB"; empty for none
};

// A -p argument resolved against the table: which parameter, and the plain value to set.
struct ParamSetting {
  int index = -1;
  double value = 0.0;
};

// Finds the parameter that NAME means: its full name in any letter case, with or without the
// spaces ("VU Mode", "vu mode", "vumode"), or, failing that, a single word of exactly one
// parameter's name ("drive", "trim", "freq"). Returns -1 and says why when there is none or
// more than one.
int FindParam(const std::vector<ParamInfo>& table, const std::string& name, std::string* error);

// Resolves NAME=VALUE. VALUE is one of the parameter's display texts (in any letter case) or a
// number in its plain units. A number outside the range is accepted unchanged (the host path clamps
// it) and *warning names the range; *warning is cleared otherwise.
bool ResolveParam(const std::vector<ParamInfo>& table, const ParamArgument& arg,
                  ParamSetting* setting, std::string* warning, std::string* error);

// One line per parameter for --help: name, range and display texts.
std::string DescribeParams(const std::vector<ParamInfo>& table);

}  // namespace render
