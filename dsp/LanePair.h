#pragma once

#include "dsp/Denormal.h"

#include <cfloat>
#include <cmath>
#include <emmintrin.h>

// The left and right channel side by side in one register: lane 0 left, lane 1 right. Every
// operator works lane by lane with the very IEEE operation the scalar code performs (no fused
// multiply-add, nothing summed across lanes, nothing reordered), so each lane holds bit for bit
// the value a scalar computation would give. The two channels' independent chains then run in
// one instruction stream instead of two.
typedef double LanePair __attribute__((vector_size(16)));

// Stage code is written once for a scalar (one channel) and for a LanePair (two channels).
template <class T> inline T Splat(double v);
template <> inline double Splat<double>(double v) { return v; }
template <> inline LanePair Splat<LanePair>(double v) { return LanePair{v, v}; }

// Square roots are correctly rounded both ways, as the C library's sqrt is.
inline double SquareRoot(double x) { return std::sqrt(x); }
inline LanePair SquareRoot(LanePair x) { return _mm_sqrt_pd(x); }

// FlushDenormal lane by lane: a zero or subnormal becomes +0.0. Those are exactly the values
// whose magnitude lies below the smallest normal number (infinities and NaNs compare false), so
// a floating-point comparison picks them without moving the bits to the integer side.
inline LanePair FlushDenormal(LanePair x) {
  const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
  return _mm_andnot_pd(_mm_cmplt_pd(magnitude, _mm_set1_pd(DBL_MIN)), x);
}

// Gathers a value's left and right copies into one sample and scatters it back. A scalar sample
// is the left channel alone: the right copy is neither read nor written.
template <class T> struct Lanes;
template <> struct Lanes<double> {
  static double Load(const double& left, const double&) { return left; }
  static void Store(double v, double& left, double&) { left = v; }
  static double Merge(double left, double) { return left; }
};
template <> struct Lanes<LanePair> {
  static LanePair Load(const double& left, const double& right) { return LanePair{left, right}; }
  static void Store(LanePair v, double& left, double& right) {
    left = v[0];
    right = v[1];
  }
  // The left lane of one value with the right lane of another.
  static LanePair Merge(LanePair left, LanePair right) { return LanePair{left[0], right[1]}; }
};
