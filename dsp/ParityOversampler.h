#pragma once

struct AsymSat;

// The saturator's mono oversampled section with each frame's two sub-samples side by side in one
// LanePair: lane 0 the even sub-sample (the one decimation keeps), lane 1 the odd one.
//
// Both half-band filters are all-passes in z², so the even and the odd sub-samples run through
// recursions of their own and can share a register; the curve's memory links the two
// sub-samples of a frame, but that is a single multiply and add, and the curve's square roots
// and divisions then run for both at once. Every lane performs the very operations, in the same
// order, that the one-sub-sample-at-a-time section performs, so both give the same bits. The
// vector code is portable; each processor runs it two lanes wide.
//
// What AsymSat's mono oversampled section does for a chunk of n frames (at most
// AsymSat::kChunkFrames): working samples in, the kept sub-samples out, the left filters' and the
// left curve's state advanced. `wide` runs the half-band filters four lanes wide
// (RunMonoHalfBandWide), for processors where WideLanesAvailable() is true.
void OversampleMonoChunk(AsymSat& sat, const double* work, double* kept, int n, bool wide);
