#pragma once

#include "dsp/AsymSat.h"
#include "dsp/LanePair.h"

// The asymmetric curve's shape, for the doubled-rate sample x whose smoothed value (the curve's
// one-pole memory after x) is s. The branch follows the sign of the incoming sample, not of the
// smoothed one; an input of exactly zero (or NaN) takes the negative side. Both even terms are
// non-negative and subtracted, pulling both half-waves down. Powers are multiplied out factor by
// factor, left to right (s⁴ is s·s·s·s), never through pow.
//
// Both half-waves share one form, odd = (a / sqrt(a·a + 1))·k and even = (b / sqrt(c + 1))·k',
// so each lane picks its half-wave's operands and the square roots run once (a factor k of 1.0
// stands for "no factor": multiplying by 1 is exact). T is double or LanePair.
template <class T>
inline T CurveShape(const AsymSat& sat, T x, T s) {
  const auto positive = x > 0.0;
  const T p = sat.posKnee * s;      // positive half-wave: p/sqrt(p²+1) and s²/sqrt(s⁴+1)
  const T u = sat.negKnee * s * s;  // negative half-wave: s/sqrt(s²+1) and u/sqrt(u²+1)
  const T oddIn = positive ? p : s;
  const T oddGain = positive ? Splat<T>(sat.posKneeInv) : Splat<T>(1.0);
  const T evenIn = positive ? s * s : u;
  const T evenSquare = positive ? s * s * s * s : u * u;
  const T evenGain = positive ? Splat<T>(1.0) : Splat<T>(sat.negKneeInv);
  const T odd = (oddIn / SquareRoot(oddIn * oddIn + 1.0)) * oddGain;
  const T even = (evenIn / SquareRoot(evenSquare + 1.0)) * evenGain;
  return odd - sat.evenWeight * even;
}
