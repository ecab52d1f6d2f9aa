#pragma once

#include "lice/LICE_IBitmap.h"

// Combines the source rectangle of src (the whole of src when srcRect is null) into dest with
// its top left at (destX, destY), clipped to both bitmaps. alpha is the global weight (1.0 full
// strength); mode is one of the LICE_BLIT_MODE_ values, optionally with LICE_BLIT_USE_ALPHA,
// or LICE_BLIT_MODE_CHANCOPY plus channel selectors.
void LICE_Blit(LICE_IBitmap* dest, LICE_IBitmap* src, int destX, int destY, RECT* srcRect, float alpha, int mode);
void LICE_Blit(LICE_IBitmap* dest, LICE_IBitmap* src, int destX, int destY, int srcX, int srcY, int srcW, int srcH,
               float alpha, int mode);

enum
{
  LICE_BLIT_MODE_COPY = 0,
  LICE_BLIT_MODE_ADD = 1,
  LICE_BLIT_MODE_DODGE = 2,
  LICE_BLIT_MODE_MUL = 3,
  LICE_BLIT_MODE_OVERLAY = 4,
  LICE_BLIT_MODE_HSVADJ = 5,
  // Channel copy: source byte (mode & 3) into destination byte ((mode >> 2) & 3).
  LICE_BLIT_MODE_CHANCOPY = 0xf0,
  // Scales the weight by each source pixel's own alpha.
  LICE_BLIT_USE_ALPHA = 0x10000
};
