// Drawing services for controls: bitmaps and rectangles into the back buffer, clipped to the
// rectangle being redrawn.
#include <algorithm>

#include "editor/IGraphics.h"
#include "lice/LICE_Blit.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_SysBitmap.h"

namespace {

int BlitMode(const IChannelBlend* blend) {
  if (!blend) return LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA;
  switch (blend->mMethod) {
    case IChannelBlend::kBlendClobber:
      return LICE_BLIT_MODE_COPY;
    case IChannelBlend::kBlendAdd:
      return LICE_BLIT_MODE_ADD | LICE_BLIT_USE_ALPHA;
    case IChannelBlend::kBlendColorDodge:
      return LICE_BLIT_MODE_DODGE | LICE_BLIT_USE_ALPHA;
    default:
      return LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA;
  }
}

}  // namespace

// Frame bmpState (from 1) of a multi-frame bitmap.
bool IGraphics::DrawBitmap(IBitmap* bitmap, IRECT* dest, int bmpState, const IChannelBlend* blend) {
  int srcX = 0, srcY = 0;
  if (bitmap->N > 1 && bmpState > 1) {
    const double size = bitmap->mFramesAreHorizontal ? bitmap->W : bitmap->H;
    const int offset = static_cast<int>(size * (bmpState - 1) / bitmap->N + 0.5);
    (bitmap->mFramesAreHorizontal ? srcX : srcY) = offset;
  }
  return DrawBitmap(bitmap, dest, srcX, srcY, blend);
}

// The part of dest inside the rectangle being redrawn; all zeros when they do not meet.
IRECT IGraphics::ClipToDrawRECT(const IRECT& dest) const {
  const IRECT& d = mDrawRECT;
  if (dest.Empty() || d.Empty() || !Meets(d, dest)) return IRECT();
  return {std::max(dest.L, d.L), std::max(dest.T, d.T), std::min(dest.R, d.R),
          std::min(dest.B, d.B)};
}

bool IGraphics::DrawBitmap(IBitmap* bitmap, IRECT* dest, int srcX, int srcY,
                           const IChannelBlend* blend) {
  const IRECT clip = ClipToDrawRECT(*dest);
  const float weight = blend ? blend->mWeight : 1.0f;
  LICE_Blit(mDrawBitmap, bitmap->mData, clip.L, clip.T, srcX + clip.L - dest->L,
            srcY + clip.T - dest->T, clip.R - clip.L, clip.B - clip.T, weight, BlitMode(blend));
  return true;
}

// Four one-pixel lines, end points included: top, bottom, left, right, so the outline covers
// columns L to R and rows T to B.
bool IGraphics::DrawRect(const IColor* color, IRECT* rect) {
  if (!mDrawBitmap) return false;
  const LICE_pixel pixel = LICE_RGBA(color->R, color->G, color->B, color->A);
  const int w = rect->W() + 1, h = rect->H() + 1;
  const int lines[4][4] = {{rect->L, rect->T, w, 1},
                           {rect->L, rect->B, w, 1},
                           {rect->L, rect->T, 1, h},
                           {rect->R, rect->T, 1, h}};
  for (const auto& l : lines)
    LICE_FillRect(mDrawBitmap, l[0], l[1], l[2], l[3], pixel, 1.0f, LICE_BLIT_MODE_COPY);
  return true;
}
