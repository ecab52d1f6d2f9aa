#pragma once

// Writes small PNG files with libpng for the tests: the sample images in every colour type,
// and snapshots of bitmaps to look at.

#include <png.h>

#include <string>
#include <vector>

#include "lice/LICE_IBitmap.h"

struct PngImageSpec
{
  int width = 0;
  int height = 0;
  int bitDepth = 8;
  int colorType = PNG_COLOR_TYPE_RGB_ALPHA;
  bool interlaced = false;
  std::vector<png_color> palette;
  std::vector<png_byte> paletteAlpha; // tRNS of a palette image
  bool hasTransparentColor = false;   // tRNS of a grey or RGB image
  png_color_16 transparentColor = {};
  // One sample per byte for depths below 8; big-endian pairs for 16 bits.
  std::vector<std::vector<png_byte>> rows;
};

bool WritePngFile(const std::string& path, const PngImageSpec& image);

// Encodes the bitmap as seen (top row first) as 8-bit RGBA.
bool WriteBitmapPng(const std::string& path, LICE_IBitmap* bmp);
