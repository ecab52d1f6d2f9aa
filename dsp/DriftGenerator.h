#pragma once

#include "dsp/Denormal.h"
#include "dsp/SystemRand.h"

#include <cmath>

// Slow random gain wander: the value glides with a one-pole towards a target, and once it is
// close a new target is drawn from count equally likely steps (step, 2·step, … count·step).
struct DriftGenerator {
  // A NaN distance counts as not close, so a broken value keeps its target.
  double advance(SystemRand& random) {
    if (std::fabs(value - target) <= 0.1) target = ((random.next() % count) + 1) * step;
    value = FlushDenormal(target * coefInv + value * coef);
    return value;
  }

  int count = 4;
  double step = 0.0;
  double coef = 0.0;
  double coefInv = 0.0;  // 1 - coef
  double value = 1.0;
  double target = 1.0;
};
