#include "lice/LICE_MemBitmap.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace
{
// The allocator pads every buffer by 63 bytes beyond what the pixels need.
constexpr long long kAllocationSlack = 63;

// Sizes an int byte count cannot hold are refused as an allocation failure would be.
bool fitsAllocation(long long bytes)
{
  return bytes + kAllocationSlack <= INT_MAX;
}

int lowestSetBit(unsigned int v)
{
  return (int)(v & (~v + 1u));
}
} // namespace

LICE_MemBitmap::LICE_MemBitmap(int w, int h, unsigned int rowAlign)
{
  if (rowAlign >= 2)
  {
    alignMask = lowestSetBit(rowAlign) - 1;
    if (alignMask > 16)
      alignMask = 16;
  }
  if (w || h)
    resize(w, h);
}

LICE_MemBitmap::~LICE_MemBitmap()
{
  std::free(bits);
}

void LICE_MemBitmap::releaseBuffer()
{
  std::free(bits);
  bits = nullptr;
  allocBytes = 0;
}

bool LICE_MemBitmap::resize(int w, int h)
{
  if (w == width && h == height)
    return false;

  width = w;
  height = h;
  // Widened so that absurd sizes fail as allocations instead of overflowing.
  const long long rowSpan = ((long long)w + alignMask) & ~(long long)alignMask;
  const long long pixels = std::clamp((long long)h * rowSpan, (long long)INT_MIN, (long long)INT_MAX);
  const long long needed = pixels * 4;

  if (needed <= 0)
    releaseBuffer();
  else if (bits)
  {
    if (needed <= allocBytes)
      return true;
    const long long grown = needed + needed / 4;
    void* moved = fitsAllocation(grown) ? std::realloc(bits, (size_t)(grown + kAllocationSlack)) : nullptr;
    if (moved)
    {
      bits = (LICE_pixel*)moved;
      allocBytes = (int)grown;
      return true;
    }
    releaseBuffer();
  }

  if (needed > 0 && fitsAllocation(needed))
  {
    allocBytes = (int)needed;
    bits = (LICE_pixel*)std::malloc((size_t)(needed + kAllocationSlack));
  }

  if (!bits)
  {
    width = 0;
    height = 0;
    allocBytes = 0;
  }
  return true;
}
