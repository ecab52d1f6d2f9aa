#include "LiceTest.h"

// Pixel (sx, sy) of rect l, t, r, b in the 6 × 5 source lands at (dx + sx - l, dy + sy - t) in the
// 7 × 6 dest, nothing else does; per flip: by rect, by size, copied, added; whole: also filled.
void ExpectPlaced(int dx, int dy, int l, int t, int r, int b, bool whole) {
  for (int k = 0; k < (whole ? 16 : 12); ++k) {
    SCOPED_TRACE(testing::Message() << dx << "," << dy << " case " << k);
    GuardedBitmap src(6, 5, k & 1), dest(7, 6, k & 2);
    for (int i = 0; i < 30; ++i) Set(&src, i % 6, i / 6, Pattern(i % 6, i / 6));
    RECT rect = {l, t, r, b};
    const bool fill = k >= 12, sizeForm = k >= 4 && k < 8 && !whole, add = k >= 8;
    if (fill) LICE_FillRect(&dest, dx, dy, 6, 5, LICE_RGBA(1, 2, 3, 4), 1.0f, k & 1);
    if (sizeForm) LICE_Blit(&dest, &src, dx, dy, l, t, r - l, b - t, 1.0f, LICE_BLIT_MODE_COPY);
    if (!fill && !sizeForm) LICE_Blit(&dest, &src, dx, dy, whole ? nullptr : &rect, 1.0f, add);
    dest.Expect([&](int x, int y) {
      const long long sx = x - (long long)dx + l, sy = y - (long long)dy + t;  // no overflow
      const bool in = sx >= std::max(l, 0) && sx < std::min(r, 6) && sy >= std::max(t, 0) &&
                      sy < std::min(b, 5);
      return !in ? Argb{} : fill ? Argb{4, 1, 2, 3} : Pattern((int)sx, (int)sy);
    });
  }
}

// Offsets from wholly left/above to wholly right/below, the int range's ends, rectangles whose
// negative corners move the drawing, far ones cut; null or empty bitmaps draw nothing; clear: all.
TEST(Blit, PixelsLandWhereTheRectangleSaysClippedToBothBitmaps) {
  for (int i = 0; i < 16 * 14; ++i) ExpectPlaced(i % 16 - 7, i / 16 - 6, 0, 0, 6, 5, true);
  const int lo = INT_MIN, hi = INT_MAX;  // {dx, dy, left, top, right, bottom}
  const int rects[][6] = {{1, 1, -2, -1, 3, 2}, {0, 0, 2, 1, 102, 101}, {3, -2, -3, -3, 2, 9},
                          {0, 0, 1, 1, -1, 3},  {0, 0, 6, 0, 8, 2},     {hi, lo, 0, 0, 6, 5},
                          {0, 0, lo, 0, -1, 4}};
  for (auto [dx, dy, l, t, r, b] : rects) ExpectPlaced(dx, dy, l, t, r, b, false);
  ExpectPlaced(lo, hi, 0, 0, 6, 5, true);
  GuardedBitmap dest(7, 6, true);
  LICE_MemBitmap src(6, 5), empty;
  LICE_Clear(&dest, LICE_RGBA(10, 20, 30, 40));
  LICE_Blit(nullptr, &src, 0, 0, nullptr, 1.0f, 0);
  LICE_Blit(&dest, nullptr, 0, 0, nullptr, 1.0f, 0), LICE_FillRect(nullptr, 0, 0, 1, 1, 0, 1.0f, 0);
  LICE_Blit(&dest, &empty, 0, 0, nullptr, 1.0f, 0), LICE_Clear(nullptr, 0), LICE_Clear(&empty, 0);
  dest.Expect([](int, int) { return Argb{40, 10, 20, 30}; });
}

constexpr int kCopy = LICE_BLIT_MODE_COPY, kAdd = LICE_BLIT_MODE_ADD, kDodge = LICE_BLIT_MODE_DODGE,
              kMul = LICE_BLIT_MODE_MUL, kOverlay = LICE_BLIT_MODE_OVERLAY,
              kHsv = LICE_BLIT_MODE_HSVADJ, kUse = LICE_BLIT_USE_ALPHA;

