#pragma once

#include "lice/LICE_IBitmap.h"

// A bitmap whose pixels live in a system memory drawing context, so that the platform can
// put it on screen directly. Rows are padded to a multiple of four pixels; the context is
// kept while a new size fits inside it.
class LICE_SysBitmap : public LICE_IBitmap
{
public:
  LICE_SysBitmap(int w = 0, int h = 0);
  ~LICE_SysBitmap() override;

  LICE_SysBitmap(const LICE_SysBitmap&) = delete;
  LICE_SysBitmap& operator=(const LICE_SysBitmap&) = delete;

  LICE_pixel* getBits() override { return bits; }
  int getWidth() override { return width; }
  int getHeight() override { return height; }
  int getRowSpan() override { return allocWidth; }
  bool resize(int w, int h) override;
  HDC getDC() override { return context; }

private:
  int width = 0;
  int height = 0;
  HDC context = nullptr;
  LICE_pixel* bits = nullptr;
  int allocWidth = 0;
  int allocHeight = 0;
};
