#pragma once

#include <cstdint>

// Four characters packed into 32 bits, the first in the most significant byte: the way hosts
// write plug-in and maker IDs.
constexpr int FourCharCode(const char (&code)[5]) {
  return static_cast<int>(static_cast<uint32_t>(static_cast<unsigned char>(code[0])) << 24 |
                          static_cast<uint32_t>(static_cast<unsigned char>(code[1])) << 16 |
                          static_cast<uint32_t>(static_cast<unsigned char>(code[2])) << 8 |
                          static_cast<uint32_t>(static_cast<unsigned char>(code[3])));
}
