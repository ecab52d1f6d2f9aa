// Memory and system bitmaps: row spans, resizing and its allocation rules, and failure to an
// empty bitmap.

#include <gtest/gtest.h>

#include "LiceTestSupport.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"

namespace
{
int SpanFor(int width, unsigned rowAlign)
{
  return LICE_MemBitmap(width, 1, rowAlign).getRowSpan();
}

TEST(MemBitmap, RowSpanRoundsToTheLowestSetBitOfTheAlignment)
{
  EXPECT_EQ(SpanFor(5, 4), 8);
  EXPECT_EQ(SpanFor(8, 4), 8);
  EXPECT_EQ(SpanFor(5, 0), 5);
  EXPECT_EQ(SpanFor(5, 1), 5);
  EXPECT_EQ(SpanFor(5, 3), 5);  // lowest set bit 1: no padding
  EXPECT_EQ(SpanFor(5, 6), 6);  // lowest set bit 2
  EXPECT_EQ(SpanFor(5, 12), 8); // lowest set bit 4
  EXPECT_EQ(SpanFor(9, 16), 16);
  // Past 16 the mask is held at 16 itself: bit 4 alone is rounded.
  EXPECT_EQ(SpanFor(5, 64), 5);
  EXPECT_EQ(SpanFor(20, 64), 36);
  EXPECT_EQ(SpanFor(16, 64), 32);
}

TEST(MemBitmap, EmptyConstructionAllocatesNothing)
{
  LICE_MemBitmap bmp(0, 0, 4);
  EXPECT_EQ(bmp.getBits(), nullptr);
  EXPECT_EQ(bmp.getWidth(), 0);
  EXPECT_EQ(bmp.getHeight(), 0);
  EXPECT_FALSE(bmp.isFlipped());
  EXPECT_EQ(bmp.getDC(), nullptr);
  EXPECT_EQ(bmp.Extended(1, nullptr), 0);
}

TEST(MemBitmap, ResizeReportsChangeAndNeverShrinksTheBuffer)
{
  LICE_MemBitmap bmp(16, 16, 4);
  LICE_pixel* const original = bmp.getBits();
  ASSERT_NE(original, nullptr);
  EXPECT_FALSE(bmp.resize(16, 16));
  EXPECT_TRUE(bmp.resize(3, 2));
  EXPECT_EQ(bmp.getBits(), original);
  EXPECT_EQ(bmp.getWidth(), 3);
  EXPECT_EQ(bmp.getHeight(), 2);
  EXPECT_EQ(bmp.getRowSpan(), 4);
  EXPECT_TRUE(bmp.resize(16, 16));
  EXPECT_EQ(bmp.getBits(), original);
}

TEST(MemBitmap, GrowingKeepsContentAndGivesWritableRows)
{
  LICE_MemBitmap bmp(2, 2, 4);
  SetPixel(&bmp, 1, 1, {1, 2, 3, 4});
  ASSERT_TRUE(bmp.resize(2, 300));
  EXPECT_EQ(GetPixel(&bmp, 1, 1), (Argb{1, 2, 3, 4}));
  SetPixel(&bmp, 1, 299, {5, 6, 7, 8}); // the address sanitizer checks the reach
  ASSERT_TRUE(bmp.resize(500, 300));
  SetPixel(&bmp, 499, 299, {5, 6, 7, 8});
}

TEST(MemBitmap, SizesWithoutPixelsOrBeyondMemoryLeaveAnEmptyBitmap)
{
  for (auto size : {std::pair<int, int>{0, 5}, {5, 0}, {-1, 5}, {5, -1}})
  {
    LICE_MemBitmap bmp(4, 4, 4);
    EXPECT_TRUE(bmp.resize(size.first, size.second));
    EXPECT_EQ(bmp.getBits(), nullptr);
    EXPECT_EQ(bmp.getWidth(), 0);
    EXPECT_EQ(bmp.getHeight(), 0);
  }
  LICE_MemBitmap huge(4, 4, 4);
  EXPECT_TRUE(huge.resize(1 << 20, 1 << 20));
  EXPECT_EQ(huge.getBits(), nullptr);
  EXPECT_EQ(huge.getWidth(), 0);
  EXPECT_EQ(huge.getHeight(), 0);
  EXPECT_TRUE(huge.resize(0x7fffffff, 0x7fffffff));
  EXPECT_EQ(huge.getBits(), nullptr);
}

TEST(SysBitmap, PadsRowsToFourAndOffersItsContext)
{
  LICE_SysBitmap bmp(5, 3);
  ASSERT_NE(bmp.getBits(), nullptr);
  EXPECT_NE(bmp.getDC(), nullptr);
  EXPECT_EQ(bmp.getRowSpan(), 8);
  EXPECT_EQ(bmp.getWidth(), 5);
  EXPECT_EQ(bmp.getHeight(), 3);
  EXPECT_EQ(SWELL_GetCtxFrameBuffer(bmp.getDC()), (void*)bmp.getBits());
  SetPixel(&bmp, 4, 2, {1, 2, 3, 4});
}

TEST(SysBitmap, KeepsItsContextWhileTheSizeFits)
{
  LICE_SysBitmap bmp(7, 6);
  HDC context = bmp.getDC();
  LICE_pixel* bits = bmp.getBits();
  EXPECT_FALSE(bmp.resize(7, 6));
  EXPECT_TRUE(bmp.resize(8, 2));
  EXPECT_EQ(bmp.getDC(), context);
  EXPECT_EQ(bmp.getBits(), bits);
  EXPECT_EQ(bmp.getRowSpan(), 8);
  EXPECT_TRUE(bmp.resize(9, 2));
  EXPECT_EQ(bmp.getRowSpan(), 12);
  SetPixel(&bmp, 8, 1, {1, 2, 3, 4});
}

TEST(SysBitmap, ZeroSizeDropsTheContext)
{
  LICE_SysBitmap bmp(4, 4);
  EXPECT_FALSE(bmp.resize(0, 4));
  EXPECT_EQ(bmp.getBits(), nullptr);
  EXPECT_EQ(bmp.getDC(), nullptr);
  EXPECT_FALSE(bmp.resize(4, 0));
  EXPECT_EQ(bmp.getBits(), nullptr);
  LICE_SysBitmap empty(0, 0);
  EXPECT_EQ(empty.getBits(), nullptr);
  EXPECT_EQ(empty.getDC(), nullptr);
}

TEST(SysBitmap, FailedContextLeavesAnEmptyBitmap)
{
  LICE_SysBitmap bmp(4, 4);
  EXPECT_TRUE(bmp.resize(1 << 20, 1 << 20));
  EXPECT_EQ(bmp.getBits(), nullptr);
  EXPECT_EQ(bmp.getWidth(), 0);
  EXPECT_EQ(bmp.getHeight(), 0);
  EXPECT_TRUE(bmp.resize(-8, 4));
  EXPECT_EQ(bmp.getBits(), nullptr);
  EXPECT_EQ(bmp.getWidth(), 0);
}

class FlippedSysBitmap : public LICE_SysBitmap
{
public:
  using LICE_SysBitmap::LICE_SysBitmap;
  bool isFlipped() override { return true; }
};

TEST(SysBitmap, FlippedBitmapShowsTheLastRowsOfItsContext)
{
  FlippedSysBitmap bmp(4, 6);
  LICE_pixel* frame = (LICE_pixel*)SWELL_GetCtxFrameBuffer(bmp.getDC());
  ASSERT_EQ(bmp.getBits(), frame);
  EXPECT_TRUE(bmp.resize(4, 2));
  EXPECT_EQ(bmp.getBits(), frame + (6 - 2) * 4);
  EXPECT_TRUE(bmp.resize(3, 5));
  EXPECT_EQ(bmp.getBits(), frame + (6 - 5) * 4);
}
} // namespace
