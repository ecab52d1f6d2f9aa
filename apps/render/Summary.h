#pragma once

#include "RenderLoop.h"

#include <string>

namespace render {

// The lines printed after a render: what went in and out, the levels per channel in dBFS, the
// needle, and how long the audio and the render took.
std::string FormatSummary(const RenderReport& report, const std::string& inputDescription,
                          const std::string& outputPath);

}  // namespace render
