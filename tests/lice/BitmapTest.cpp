// Memory and system bitmaps: row spans, resizing and its allocation rules, failure to no pixels.

#include "AllocationCounter.h"
#include "LiceTest.h"

// Rows are padded to the lowest set bit of the alignment, at most bit 4 alone; any size without
// pixels or beyond memory leaves 0 × 0. The buffer grows a quarter beyond the need and never
// shrinks, so shrinking and growing back, or growing within the quarter, allocates nothing.
TEST(MemBitmap, RowSpanAndResizing) {
  const int spans[][3] = {{5, 4, 8},  {5, 0, 5},   {5, 1, 5},  {5, 2, 6},   {5, 3, 5},
                          {5, 12, 8}, {9, 16, 16}, {5, 64, 5}, {20, 64, 36}};
  for (auto [w, align, span] : spans)
    EXPECT_EQ(LICE_MemBitmap(w, 1, align).getRowSpan(), span) << w << " " << align;
  LICE_MemBitmap none;
  EXPECT_TRUE(Shape(none) == std::tuple(0, 0, false) && !none.isFlipped() && !none.getDC() &&
              !none.Extended(1, nullptr));
  const int sizes[][2] = {{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {1 << 20, 1 << 20}, {INT_MAX, INT_MAX}};
  for (auto [w, h] : sizes) {
    LICE_MemBitmap bmp(4, 4, 4);
    EXPECT_TRUE(bmp.resize(w, h) && Shape(bmp) == std::tuple(0, 0, false)) << w << " " << h;
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

// Rows are padded to four pixels in a zeroed context, kept while a new size fits; a flipped
// bitmap shows the context's last rows. Widths -3 to 0 and height 0 report no change and drop
// the context; sizes the context refuses report a change to 0 × 0; rows are padded all the same.
TEST(SysBitmap, RowSpanAndResizing) {
  for (auto [w, span] : {std::pair{1, 4}, {5, 8}, {6, 8}, {8, 8}, {9, 12}}) {
    LICE_SysBitmap bmp(w, 1);
    EXPECT_TRUE(Shape(bmp) == std::tuple(w, 1, true) && bmp.getRowSpan() == span) << w;
    EXPECT_TRUE(!*bmp.getBits() && SWELL_GetCtxFrameBuffer(bmp.getDC()) == bmp.getBits());
  }
  struct Flipped : LICE_SysBitmap {
    using LICE_SysBitmap::LICE_SysBitmap;
    bool isFlipped() override { return true; }
  } bmp(4, 6);
  LICE_pixel* frame = (LICE_pixel*)SWELL_GetCtxFrameBuffer(bmp.getDC());
  EXPECT_TRUE(bmp.getBits() == frame && !bmp.resize(4, 6) && bmp.resize(4, 2));
  EXPECT_TRUE(bmp.getBits() == frame + (6 - 2) * 4 && bmp.resize(3, 5));
  EXPECT_EQ(bmp.getBits(), frame + (6 - 5) * 4);
  LICE_Clear(&bmp, 0xffffffff);
  EXPECT_TRUE(SWELL_GetCtxFrameBuffer(bmp.getDC()) == frame && bmp.resize(5, 6) &&
              bmp.getRowSpan() == 8);
  LICE_SysBitmap none, thin(1, 0);
  EXPECT_TRUE(Shape(none) == std::tuple(0, 0, false) && !none.getRowSpan() &&
              thin.getRowSpan() == 4);
  EXPECT_TRUE(!SWELL_CreateMemContext(nullptr, 0, 4) && !SWELL_CreateMemContext(nullptr, 4, 0));
  const int big = 1 << 20, wide = INT_MAX - 3, wider = INT_MAX - 2;
  // {w, h, changed, width, height, span}
  const int cases[][6] = {{0, 4, 0, 0, 4, 0},    {4, 0, 0, 4, 0, 4},       {-3, 4, 0, -3, 4, 0},
                          {-4, 4, 1, 0, 0, -4},  {big, big, 1, 0, 0, big}, {wide, 1, 1, 0, 0, wide},
                          {wider, 1, 1, 0, 0, 0}};
  for (auto [w, h, changed, width, height, span] : cases) {
    LICE_SysBitmap bmp(w < 0 ? 0 : 4, 4);  // one with a context would keep it for any w < 0
    EXPECT_EQ(bmp.resize(w, h), !!changed) << w << " " << h;
    EXPECT_EQ(Shape(bmp), std::tuple(width, height, false)) << w << " " << h;
    EXPECT_TRUE(bmp.getRowSpan() == span && !bmp.getDC()) << w << " " << h;
  }
}
