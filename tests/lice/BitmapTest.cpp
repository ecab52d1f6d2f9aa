#include "AllocationCounter.h"
#include "LiceTest.h"

// Rows pad to the alignment's lowest set bit (at most bit 4); no pixels or no memory leave 0 × 0.
// Growth adds a quarter, nothing shrinks: shrinking, regrowing, growing in it allocate nothing.
TEST(MemBitmap, RowSpanAndResizing) {
  const int spans[][3] = {{5, 4, 8},  {5, 0, 5},   {5, 1, 5},  {5, 2, 6},   {5, 3, 5},
                          {5, 12, 8}, {9, 16, 16}, {5, 64, 5}, {20, 64, 36}};
  for (auto [w, align, span] : spans)
    EXPECT_EQ(LICE_MemBitmap(w, 1, align).getRowSpan(), span) << w << " " << align;
  LICE_MemBitmap none;
  EXPECT_TRUE(Dims(none) == std::tuple(0, 0, false) && !none.isFlipped() && !none.getDC() &&
              !none.Extended(1, nullptr));
  const int sizes[][2] = {{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {1 << 20, 1 << 20}, {INT_MAX, INT_MAX}};
  for (auto [w, h] : sizes) {
    LICE_MemBitmap bmp(4, 4, 4);
    EXPECT_TRUE(bmp.resize(w, h) && Dims(bmp) == std::tuple(0, 0, false)) << w << " " << h;
  }
  LICE_MemBitmap bmp(16, 16, 4);
  LICE_pixel* const bits = bmp.getBits();
  Set(&bmp, 1, 1, {1, 2, 3, 4});
  AllocationScope shrinking;
  const bool same = bmp.resize(16, 16), shrunk = bmp.resize(3, 2), restored = bmp.resize(16, 16);
  EXPECT_TRUE(shrinking.Count() == 0 && !same && shrunk && restored && bmp.getBits() == bits);
  EXPECT_TRUE(bmp.resize(16, 20));  // 1280 bytes needed, 1600 allocated
  AllocationScope growing;
  const bool grown = bmp.resize(16, 25);
  EXPECT_TRUE(growing.Count() == 0 && grown && Get(&bmp, 1, 1) == (Argb{1, 2, 3, 4}));
  EXPECT_TRUE(bmp.resize(500, 300));
  LICE_Clear(&bmp, 0x12345678);  // every byte within reach; the heap notices overruns on free
}

// Rows pad to 4 pixels in a zeroed context, kept while a size fits (flipped: its last rows); widths
// -3 to 0, height 0: no change, no context; refused sizes: a change to 0 × 0, rows still padded.
TEST(SysBitmap, RowSpanAndResizing) {
  for (auto [w, span] : {std::pair{1, 4}, {5, 8}, {6, 8}, {8, 8}, {9, 12}}) {
    LICE_SysBitmap sys(w, 1);
    EXPECT_TRUE(Dims(sys) == std::tuple(w, 1, true) && sys.getRowSpan() == span) << w;
    EXPECT_TRUE(!*sys.getBits() && SWELL_GetCtxFrameBuffer(sys.getDC()) == sys.getBits());
  }
  struct Flipped : LICE_SysBitmap {
    using LICE_SysBitmap::LICE_SysBitmap;
    bool isFlipped() override { return true; }
  } flipped(4, 6);
  LICE_pixel* frame = (LICE_pixel*)SWELL_GetCtxFrameBuffer(flipped.getDC());
  EXPECT_TRUE(flipped.getBits() == frame && !flipped.resize(4, 6) && flipped.resize(4, 2));
  EXPECT_TRUE(flipped.getBits() == frame + (6 - 2) * 4 && flipped.resize(3, 5));
  EXPECT_EQ(flipped.getBits(), frame + (6 - 5) * 4);
  LICE_Clear(&flipped, 0xffffffff);
  EXPECT_TRUE(SWELL_GetCtxFrameBuffer(flipped.getDC()) == frame && flipped.resize(5, 6) &&
              flipped.getRowSpan() == 8);
  LICE_SysBitmap sysNone, thin(1, 0);
  EXPECT_TRUE(Dims(sysNone) == std::tuple(0, 0, false) && !sysNone.getRowSpan() &&
              thin.getRowSpan() == 4);
  EXPECT_TRUE(!SWELL_CreateMemContext(nullptr, 0, 4) && !SWELL_CreateMemContext(nullptr, 4, 0));
  const int big = 1 << 20, wide = INT_MAX - 3, wider = INT_MAX - 2;
  const int cases[][6] = {{0, 4, 0, 0, 4, 0},    {4, 0, 0, 4, 0, 4},       {-3, 4, 0, -3, 4, 0},
                          {-4, 4, 1, 0, 0, -4},  {big, big, 1, 0, 0, big}, {wide, 1, 1, 0, 0, wide},
                          {wider, 1, 1, 0, 0, 0}};
  for (auto [w, h, changed, width, height, span] : cases) {
    LICE_SysBitmap sys(w < 0 ? 0 : 4, 4);  // one with a context would keep it for any w < 0
    EXPECT_TRUE(sys.resize(w, h) == !!changed && sys.getRowSpan() == span && !sys.getDC()) << w;
    EXPECT_EQ(Dims(sys), std::tuple(width, height, false)) << w << " " << h;
  }
}
