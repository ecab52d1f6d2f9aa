#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "lice/LICE_IBitmap.h"

struct FT_FaceRec_;

// A font face at one pixel size, found through fontconfig and rasterised by FreeType; each glyph
// is rendered once, as 8-bit coverage, and kept. Fonts are shared by the whole process (Get) and
// live until it ends, so an editor may keep a pointer to one; each font guards its glyphs with a
// mutex of its own, as editors of different instances may draw on different threads.
class LICE_CachedFont {
 public:
  // The font for a family name at a pixel size. A family fontconfig does not know gets its
  // closest match (on a stock Linux system, a DejaVu face). Null for a size below 1 or when
  // there is no font to be found at all.
  static LICE_CachedFont* Get(const char* family, int pixelSize);

  struct Extent {
    int w, h;
  };
  // The width of the string's advances and the height of a line (ascent plus descent).
  Extent Measure(const char* utf8);
  // One line of text, vertically centred in layout (right and bottom exclusive) and placed
  // horizontally by align (0 left, 1 centre, 2 right); only pixels inside clip are touched. The
  // colour's alpha scales each glyph's coverage and the result goes over the bitmap.
  void Draw(LICE_IBitmap* dest, const char* utf8, const RECT& layout, const RECT& clip, int align,
            LICE_pixel color);

  ~LICE_CachedFont();

 private:
  struct Glyph {
    int left = 0, top = 0, width = 0, rows = 0, advance = 0;
    std::vector<unsigned char> coverage;
  };
  explicit LICE_CachedFont(FT_FaceRec_* face);
  const Glyph& GlyphFor(char32_t codePoint);
  int Width(const char* utf8);

  std::mutex mMutex;
  FT_FaceRec_* mFace;
  int mAscent, mDescent;
  std::map<char32_t, Glyph> mGlyphs;
};
