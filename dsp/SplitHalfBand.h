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
    runGroup<0>(left, right, sub, branch, nFrames);
    runGroup<kGroup>(left, right, sub, branch, nFrames);
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
  static constexpr int kSlots = 2 * kGroup;  // a group's sections of path A, then of path B

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

  // One frame, even then odd sub-sample, through the group's sections: the first kGroup of
  // path A on `a`, the other kGroup of path B on `b`.
  static void stepFrame(T* a, T* b, History (&even)[kSlots], History (&odd)[kSlots], const T (&coef)[kSlots]) {
    a[0] = runSections(a[0], even, coef, 0);
    b[0] = runSections(b[0], even, coef, kGroup);
    a[1] = runSections(a[1], odd, coef, 0);
    b[1] = runSections(b[1], odd, coef, kGroup);
  }

  static T runSections(T v, History (&h)[kSlots], const T (&coef)[kSlots], int first) {
#pragma GCC unroll 3
    for (int s = first; s < first + kGroup; ++s) v = step(v, h[s], coef[s]);
    return v;
  }

  // The section of the filter held in a group slot.
  static constexpr int section(int first, int slot) { return slot < kGroup ? first + slot : kPerPath + first + slot - kGroup; }

  // Sections first .. first + kGroup - 1 of both paths over the chunk, in place: path A on
  // `sub`, path B on `branch`. The two paths' recursions are independent and run side by side.
  template <int first>
  static void runGroup(HalfBandFilter& left, HalfBandFilter& right, T* sub, T* branch, int nFrames) {
    T coef[kSlots];
    History even[kSlots], odd[kSlots];
    for (int slot = 0; slot < kSlots; ++slot) {
      coef[slot] = Splat<T>(coefficient(section(first, slot)));
      const AllPassStage& l = left.cascade.stages[section(first, slot)];
      const AllPassStage& r = right.cascade.stages[section(first, slot)];
      odd[slot] = {Lanes<T>::Load(l.x0, r.x0), Lanes<T>::Load(l.y0, r.y0)};
      even[slot] = {Lanes<T>::Load(l.x1, r.x1), Lanes<T>::Load(l.y1, r.y1)};
    }
    for (int f = 0; f + 1 < nFrames; ++f) stepFrame(sub + 2 * f, branch + 2 * f, even, odd, coef);
    // The last frame pushes the odd values before it to the sections' third-newest place.
    History oddBefore[kSlots];
    for (int slot = 0; slot < kSlots; ++slot) oddBefore[slot] = odd[slot];
    stepFrame(sub + 2 * (nFrames - 1), branch + 2 * (nFrames - 1), even, odd, coef);

    for (int slot = 0; slot < kSlots; ++slot) {
      AllPassStage& l = left.cascade.stages[section(first, slot)];
      AllPassStage& r = right.cascade.stages[section(first, slot)];
      Lanes<T>::Store(odd[slot].x, l.x0, r.x0);
      Lanes<T>::Store(even[slot].x, l.x1, r.x1);
      Lanes<T>::Store(oddBefore[slot].x, l.x2, r.x2);
      Lanes<T>::Store(odd[slot].y, l.y0, r.y0);
      Lanes<T>::Store(even[slot].y, l.y1, r.y1);
      Lanes<T>::Store(oddBefore[slot].y, l.y2, r.y2);
    }
  }
};
