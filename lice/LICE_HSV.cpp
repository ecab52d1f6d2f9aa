#include "lice/LICE_HSV.h"

namespace
{
// 65536 / i rounded, so that a division by a channel value becomes a multiply and a shift.
struct ReciprocalTable
{
  unsigned v[256];
  constexpr ReciprocalTable() : v()
  {
    for (unsigned i = 1; i < 256; ++i)
      v[i] = (65536u + i / 2) / i;
  }
};
constexpr ReciprocalTable kReciprocals;

// numerator / denominator for 0 <= numerator, 1 <= denominator <= 255, rounded to nearest.
// The products stay below 2^32 for numerators up to 65535.
int scaledQuotient(unsigned numerator, unsigned denominator)
{
  return (int)((numerator * kReciprocals.v[denominator] + 32768u) >> 16);
}

// Hue offset within a sector for a channel difference 0..delta: 0 to 64.
int sectorOffset(int difference, int delta)
{
  return scaledQuotient((unsigned)(difference * LICE_HSV_SECTOR), (unsigned)delta);
}

// Hue around a sector centre given the two other channels, wrapping below red into magenta.
int hueAround(int centre, int rising, int falling, int delta)
{
  if (rising >= falling)
    return centre + sectorOffset(rising - falling, delta);
  const int hue = centre - sectorOffset(falling - rising, delta);
  return hue < 0 ? hue + LICE_HSV_HUE_RANGE : hue;
}
} // namespace

void LICE_RGB2HSV(int r, int g, int b, int* h, int* s, int* v)
{
  const int maxChannel = r > g ? (r > b ? r : b) : (g > b ? g : b);
  const int minChannel = r < g ? (r < b ? r : b) : (g < b ? g : b);
  const int delta = maxChannel - minChannel;
  *v = maxChannel;
  if (delta == 0)
  {
    *h = 0;
    *s = 0;
    return;
  }
  *s = scaledQuotient((unsigned)(delta * 255), (unsigned)maxChannel);
  if (maxChannel == r)
    *h = hueAround(0, g, b, delta);
  else if (maxChannel == g)
    *h = hueAround(2 * LICE_HSV_SECTOR, b, r, delta);
  else
    *h = hueAround(4 * LICE_HSV_SECTOR, r, g, delta);
}

void LICE_HSV2RGB(int h, int s, int v, int* r, int* g, int* b)
{
  const int chroma = (v * s + 127) / 255;
  const int low = v - chroma;
  const int sector = h / LICE_HSV_SECTOR;
  const int offset = (chroma * (h % LICE_HSV_SECTOR) + LICE_HSV_SECTOR / 2) / LICE_HSV_SECTOR;
  const int rising = low + offset;
  const int falling = v - offset;
  switch (sector)
  {
  case 0: *r = v; *g = rising; *b = low; break;
  case 1: *r = falling; *g = v; *b = low; break;
  case 2: *r = low; *g = v; *b = rising; break;
  case 3: *r = low; *g = falling; *b = v; break;
  case 4: *r = rising; *g = low; *b = v; break;
  default: *r = v; *g = low; *b = falling; break;
  }
}
