#pragma once

#include <functional>
#include <string>
#include <vector>

#include "EffectSetup.h"
#include "ProgressDisplay.h"
#include "TarnRender.h"

namespace render {

// One measurement's signal through the effect: the settings on top of the command line's, what
// went in and what came out.
struct ProbeRun {
  std::vector<ParamSetting> overrides;
  std::vector<float> input;
  std::vector<float> output;
};

// Feeds test signals to the effect exactly as a render feeds a mono file: a fresh effect for
// every signal (so no measurement hears the one before), set up as the command line says,
// prepared, and run block by block through the render loop. Progress counts across all runs.
class EffectProbe {
 public:
  EffectProbe(const EffectFactory& makeEffect, const EffectSetup& setup, double rate,
              int blockFrames, ProgressDisplay& progress, const std::function<bool()>& interrupted);

  bool Run(ProbeRun* run, std::string* error);

 private:
  const EffectFactory& mMakeEffect;
  const EffectSetup& mSetup;
  double mRate;
  int mBlockFrames;
  ProgressDisplay& mProgress;
  const std::function<bool()>& mInterrupted;
  long long mFramesDone = 0;
};

}  // namespace render
