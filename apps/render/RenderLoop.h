#pragma once

#include <functional>
#include <string>

#include "AudioSink.h"
#include "AudioSource.h"
#include "LevelStats.h"
#include "NonFiniteInput.h"
#include "ProgressDisplay.h"
#include "RenderEffect.h"

namespace render {

// What a render measured, for the summary.
struct RenderReport {
  int nChannels = 0;
  int fileRate = 0;       // the input's rate, which the output keeps
  double effectRate = 0;  // the rate the effect ran at
  long long nFrames = 0;
  LevelStats input;  // after non-finite samples were replaced
  NonFiniteInput nonFinite;
  LevelStats output;
  double needle = 0.0;
  // Time spent inside the effect, without reading, generating or writing audio.
  double processSeconds = 0.0;
};

// Streams the whole source through a prepared effect in blocks of blockFrames (the last one
// shorter) and hands the result to the sink. `interrupted` is asked before every block; a true
// answer stops the render as a failure. On failure *error says why and an output file is left
// uncommitted. The caller finishes the progress display, whatever the outcome.
bool RenderAudio(AudioSource& source, RenderEffect& effect, AudioSink& sink, int blockFrames,
                 ProgressDisplay& progress, const std::function<bool()>& interrupted,
                 RenderReport* report, std::string* error);

}  // namespace render
