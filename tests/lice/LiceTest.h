#pragma once

// Pixels as seen (row 0 on top) as {alpha, red, green, blue}; a bitmap that shows stray writes.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <tuple>

#include "lice/LICE_Blit.h"
#include "lice/LICE_Combine.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"

using Argb = std::array<int, 4>;
inline unsigned char* At(LICE_IBitmap* b, int x, int y) {
  return (unsigned char*)(b->getBits() +
                          (b->isFlipped() ? b->getHeight() - 1 - y : y) * b->getRowSpan() + x);
}
inline Argb Get(LICE_IBitmap* b, int x, int y) {
  return {At(b, x, y)[0], At(b, x, y)[1], At(b, x, y)[2], At(b, x, y)[3]};
}
inline void Set(LICE_IBitmap* b, int x, int y, Argb v) { std::copy_n(v.data(), 4, At(b, x, y)); }
inline auto Dims(LICE_IBitmap& b) { return std::tuple(b.getWidth(), b.getHeight(), !!b.getBits()); }
// Distinct pixels, every byte within range, for x < 8 and y < 6.
inline Argb Pattern(int x, int y) { return {x * 31 + y * 7 + 1, x * 13 + y * 27, x * 29, y * 41}; }

// A zeroed w × h image of fixed size inside a ring of guard pixels (a row above and below, one
// after each row). Expect checks the ring and every pixel against expected(x, y).
struct GuardedBitmap : LICE_MemBitmap {
  int w, h;
  bool flipped;
  GuardedBitmap(int w, int h, bool flipped)
      : LICE_MemBitmap(w + 1, h + 2, 0), w(w), h(h), flipped(flipped) {
    for (int i = 0; i < (w + 1) * (h + 2); ++i) LICE_MemBitmap::getBits()[i] = Guard(i);
  }
  LICE_pixel Guard(int i) { return i <= w || i / (w + 1) > h || i % (w + 1) == w ? 0xdeadbeef : 0; }
  template <class F>
  void Expect(F expected) {
    for (int i = 0; i < (w + 1) * (h + 2); ++i)
      ASSERT_EQ(Guard(i) ? LICE_MemBitmap::getBits()[i] : 0, Guard(i)) << i;
    for (int i = 0; i < w * h; ++i)
      ASSERT_EQ(Get(this, i % w, i / w), expected(i % w, i / w)) << i % w << "," << i / w;
  }
  LICE_pixel* getBits() override { return LICE_MemBitmap::getBits() + w + 1; }
  int getWidth() override { return w; }
  int getHeight() override { return h; }
  bool isFlipped() override { return flipped; }
  bool resize(int, int) override { return false; }
};
