#pragma once

#include <string>

#include "RenderLoop.h"

namespace render {

// The lines printed after a render: what went in and out, the levels per channel in dBFS, the
// needle, how long the audio and the render took, and a warning when input samples that were
// not finite numbers had to be replaced.
std::string FormatSummary(const RenderReport& report, const std::string& inputDescription,
                          const std::string& outputPath);

}  // namespace render
