#include "dsp/ParityOversampler.h"

#include "dsp/AsymCurve.h"
#include "dsp/AsymSat.h"
#include "dsp/CAllPassFilterCascade.h"
#include "dsp/LanePair.h"
#include "dsp/WideOversampler.h"

namespace {

constexpr int kSections = CAllPassFilterCascade::kStagesPerPath;

// A section member's even (newest-but-one) and odd (newest) values.
LanePair Gather(const AllPassStage& stage, double AllPassStage::*even, double AllPassStage::*odd) {
  return LanePair{stage.*even, stage.*odd};
}

// At a frame boundary a section's newest sub-sample is odd; its state keeps the newest three
// inputs or outputs: the last frame's odd and even values and the odd one of the frame before.
void Scatter(LanePair last, LanePair before, AllPassStage& stage, double AllPassStage::*newest,
             double AllPassStage::*second, double AllPassStage::*third) {
  stage.*newest = last[1];
  stage.*second = last[0];
  stage.*third = before[1];
}

// One path's six sections, y0 = (v − y2)·a + x2 for each parity. A section's input is the output
// of the section before it, so its previous input is that section's previous output: a frame
// needs only the sections' previous outputs, and the filter's previous input for the first.
struct Path {
  LanePair a[kSections], y[kSections];
  LanePair yBefore[kSections];  // the outputs before the chunk's last frame

  Path(const HalfBandFilter& filter, int first, const double (&coefficients)[kSections]) {
    for (int s = 0; s < kSections; ++s) {
      a[s] = Splat<LanePair>(coefficients[s]);
      y[s] = Gather(filter.cascade.stages[first + s], &AllPassStage::y1, &AllPassStage::y0);
    }
  }

  // One frame with input v, whose previous input was x; returns the path's output.
  LanePair step(LanePair v, LanePair x) {
#pragma GCC unroll 6
    for (int s = 0; s < kSections; ++s) {
      const LanePair previous = y[s];
      y[s] = (v - previous) * a[s] + x;
      x = previous;
      v = y[s];
    }
    return v;
  }

  void keepBefore() {
    for (int s = 0; s < kSections; ++s) yBefore[s] = y[s];
  }

  void store(HalfBandFilter& filter, int first, LanePair input, LanePair inputBefore) const {
    for (int s = 0; s < kSections; ++s) {
      AllPassStage& stage = filter.cascade.stages[first + s];
      Scatter(s == 0 ? input : y[s - 1], s == 0 ? inputBefore : yBefore[s - 1], stage,
              &AllPassStage::x0, &AllPassStage::x1, &AllPassStage::x2);
      Scatter(y[s], yBefore[s], stage, &AllPassStage::y0, &AllPassStage::y1, &AllPassStage::y2);
    }
  }
};

// For each sub-sample, the value of the sub-sample before it: the odd lane of the frame before,
// then the even lane of this frame.
LanePair PreviousSubSample(LanePair before, LanePair now) { return LanePair{before[1], now[0]}; }

// The half-band filter over the chunk in place: out = (A + B of the previous sub-sample)·0.5.
// Both paths step in the same loop, so that each waits on its own recursions while the other
// computes.
void RunHalfBand(HalfBandFilter& filter, LanePair* frames, int n) {
  Path pathA(filter, 0, CAllPassFilterCascade::kPathA);
  Path pathB(filter, kSections, CAllPassFilterCascade::kPathB);
  // Both paths take the same input.
  LanePair input = Gather(filter.cascade.stages[0], &AllPassStage::x1, &AllPassStage::x0);
  LanePair inputBefore = input;
  LanePair bBefore{0.0, filter.oldOut};
  for (int f = 0; f < n; ++f) {
    if (f + 1 == n) {
      inputBefore = input;
      pathA.keepBefore();
      pathB.keepBefore();
    }
    const LanePair v = frames[f];
    const LanePair a = pathA.step(v, input);
    const LanePair b = pathB.step(v, input);
    input = v;
    frames[f] = (a + PreviousSubSample(bBefore, b)) * 0.5;
    bBefore = b;
  }
  pathA.store(filter, 0, input, inputBefore);
  pathB.store(filter, kSections, input, inputBefore);
  filter.oldOut = bBefore[1];
}

// The curve over the chunk in place, as AsymSat::curveStep computes it: only the memory runs
// sub-sample by sub-sample.
void RunCurve(AsymSat& sat, LanePair* frames, int n) {
  double mem = sat.memL;
  LanePair before{0.0, sat.curvePrevL};
  for (int f = 0; f < n; ++f) {
    const LanePair x = frames[f];
    const LanePair weighted = sat.memIn * x;
    const double even = weighted[0] + sat.memFb * mem;
    mem = weighted[1] + sat.memFb * even;
    const LanePair y = CurveShape(sat, x, LanePair{even, mem});
    frames[f] = (y - sat.postFb * PreviousSubSample(before, y)) * sat.postScale;
    before = y;
  }
  sat.memL = mem;
  sat.curvePrevL = before[1];
}

// Four lanes wide where the processor has them (WideOversampler), else two.
void RunHalfBand(HalfBandFilter& filter, LanePair* frames, int n, bool wide) {
  if constexpr (kWideLanesBuilt) {
    if (wide) return RunMonoHalfBandWide(filter, frames, n);
  }
  RunHalfBand(filter, frames, n);
}

}  // namespace

void OversampleMonoChunk(AsymSat& sat, const double* work, double* kept, int n, bool wide) {
  LanePair frames[AsymSat::kChunkFrames];
  // Zero stuffing at twice the rate; the factor restores the level the zeros take away.
  for (int i = 0; i < n; ++i) frames[i] = LanePair{2.0 * work[i], 0.0};
  RunHalfBand(sat.upL, frames, n, wide);
  RunCurve(sat, frames, n);
  RunHalfBand(sat.downL, frames, n, wide);
  for (int i = 0; i < n; ++i) kept[i] = frames[i][0];
  sat.osL = frames[n - 1][1];
}
