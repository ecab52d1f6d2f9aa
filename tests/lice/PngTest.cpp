#include <cstdio>
#include <memory>

#include "LiceTest.h"
#include "PngSamples.h"
#include "lice/LICE_PNG.h"

// Lower depths scale up to fill the byte, 16-bit samples keep their high byte, grey widens to
// RGB; a colour equal to the transparency key gets alpha 0, any other without alpha 255.
Argb Expected(const PngSample& s, int x, int y) {
  const int d = s.depth, i = PaletteIndex(x, y, d), colours = s.type & 2 ? 3 : 1;
  const png_color c = PaletteColour(i);
  if (s.type == 3) return {s.trns && i < 3 ? kPaletteAlpha[i] : 255, c.red, c.green, c.blue};
  auto value = [&](int c) {
    return d == 16 ? RawSample(x, y, c, d) >> 8 : RawSample(x, y, c, d) * 255 / ((1 << d) - 1);
  };
  bool keyed = s.trns;
  for (int c = 0; c < colours; ++c) keyed &= RawSample(x, y, c, d) == RawSample(kKeyX, kKeyY, c, d);
  const int alpha = s.type & 4 ? value(colours) : keyed ? 0 : 255;
  return {alpha, value(0), value(colours / 2), value(colours - 1)};
}

void ExpectDecoded(const PngSample& s, LICE_IBitmap* bmp) {
  ASSERT_TRUE(bmp && bmp->getWidth() == 7 && bmp->getHeight() == 5 && bmp->getRowSpan() == 8);
  for (int i = 0; i < 35; ++i) ASSERT_EQ(Get(bmp, i % 7, i / 7), Expected(s, i % 7, i / 7)) << i;
}

// Into a new bitmap (rows aligned to four pixels) and into given bitmaps, resized to the image; a
// flipped one gets the first row on top as seen. (Files are read in the encoding test below.)
TEST(Png, EveryColourTypeAndDepthDecodesToArgb) {
  for (const PngSample& s : PngSamples()) {
    SCOPED_TRACE(testing::Message() << "type " << s.type << " depth " << s.depth << " " << s.trns);
    const Bytes bytes = EncodePng(s, 7, 5, 5);
    std::unique_ptr<LICE_IBitmap> fresh(
        LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), nullptr));
    ExpectDecoded(s, fresh.get());
    LICE_SysBitmap sys(2, 2);
    GuardedBitmap flipped(7, 5, true);
    EXPECT_EQ(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), &sys), &sys);
    ExpectDecoded(s, &sys);
    EXPECT_EQ(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), &flipped), &flipped);
    flipped.Expect([&](int x, int y) { return Expected(s, x, y); });
  }
}

// Null: an interlaced file cut short of its image data (the end chunk is optional), bad checksum,
// no data or file, a bitmap refusing the size (kept), over 16384 a side or 2^24 pixels (no resize).
TEST(Png, CutBrokenOrOversizedDataGivesNull) {
  const PngSample s = {6, 8, false, true};
  const Bytes good = EncodePng(s, 7, 5, 5);
  for (size_t n = 0; n <= good.size(); ++n) {
    LICE_MemBitmap given(3, 3, 4);  // decoded into as well
    std::unique_ptr<LICE_IBitmap> bmp(LICE_LoadPNGFromMemory(good.data(), n, nullptr));
    EXPECT_EQ(!!bmp, n + 12 >= good.size()) << n;
    if (bmp) ExpectDecoded(s, bmp.get());
    EXPECT_EQ(LICE_LoadPNGFromMemory(good.data(), n, &given) == &given, n + 12 >= good.size()) << n;
  }
  Bytes badCrc = good;
  badCrc[41] ^= 0x55;  // the first byte of the image data
  EXPECT_FALSE(LICE_LoadPNGFromMemory(badCrc.data(), badCrc.size(), nullptr) ||
               LICE_LoadPNGFromMemory(nullptr, 10, nullptr) || LICE_LoadPNG(nullptr, nullptr) ||
               LICE_LoadPNG("no-such-folder/lice-sample.png", nullptr));
  GuardedBitmap fixed(4, 4, false);
  EXPECT_FALSE(LICE_LoadPNGFromMemory(good.data(), good.size(), &fixed));
  fixed.Expect([](int, int) { return Argb{}; });
  for (auto [w, h] : {std::pair{16385, 1}, {1, 16385}, {4097, 4096}, {100000, 100000}}) {
    const Bytes bytes = EncodePng({6, 8, false, false}, w, h, 16);
    LICE_MemBitmap given(3, 3, 4);
    EXPECT_FALSE(LICE_LoadPNGFromMemory(bytes.data(), bytes.size(), &given)) << w;
    EXPECT_EQ(Dims(given), std::tuple(3, 3, true)) << w;
  }
}

// Encoding keeps every pixel as seen (alpha or opaque, flipped top row first), also through a
// file; no bitmap or no pixels encode nothing, and no file is made where none can be.
TEST(Png, EncodedImagesDecodeToThePixelsSeen) {
  LICE_MemBitmap plain(7, 5, 4);
  LICE_SysBitmap flipped(7, 5);
  for (LICE_IBitmap* b : {(LICE_IBitmap*)&plain, (LICE_IBitmap*)&flipped})
    for (int i = 0; i < 35; ++i) Set(b, i % 7, i / 7, Pattern(i % 7, i / 7));
  Bytes png;
  for (auto [source, alpha] : {std::pair{(LICE_IBitmap*)&plain, true}, {&flipped, false}}) {
    ASSERT_TRUE(LICE_EncodePNG(source, alpha, &png));
    std::unique_ptr<LICE_IBitmap> back(LICE_LoadPNGFromMemory(png.data(), png.size(), nullptr));
    for (int i = 0; i < 35; ++i) {
      Argb seen = Pattern(i % 7, i / 7);
      seen[0] = alpha ? seen[0] : 255;
      ASSERT_EQ(Get(back.get(), i % 7, i / 7), seen) << alpha << " " << i;
    }
  }
  LICE_MemBitmap empty;
  EXPECT_FALSE(LICE_EncodePNG(&empty, true, &png) || !png.empty() ||
               LICE_EncodePNG(nullptr, true, &png) ||
               LICE_WritePNG("no-such-folder/lice-out.png", &plain, true));
  ASSERT_TRUE(LICE_WritePNG("lice-out.png", &plain, true));
  std::unique_ptr<LICE_IBitmap> file(LICE_LoadPNG("lice-out.png", nullptr));
  std::remove("lice-out.png");
  EXPECT_TRUE(file && Get(file.get(), 6, 4) == Pattern(6, 4));
}