Argb Combine(Argb dest, Argb src, float alpha, int mode, bool fill = false) {
  LICE_MemBitmap d(1, 1, 4), s(1, 1, 4);
  Set(&d, 0, 0, dest), Set(&s, 0, 0, src);
  if (fill) LICE_FillRect(&d, 0, 0, 1, 1, LICE_RGBA(src[1], src[2], src[3], src[0]), alpha, mode);
  if (!fill) LICE_Blit(&d, &s, 0, 0, nullptr, alpha, mode);
  return Get(&d, 0, 0);
}

// {mode, alpha (weight = alpha × 256 truncated), dest, src, expected} at the arithmetic's edges.
const std::tuple<int, float, Argb, Argb, Argb> kWorked[] = {
    // Copy: 0.3 is weight 76, (100 - 200)·180/256 gives -70; 0.5 halves the bytes, then adds.
    {kCopy, 0.3f, {200, 100, 0, 255}, {100, 200, 255, 0}, {170, 130, 76, 179}},
    {kCopy, 0.5f, {255, 1, 200, 7}, {255, 1, 100, 8}, {254, 0, 150, 7}},
    // Source alpha, full weight: 255 copies, 128 keeps (255 - 128)/256; below, w' = (sa + 1)·w/256.
    {kCopy | kUse, 1.0f, {10, 100, 50, 200}, {255, 1, 2, 3}, {255, 1, 2, 3}},
    {kCopy | kUse, 1.0f, {10, 100, 50, 200}, {128, 200, 240, 0}, {138, 151, 146, 99}},
    {kCopy | kUse, 1.0f, {10, 100, 50, 200}, {0, 1, 2, 3}, {10, 100, 50, 200}},
    {kCopy | kUse, 0.6f, {10, 100, 50, 200}, {0, 1, 2, 3}, {10, 100, 50, 200}},
    {kCopy | kUse, 0.5f, {100, 0, 100, 255}, {127, 255, 0, 100}, {164, 64, 75, 216}},
    {kCopy | kUse, 0.5f, {250, 0, 0, 0}, {255, 255, 255, 255}, {255, 128, 128, 128}},
    // Add s·w/256, saturating both ways; the bits above 0x100ff of a mode are ignored.
    {kAdd, 0.5f, {10, 230, 50, 0}, {20, 100, 255, 3}, {20, 255, 177, 1}},
    {0x20101, -1.0f, {50, 100, 0, 255}, {100, 20, 5, 0}, {0, 80, 0, 255}},
    // Dodge d·256/k, k = 256 - s·w/256: k = 2 still divides, k = 1 saturates.
    {kDodge, 1.0f, {0, 100, 1, 100}, {0, 128, 254, 255}, {0, 200, 128, 255}},
    {kMul, 1.0f, {200, 200, 255, 10}, {128, 0, 255, 200}, {100, 0, 254, 7}},
    {kMul, 0.5f, {200, 100, 50, 255}, {128, 0, 255, 64}, {150, 50, 49, 159}},
    {kOverlay, 1.0f, {128, 128, 255, 77}, {255, 0, 255, 128}, {191, 64, 255, 77}},
    {kOverlay, 0.5f, {100, 200, 0, 50}, {0, 255, 9, 128}, {69, 221, 0, 50}},
    // Source alpha 0: add and multiply skip the pixel, dodge, overlay and hue act at w' = w/256.
    {kAdd | kUse, 127.0f, {10, 50, 60, 70}, {0, 200, 100, 1}, {10, 50, 60, 70}},
    {kMul | kUse, 127.0f, {200, 100, 50, 255}, {0, 0, 0, 0}, {200, 100, 50, 255}},
    {kDodge | kUse, 127.0f, {0, 100, 50, 10}, {0, 255, 255, 0}, {0, 196, 98, 10}},
    {kOverlay | kUse, 1.0f, {100, 100, 100, 100}, {0, 255, 0, 0}, {99, 100, 99, 99}},
    {kHsv | kUse, 127.0f, {40, 200, 200, 200}, {0, 128, 128, 0}, {40, 73, 73, 73}},
    // Red 0 turns the hue half round, 171 a sixth forward (64 of 384: red to yellow), 128 holds;
    // green and blue move saturation and value.
    {kHsv, 1.0f, {40, 255, 0, 0}, {255, 0, 128, 128}, {40, 0, 255, 255}},
    {kHsv, 1.0f, {40, 255, 0, 0}, {255, 171, 128, 128}, {40, 255, 255, 0}},
    {kHsv, 1.0f, {40, 255, 0, 0}, {0, 128, 128, 128}, {40, 255, 0, 0}},
    {kHsv, 1.0f, {9, 255, 0, 0}, {0, 128, 0, 128}, {9, 255, 255, 255}},
    {kHsv, 1.0f, {9, 255, 0, 0}, {0, 128, 128, 0}, {9, 0, 0, 0}},
    {kAdd, 1e30f, {0, 10, 0, 10}, {1, 1, 0, 1}, {127, 137, 0, 137}},  // weight held at 127 × 256
};

