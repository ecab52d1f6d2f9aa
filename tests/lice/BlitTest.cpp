// LICE_Blit: clipping against both bitmaps, flipped rows, the full- and half-strength copy
// paths, the weight, and the choice of combiner by mode, checked against the model.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "LiceTestSupport.h"
#include "lice/LICE_Blit.h"

namespace
{
// A distinct, recognisable value for every pixel of a test image.
Argb Pattern(int x, int y, int seed)
{
  return {(x * 31 + y * 7 + seed) & 0xff, (x * 13 + y * 57 + seed * 3) & 0xff, (x * 101 + y * 3 + seed * 5) & 0xff,
          (x * 5 + y * 89 + seed * 11) & 0xff};
}

void Paint(LICE_IBitmap* bmp, int seed)
{
  for (int y = 0; y < bmp->getHeight(); ++y)
    for (int x = 0; x < bmp->getWidth(); ++x)
      SetPixel(bmp, x, y, Pattern(x, y, seed));
}

// A destination whose rows are padded, with the padding painted so that stray writes show.
struct GuardedDest
{
  static constexpr Argb kGuard = {0xde, 0xad, 0xbe, 0xef};
  LICE_MemBitmap bmp;
  GuardedDest(int w, int h) : bmp(w, h, 8)
  {
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < bmp.getRowSpan(); ++x)
        SetPixel(&bmp, x, y, x < w ? Pattern(x, y, 1) : kGuard);
  }
  bool PaddingIntact()
  {
    for (int y = 0; y < bmp.getHeight(); ++y)
      for (int x = bmp.getWidth(); x < bmp.getRowSpan(); ++x)
        if (!(GetPixel(&bmp, x, y) == kGuard))
          return false;
    return true;
  }
};

TEST(Blit, FullStrengthCopyIsExact)
{
  LICE_MemBitmap src(5, 4, 4), dest(5, 4, 4);
  Paint(&src, 2);
  Paint(&dest, 1);
  LICE_Blit(&dest, &src, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 5; ++x)
      ASSERT_EQ(GetPixel(&dest, x, y), Pattern(x, y, 2));
}

// Every offset of a 6 × 5 source over a 7 × 6 destination, from wholly left/above to wholly
// right/below: exactly the overlap changes, by the model, and nothing outside it.
TEST(Blit, ClipsAtEveryOffsetAndWritesOnlyTheOverlap)
{
  LICE_MemBitmap src(6, 5, 4);
  Paint(&src, 3);
  for (float alpha : {1.0f, 0.5f, 0.3f})
    for (int dy = -7; dy <= 8; ++dy)
      for (int dx = -8; dx <= 9; ++dx)
      {
        GuardedDest dest(7, 6);
        LICE_Blit(&dest.bmp, &src, dx, dy, nullptr, alpha, LICE_BLIT_MODE_ADD);
        ASSERT_TRUE(dest.PaddingIntact());
        for (int y = 0; y < 6; ++y)
          for (int x = 0; x < 7; ++x)
          {
            const int sx = x - dx, sy = y - dy;
            const bool inside = sx >= 0 && sx < 6 && sy >= 0 && sy < 5;
            const Argb expected = inside ? model::Combine(model::kAdd, Pattern(x, y, 1), Pattern(sx, sy, 3),
                                                          (int)(alpha * 256))
                                         : Pattern(x, y, 1);
            ASSERT_EQ(GetPixel(&dest.bmp, x, y), expected) << "offset " << dx << "," << dy << " at " << x << "," << y;
          }
      }
}

TEST(Blit, SourceRectangleWithNegativeCornerShiftsTheVisiblePart)
{
  LICE_MemBitmap src(4, 4, 4), dest(8, 8, 4);
  Paint(&src, 4);
  Paint(&dest, 1);
  RECT r = {-2, -1, 3, 2}; // visible part: columns 0-2, rows 0-1, drawn 2 right and 1 down
  LICE_Blit(&dest, &src, 1, 1, &r, 1.0f, LICE_BLIT_MODE_COPY);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x)
    {
      const bool inside = x >= 3 && x < 6 && y >= 2 && y < 4;
      ASSERT_EQ(GetPixel(&dest, x, y), inside ? Pattern(x - 3, y - 2, 4) : Pattern(x, y, 1)) << x << "," << y;
    }
}

