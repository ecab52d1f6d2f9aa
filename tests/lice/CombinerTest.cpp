// The per-pixel combiners, called directly: hand-worked values where the arithmetic has an
// edge (truncation toward zero, saturation, the source-alpha asymmetries), and a sweep of
// every member against the model over edge values of source, destination, alpha and weight.

#include <gtest/gtest.h>

#include <vector>

#include "LiceTestSupport.h"
#include "lice/LICE_Combine.h"

namespace
{
template <class Combiner>
Argb Apply(Argb dest, Argb src, int weight)
{
  unsigned char px[4] = {(unsigned char)dest.a, (unsigned char)dest.r, (unsigned char)dest.g, (unsigned char)dest.b};
  Combiner::doPix(px, src.r, src.g, src.b, src.a, weight);
  return {px[0], px[1], px[2], px[3]};
}

Argb Grey(int v, int a)
{
  return {a, v, v, v};
}

TEST(Combiners, CopyTruncatesTowardZeroBothWays)
{
  // (200 - 100) * 180 / 256 = 70.3 -> 70; (100 - 200) * 180 / 256 = -70.3 -> -70, not -71.
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopyNoClamp>(Grey(200, 200), Grey(100, 100), 76), Grey(170, 170));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopyNoClamp>(Grey(100, 100), Grey(200, 200), 76), Grey(130, 130));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopyNoClamp>(Grey(10, 20), Grey(250, 240), 256), Grey(250, 240));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopyNoClamp>(Grey(10, 20), Grey(250, 240), 0), Grey(10, 20));
}

TEST(Combiners, CopySourceAlphaScalesWeightAndAccumulatesAlpha)
{
  // w' = 256 * 128 / 256 = 128: colour 0 -> 255 * 128 / 256 = 127.5 -> 128; alpha min(255, 200 + 128).
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaNoClamp>(Grey(0, 200), Grey(255, 255), 128), Grey(128, 255));
  // w' = 2 * 128 / 256 = 1: -255 * 255 / 256 = -254.004 -> -254, so 0 becomes 1; alpha 10 + 1.
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaNoClamp>(Grey(0, 10), Grey(255, 1), 128), Grey(1, 11));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaNoClamp>(Grey(77, 66), Grey(255, 0), 256), Grey(77, 66));
}

TEST(Combiners, FullStrengthSourceAlphaUses255MinusAlpha)
{
  // (100 - 200) * (255 - 128) / 256 = -49.6 -> -49: 151, where 256 - 128 would give 150.
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp>(Grey(100, 10), Grey(200, 128), 256),
            Grey(151, 138));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp>(Grey(100, 10), Grey(200, 255), 3),
            Grey(200, 255));
  EXPECT_EQ(Apply<_LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp>(Grey(100, 200), Grey(50, 100), 256),
            Grey(80, 255)); // (100 - 50) * 155 / 256 = 30.3 -> 30, plus 50
}

TEST(Combiners, AddSaturatesAndTakesNegativeWeights)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsAdd>(Grey(200, 10), Grey(100, 20), 256), Grey(255, 30));
  EXPECT_EQ(Apply<_LICE_CombinePixelsAdd>(Grey(200, 10), Grey(100, 20), 128), Grey(250, 20));
  EXPECT_EQ(Apply<_LICE_CombinePixelsAdd>(Grey(200, 10), Grey(100, 20), -256), Grey(100, 0));
  EXPECT_EQ(Apply<_LICE_CombinePixelsAdd>(Grey(50, 10), Grey(100, 20), -512), Grey(0, 0));
  // A weight of 1 adds s / 256, nothing for any byte.
  EXPECT_EQ(Apply<_LICE_CombinePixelsAdd>(Grey(50, 10), Grey(255, 255), 1), Grey(50, 10));
}

TEST(Combiners, AddSourceAlphaSkipsTransparentAndScales)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsAddSourceAlpha>(Grey(50, 10), Grey(255, 0), 256), Grey(50, 10));
  // w' = 128 * 256 / 256 = 128: 50 + 200 * 128 / 256 = 150; alpha 10 + 127 * 128 / 256 = 73.
  EXPECT_EQ(Apply<_LICE_CombinePixelsAddSourceAlpha>(Grey(50, 10), Grey(200, 127), 256), Grey(150, 73));
}

TEST(Combiners, ColorDodgeDividesByRemainingHeadroom)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsColorDodge>(Grey(100, 0), Grey(128, 0), 256), Grey(200, 0));
  // k = 1: clamp(d * 256); a zero destination stays zero.
  EXPECT_EQ(Apply<_LICE_CombinePixelsColorDodge>(Grey(100, 0), Grey(255, 0), 256), Grey(255, 0));
  // k = 2 still divides: 1 * 256 / 2 = 128.
  EXPECT_EQ(Apply<_LICE_CombinePixelsColorDodge>(Grey(1, 0), Grey(254, 0), 256), Grey(128, 0));
  // k = 256 - 255 * 512 / 256 = -254 < 2.
  EXPECT_EQ(Apply<_LICE_CombinePixelsColorDodge>(Grey(1, 0), Grey(255, 0), 512), Grey(255, 0));
}

