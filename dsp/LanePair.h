#pragma once

#include <cfloat>
#include <cmath>

#include "dsp/Denormal.h"
#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

// The left and right channel side by side in one register: lane 0 left, lane 1 right. Every
// operator works lane by lane with the very IEEE operation the scalar code performs (no fused
// multiply-add, nothing summed across lanes, nothing reordered), so each lane holds bit for bit
// the value a scalar computation would give. The two channels' independent chains then run in
// one instruction stream instead of two.
typedef double LanePair __attribute__((vector_size(16)));

// Stage code is written once for a scalar (one channel) and for a LanePair (two channels).
template <class T>
inline T Splat(double v);
template <>
inline double Splat<double>(double v) {
  return v;
}
template <>
inline LanePair Splat<LanePair>(double v) {
  return LanePair{v, v};
}

// A lane mask: all ones where a lane comparison holds, zero where it does not. Comparisons of
// LanePairs give one; selections by it are bitwise, so they keep each lane's bits exactly.
typedef long long LaneMask __attribute__((vector_size(16)));
inline LaneMask Bits(LanePair v) { return reinterpret_cast<LaneMask>(v); }
inline LanePair FromBits(LaneMask m) { return reinterpret_cast<LanePair>(m); }
inline LanePair Abs(LanePair v) { return FromBits(Bits(v) & ~Bits(LanePair{-0.0, -0.0})); }
// v where the mask is set, +0.0 elsewhere.
inline LanePair KeepWhere(LaneMask mask, LanePair v) { return FromBits(Bits(v) & mask); }

// Square roots are correctly rounded both ways, as the C library's sqrt is; each processor's
// own instruction for two lanes, or the library lane by lane.
inline double SquareRoot(double x) { return std::sqrt(x); }
inline LanePair SquareRoot(LanePair x) {
#if defined(__SSE2__)
  return _mm_sqrt_pd(x);
#elif defined(__aarch64__)
  return vsqrtq_f64(x);
#else
  return LanePair{std::sqrt(x[0]), std::sqrt(x[1])};
#endif
}

// FlushDenormal lane by lane: a zero or subnormal becomes +0.0. Those are exactly the values
// whose magnitude lies below the smallest normal number (infinities and NaNs compare false), so
// a floating-point comparison picks them without moving the bits to the integer side.
inline LanePair FlushDenormal(LanePair x) { return KeepWhere(~(Abs(x) < DBL_MIN), x); }

// Gathers a value's left and right copies into one sample and scatters it back. A scalar sample
// is the left channel alone: the right copy is neither read nor written.
template <class T>
struct Lanes;
template <>
struct Lanes<double> {
  static double Load(const double& left, const double&) { return left; }
  static void Store(double v, double& left, double&) { left = v; }
  static double Merge(double left, double) { return left; }
};
template <>
struct Lanes<LanePair> {
  static LanePair Load(const double& left, const double& right) { return LanePair{left, right}; }
  static void Store(LanePair v, double& left, double& right) {
    left = v[0];
    right = v[1];
  }
  // The left lane of one value with the right lane of another.
  static LanePair Merge(LanePair left, LanePair right) { return LanePair{left[0], right[1]}; }
};
