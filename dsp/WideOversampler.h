#pragma once

#include "dsp/LanePair.h"

struct AsymSat;
class HalfBandFilter;

// The saturator's oversampled section four lanes wide, for processors with 256-bit vectors
// (AVX2): in stereo one register holds a frame's even and odd sub-sample of both channels; in
// mono, of both paths of a half-band filter (RunMonoHalfBandWide, below).
//
// Both half-band filters are all-passes in z², so a frame's even and odd sub-samples run through
// their own recursions and can share a register; the curve's memory links the two sub-samples
// of a frame, but that is a single multiply and add per sub-sample, and all of the curve's
// square roots and divisions then run for four values at once. Every lane performs the very
// operations, in the same order, that the two-lane path performs (additions and multiplications
// never fused), so both paths give the same bits.
//
// The path exists in x86-64 builds only; elsewhere the two-lane path runs.
#if defined(__x86_64__)
constexpr bool kWideLanesBuilt = true;
#else
constexpr bool kWideLanesBuilt = false;
#endif

// Whether the processor running us has the instructions this path needs.
bool WideLanesAvailable();

// What AsymSat's two-lane oversampled section does for a chunk of n frames (at most
// AsymSat::kChunkFrames): working samples in, the kept sub-samples out, the filters' and the
// curve's state advanced. Call only where WideLanesAvailable() is true.
void OversampleStereoChunkWide(AsymSat& sat, const LanePair* work, LanePair* kept, int n);

// The mono section's half-band filter over n frames of (even, odd) sub-samples in place, as the
// two-lane form in ParityOversampler runs it, with a frame's two sub-samples through both of the
// filter's paths in one register. Call only where WideLanesAvailable() is true.
void RunMonoHalfBandWide(HalfBandFilter& filter, LanePair* frames, int nFrames);
