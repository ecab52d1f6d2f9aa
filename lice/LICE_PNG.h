#pragma once

#include <cstddef>

#include "lice/LICE_IBitmap.h"

// Decodes a PNG image into bmp, resized to the image, or when bmp is null into a new
// LICE_MemBitmap (row alignment 4) that the caller owns. Every pixel arrives as alpha, red,
// green, blue, with alpha exactly as the file gives it (not premultiplied). Returns the bitmap
// written, or null on any failure: a missing or unreadable file, a damaged image, one larger
// than LICE_PNG_MAX_DIMENSION on a side or LICE_PNG_MAX_PIXELS in all, or a given bitmap that
// will not take the image's size. A given bitmap may be left resized and partly written.
LICE_IBitmap* LICE_LoadPNG(const char* filename, LICE_IBitmap* bmp);

// The same decoder reading the image from size bytes at data.
LICE_IBitmap* LICE_LoadPNGFromMemory(const void* data, size_t size, LICE_IBitmap* bmp);

// Far beyond any editor artwork; a file claiming more is refused before anything is allocated.
constexpr unsigned LICE_PNG_MAX_DIMENSION = 16384;
constexpr unsigned long long LICE_PNG_MAX_PIXELS = 1ull << 24;
