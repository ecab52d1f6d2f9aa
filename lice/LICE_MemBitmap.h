#pragma once

#include "lice/LICE_IBitmap.h"

// A bitmap in plain heap memory. Rows may be padded to a power-of-two pixel multiple; the
// buffer grows by a quarter beyond what is asked so that repeated growth stays cheap, and it
// never shrinks except to nothing.
class LICE_MemBitmap : public LICE_IBitmap
{
public:
  LICE_MemBitmap(int w = 0, int h = 0, unsigned int rowAlign = 4);
  ~LICE_MemBitmap() override;

  LICE_MemBitmap(const LICE_MemBitmap&) = delete;
  LICE_MemBitmap& operator=(const LICE_MemBitmap&) = delete;

  LICE_pixel* getBits() override { return bits; }
  int getWidth() override { return width; }
  int getHeight() override { return height; }
  int getRowSpan() override { return (width + alignMask) & ~alignMask; }
  bool resize(int w, int h) override;

private:
  // Frees the buffer; the bitmap keeps its stored size until resize settles it.
  void releaseBuffer();

  LICE_pixel* bits = nullptr;
  int width = 0;
  int height = 0;
  int allocBytes = 0;
  int alignMask = 0;
};
