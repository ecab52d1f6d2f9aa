#pragma once

#include <cstddef>
#include <vector>

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

// Encodes bmp as an 8-bit PNG image into *png: red, green, blue and alpha, or without alpha (every
// pixel shown opaque) when wantAlpha is false; the top row first, however the bitmap is stored.
// Returns false, with *png empty, when there is nothing to encode (no bitmap or no pixels).
bool LICE_EncodePNG(LICE_IBitmap* bmp, bool wantAlpha, std::vector<unsigned char>* png);

// LICE_EncodePNG into a file, which is created or replaced only once the image is encoded.
// Returns false when there is nothing to encode or the file cannot be written.
bool LICE_WritePNG(const char* filename, LICE_IBitmap* bmp, bool wantAlpha);

// Far beyond any editor artwork; a file claiming more is refused before anything is allocated.
constexpr unsigned LICE_PNG_MAX_DIMENSION = 16384;
constexpr unsigned long long LICE_PNG_MAX_PIXELS = 1ull << 24;
