// PNG decoding: every colour type and depth of the sample set decodes to the pixels the PNG
// rules predict, from file and from memory, into new and given bitmaps; damaged, truncated
// and oversized files give null without harm.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "LiceTestSupport.h"
#include "PngFileWriter.h"
#include "PngSamples.h"
#include "lice/LICE_Blit.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"

namespace
{
std::string SamplePath(const std::string& name)
{
  return std::string(TARN_LICE_PNG_DIR) + "/" + name + ".png";
}

std::vector<unsigned char> ReadBytes(const std::string& path)
{
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A sample of the given depth widened to 8 bits as the decoder must: low depths scale up to
// fill the byte, 16-bit samples keep their high byte.
int To8Bits(int raw, int depth)
{
  if (depth == 16)
    return raw >> 8;
  return raw * 255 / ((1 << depth) - 1);
}

Argb ExpectedPixel(const PngSample& s, int x, int y)
{
  const int d = s.bitDepth;
  if (s.kind == SampleKind::Palette)
  {
    const int index = PaletteIndex(x, y, d);
    const PaletteEntry e = PaletteColour(index);
    const std::vector<int> alphas = PaletteAlpha();
    const int a = s.transparency && index < (int)alphas.size() ? alphas[(size_t)index] : 255;
    return {a, e.r, e.g, e.b};
  }
  auto raw = [&](int c) { return RawSample(x, y, c, d); };
  auto sample = [&](int c) { return To8Bits(raw(c), d); };
  auto isTransparentColour = [&](int channels) {
    for (int c = 0; c < channels; ++c)
      if (raw(c) != RawSample(kTransparentX, kTransparentY, c, d))
        return false;
    return true;
  };
  switch (s.kind)
  {
  case SampleKind::Grey:
    return {s.transparency && isTransparentColour(1) ? 0 : 255, sample(0), sample(0), sample(0)};
  case SampleKind::GreyAlpha: return {sample(1), sample(0), sample(0), sample(0)};
  case SampleKind::Rgb: return {s.transparency && isTransparentColour(3) ? 0 : 255, sample(0), sample(1), sample(2)};
  case SampleKind::Rgba: return {sample(3), sample(0), sample(1), sample(2)};
  case SampleKind::Palette: break;
  }
  return {};
}

void ExpectSamplePixels(const PngSample& s, LICE_IBitmap* bmp)
{
  ASSERT_NE(bmp, nullptr) << s.name;
  ASSERT_EQ(bmp->getWidth(), s.width) << s.name;
  ASSERT_EQ(bmp->getHeight(), s.height) << s.name;
  for (int y = 0; y < s.height; ++y)
    for (int x = 0; x < s.width; ++x)
      ASSERT_EQ(GetPixel(bmp, x, y), ExpectedPixel(s, x, y)) << s.name << " at " << x << "," << y;
}

TEST(Png, EveryColourTypeAndDepthDecodesToArgb)
{
  for (const PngSample& s : PngSamples())
  {
    std::unique_ptr<LICE_IBitmap> bmp(LICE_LoadPNG(SamplePath(s.name).c_str(), nullptr));
    ExpectSamplePixels(s, bmp.get());
    EXPECT_EQ(bmp->getRowSpan(), (s.width + 3) / 4 * 4) << "a new bitmap has rows aligned to 4 pixels";
  }
}

TEST(Png, MemoryDecodingMatchesFileDecoding)
{
  for (const PngSample& s : PngSamples())
  {
    const std::vector<unsigned char> bytes = ReadBytes(SamplePath(s.name));
    std::unique_ptr<LICE_IBitmap> bmp(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), nullptr));
    ExpectSamplePixels(s, bmp.get());
  }
}

TEST(Png, GivenBitmapsAreResizedAndFilledAsSeen)
{
  const PngSample rgba = {"rgba8", SampleKind::Rgba, 8, false, false, 5, 6};
  LICE_MemBitmap mem(1, 1, 4);
  EXPECT_EQ(LICE_LoadPNG(SamplePath("rgba8").c_str(), &mem), &mem);
  ExpectSamplePixels(rgba, &mem);

  FlippedMemBitmap flipped(40, 40, 16);
  EXPECT_EQ(LICE_LoadPNG(SamplePath("rgba8").c_str(), &flipped), &flipped);
  ExpectSamplePixels(rgba, &flipped);
  // The file's first row is the last row in memory.
  const unsigned char* lastRow = (const unsigned char*)(flipped.getBits() + 5 * flipped.getRowSpan());
  EXPECT_EQ(lastRow[1], ExpectedPixel(rgba, 0, 0).r);

  LICE_SysBitmap sys(2, 2);
  EXPECT_EQ(LICE_LoadPNG(SamplePath("rgba8").c_str(), &sys), &sys);
  ExpectSamplePixels(rgba, &sys);
}

