#pragma once

#include "dsp/LanePair.h"
#include "dsp/OnePoleStage.h"
#include "dsp/RBJ.h"

#include <type_traits>

// A biquad of one channel, or the left and right biquads in step, with coefficients and
// memories copied into locals while a chunk of frames runs (no reloads through the object, and
// the two channels' chains in one instruction stream). store() writes the memories back.
template <class T>
struct BiquadLanes {
  BiquadLanes(const RBJ& l, const RBJ& r)
      : b0(Lanes<T>::Load(l.b0, r.b0)), b1(Lanes<T>::Load(l.b1, r.b1)), b2(Lanes<T>::Load(l.b2, r.b2)),
        a1(Lanes<T>::Load(l.a1, r.a1)), a2(Lanes<T>::Load(l.a2, r.a2)), x1(Lanes<T>::Load(l.x1, r.x1)),
        x2(Lanes<T>::Load(l.x2, r.x2)), y1(Lanes<T>::Load(l.y1, r.y1)), y2(Lanes<T>::Load(l.y2, r.y2)) {}

  T filter(T x) { return RBJ::Step(x, b0, b1, b2, a1, a2, x1, x2, y1, y2); }

  void store(RBJ& l, RBJ& r) const {
    Lanes<T>::Store(x1, l.x1, r.x1);
    Lanes<T>::Store(x2, l.x2, r.x2);
    Lanes<T>::Store(y1, l.y1, r.y1);
    Lanes<T>::Store(y2, l.y2, r.y2);
  }

  T b0, b1, b2, a1, a2;
  T x1, x2, y1, y2;
};

// The same for one-pole tone stages; each lane keeps its own stage's mode.
template <class T>
struct OnePoleLanes {
  OnePoleLanes(const OnePoleStage& l, const OnePoleStage& r)
      : b(Lanes<T>::Load(l.b, r.b)), a(Lanes<T>::Load(l.a, r.a)), g(Lanes<T>::Load(l.g, r.g)),
        z(Lanes<T>::Load(l.z, r.z)), out(Lanes<T>::Load(l.out, r.out)), leftMode(l.mode),
        rightMode(std::is_same_v<T, double> ? l.mode : r.mode) {}

  // A left and right stage normally share their mode. Stages of different modes (nothing in
  // the effect pairs them so) take each lane from its own mode's combination.
  T process(T x) {
    if (leftMode == rightMode) return OnePoleStage::Step(x, b, a, g, z, out, leftMode);
    z = OnePoleStage::Integrate(x, b, a, z);
    out = FlushDenormal(Lanes<T>::Merge(OnePoleStage::Combine(x, z, g, out, leftMode),
                                        OnePoleStage::Combine(x, z, g, out, rightMode)));
    return out;
  }

  void store(OnePoleStage& l, OnePoleStage& r) const {
    Lanes<T>::Store(z, l.z, r.z);
    Lanes<T>::Store(out, l.out, r.out);
  }

  T b, a, g;
  T z, out;
  int leftMode, rightMode;
};
