#pragma once

#include <cstdint>

// A deterministic white-noise test signal in [-1, 1): a hashed frame index, so that any frame can
// be had without running a generator and no test depends on the C library's random source.
inline double TestNoise(int n) {
  std::uint32_t h = static_cast<std::uint32_t>(n) * 2654435761u;
  h ^= h >> 15;
  h *= 2246822519u;
  h ^= h >> 13;
  return static_cast<double>(h) / 2147483648.0 - 1.0;
}
