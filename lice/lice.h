#pragma once

// The raster library: 32-bit bitmaps, blits and fills with per-pixel combine modes, and PNG
// decoding.

#include "lice/LICE_Blit.h"
#include "lice/LICE_Combine.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_HSV.h"
#include "lice/LICE_IBitmap.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"
#include "lice/LICE_Types.h"
