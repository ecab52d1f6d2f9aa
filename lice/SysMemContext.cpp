#include "lice/SysMemContext.h"

#include <climits>
#include <cstdlib>
#include <new>

struct SWELL_GfxContext
{
  void* frameBuffer;
};

HDC SWELL_CreateMemContext(HDC /*compatible*/, int w, int h)
{
  if (w <= 0 || h <= 0)
    return nullptr;
  // Byte counts of bitmaps are ints throughout; a buffer beyond that range is refused.
  const long long bytes = (long long)w * h * 4;
  if (bytes > INT_MAX)
    return nullptr;
  void* frameBuffer = std::calloc((size_t)bytes, 1);
  if (!frameBuffer)
    return nullptr;
  SWELL_GfxContext* ctx = new (std::nothrow) SWELL_GfxContext{frameBuffer};
  if (!ctx)
    std::free(frameBuffer);
  return ctx;
}

void* SWELL_GetCtxFrameBuffer(HDC ctx)
{
  return ctx ? ctx->frameBuffer : nullptr;
}

void SWELL_DeleteGfxContext(HDC ctx)
{
  if (!ctx)
    return;
  std::free(ctx->frameBuffer);
  delete ctx;
}
