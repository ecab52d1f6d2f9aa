#pragma once

// The sample images written at build time and decoded by the tests: every PNG colour type at
// every bit depth it allows, with and without transparency chunks. Samples follow simple
// formulas so that a test can predict each decoded pixel from the PNG rules alone.

#include <string>
#include <vector>

enum class SampleKind
{
  Grey,
  GreyAlpha,
  Rgb,
  Rgba,
  Palette
};

struct PngSample
{
  std::string name;
  SampleKind kind;
  int bitDepth;
  bool transparency; // tRNS chunk: a transparent colour, or alpha for palette entries
  bool interlaced;
  int width;
  int height;
};

inline std::vector<PngSample> PngSamples()
{
  std::vector<PngSample> samples;
  for (int depth : {1, 2, 4, 8, 16})
  {
    samples.push_back({"grey" + std::to_string(depth), SampleKind::Grey, depth, false, false, 7, 5});
    samples.push_back({"grey" + std::to_string(depth) + "-trns", SampleKind::Grey, depth, true, false, 7, 5});
  }
  for (int depth : {8, 16})
  {
    const std::string d = std::to_string(depth);
    samples.push_back({"greyalpha" + d, SampleKind::GreyAlpha, depth, false, false, 6, 4});
    samples.push_back({"rgb" + d, SampleKind::Rgb, depth, false, false, 5, 3});
    samples.push_back({"rgb" + d + "-trns", SampleKind::Rgb, depth, true, false, 5, 3});
    samples.push_back({"rgba" + d, SampleKind::Rgba, depth, false, false, 5, 6});
  }
  for (int depth : {1, 2, 4, 8})
  {
    const std::string d = std::to_string(depth);
    samples.push_back({"palette" + d, SampleKind::Palette, depth, false, false, 9, 4});
    samples.push_back({"palette" + d + "-trns", SampleKind::Palette, depth, true, false, 9, 4});
  }
  samples.push_back({"rgba8-interlaced", SampleKind::Rgba, 8, false, true, 11, 9});
  return samples;
}

inline int ChannelCount(SampleKind kind)
{
  switch (kind)
  {
  case SampleKind::Grey: return 1;
  case SampleKind::GreyAlpha: return 2;
  case SampleKind::Rgb: return 3;
  case SampleKind::Rgba: return 4;
  case SampleKind::Palette: return 1;
  }
  return 0;
}

// Raw sample value of channel c at (x, y), in 0 .. 2^depth - 1. The 16-bit values pair a high
// byte with a different low byte, so that keeping the high byte differs from rounding.
inline int RawSample(int x, int y, int c, int depth)
{
  const int byte = (x * 53 + y * 101 + c * 71 + 17) & 0xff;
  if (depth == 16)
    return (byte << 8) | (0xff - byte);
  if (depth == 8)
    return byte;
  return (x + 2 * y + c) % (1 << depth);
}

inline int PaletteSize(int depth)
{
  return depth == 1 ? 2 : depth == 2 ? 4 : 7;
}

inline int PaletteIndex(int x, int y, int depth)
{
  return (x + 3 * y) % PaletteSize(depth);
}

struct PaletteEntry
{
  int r, g, b;
};

inline PaletteEntry PaletteColour(int index)
{
  return {index * 40 + 5, 255 - index * 30, index * 17 + 100};
}

// Alpha values of the first entries of a palette's tRNS chunk (as many as the palette has);
// later entries are opaque.
inline std::vector<int> PaletteAlpha()
{
  return {0, 128, 255};
}

// The raw pixel whose value is declared transparent in grey and RGB tRNS chunks.
constexpr int kTransparentX = 2;
constexpr int kTransparentY = 1;