TEST(Combiners, ColorDodgeSourceAlphaHasNoEarlyExit)
{
  // sa = 0 still gives w' = 32512 / 256 = 127; k = 256 - 255 * 127 / 256 = 130; 100 * 256 / 130 = 196.
  EXPECT_EQ(Apply<_LICE_CombinePixelsColorDodgeSourceAlpha>(Argb{0, 100, 100, 100}, Argb{0, 255, 255, 255}, 32512),
            (Argb{0, 196, 196, 196}));
}

TEST(Combiners, MulScalesTowardSourceAndWrapsBeyondFullWeight)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsMulNoClamp>(Grey(200, 200), Grey(128, 128), 256), Grey(100, 100));
  EXPECT_EQ(Apply<_LICE_CombinePixelsMulNoClamp>(Grey(200, 200), Grey(128, 128), 128), Grey(150, 150));
  // w = 512, s = 0: 200 * -65536 / 65536 = -200, stored as its low byte 56.
  EXPECT_EQ(Apply<_LICE_CombinePixelsMulNoClamp>(Grey(200, 200), Grey(0, 0), 512), Grey(56, 56));
  EXPECT_EQ(Apply<_LICE_CombinePixelsMulSourceAlphaNoClamp>(Grey(200, 200), Grey(0, 0), 256), Grey(200, 200));
}

TEST(Combiners, OverlayIsNeutralAtMidGreyAndHasNoEarlyExitWithSourceAlpha)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsOverlay>(Grey(128, 0), Grey(255, 0), 256), Grey(191, 0));
  EXPECT_EQ(Apply<_LICE_CombinePixelsOverlay>(Grey(128, 0), Grey(0, 0), 256), Grey(64, 0));
  EXPECT_EQ(Apply<_LICE_CombinePixelsOverlay>(Grey(255, 255), Grey(255, 255), 256), Grey(255, 255));
  EXPECT_EQ(Apply<_LICE_CombinePixelsOverlay>(Grey(77, 33), Grey(128, 128), 128), Grey(77, 33));
  // sa = 0: w' = 1, v = 255 * 128 = 32640; (128 * 100 / 256 + 32640) * 100 / 32768 = 99.76 -> 99.
  EXPECT_EQ(Apply<_LICE_CombinePixelsOverlaySourceAlpha>(Argb{100, 100, 100, 100}, Argb{0, 0, 0, 0}, 256),
            (Argb{99, 99, 99, 99}));
}

TEST(Combiners, LineMembersIgnoreWeight)
{
  EXPECT_EQ(Apply<_LICE_CombinePixelsHalfMixNoClamp>(Argb{255, 1, 0, 9}, Argb{0, 2, 255, 200}, 3),
            (Argb{127, 1, 127, 104}));
  EXPECT_EQ(Apply<_LICE_CombinePixelsClobberNoClamp>(Argb{255, 1, 0, 9}, Argb{0, 2, 255, 200}, -7),
            (Argb{0, 2, 255, 200}));
}

const std::vector<int> kEdgeValues = {0, 1, 2, 64, 127, 128, 129, 200, 254, 255};
const std::vector<int> kEdgeAlphas = {0, 1, 127, 128, 254, 255};
const std::vector<int> kEdgeWeights = {-32512, -513, -256, -1, 1, 2, 76, 128, 255, 256, 257, 512, 32512};

template <class Combiner>
void ExpectMatchesModel(model::Op op)
{
  for (int w : kEdgeWeights)
    for (int sa : kEdgeAlphas)
      for (int s : kEdgeValues)
        for (int d : kEdgeValues)
        {
          const Argb dest = {d, d, 255 - d, d / 2};
          const Argb src = {sa, s, 255 - s, (s + 77) % 256};
          ASSERT_EQ(Apply<Combiner>(dest, src, w), model::Combine(op, dest, src, w))
              << "dest " << dest << " src " << src << " weight " << w;
        }
}

