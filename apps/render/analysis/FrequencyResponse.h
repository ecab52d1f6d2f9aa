#pragma once

#include <string>
#include <vector>

#include "analysis/AnalysisResults.h"

namespace render {

// The level of the noise that measures the response: low enough that the saturator stays nearly
// linear at the usual Drive settings, well above the effect's own noise floor.
constexpr double kResponseNoiseDb = -40.0;

// The gain from input to output in 1/12-octave bands from 20 Hz to 20 kHz (or near the Nyquist
// frequency), from `settleFrames` on: the part of the output that follows the input (the cross
// spectrum over the input's power spectrum, averaged over half-overlapping Hann segments), so the
// effect's own noise and drift average out rather than add.
ResponseCurve MeasureResponse(const std::vector<float>& input, const std::vector<float>& output,
                              double rate, long long settleFrames, const std::string& label);

// The top of the plotted frequency range at a rate: 20 kHz, or just below the Nyquist frequency.
double TopHz(double rate);

}  // namespace render
