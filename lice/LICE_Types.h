#pragma once

// Pixels are 32 bits: in memory, byte 0 is alpha, then red, green and blue. Code that looks
// at single channels indexes the bytes; code that moves whole pixels uses the 32-bit word.

#include <cstdint>

#if !defined(__BYTE_ORDER__) || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "LICE_pixel words are composed for little-endian memory"
#endif

typedef std::uint32_t LICE_pixel;
typedef unsigned char LICE_pixel_chan;

enum
{
  LICE_PIXEL_A = 0,
  LICE_PIXEL_R = 1,
  LICE_PIXEL_G = 2,
  LICE_PIXEL_B = 3
};

// Composes a pixel word whose bytes land in memory as alpha, red, green, blue.
constexpr LICE_pixel LICE_RGBA(unsigned r, unsigned g, unsigned b, unsigned a)
{
  return ((a & 0xffu) << (8 * LICE_PIXEL_A)) | ((r & 0xffu) << (8 * LICE_PIXEL_R)) |
         ((g & 0xffu) << (8 * LICE_PIXEL_G)) | ((b & 0xffu) << (8 * LICE_PIXEL_B));
}

constexpr unsigned LICE_GETA(LICE_pixel p) { return (p >> (8 * LICE_PIXEL_A)) & 0xffu; }
constexpr unsigned LICE_GETR(LICE_pixel p) { return (p >> (8 * LICE_PIXEL_R)) & 0xffu; }
constexpr unsigned LICE_GETG(LICE_pixel p) { return (p >> (8 * LICE_PIXEL_G)) & 0xffu; }
constexpr unsigned LICE_GETB(LICE_pixel p) { return (p >> (8 * LICE_PIXEL_B)) & 0xffu; }

// Source rectangle of a blit: left and top inclusive, right and bottom exclusive.
#ifndef _WIN32
struct RECT
{
  int left, top, right, bottom;
};
#endif