TEST(Blit, SourceRectangleIsCutToTheSource)
{
  LICE_MemBitmap src(4, 3, 4), dest(8, 8, 4);
  Paint(&src, 4);
  Paint(&dest, 1);
  LICE_Blit(&dest, &src, 0, 0, 2, 1, 100, 100, 1.0f, LICE_BLIT_MODE_COPY);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x)
    {
      const bool inside = x < 2 && y < 2;
      ASSERT_EQ(GetPixel(&dest, x, y), inside ? Pattern(x + 2, y + 1, 4) : Pattern(x, y, 1));
    }
}

TEST(Blit, RectangleFormAndSizeFormAgree)
{
  LICE_MemBitmap src(9, 7, 4), a(6, 6, 4), b(6, 6, 4);
  Paint(&src, 5);
  Paint(&a, 1);
  Paint(&b, 1);
  RECT r = {1, 2, 8, 6};
  LICE_Blit(&a, &src, -1, 1, &r, 0.7f, LICE_BLIT_MODE_OVERLAY);
  LICE_Blit(&b, &src, -1, 1, 1, 2, 7, 4, 0.7f, LICE_BLIT_MODE_OVERLAY);
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 6; ++x)
      ASSERT_EQ(GetPixel(&a, x, y), GetPixel(&b, x, y));
}

TEST(Blit, FlippedBitmapsLookTheSameAsUpright)
{
  for (int mode : {0, LICE_BLIT_MODE_MUL | LICE_BLIT_USE_ALPHA})
    for (float alpha : {1.0f, 0.5f, 0.8f})
    {
      LICE_MemBitmap src(5, 4, 4), dest(6, 6, 4);
      FlippedMemBitmap fsrc(5, 4, 4), fdest(6, 6, 4);
      Paint(&src, 6);
      Paint(&fsrc, 6);
      Paint(&dest, 1);
      Paint(&fdest, 1);
      LICE_Blit(&dest, &src, 2, -1, nullptr, alpha, mode);
      LICE_Blit(&fdest, &fsrc, 2, -1, nullptr, alpha, mode);
      for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x)
          ASSERT_EQ(GetPixel(&dest, x, y), GetPixel(&fdest, x, y)) << x << "," << y;
    }
}

// A bitmap that reports a size but whose pixels must never be reached.
class UntouchableBitmap : public LICE_IBitmap
{
public:
  LICE_pixel* getBits() override { return &mSentinel; }
  int getWidth() override { return 64; }
  int getHeight() override { return 64; }
  int getRowSpan() override { return 64; }
  bool resize(int, int) override { return false; }
  LICE_pixel mSentinel = 0x12345678;
};

TEST(Blit, NothingHappensOutsideOrWithoutPixels)
{
  LICE_MemBitmap src(4, 4, 4), empty(0, 0, 4);
  Paint(&src, 2);
  UntouchableBitmap dest;
  LICE_Blit(&dest, &src, 64, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&dest, &src, -4, 10, nullptr, 1.0f, LICE_BLIT_MODE_ADD);
  LICE_Blit(&dest, &src, 0, 64, nullptr, 0.5f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&dest, &src, 0, -4, nullptr, 1.0f, LICE_BLIT_MODE_CHANCOPY);
  LICE_Blit(&dest, &empty, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&dest, &src, 0, 0, 4, 0, 2, 2, 1.0f, LICE_BLIT_MODE_COPY);  // starts past the source
  LICE_Blit(&dest, &src, 0, 0, 1, 1, -2, 2, 1.0f, LICE_BLIT_MODE_COPY); // negative size
  LICE_Blit(&dest, &src, 0x7fffffff, 0x7fffffff, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&dest, &src, 0, 0, -0x7fffffff - 1, 0, 0x7fffffff, 4, 1.0f, LICE_BLIT_MODE_COPY);
  EXPECT_EQ(dest.mSentinel, 0x12345678u);

  LICE_MemBitmap target(4, 4, 4);
  Paint(&target, 1);
  LICE_Blit(&empty, &src, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&target, &empty, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(nullptr, &src, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&target, nullptr, 0, 0, nullptr, 1.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&target, &src, 0, 0, nullptr, 0.0f, LICE_BLIT_MODE_COPY);
  LICE_Blit(&target, &src, 0, 0, nullptr, 0.0f, LICE_BLIT_MODE_CHANCOPY | 5);
  LICE_Blit(&target, &src, 0, 0, nullptr, 0.003f, LICE_BLIT_MODE_ADD); // weight 0
  LICE_Blit(&target, &src, 0, 0, nullptr, -0.5f, LICE_BLIT_MODE_COPY); // negative copy weight
  LICE_Blit(&target, &src, 0, 0, nullptr, 1.0f, 6);                    // unlisted modes
  LICE_Blit(&target, &src, 0, 0, nullptr, 1.0f, 0x10006);
  LICE_Blit(&target, &src, 0, 0, nullptr, 1.0f, 239);
  LICE_Blit(&target, &src, 0, 0, nullptr, std::nanf(""), LICE_BLIT_MODE_ADD);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x)
      ASSERT_EQ(GetPixel(&target, x, y), Pattern(x, y, 1));
}

