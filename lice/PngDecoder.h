#pragma once

// The one PNG decoder behind the file and memory entry points. Internal to the library.

#include <png.h>

#include "lice/LICE_IBitmap.h"

namespace lice_detail
{
// Gives the fresh read structure its input (libpng's stdio reader or a custom read function).
typedef void (*PngInputInstaller)(png_structp png, void* input);

LICE_IBitmap* DecodePng(PngInputInstaller installInput, void* input, LICE_IBitmap* bmp);
} // namespace lice_detail
