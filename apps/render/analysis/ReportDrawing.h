#pragma once

#include <vector>

#include "analysis/AnalysisResults.h"

namespace render {

// The report's size in pixels: two rows of plots, and a third for a file.
constexpr int kReportWidth = 1600;
int ReportHeight(bool withFile);

// Draws the measurements as one page of plots and returns it as a PNG image; empty if cairo
// could not make it.
std::vector<unsigned char> DrawReport(const AnalysisResults& results);

}  // namespace render