// Blits one pixel of src onto one pixel of dest and returns the result.
Argb BlitOne(Argb dest, Argb src, float alpha, int mode)
{
  LICE_MemBitmap d(1, 1, 4), s(1, 1, 4);
  SetPixel(&d, 0, 0, dest);
  SetPixel(&s, 0, 0, src);
  LICE_Blit(&d, &s, 0, 0, nullptr, alpha, mode);
  return GetPixel(&d, 0, 0);
}

TEST(Blit, WeightIsTruncatedAlphaTimes256)
{
  // 0.3 * 256 = 76.8 -> 76: 0 -> 255 at weight 76 gives 76 (weight 77 would give 77).
  EXPECT_EQ(BlitOne({0, 0, 0, 0}, {255, 255, 255, 255}, 0.3f, LICE_BLIT_MODE_COPY), (Argb{76, 76, 76, 76}));
  // Just above 1.0 is weight 256: a plain copy, not the combiner.
  EXPECT_EQ(BlitOne({9, 9, 9, 9}, {1, 2, 3, 4}, 1.002f, LICE_BLIT_MODE_COPY), (Argb{1, 2, 3, 4}));
}

TEST(Blit, HalfStrengthCopyHalvesEachByteBeforeAdding)
{
  // 127 + 127 = 254 where (255 + 255) / 2 would be 255; 0 + 0 where (1 + 1) / 2 would be 1.
  EXPECT_EQ(BlitOne({255, 1, 200, 7}, {255, 1, 100, 8}, 0.5f, LICE_BLIT_MODE_COPY), (Argb{254, 0, 150, 7}));
}

TEST(Blit, SourceAlphaCopyAtFullWeightUsesTheSourceAlphaAlone)
{
  const Argb dest = {10, 100, 100, 100};
  EXPECT_EQ(BlitOne(dest, {128, 200, 200, 200}, 1.0f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA),
            model::Combine(model::kCopySourceAlphaFull, dest, {128, 200, 200, 200}, 256));
  EXPECT_EQ(BlitOne(dest, {128, 200, 200, 200}, 0.999f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA),
            model::Combine(model::kCopySourceAlpha, dest, {128, 200, 200, 200}, 255));
  // A fully transparent source pixel leaves the destination as it was.
  EXPECT_EQ(BlitOne(dest, {0, 255, 0, 255}, 1.0f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA), dest);
  EXPECT_EQ(BlitOne(dest, {0, 255, 0, 255}, 0.6f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA), dest);
}

TEST(Blit, CopyBeyondFullWeightExtrapolates)
{
  // Weight 512: (100 - 200) * -256 / 256 + 200 = 300, stored as 44.
  EXPECT_EQ(BlitOne({100, 100, 100, 100}, {200, 200, 200, 200}, 2.0f, LICE_BLIT_MODE_COPY), (Argb{44, 44, 44, 44}));
}

struct ModeCase
{
  int mode;
  model::Op op;
};

