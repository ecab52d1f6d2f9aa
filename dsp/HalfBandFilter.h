#pragma once

#include "dsp/CAllPassFilterCascade.h"

// Steep 12th-order half-band low-pass, H(z) = ½·(A(z²) + z⁻¹·B(z²)), used at the doubled rate
// both to interpolate zero-stuffed input and to band-limit before dropping sub-samples. Path B's
// one-sample delay is the stored output of the previous call.
class HalfBandFilter {
public:
  double process(double x) {
    const double out = (cascade.processPathA(x) + oldOut) * 0.5;
    oldOut = cascade.processPathB(x);
    return out;
  }

  CAllPassFilterCascade cascade;
  double oldOut = 0.0;
};
