#pragma once

#include "lice/LICE_IBitmap.h"

// Sets every pixel of the bitmap to color.
void LICE_Clear(LICE_IBitmap* dest, LICE_pixel color);

// Combines color into the w × h rectangle at (x, y), clipped to the bitmap, with the same
// weight and modes as LICE_Blit (the colour standing in for every source pixel).
void LICE_FillRect(LICE_IBitmap* dest, int x, int y, int w, int h, LICE_pixel color, float alpha, int mode);