// A bitmap that cannot change size.
class FixedBitmap : public LICE_MemBitmap
{
public:
  FixedBitmap() : LICE_MemBitmap(4, 4, 4) {}
  bool resize(int, int) override { return false; }
};

TEST(Png, BitmapThatWillNotTakeTheSizeGivesNull)
{
  FixedBitmap fixed;
  LICE_Clear(&fixed, LICE_RGBA(1, 2, 3, 4));
  EXPECT_EQ(LICE_LoadPNG(SamplePath("rgba8").c_str(), &fixed), nullptr);
  EXPECT_EQ(GetPixel(&fixed, 0, 0), (Argb{4, 1, 2, 3}));
}

TEST(Png, MissingOrBrokenFilesGiveNull)
{
  EXPECT_EQ(LICE_LoadPNG(SamplePath("does-not-exist").c_str(), nullptr), nullptr);
  EXPECT_EQ(LICE_LoadPNG(nullptr, nullptr), nullptr);
  EXPECT_EQ(LICE_LoadPNGFromMemory(nullptr, 10, nullptr), nullptr);
  for (const char* name :
       {"truncated", "badcrc", "huge-chunk", "signature-only", "not-png", "empty", "huge", "too-many-pixels", "zero-width"})
  {
    EXPECT_EQ(LICE_LoadPNG(SamplePath(name).c_str(), nullptr), nullptr) << name;
    const std::vector<unsigned char> bytes = ReadBytes(SamplePath(name));
    EXPECT_EQ(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), nullptr), nullptr) << name;
    LICE_MemBitmap given(3, 3, 4);
    EXPECT_EQ(LICE_LoadPNG(SamplePath(name).c_str(), &given), nullptr) << name;
  }
}

TEST(Png, OversizedImagesAllocateNothing)
{
  // The header is refused before the target is touched: a given bitmap keeps its size.
  for (const char* name : {"huge", "too-many-pixels"})
  {
    LICE_MemBitmap given(3, 3, 4);
    EXPECT_EQ(LICE_LoadPNG(SamplePath(name).c_str(), &given), nullptr);
    EXPECT_EQ(given.getWidth(), 3) << name;
    EXPECT_EQ(given.getHeight(), 3) << name;
  }
}

TEST(Png, EveryPrefixOfAFileDecodesWhollyOrNotAtAll)
{
  const PngSample s = {"rgba8-interlaced", SampleKind::Rgba, 8, false, true, 11, 9};
  const std::vector<unsigned char> bytes = ReadBytes(SamplePath(s.name));
  for (size_t length = 0; length <= bytes.size(); ++length)
  {
    std::vector<unsigned char> prefix(bytes.begin(), bytes.begin() + (long)length); // exact-size heap block
    std::unique_ptr<LICE_IBitmap> bmp(LICE_LoadPNGFromMemory(prefix.data(), prefix.size(), nullptr));
    if (bmp)
      ExpectSamplePixels(s, bmp.get());
  }
  std::unique_ptr<LICE_IBitmap> whole(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), nullptr));
  EXPECT_NE(whole, nullptr);
}

// Decodes the bands picture, composes it over a grey ground with the source alpha, and
// writes the result next to the build for a look: red, green and blue from left to right,
// the lower half paler.
TEST(Png, BandsComposeOverGroundAndSnapshotIsWritten)
{
  std::unique_ptr<LICE_IBitmap> bands(LICE_LoadPNG(SamplePath("bands").c_str(), nullptr));
  ASSERT_NE(bands, nullptr);
  LICE_SysBitmap ground(64, 32);
  LICE_Clear(&ground, LICE_RGBA(128, 128, 128, 255));
  LICE_Blit(&ground, bands.get(), 8, 8, nullptr, 1.0f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA);
  EXPECT_EQ(GetPixel(&ground, 8, 8), (Argb{255, 255, 0, 0}));
  EXPECT_EQ(GetPixel(&ground, 24, 8), (Argb{255, 0, 255, 0}));
  EXPECT_EQ(GetPixel(&ground, 40, 8), (Argb{255, 0, 0, 255}));
  // Half transparent: (128 - 255) * 127 / 256 + 255 = 192 and (128 - 0) * 127 / 256 = 63.
  EXPECT_EQ(GetPixel(&ground, 8, 16), (Argb{255, 192, 63, 63}));
  EXPECT_EQ(GetPixel(&ground, 0, 0), (Argb{255, 128, 128, 128}));
  EXPECT_TRUE(WriteBitmapPng(TARN_LICE_SNAPSHOT, &ground));
}
} // namespace
