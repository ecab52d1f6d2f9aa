#include "lice/LICE_CachedFont.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <string>
#include <utility>

#include "lice/LICE_Combine.h"
#include "lice/LICE_CombineRows.h"

namespace {

std::mutex gFontsMutex;  // guards the library, the font table and fontconfig

FT_Library Library() {
  static FT_Library library = nullptr;
  if (!library && FT_Init_FreeType(&library) != 0) library = nullptr;
  return library;
}

std::string FontFileFor(const char* family) {
  std::string file;
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result;
  if (FcPattern* match = FcFontMatch(nullptr, pattern, &result)) {
    FcChar8* path = nullptr;
    if (FcPatternGetString(match, FC_FILE, 0, &path) == FcResultMatch)
      file = reinterpret_cast<const char*>(path);
    FcPatternDestroy(match);
  }
  FcPatternDestroy(pattern);
  return file;
}

// The next code point of a UTF-8 string; a malformed sequence reads as U+FFFD, one byte on.
char32_t NextCodePoint(const unsigned char*& p) {
  const unsigned lead = *p++;
  if (lead < 0x80) return lead;
  const int extra = lead >= 0xF0 && lead < 0xF8 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : -1;
  if (extra < 0 || lead >= 0xF8) return 0xFFFD;
  char32_t code = lead & (0x3F >> extra);
  for (int i = 0; i < extra; ++i) {
    if ((p[i] & 0xC0) != 0x80) return 0xFFFD;
    code = code << 6 | (p[i] & 0x3F);
  }
  p += extra;
  return code;
}

}  // namespace

LICE_CachedFont* LICE_CachedFont::Get(const char* family, int pixelSize) {
  if (!family || pixelSize < 1) return nullptr;
  static std::map<std::pair<std::string, int>, std::unique_ptr<LICE_CachedFont>> fonts;
  std::lock_guard<std::mutex> lock(gFontsMutex);
  auto& font = fonts[{family, pixelSize}];
  if (font) return font.get();
  const std::string file = FontFileFor(family);
  FT_Face face = nullptr;
  if (!Library() || file.empty() || FT_New_Face(Library(), file.c_str(), 0, &face) != 0)
    return nullptr;
  if (FT_Set_Pixel_Sizes(face, 0, pixelSize) != 0) {
    FT_Done_Face(face);
    return nullptr;
  }
  font.reset(new LICE_CachedFont(face));
  return font.get();
}

LICE_CachedFont::LICE_CachedFont(FT_FaceRec_* face)
    : mFace(face),
      mAscent(static_cast<int>(face->size->metrics.ascender >> 6)),
      mDescent(static_cast<int>(-face->size->metrics.descender >> 6)) {}

LICE_CachedFont::~LICE_CachedFont() { FT_Done_Face(mFace); }

const LICE_CachedFont::Glyph& LICE_CachedFont::GlyphFor(char32_t codePoint) {
  auto found = mGlyphs.find(codePoint);
  if (found != mGlyphs.end()) return found->second;
  Glyph& glyph = mGlyphs[codePoint];
  if (FT_Load_Char(mFace, codePoint, FT_LOAD_RENDER) != 0) return glyph;
  const FT_GlyphSlot slot = mFace->glyph;
  glyph.left = slot->bitmap_left;
  glyph.top = slot->bitmap_top;
  glyph.width = static_cast<int>(slot->bitmap.width);
  glyph.rows = static_cast<int>(slot->bitmap.rows);
  glyph.advance = static_cast<int>(slot->advance.x >> 6);
  for (int y = 0; y < glyph.rows; ++y) {
    const unsigned char* row = slot->bitmap.buffer + y * slot->bitmap.pitch;
    glyph.coverage.insert(glyph.coverage.end(), row, row + glyph.width);
  }
  return glyph;
}

int LICE_CachedFont::Width(const char* utf8) {
  int width = 0;
  for (auto p = reinterpret_cast<const unsigned char*>(utf8); *p;)
    width += GlyphFor(NextCodePoint(p)).advance;
  return width;
}

LICE_CachedFont::Extent LICE_CachedFont::Measure(const char* utf8) {
  std::lock_guard<std::mutex> lock(mMutex);
  return {utf8 ? Width(utf8) : 0, mAscent + mDescent};
}

void LICE_CachedFont::Draw(LICE_IBitmap* dest, const char* utf8, const RECT& layout,
                           const RECT& clip, int align, LICE_pixel color) {
  if (!dest || !dest->getBits() || !utf8) return;
  const int clipL = std::max(clip.left, 0), clipT = std::max(clip.top, 0);
  const int clipR = std::min(clip.right, dest->getWidth());
  const int clipB = std::min(clip.bottom, dest->getHeight());
  std::lock_guard<std::mutex> lock(mMutex);
  const int room = layout.right - layout.left - Width(utf8);
  int penX = layout.left + (align == 2 ? room : align == 1 ? room / 2 : 0);
  const int baseline = layout.top + (layout.bottom - layout.top - mAscent - mDescent) / 2 + mAscent;
  const int r = LICE_GETR(color), g = LICE_GETG(color), b = LICE_GETB(color);
  for (auto p = reinterpret_cast<const unsigned char*>(utf8); *p;) {
    const Glyph& glyph = GlyphFor(NextCodePoint(p));
    const int x0 = penX + glyph.left, y0 = baseline - glyph.top;
    for (int y = std::max(y0, clipT); y < std::min(y0 + glyph.rows, clipB); ++y) {
      LICE_pixel_chan* row = lice_detail::RowAddress(dest->getBits(), dest->getRowSpan(),
                                                     dest->isFlipped(), dest->getHeight(), y);
      for (int x = std::max(x0, clipL); x < std::min(x0 + glyph.width, clipR); ++x) {
        const int coverage = glyph.coverage[(y - y0) * glyph.width + (x - x0)];
        const int a = static_cast<int>(LICE_GETA(color)) * coverage / 255;
        _LICE_CombinePixelsCopySourceAlphaNoClamp::doPix(row + 4 * x, r, g, b, a, 256);
      }
    }
    penX += glyph.advance;
  }
}
