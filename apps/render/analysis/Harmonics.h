#pragma once

#include <vector>

#include "analysis/AnalysisResults.h"

namespace render {

constexpr double kHarmonicsHz = 1000.0;

// The harmonics of the 1 kHz tone in the output's last stretch (a power of two of samples, up
// to a quarter of a second): every one below 20 kHz and below the Nyquist frequency, each the
// power within a few bins of its frequency through a Blackman-Harris window.
HarmonicSpectrum MeasureHarmonics(const std::vector<float>& output, double rate, double inDb);

}  // namespace render
