#pragma once

#include <functional>
#include <string>

#include "AudioSource.h"
#include "ProgressDisplay.h"
#include "RenderEffect.h"
#include "analysis/AnalysisResults.h"

namespace render {

// Renders a whole file through a prepared effect, as a render does but keeping no audio, and
// takes the spectrum of what went in (non-finite samples as the silence the effect gets instead)
// and of what came out, each the average of the channels' power in 1/6-octave bands, and the
// levels a render's summary prints.
bool MeasureFile(AudioSource& file, RenderEffect& effect, int blockFrames,
                 ProgressDisplay& progress, const std::function<bool()>& interrupted,
                 FileBeforeAfter* spectra, std::string* error);

}  // namespace render
