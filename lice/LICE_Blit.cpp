#include "lice/LICE_Blit.h"

#include "lice/LICE_CombineRows.h"

namespace
{
struct SourceRect
{
  long long left, top, right, bottom;
};

long long smaller(long long a, long long b)
{
  return a < b ? a : b;
}

// Coordinates are widened so that no combination of int inputs overflows while clipping.
void BlitClipped(LICE_IBitmap* dest, LICE_IBitmap* src, long long destX, long long destY, const SourceRect* given,
                 float alpha, int mode)
{
  if (!dest || !src || alpha == 0.0f)
    return;

  SourceRect r = {0, 0, src->getWidth(), src->getHeight()};
  if (given)
  {
    r = *given;
    if (r.left < 0)
    {
      destX -= r.left;
      r.left = 0;
    }
    if (r.top < 0)
    {
      destY -= r.top;
      r.top = 0;
    }
    r.right = smaller(r.right, src->getWidth());
    r.bottom = smaller(r.bottom, src->getHeight());
  }
  if (destX < 0)
  {
    r.left -= destX;
    destX = 0;
  }
  if (destY < 0)
  {
    r.top -= destY;
    destY = 0;
  }
  if (destX + (r.right - r.left) > dest->getWidth())
    r.right = r.left - destX + dest->getWidth();
  if (destY + (r.bottom - r.top) > dest->getHeight())
    r.bottom = r.top - destY + dest->getHeight();

  LICE_pixel* destBits = dest->getBits();
  LICE_pixel* srcBits = src->getBits();
  if (r.left >= r.right || r.top >= r.bottom || !destBits || !srcBits)
    return;

  const bool destFlipped = dest->isFlipped();
  const bool srcFlipped = src->isFlipped();
  const int destSpan = dest->getRowSpan();
  const int srcSpan = src->getRowSpan();
  lice_detail::PixelRows rows;
  rows.dest = lice_detail::RowAddress(destBits, destSpan, destFlipped, dest->getHeight(), destY) + destX * 4;
  rows.destRowStep = lice_detail::RowStep(destSpan, destFlipped);
  rows.src = lice_detail::RowAddress(srcBits, srcSpan, srcFlipped, src->getHeight(), r.top) + r.left * 4;
  rows.srcRowStep = lice_detail::RowStep(srcSpan, srcFlipped);
  rows.width = (int)(r.right - r.left);
  rows.height = (int)(r.bottom - r.top);
  lice_detail::CombineByMode<4>(rows, alpha, mode);
}
} // namespace

void LICE_Blit(LICE_IBitmap* dest, LICE_IBitmap* src, int destX, int destY, RECT* srcRect, float alpha, int mode)
{
  if (!srcRect)
  {
    BlitClipped(dest, src, destX, destY, nullptr, alpha, mode);
    return;
  }
  const SourceRect given = {srcRect->left, srcRect->top, srcRect->right, srcRect->bottom};
  BlitClipped(dest, src, destX, destY, &given, alpha, mode);
}

void LICE_Blit(LICE_IBitmap* dest, LICE_IBitmap* src, int destX, int destY, int srcX, int srcY, int srcW, int srcH,
               float alpha, int mode)
{
  const SourceRect given = {srcX, srcY, (long long)srcX + srcW, (long long)srcY + srcH};
  BlitClipped(dest, src, destX, destY, &given, alpha, mode);
}
