#include "lice/LICE_SysBitmap.h"

#include <climits>

LICE_SysBitmap::LICE_SysBitmap(int w, int h)
{
  resize(w, h);
}

LICE_SysBitmap::~LICE_SysBitmap()
{
  SWELL_DeleteGfxContext(context);
}

bool LICE_SysBitmap::resize(int w, int h)
{
  if (w == width && h == height)
    return false;
  width = w;
  height = h;

  if (w && h && w <= allocWidth && h <= allocHeight && bits)
  {
    // A flipped context shows its last rows, so the smaller image sits at the buffer's end.
    if (isFlipped())
    {
      unsigned char* frame = (unsigned char*)SWELL_GetCtxFrameBuffer(context);
      bits = (LICE_pixel*)(frame + (long long)(allocHeight - h) * allocWidth * 4);
    }
    return true;
  }

  // Widths within three of the int limit cannot be padded; the context refuses them below.
  allocWidth = w > INT_MAX - 3 ? 0 : (w + 3) & ~3;
  allocHeight = h;
  SWELL_DeleteGfxContext(context);
  context = nullptr;
  bits = nullptr;
  if ((w >= -3 && w <= 0) || h == 0)
    return false;

  context = SWELL_CreateMemContext(nullptr, allocWidth, h);
  bits = (LICE_pixel*)SWELL_GetCtxFrameBuffer(context);
  if (!bits)
  {
    width = 0;
    height = 0;
  }
  return true;
}
