#pragma once

#include <vector>

#include "analysis/AnalysisResults.h"

namespace render {

// The level curve and the waveforms use a low tone, below the emphasis and tone filters, so that
// they show the saturation alone.
constexpr double kTransferHz = 200.0;
// The sweep rises from this level, so that it reaches the plotted range once the effect settled.
constexpr double kSweepFromDb = -70.0;
constexpr double kSweepToDb = 0.0;

// Input and output level, window by window of 50 ms, from `settleFrames` on: each window's level
// is that of a sine with the window's power.
LevelCurve MeasureLevelCurve(const std::vector<float>& input, const std::vector<float>& output,
                             double rate, long long settleFrames);

// The output's last whole period, starting where its fundamental rises through zero.
Waveform MeasureWaveform(const std::vector<float>& output, double rate, double inDb);

}  // namespace render
