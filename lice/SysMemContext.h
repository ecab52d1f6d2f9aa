#pragma once

// The memory drawing context behind LICE_SysBitmap. On this platform it is nothing more than
// an owned 32-bit frame buffer; a window back end copies from it to the screen.

struct SWELL_GfxContext;
typedef SWELL_GfxContext* HDC;

// Creates a context with a zeroed frame buffer of w × h pixels, or returns null when either
// side is not positive or the buffer cannot be had. The compatible context is not consulted.
HDC SWELL_CreateMemContext(HDC compatible, int w, int h);
void* SWELL_GetCtxFrameBuffer(HDC ctx);
void SWELL_DeleteGfxContext(HDC ctx);
