#pragma once

#include <functional>
#include <string>

#include "CommandLine.h"
#include "TarnRender.h"

namespace render {

// The rate the test signals run at when neither --rate nor an input file gives one.
constexpr double kDefaultAnalysisRate = 48000.0;

// tarn-render --analyze: measures the effect at the command line's settings (and the input file,
// if one is given) and writes the report as a PNG image, whole or not at all, never over a file
// it reads. Prints the report's path and the distortion figures; on failure says why in *error.
bool RunAnalysisJob(const CommandLine& cli, const EffectFactory& makeEffect, const Console& console,
                    const std::function<bool()>& interrupted, std::string* error);

}  // namespace render
