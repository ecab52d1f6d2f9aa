// Clearing and filling: the colour's byte order, clipping, and the blit's modes with the
// colour standing in for every source pixel.

#include <gtest/gtest.h>

#include "LiceTestSupport.h"
#include "lice/LICE_Blit.h"
#include "lice/LICE_Fill.h"

namespace
{
TEST(PixelWord, BytesLandAsAlphaRedGreenBlue)
{
  const LICE_pixel p = LICE_RGBA(1, 2, 3, 4);
  const unsigned char* bytes = (const unsigned char*)&p;
  EXPECT_EQ(bytes[0], 4);
  EXPECT_EQ(bytes[1], 1);
  EXPECT_EQ(bytes[2], 2);
  EXPECT_EQ(bytes[3], 3);
  EXPECT_EQ(LICE_GETR(p), 1u);
  EXPECT_EQ(LICE_GETG(p), 2u);
  EXPECT_EQ(LICE_GETB(p), 3u);
  EXPECT_EQ(LICE_GETA(p), 4u);
}

TEST(Fill, ClearSetsEveryVisiblePixel)
{
  FlippedMemBitmap bmp(5, 3, 8);
  LICE_Clear(&bmp, LICE_RGBA(10, 20, 30, 40));
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x)
      ASSERT_EQ(GetPixel(&bmp, x, y), (Argb{40, 10, 20, 30}));
  LICE_MemBitmap empty(0, 0, 4);
  LICE_Clear(&empty, 0);
  LICE_Clear(nullptr, 0);
}

TEST(Fill, RectangleIsClippedToTheBitmap)
{
  for (int y0 = -4; y0 <= 5; ++y0)
    for (int x0 = -4; x0 <= 6; ++x0)
    {
      FlippedMemBitmap bmp(6, 5, 8);
      for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 8; ++x)
          SetPixel(&bmp, x, y, {0, 0, 0, 0});
      LICE_FillRect(&bmp, x0, y0, 3, 2, LICE_RGBA(9, 8, 7, 6), 1.0f, LICE_BLIT_MODE_COPY);
      for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 8; ++x) // the two padding pixels too
        {
          const bool inside = x < 6 && x >= x0 && x < x0 + 3 && y >= y0 && y < y0 + 2;
          ASSERT_EQ(GetPixel(&bmp, x, y), inside ? (Argb{6, 9, 8, 7}) : (Argb{0, 0, 0, 0}));
        }
    }
}

TEST(Fill, UsesTheBlitModesWithTheColourAsSource)
{
  LICE_MemBitmap bmp(2, 2, 4);
  const Argb start = {200, 100, 50, 250};
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 2; ++x)
      SetPixel(&bmp, x, y, start);
  LICE_FillRect(&bmp, 0, 0, 1, 2, LICE_RGBA(100, 200, 255, 128), 0.5f, LICE_BLIT_MODE_ADD);
  const Argb added = model::Combine(model::kAdd, start, {128, 100, 200, 255}, 128);
  EXPECT_EQ(GetPixel(&bmp, 0, 0), added);
  EXPECT_EQ(GetPixel(&bmp, 0, 1), added);
  EXPECT_EQ(GetPixel(&bmp, 1, 0), start);
  LICE_FillRect(&bmp, 1, 0, 1, 1, LICE_RGBA(100, 200, 255, 128), 0.5f, LICE_BLIT_MODE_COPY);
  EXPECT_EQ(GetPixel(&bmp, 1, 0), (Argb{100 + 64, 50 + 50, 25 + 100, 125 + 127}));
  LICE_FillRect(&bmp, 1, 1, 1, 1, LICE_RGBA(1, 2, 3, 0), 1.0f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA);
  EXPECT_EQ(GetPixel(&bmp, 1, 1), start);
}
} // namespace
