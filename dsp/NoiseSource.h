#pragma once

#include "dsp/Denormal.h"

// The congruential noise behind the effect's noise floors: the seed steps through
// (3877 * seed + 29573) mod 139968 (32-bit arithmetic that cannot overflow) and each step
// yields 1 - 2 * seed / 139968, in [-1, 1), with zero and subnormals flushed.
inline double NextNoise(int& seed) {
  constexpr double kMinusInversePeriod = -7.144490169181527e-06;  // -1 / 139968
  seed = (3877 * seed + 29573) % 139968;
  return FlushDenormal(seed * 2 * kMinusInversePeriod + 1.0);
}
