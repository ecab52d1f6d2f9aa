#pragma once

#include "dsp/Denormal.h"

// One-pole tone stage. The integrator z = 2·b·x + a·z is a bilinear-style low-pass whose
// output is combined with the input according to the mode.
struct OnePoleStage {
  enum Mode { kLowPass = 0, kHighPass = 1, kLowBoost = 4, kHighBoost = 5 };

  // Any mode other than the four above keeps the previous output.
  double process(double x) {
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
