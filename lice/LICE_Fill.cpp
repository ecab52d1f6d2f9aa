#include "lice/LICE_Fill.h"

#include "lice/LICE_Blit.h"
#include "lice/LICE_CombineRows.h"

namespace
{
long long larger(long long a, long long b)
{
  return a > b ? a : b;
}

long long smaller(long long a, long long b)
{
  return a < b ? a : b;
}
} // namespace

void LICE_FillRect(LICE_IBitmap* dest, int x, int y, int w, int h, LICE_pixel color, float alpha, int mode)
{
  if (!dest || alpha == 0.0f)
    return;
  LICE_pixel* bits = dest->getBits();
  const long long left = larger(x, 0);
  const long long top = larger(y, 0);
  const long long right = smaller((long long)x + w, dest->getWidth());
  const long long bottom = smaller((long long)y + h, dest->getHeight());
  if (!bits || left >= right || top >= bottom)
    return;

  const bool flipped = dest->isFlipped();
  const int span = dest->getRowSpan();
  lice_detail::PixelRows rows;
  rows.dest = lice_detail::RowAddress(bits, span, flipped, dest->getHeight(), top) + left * 4;
  rows.destRowStep = lice_detail::RowStep(span, flipped);
  rows.src = (const LICE_pixel_chan*)&color;
  rows.srcRowStep = 0;
  rows.width = (int)(right - left);
  rows.height = (int)(bottom - top);
  lice_detail::CombineByMode<0>(rows, alpha, mode);
}

void LICE_Clear(LICE_IBitmap* dest, LICE_pixel color)
{
  if (dest)
    LICE_FillRect(dest, 0, 0, dest->getWidth(), dest->getHeight(), color, 1.0f, LICE_BLIT_MODE_COPY);
}