TEST(Combiners, EveryMemberMatchesTheModelOnEdgeValues)
{
  ExpectMatchesModel<_LICE_CombinePixelsCopyNoClamp>(model::kCopy);
  ExpectMatchesModel<_LICE_CombinePixelsCopySourceAlphaNoClamp>(model::kCopySourceAlpha);
  ExpectMatchesModel<_LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp>(model::kCopySourceAlphaFull);
  ExpectMatchesModel<_LICE_CombinePixelsAdd>(model::kAdd);
  ExpectMatchesModel<_LICE_CombinePixelsAddSourceAlpha>(model::kAddSourceAlpha);
  ExpectMatchesModel<_LICE_CombinePixelsColorDodge>(model::kDodge);
  ExpectMatchesModel<_LICE_CombinePixelsColorDodgeSourceAlpha>(model::kDodgeSourceAlpha);
  ExpectMatchesModel<_LICE_CombinePixelsMulNoClamp>(model::kMul);
  ExpectMatchesModel<_LICE_CombinePixelsMulSourceAlphaNoClamp>(model::kMulSourceAlpha);
  ExpectMatchesModel<_LICE_CombinePixelsOverlay>(model::kOverlay);
  ExpectMatchesModel<_LICE_CombinePixelsOverlaySourceAlpha>(model::kOverlaySourceAlpha);
  ExpectMatchesModel<_LICE_CombinePixelsHalfMixNoClamp>(model::kHalfMix);
  ExpectMatchesModel<_LICE_CombinePixelsClobberNoClamp>(model::kClobber);
}

// Hue adjustment: red 128, green 128 and blue 128 are neutral; red 0 turns the hue half way
// round (-192 of 384), green and blue move saturation and value by up to the weight.
Argb HsvAdjust(Argb dest, Argb src, int weight)
{
  return Apply<_LICE_CombinePixelsHSVAdjust>(dest, src, weight);
}

TEST(HsvAdjust, HalfTurnMapsPrimariesToComplements)
{
  const Argb neutralExceptHue = {255, 0, 128, 128};
  EXPECT_EQ(HsvAdjust({40, 255, 0, 0}, neutralExceptHue, 256), (Argb{40, 0, 255, 255}));
  EXPECT_EQ(HsvAdjust({40, 0, 255, 0}, neutralExceptHue, 256), (Argb{40, 255, 0, 255}));
  EXPECT_EQ(HsvAdjust({40, 0, 0, 255}, neutralExceptHue, 256), (Argb{40, 255, 255, 0}));
  // Red 255 turns by 190: red (0) lands two short of cyan (192), in the green-cyan sector.
  const Argb turned = HsvAdjust({40, 255, 0, 0}, {255, 255, 128, 128}, 256);
  EXPECT_EQ(turned.r, 0);
  EXPECT_EQ(turned.g, 255);
  EXPECT_NEAR(turned.b, 255 * 62 / 64, 1);
}

TEST(HsvAdjust, SaturationAndValueClampAtTheEnds)
{
  EXPECT_EQ(HsvAdjust({9, 255, 0, 0}, {0, 128, 0, 128}, 256), (Argb{9, 255, 255, 255}));
  EXPECT_EQ(HsvAdjust({9, 255, 0, 0}, {0, 128, 128, 0}, 256), (Argb{9, 0, 0, 0}));
  EXPECT_EQ(HsvAdjust({9, 100, 100, 100}, {0, 128, 255, 128}, 256).r, 100); // grey: no hue to saturate toward
  // Value 100 + 254 clamps to 255 at the same saturation of one half.
  const Argb brightened = HsvAdjust({9, 100, 50, 50}, {0, 128, 128, 255}, 256);
  EXPECT_EQ(brightened.r, 255);
  EXPECT_NEAR(brightened.g, 127.5, 1);
  EXPECT_EQ(brightened.b, brightened.g);
}

TEST(HsvAdjust, NeutralSourceKeepsColoursWithinRounding)
{
  for (int r = 0; r < 256; r += 15)
    for (int g = 0; g < 256; g += 15)
      for (int b = 0; b < 256; b += 15)
      {
        const Argb out = HsvAdjust({7, r, g, b}, {0, 128, 128, 128}, 256);
        ASSERT_EQ(out.a, 7);
        ASSERT_NEAR(out.r, r, 2) << r << " " << g << " " << b;
        ASSERT_NEAR(out.g, g, 2) << r << " " << g << " " << b;
        ASSERT_NEAR(out.b, b, 2) << r << " " << g << " " << b;
      }
}

TEST(HsvAdjust, SourceAlphaScalesWeightWithoutEarlyExit)
{
  // sa = 255 keeps the full half turn.
  EXPECT_EQ(Apply<_LICE_CombinePixelsHSVAdjustSourceAlpha>({40, 255, 0, 0}, {255, 0, 128, 128}, 256),
            (Argb{40, 0, 255, 255}));
  // sa = 0 with weight 32512 still acts with w' = 127: value drops by 127.
  EXPECT_EQ(Apply<_LICE_CombinePixelsHSVAdjustSourceAlpha>({40, 200, 200, 200}, {0, 128, 128, 0}, 32512),
            (Argb{40, 73, 73, 73}));
}
} // namespace
