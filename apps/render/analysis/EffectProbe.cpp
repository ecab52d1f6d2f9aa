#include "analysis/EffectProbe.h"

#include <cmath>

#include "RenderLoop.h"
#include "analysis/MemoryAudio.h"

namespace render {

EffectProbe::EffectProbe(const EffectFactory& makeEffect, const EffectSetup& setup, double rate,
                         int blockFrames, ProgressDisplay& progress,
                         const std::function<bool()>& interrupted)
    : mMakeEffect(makeEffect),
      mSetup(setup),
      mRate(rate),
      mBlockFrames(blockFrames),
      mProgress(progress),
      mInterrupted(interrupted) {}

bool EffectProbe::Run(ProbeRun* run, std::string* error) {
  std::unique_ptr<RenderEffect> effect = MakeSetUpEffect(mMakeEffect, mSetup, error);
  if (!effect) return false;
  for (const ParamSetting& setting : run->overrides)
    effect->SetParameter(setting.index, setting.value);
  effect->Prepare(mRate, 1, mBlockFrames);
  MemorySource source(run->input, static_cast<int>(std::lround(mRate)));
  MemorySink sink;
  RenderReport report;
  mProgress.SetOffset(mFramesDone);
  if (!RenderAudio(source, *effect, sink, mBlockFrames, mProgress, mInterrupted, &report, error))
    return false;
  mFramesDone += source.NFrames();
  run->output = sink.Samples();
  return true;
}

}  // namespace render
