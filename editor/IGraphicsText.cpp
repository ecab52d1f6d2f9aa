// Text for controls, in the raster library's cached fonts. Kept apart from the other drawing
// services so that a program which never draws text does not link the font libraries' code.
#include "editor/IGraphics.h"
#include "lice/LICE_CachedFont.h"
#include "lice/LICE_SysBitmap.h"

LICE_CachedFont* IGraphics::CacheFont(IText* text) {
  if (!text->mCached) text->mCached = LICE_CachedFont::Get(text->mFont, text->mSize);
  return text->mCached;
}

bool IGraphics::DrawIText(IText* text, char* str, IRECT* rect) {
  LICE_CachedFont* font = CacheFont(text);
  if (!mDrawBitmap || !str || !font) return false;
  const IRECT c = ClipToDrawRECT(*rect);
  const RECT layout{rect->L, rect->T, rect->R, rect->B}, clip{c.L, c.T, c.R, c.B};
  const IColor& color = text->mColor;
  font->Draw(mDrawBitmap, str, layout, clip, text->mAlign,
             LICE_RGBA(color.R, color.G, color.B, color.A));
  return true;
}

bool IGraphics::MeasureWithCachedFont(IText* text, const char* str, IRECT* dest) {
  LICE_CachedFont* font = CacheFont(text);
  if (!str || !font) return false;
  const LICE_CachedFont::Extent extent = font->Measure(str);
  dest->R = dest->L + extent.w;
  dest->B = dest->T + extent.h;
  return true;
}
