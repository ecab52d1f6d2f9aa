// Arbitrary bytes into the PNG decoder: it must return a bitmap or null, never crash, leak or
// allocate without bound. A decoded image is also blitted, to reach its rows.
#include <cstdint>
#include <cstdio>

#include "lice/LICE_Blit.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_PNG.h"

// libpng's default handlers print every decoding error to stderr, millions of lines in a fuzz
// log. Only that stream is sent away: the fuzzer and the sanitizers write to the descriptor.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  if (FILE* quiet = std::fopen("/dev/null", "w")) stderr = quiet;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (LICE_IBitmap* bmp = LICE_LoadPNGFromMemory(data, size, nullptr)) {
    LICE_MemBitmap dest(7, 5, 4);
    LICE_Blit(&dest, bmp, -1, -1, nullptr, 0.75f, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA);
    delete bmp;
  }
  return 0;
}
