#pragma once

#include <vector>

#include "analysis/AnalysisResults.h"

namespace render {

// The spectrum of what the effect puts out with silence in, in 1/3-octave bands, and its RMS
// level over 20 Hz to 20 kHz (or to near the Nyquist frequency), from `settleFrames` on.
void MeasureNoiseFloor(const std::vector<float>& output, double rate, long long settleFrames,
                       BandSpectrum* bands, double* rmsDb);

}  // namespace render
