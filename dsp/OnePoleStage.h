#pragma once

#include "dsp/LanePair.h"

// One-pole tone stage. The integrator z = 2·b·x + a·z is a bilinear-style low-pass whose
// output is combined with the input according to the mode.
struct OnePoleStage {
  enum Mode { kLowPass = 0, kHighPass = 1, kLowBoost = 4, kHighBoost = 5 };

  // Any mode other than the four above keeps the previous output.
  double process(double x) {
    return Step(x, b, a, g, z, out, mode == kLowPass, mode == kHighPass, mode == kLowBoost, mode == kHighBoost);
  }

  // The step for one or two channels (T double or LanePair); M is bool or LaneMask, one per
  // mode, telling which combination each lane's stage uses.
  template <class T, class M>
  static T Step(T x, T b, T a, T g, T& z, T& out, M lowPass, M highPass, M lowBoost, M highBoost) {
    z = 2.0 * b * x + a * z;
    out = lowPass ? z : highPass ? x - z : lowBoost ? x + g * z : highBoost ? x + g * (x - z) : out;
    out = FlushDenormal(out);
    return out;
  }

  // The same where every lane's stage has one mode: only that combination is computed.
  template <class T>
  static T StepInMode(T x, T b, T a, T g, T& z, T& out, int mode) {
    z = 2.0 * b * x + a * z;
    switch (mode) {
      case kLowPass: out = z; break;
      case kHighPass: out = x - z; break;
      case kLowBoost: out = x + g * z; break;
      case kHighBoost: out = x + g * (x - z); break;
      default: break;
    }
    out = FlushDenormal(out);
    return out;
  }

  int mode = 0;
  double b = 0.0, a = 0.0, g = 0.0;
  double z = 0.0;
  double out = 0.0;
};
