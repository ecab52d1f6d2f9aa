#pragma once

// Sample PNG images of every colour type and bit depth, with and without transparency chunk,
// encoded by libpng. Their samples follow formulas, so that a test can predict each decoded
// pixel from the PNG rules alone. The PNG fuzzer starts from the same images.

#include <png.h>

#include <algorithm>
#include <vector>

typedef std::vector<unsigned char> Bytes;
struct PngSample {
  int type, depth;
  bool trns, interlaced;
};

inline std::vector<PngSample> PngSamples() {
  std::vector<PngSample> out;
  for (int type : {0, 2, 3, 4, 6})  // grey, RGB, palette, grey and alpha, RGBA
    for (int depth : {1, 2, 4, 8, 16})
      for (bool trns : {false, true})
        if ((depth >= 8 || type == 0 || type == 3) && (depth < 16 || type != 3) &&
            !(trns && type & 4))
          out.push_back({type, depth, trns, out.size() % 3 == 0});
  return out;
}

// Sample c at (x, y). The 16-bit ones pair a high byte with another low byte, so that keeping
// the high byte differs from rounding.
inline int RawSample(int x, int y, int c, int depth) {
  const int byte = (x * 53 + y * 101 + c * 71 + 17) & 255;
  return depth == 16  ? byte << 8 | (255 - byte)
         : depth == 8 ? byte
                      : (x + 2 * y + c) % (1 << depth);
}
inline int PaletteSize(int depth) { return std::min(1 << depth, 7); }
inline png_color PaletteColour(int i) {
  return {(png_byte)(i * 40 + 5), (png_byte)(255 - i * 30), (png_byte)(i * 17 + 100)};
}
inline int PaletteIndex(int x, int y, int depth) { return (x + 3 * y) % PaletteSize(depth); }
const png_byte kPaletteAlpha[] = {0, 128, 255};  // of the first entries; later ones are opaque
constexpr int kKeyX = 2, kKeyY = 1;              // the pixel whose colour is made transparent

inline void AppendBytes(png_structp png, png_bytep data, png_size_t n) {
  Bytes* out = (Bytes*)png_get_io_ptr(png);
  out->insert(out->end(), data, data + n);
}

// The sample at w × h; a file with fewer rows than h stops after their data, enough to get past
// the header.
inline Bytes EncodePng(const PngSample& s, int w, int h, int rows) {
  rows = std::min(rows, h);
  Bytes out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &out, AppendBytes, [](png_structp) {});
  png_set_compression_buffer_size(png, 64);  // image data goes out in small chunks as it comes
  png_set_IHDR(png, info, w, h, s.depth, s.type, s.interlaced, 0, 0);
  std::vector<png_color> palette;
  for (int i = 0; i < PaletteSize(s.depth); ++i) palette.push_back(PaletteColour(i));
  if (s.type == 3) png_set_PLTE(png, info, palette.data(), (int)palette.size());
  png_color_16 key = {};
  png_uint_16* keyParts[] = {&key.red, &key.green, &key.blue};
  for (int c = 0; c < 3; ++c) *keyParts[c] = (png_uint_16)RawSample(kKeyX, kKeyY, c, s.depth);
  key.gray = key.red;
  if (s.trns) png_set_tRNS(png, info, kPaletteAlpha, std::min(3, (int)palette.size()), &key);
  png_write_info(png, info);
  png_set_packing(png);
  std::vector<Bytes> data(h);  // one sample per byte below 8 bits, big-endian pairs at 16
  for (int y = 0; y < rows; ++y)
    for (int x = 0; x < w; ++x)
      for (int c = 0; c < png_get_channels(png, info); ++c) {
        const int v = s.type == 3 ? PaletteIndex(x, y, s.depth) : RawSample(x, y, c, s.depth);
        if (s.depth == 16) data[y].push_back((unsigned char)(v >> 8));
        data[y].push_back((unsigned char)v);
      }
  for (int pass = png_set_interlace_handling(png); pass > 0; --pass)
    for (int y = 0; y < rows; ++y) png_write_row(png, data[y].data());
  rows < h ? png_write_flush(png) : png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return out;
}
