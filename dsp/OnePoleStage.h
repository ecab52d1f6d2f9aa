#pragma once

#include "dsp/LanePair.h"

// One-pole tone stage. The integrator z = 2·b·x + a·z is a bilinear-style low-pass whose
// output is combined with the input according to the mode.
struct OnePoleStage {
  enum Mode { kLowPass = 0, kHighPass = 1, kLowBoost = 4, kHighBoost = 5 };

  double process(double x) { return Step(x, b, a, g, z, out, mode); }

  // The step for one channel, or two in step (T double or LanePair) when both stages share
  // the mode.
  template <class T>
  static T Step(T x, T b, T a, T g, T& z, T& out, int mode) {
    z = Integrate(x, b, a, z);
    out = FlushDenormal(Combine(x, z, g, out, mode));
    return out;
  }

  template <class T>
  static T Integrate(T x, T b, T a, T z) {
    return 2.0 * b * x + a * z;
  }

  // The output for the mode from the input and the integrator. Any mode other than the four
  // above keeps the previous output.
  template <class T>
  static T Combine(T x, T z, T g, T out, int mode) {
    switch (mode) {
      case kLowPass: return z;
      case kHighPass: return x - z;
      case kLowBoost: return x + g * z;
      case kHighBoost: return x + g * (x - z);
      default: return out;
    }
  }

  int mode = 0;
  double b = 0.0, a = 0.0, g = 0.0;
  double z = 0.0;
  double out = 0.0;
};