// Every listed mode, over a grid of source and destination values, at weights from negative
// to beyond full strength: the result is the model's for the combiner the table names.
TEST(Blit, EachModeCombinesByItsTableEntry)
{
  const std::vector<ModeCase> cases = {
      {1, model::kAdd},         {2, model::kDodge},
      {3, model::kMul},         {4, model::kOverlay},
      {0x10000, model::kCopySourceAlpha}, {0x10001, model::kAddSourceAlpha},
      {0x10002, model::kDodgeSourceAlpha}, {0x10003, model::kMulSourceAlpha},
      {0x10004, model::kOverlaySourceAlpha}, {0x20101, model::kAdd}, // bits outside 0x100ff are ignored
  };
  const std::vector<int> values = {0, 1, 2, 100, 127, 128, 129, 254, 255};
  LICE_MemBitmap src((int)(values.size() * values.size()), (int)values.size(), 4);
  LICE_MemBitmap dest(src.getWidth(), src.getHeight(), 4);
  for (const ModeCase& c : cases)
    for (float alpha : {-1.0f, -0.25f, 0.01f, 0.3f, 0.5f, 0.75f, 0.999f, 1.5f, 2.0f, 127.0f})
    {
      for (int y = 0; y < src.getHeight(); ++y)
        for (int x = 0; x < src.getWidth(); ++x)
        {
          const int s = values[(size_t)x % values.size()], d = values[(size_t)x / values.size()];
          SetPixel(&src, x, y, {values[(size_t)y], s, 255 - s, d});
          SetPixel(&dest, x, y, {d, d, s, 255 - d});
        }
      LICE_Blit(&dest, &src, 0, 0, nullptr, alpha, c.mode);
      const int weight = (int)(alpha * 256);
      for (int y = 0; y < src.getHeight(); ++y)
        for (int x = 0; x < src.getWidth(); ++x)
        {
          const int s = values[(size_t)x % values.size()], d = values[(size_t)x / values.size()];
          const Argb expected = model::Combine(c.op, {d, d, s, 255 - d}, {values[(size_t)y], s, 255 - s, d}, weight);
          ASSERT_EQ(GetPixel(&dest, x, y), expected) << "mode " << c.mode << " alpha " << alpha << " at " << x << "," << y;
        }
    }
}

TEST(Blit, HsvModesReachTheHsvCombiners)
{
  EXPECT_EQ(BlitOne({40, 255, 0, 0}, {255, 0, 128, 128}, 1.0f, LICE_BLIT_MODE_HSVADJ), (Argb{40, 0, 255, 255}));
  EXPECT_EQ(BlitOne({40, 200, 200, 200}, {0, 128, 128, 0}, 127.0f, LICE_BLIT_MODE_HSVADJ | LICE_BLIT_USE_ALPHA),
            (Argb{40, 73, 73, 73}));
}

TEST(Blit, ChannelCopyMovesOneByteAndIgnoresAlpha)
{
  const Argb dest = {10, 20, 30, 40}, src = {1, 2, 3, 4};
  for (int from = 0; from < 4; ++from)
    for (int to = 0; to < 4; ++to)
    {
      int expected[4] = {dest.a, dest.r, dest.g, dest.b};
      const int source[4] = {src.a, src.r, src.g, src.b};
      expected[to] = source[from];
      EXPECT_EQ(BlitOne(dest, src, 0.1f, LICE_BLIT_MODE_CHANCOPY | (to << 2) | from),
                (Argb{expected[0], expected[1], expected[2], expected[3]}));
    }
}

TEST(Blit, ExtremeWeightsAreHeldWithinRange)
{
  // Far beyond full strength every combiner saturates or wraps without overflowing; the
  // sanitizer build checks the arithmetic.
  for (int mode : {0, 1, 2, 3, 4, 5, 0x10000, 0x10001, 0x10002, 0x10003, 0x10004, 0x10005})
    for (float alpha : {1e30f, -1e30f, std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                        1000.0f, -1000.0f})
      for (int v : {0, 1, 128, 255})
        BlitOne({v, v, 255 - v, v}, {255 - v, v, v, 255 - v}, alpha, mode);
  EXPECT_EQ(BlitOne({0, 10, 0, 10}, {1, 1, 0, 1}, 1e30f, LICE_BLIT_MODE_ADD), (Argb{127, 137, 0, 137}));
}

TEST(Blit, OverlappingFullStrengthCopyWithinOneBitmapMovesTheRow)
{
  LICE_MemBitmap bmp(8, 1, 4);
  Paint(&bmp, 7);
  LICE_Blit(&bmp, &bmp, 2, 0, 0, 0, 5, 1, 1.0f, LICE_BLIT_MODE_COPY);
  for (int x = 2; x < 7; ++x)
    EXPECT_EQ(GetPixel(&bmp, x, 0), Pattern(x - 2, 0, 7));
}
} // namespace
