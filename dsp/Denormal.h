#pragma once

#include <cstdint>
#include <cstring>

// The 11-bit exponent field of a double: 0 for zeros and subnormals, 2047 for infinities and NaN.
inline int ExponentField(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return static_cast<int>((bits >> 52) & 0x7FF);
}

// Recursive filters that decay towards silence would otherwise spend their time on subnormal
// numbers, which many processors handle very slowly. Every recursive step therefore replaces a
// value whose exponent field is all zero (a zero of either sign or a subnormal) by +0.0.
inline double FlushDenormal(double x) { return ExponentField(x) == 0 ? 0.0 : x; }
