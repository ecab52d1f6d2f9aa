#pragma once

// The row walker under blits and fills, and the choice of combiner from a blend mode. The
// mode is decided once per call; each combiner gets its own instantiation of the row loop.
// Internal to the library.

#include <cstddef>
#include <cstring>

#include "lice/LICE_Combine.h"

namespace lice_detail
{

// A clipped area: width × height pixels of destination rows, each paired with a source row.
// kSourceStep is 4 when the source is an image and 0 when it is one repeated pixel.
struct PixelRows
{
  LICE_pixel_chan* dest;
  std::ptrdiff_t destRowStep; // bytes; negative for flipped bitmaps
  const LICE_pixel_chan* src;
  std::ptrdiff_t srcRowStep;
  int width;
  int height;
};

// Weights beyond ±127 times full strength are clamped so that no combiner's 32-bit
// arithmetic can overflow; a NaN weight draws nothing.
constexpr int kMaxWeight = 127 * 256;

inline int WeightFromAlpha(float alpha)
{
  const float scaled = alpha * 256;
  if (scaled != scaled)
    return 0;
  if (scaled > (float)kMaxWeight)
    return kMaxWeight;
  if (scaled < (float)-kMaxWeight)
    return -kMaxWeight;
  return (int)scaled;
}

// Visits every pixel of the area row by row, left to right, handing the destination and
// source pixel to `visit`; the source stands still when kSourceStep is 0.
template <int kSourceStep, class Visit>
void ForEachPixel(const PixelRows& rows, Visit visit)
{
  LICE_pixel_chan* destRow = rows.dest;
  const LICE_pixel_chan* srcRow = rows.src;
  for (int y = 0; y < rows.height; ++y, destRow += rows.destRowStep, srcRow += rows.srcRowStep)
  {
    LICE_pixel_chan* d = destRow;
    const LICE_pixel_chan* s = srcRow;
    for (int x = 0; x < rows.width; ++x, d += 4, s += kSourceStep)
      visit(d, s);
  }
}

template <class Combiner, int kSourceStep>
void CombineRows(const PixelRows& rows, int weight)
{
  ForEachPixel<kSourceStep>(rows, [weight](LICE_pixel_chan* d, const LICE_pixel_chan* s) {
    Combiner::doPix(d, s[LICE_PIXEL_R], s[LICE_PIXEL_G], s[LICE_PIXEL_B], s[LICE_PIXEL_A], weight);
  });
}

// Plain copy of whole pixels, in order, so that overlapping areas behave like the combiners.
template <int kSourceStep>
void CopyPixels(const PixelRows& rows)
{
  ForEachPixel<kSourceStep>(rows, [](LICE_pixel_chan* d, const LICE_pixel_chan* s) { std::memcpy(d, s, 4); });
}

// The copy at full strength: one block move per row.
template <int kSourceStep>
void MoveRows(const PixelRows& rows)
{
  if constexpr (kSourceStep == 0)
    CopyPixels<0>(rows);
  else
  {
    LICE_pixel_chan* destRow = rows.dest;
    const LICE_pixel_chan* srcRow = rows.src;
    for (int y = 0; y < rows.height; ++y, destRow += rows.destRowStep, srcRow += rows.srcRowStep)
      std::memmove(destRow, srcRow, (size_t)rows.width * 4);
  }
}

// The copy at half strength: each byte of both pixels halved (truncating) and summed, done
// on the whole 32-bit word at once.
template <int kSourceStep>
void AverageRows(const PixelRows& rows)
{
  ForEachPixel<kSourceStep>(rows, [](LICE_pixel_chan* d, const LICE_pixel_chan* s) {
    LICE_pixel sp, dp;
    std::memcpy(&sp, s, 4);
    std::memcpy(&dp, d, 4);
    const LICE_pixel mixed = ((sp >> 1) & 0x7f7f7f7fu) + ((dp >> 1) & 0x7f7f7f7fu);
    std::memcpy(d, &mixed, 4);
  });
}

// Writes one source byte of every pixel into one destination byte.
template <int kSourceStep>
void CopyChannel(const PixelRows& rows, int fromByte, int toByte)
{
  ForEachPixel<kSourceStep>(rows, [fromByte, toByte](LICE_pixel_chan* d, const LICE_pixel_chan* s) {
    d[toByte] = s[fromByte];
  });
}

// Mode: low byte picks the operation, 0x10000 scales the weight by the source alpha; a low
// byte of 240 or more copies one channel (bits 0-1 the source byte, bits 2-3 the target).
template <int kSourceStep>
void CombineByMode(const PixelRows& rows, float alpha, int mode)
{
  if ((mode & 0xff) >= 240)
  {
    CopyChannel<kSourceStep>(rows, mode & 3, (mode >> 2) & 3);
    return;
  }
  const int m = mode & 0x100ff;
  if (m == 0 && alpha == 1.0f)
  {
    MoveRows<kSourceStep>(rows);
    return;
  }
  if (m == 0 && alpha == 0.5f)
  {
    AverageRows<kSourceStep>(rows);
    return;
  }
  const int weight = WeightFromAlpha(alpha);
  if (weight == 0)
    return;
  switch (m)
  {
  case 0:
    if (weight == 256)
      CopyPixels<kSourceStep>(rows);
    else if (weight > 0)
      CombineRows<_LICE_CombinePixelsCopyNoClamp, kSourceStep>(rows, weight);
    break;
  case 1: CombineRows<_LICE_CombinePixelsAdd, kSourceStep>(rows, weight); break;
  case 2: CombineRows<_LICE_CombinePixelsColorDodge, kSourceStep>(rows, weight); break;
  case 3: CombineRows<_LICE_CombinePixelsMulNoClamp, kSourceStep>(rows, weight); break;
  case 4: CombineRows<_LICE_CombinePixelsOverlay, kSourceStep>(rows, weight); break;
  case 5: CombineRows<_LICE_CombinePixelsHSVAdjust, kSourceStep>(rows, weight); break;
  case 0x10000:
    if (weight == 256)
      CombineRows<_LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp, kSourceStep>(rows, weight);
    else
      CombineRows<_LICE_CombinePixelsCopySourceAlphaNoClamp, kSourceStep>(rows, weight);
    break;
  case 0x10001: CombineRows<_LICE_CombinePixelsAddSourceAlpha, kSourceStep>(rows, weight); break;
  case 0x10002: CombineRows<_LICE_CombinePixelsColorDodgeSourceAlpha, kSourceStep>(rows, weight); break;
  case 0x10003: CombineRows<_LICE_CombinePixelsMulSourceAlphaNoClamp, kSourceStep>(rows, weight); break;
  case 0x10004: CombineRows<_LICE_CombinePixelsOverlaySourceAlpha, kSourceStep>(rows, weight); break;
  case 0x10005: CombineRows<_LICE_CombinePixelsHSVAdjustSourceAlpha, kSourceStep>(rows, weight); break;
  default: break;
  }
}

// Address of the image's row as seen (0 = top) and the byte step to the row below it.
inline LICE_pixel_chan* RowAddress(LICE_pixel* bits, int rowSpan, bool flipped, int height, long long row)
{
  const long long memoryRow = flipped ? height - row - 1 : row;
  return (LICE_pixel_chan*)bits + memoryRow * rowSpan * 4;
}

inline std::ptrdiff_t RowStep(int rowSpan, bool flipped)
{
  return (std::ptrdiff_t)rowSpan * 4 * (flipped ? -1 : 1);
}

} // namespace lice_detail
