#pragma once

#include "dsp/CAllPassFilterCascade.h"
#include "dsp/HalfBandFilter.h"
#include "dsp/LanePair.h"

// HalfBandFilter::process for a whole chunk of sub-samples at twice the frame rate, two per
// frame, with exactly the arithmetic of one call per sub-sample.
//
// Sample by sample, the twelve sections form one chain far too long for the processor to
// overlap one sample with the next. But every section is an all-pass in z², so its even and its
// odd sub-samples are two independent recursions, each needing only its own newest input and
// output. The chunk therefore runs section group by section group: a loop over the frames with
// three sections' two recursions held in registers, the group's output feeding the next group.
// Each section's recursion steps once per frame and several run side by side.
//
// T is double (one filter, the left) or LanePair (a left and a right filter in step). The state
// is read and written at frame boundaries, after an odd sub-sample.
template <class T>
class SplitHalfBand {
public:
  static constexpr int kPerPath = CAllPassFilterCascade::kStagesPerPath;

  // Filters sub[0 .. 2·nFrames) in place; `branch` is scratch of the same length.
  static void process(HalfBandFilter& left, HalfBandFilter& right, T* sub, T* branch, int nFrames) {
    const int n = 2 * nFrames;
    for (int k = 0; k < n; ++k) branch[k] = sub[k];
    runGroup<0>(left, right, sub, nFrames);
    runGroup<kGroup>(left, right, sub, nFrames);
    runGroup<kPerPath>(left, right, branch, nFrames);
    runGroup<kPerPath + kGroup>(left, right, branch, nFrames);
    // out = (A + B of the previous sub-sample)·0.5
    T oldOut = Lanes<T>::Load(left.oldOut, right.oldOut);
    for (int k = 0; k < n; ++k) {
      sub[k] = (sub[k] + oldOut) * 0.5;
      oldOut = branch[k];
    }
    Lanes<T>::Store(oldOut, left.oldOut, right.oldOut);
  }

private:
  static constexpr int kGroup = 3;

  // One section's newest input and output for one parity of sub-samples.
  struct History {
    T x, y;
  };

  // y0 = (v − y2)·a + x2, where y2 and x2 are this parity's previous output and input.
  static T step(T v, History& h, T a) {
    const T y = (v - h.y) * a + h.x;
    h.x = v;
    h.y = y;
    return y;
  }

  static constexpr double coefficient(int section) {
    return section < kPerPath ? CAllPassFilterCascade::kPathA[section]
                              : CAllPassFilterCascade::kPathB[section - kPerPath];
  }

  // One frame, even then odd sub-sample, through the group's sections.
  static void stepFrame(T* frame, History (&even)[kGroup], History (&odd)[kGroup], const T (&a)[kGroup]) {
    T v = frame[0];
#pragma GCC unroll 3
    for (int s = 0; s < kGroup; ++s) v = step(v, even[s], a[s]);
    frame[0] = v;
    v = frame[1];
#pragma GCC unroll 3
    for (int s = 0; s < kGroup; ++s) v = step(v, odd[s], a[s]);
    frame[1] = v;
  }

  // Sections first .. first + kGroup - 1 over the chunk, in place.
  template <int first>
  static void runGroup(HalfBandFilter& left, HalfBandFilter& right, T* sub, int nFrames) {
    const T a[kGroup] = {Splat<T>(coefficient(first)), Splat<T>(coefficient(first + 1)),
                         Splat<T>(coefficient(first + 2))};
    History even[kGroup], odd[kGroup];
    for (int s = 0; s < kGroup; ++s) {
      const AllPassStage& l = left.cascade.stages[first + s];
      const AllPassStage& r = right.cascade.stages[first + s];
      odd[s] = {Lanes<T>::Load(l.x0, r.x0), Lanes<T>::Load(l.y0, r.y0)};
      even[s] = {Lanes<T>::Load(l.x1, r.x1), Lanes<T>::Load(l.y1, r.y1)};
    }
    for (int f = 0; f + 1 < nFrames; ++f) stepFrame(sub + 2 * f, even, odd, a);
    // The last frame pushes the odd values before it to the sections' third-newest place.
    History oddBefore[kGroup];
    for (int s = 0; s < kGroup; ++s) oddBefore[s] = odd[s];
    stepFrame(sub + 2 * (nFrames - 1), even, odd, a);

    for (int s = 0; s < kGroup; ++s) {
      AllPassStage& l = left.cascade.stages[first + s];
      AllPassStage& r = right.cascade.stages[first + s];
      Lanes<T>::Store(odd[s].x, l.x0, r.x0);
      Lanes<T>::Store(even[s].x, l.x1, r.x1);
      Lanes<T>::Store(oddBefore[s].x, l.x2, r.x2);
      Lanes<T>::Store(odd[s].y, l.y0, r.y0);
      Lanes<T>::Store(even[s].y, l.y1, r.y1);
      Lanes<T>::Store(oddBefore[s].y, l.y2, r.y2);
    }
  }
};
