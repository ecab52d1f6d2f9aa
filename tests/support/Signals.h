#pragma once
// Test signals and measurements shared by the suites.
#include <cmath>
#include <cstdint>
#include <cstring>

// Deterministic white noise in [-1, 1): a hashed frame index, so any frame can be had without
// running a generator and no test depends on the C library's random source.
inline double TestNoise(int n) {
  std::uint32_t h = static_cast<std::uint32_t>(n) * 2654435761u;
  h ^= h >> 15;
  h *= 2246822519u;
  h ^= h >> 13;
  return static_cast<double>(h) / 2147483648.0 - 1.0;
}

inline bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

inline double ToDb(double gain) { return 20.0 * std::log10(gain); }

// Steady-state gain of a linear block at w radians per sample, measured by running a cosine and
// a sine through two fresh copies: settled, their outputs are the real and imaginary parts of
// H(e^jw)·e^jwn, so one pair of samples gives |H| with no windowing error.
template <class Block, class Make>
double MeasuredGain(Make make, double w, int settle) {
  Block onCos = make(), onSin = make();
  double yc = 0.0, ys = 0.0;
  for (int n = 0; n <= settle; ++n) {
    yc = onCos.process(std::cos(w * n));
    ys = onSin.process(std::sin(w * n));
  }
  return std::hypot(yc, ys);
}
