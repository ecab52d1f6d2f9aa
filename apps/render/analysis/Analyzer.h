#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "AudioSource.h"
#include "EffectSetup.h"
#include "TarnRender.h"
#include "analysis/AnalysisResults.h"

namespace render {

// How long each test signal lasts, in seconds. Every signal starts with `settle` seconds that
// are not measured: the effect's bypass crossfade and level detector start from rest.
struct AnalysisTimes {
  double settle = 0.3;
  double sweep = 3.0;    // the level sweep after settling
  double tone = 0.3;     // each steady tone after settling
  double noise = 4.0;    // each frequency response's noise after settling
  double silence = 2.0;  // the noise floor's silence after settling
};

// The input levels of the waveforms and of the harmonic spectra.
constexpr double kToneLevelsDb[] = {-20.0, -10.0, 0.0};

struct AnalysisRequest {
  const EffectFactory& makeEffect;
  const EffectSetup& setup;
  double rate;  // the test signals' rate
  int blockFrames;
  AnalysisTimes times;
  AudioSource* file = nullptr;  // also measured when given, at fileRate
  double fileRate = 0.0;
  std::ostream* progress = nullptr;  // where a progress bar is drawn; null for none
};

// Measures the effect set up as the request says: every measurement a fresh effect fed one test
// signal through the render loop, then the file if there is one.
bool MeasureEffect(const AnalysisRequest& request, const std::function<bool()>& interrupted,
                   AnalysisResults* results, std::string* error);

}  // namespace render
