#pragma once

#include "lice/LICE_Types.h"
#include "lice/SysMemContext.h"

// A 32-bit raster. Rows are getRowSpan() pixels apart; when isFlipped() is true the image's
// top row is the last row in memory, so walkers step backwards from the end.
class LICE_IBitmap
{
public:
  virtual ~LICE_IBitmap() {}

  virtual LICE_pixel* getBits() = 0;
  virtual int getWidth() = 0;
  virtual int getHeight() = 0;
  virtual int getRowSpan() = 0;
  virtual bool isFlipped() { return false; }
  virtual bool resize(int w, int h) = 0;
  virtual HDC getDC() { return nullptr; }
  virtual int Extended(int /*id*/, void* /*data*/) { return 0; }
};