// Worked values by blit and fill; nothing drawn at weight 0, bad weights, unlisted modes, alpha 0;
// a channel copy puts byte mode & 3 into byte mode >> 2 & 3; line members mix or overwrite.
TEST(BlendModes, HandWorkedValuesNothingDrawnChannelCopyAndTheLineMembers) {
  for (const auto& [mode, alpha, dest, src, expected] : kWorked)
    for (bool fill : {false, true})
      EXPECT_EQ(Combine(dest, src, alpha, mode, fill), expected) << mode << " fill " << fill;
  const std::pair<int, float> nothing[] = {{0, 0.0f}, {1, 0.003f},     {0, -0.5f},  {1, NAN},
                                           {6, 1.0f}, {0x10006, 1.0f}, {239, 1.0f}, {0xf5, 0.0f}};
  for (auto [mode, alpha] : nothing)
    for (bool fill : {false, true})
      EXPECT_EQ(Combine({1, 2, 3, 4}, {5, 6, 7, 8}, alpha, mode, fill), (Argb{1, 2, 3, 4})) << mode;
  for (int k = 0; k < 32; ++k) {
    Argb expected = {10, 20, 30, 40};
    expected[k >> 2 & 3] = (k & 3) + 1;
    EXPECT_EQ(Combine({10, 20, 30, 40}, {1, 2, 3, 4}, 0.1f, 0xf0 | (k & 15), k > 15), expected);
  }
  LICE_pixel_chan px[4] = {255, 1, 0, 9};
  _LICE_CombinePixelsHalfMixNoClamp::doPix(px, 2, 255, 200, 0, 3);  // red, green, blue, alpha
  EXPECT_TRUE(px[0] == 127 && px[1] == 1 && px[2] == 127 && px[3] == 104);
  _LICE_CombinePixelsClobberNoClamp::doPix(px, 7, 8, 9, 6, -7);
  EXPECT_TRUE(px[0] == 6 && px[1] == 7 && px[2] == 8 && px[3] == 9);
}

// Hue 0-383 in six sectors of 64 from red (magenta 320). A grid comes back within 3: half a hue
// step moves the middle channel by up to 2 (255/128), half a saturation step the others by 1.
TEST(Hsv, ChosenColoursConvertAndEveryColourComesBack) {
  const int rgbHsv[][6] = {
      {255, 0, 255, 320, 255, 255}, {255, 0, 128, 352, 255, 255}, {1, 0, 0, 0, 255, 1}};
  for (auto [r, g, b, h, s, v] : rgbHsv) {
    Argb out = {};
    LICE_RGB2HSV(r, g, b, &out[0], &out[1], &out[2]);
    EXPECT_EQ(out, (Argb{h, s, v, 0})) << r << " " << g << " " << b;
  }
  for (int k = 0; k < 52 * 52 * 52; ++k) {
    const int r = k % 52 * 5, g = k / 52 % 52 * 5, b = k / 2704 * 5;
    int h, s, v, r2, g2, b2;
    LICE_RGB2HSV(r, g, b, &h, &s, &v);
    LICE_HSV2RGB(h, s, v, &r2, &g2, &b2);
    ASSERT_LE(std::max({abs(r2 - r), abs(g2 - g), abs(b2 - b)}), 3) << r << " " << g << " " << b;
  }
}
