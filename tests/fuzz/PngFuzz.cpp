// Arbitrary bytes into the PNG decoder: it must return a bitmap or null, never crash, leak or
// allocate without bound. A decoded image is also blitted, to reach its rows.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "lice/LICE_Blit.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_PNG.h"

// libpng's default handlers print every decoding error to stderr, which would fill the fuzz log
// with millions of lines. Only that stream is sent away: the fuzzer keeps its own copy of the
// original, and the sanitizers write to the file descriptor directly.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
  if (FILE* quiet = std::fopen("/dev/null", "w"))
    stderr = quiet;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
  LICE_IBitmap* bmp = LICE_LoadPNGFromMemory(data, size, nullptr);
  if (bmp)
  {
    LICE_MemBitmap dest(7, 5, 4);
    LICE_Blit(&dest, bmp, -1, -1, nullptr, 0.75f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA);
    delete bmp;
  }
  return 0;
}
