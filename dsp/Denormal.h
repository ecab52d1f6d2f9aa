#pragma once

#include <cstdint>
#include <cstring>

// Recursive filters that decay towards silence would otherwise spend their time on subnormal
// numbers, which many processors handle very slowly. Every recursive step therefore replaces a
// value whose exponent field is all zero (a zero of either sign or a subnormal) by +0.0.
inline double FlushDenormal(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return ((bits >> 52) & 0x7FF) == 0 ? 0.0 : x;
}
