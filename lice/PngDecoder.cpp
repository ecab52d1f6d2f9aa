#include "lice/PngDecoder.h"

#include <csetjmp>
#include <cstdlib>
#include <new>

#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_PNG.h"

// libpng reports errors by jumping back to the last setjmp. Each function below that sets one
// makes every libpng call that may fail itself, holds nothing that needs destroying, and on
// the jump's return reads none of its locals; buffers are owned by its caller, which frees
// them on either outcome.

namespace lice_detail
{
namespace
{
// Libraries that do not set this are guarded by libpng's own default of 8 MB; be explicit.
constexpr png_alloc_size_t kMaxChunkBytes = 8u * 1024 * 1024;

struct PngHeader
{
  png_uint_32 width;
  png_uint_32 height;
};

// Chooses the transforms that bring every colour type and depth to alpha, red, green, blue
// bytes: palettes and low grey depths expand, a transparency chunk becomes alpha, 16-bit
// samples keep their high byte, grey widens to RGB, and alpha moves before the colour (or an
// opaque alpha is put there).
void ChooseTransforms(png_structp png, png_infop info, int bitDepth, int colorType)
{
  if (colorType == PNG_COLOR_TYPE_PALETTE)
    png_set_palette_to_rgb(png);
  if (colorType == PNG_COLOR_TYPE_GRAY && bitDepth < 8)
    png_set_expand_gray_1_2_4_to_8(png);
  if (png_get_valid(png, info, PNG_INFO_tRNS))
  {
    png_set_tRNS_to_alpha(png);
    colorType |= PNG_COLOR_MASK_ALPHA;
  }
  if (bitDepth == 16)
    png_set_strip_16(png);
  if (bitDepth < 8)
    png_set_packing(png);
  if (colorType == PNG_COLOR_TYPE_GRAY || colorType == PNG_COLOR_TYPE_GRAY_ALPHA)
    png_set_gray_to_rgb(png);
  if (colorType & PNG_COLOR_MASK_ALPHA)
    png_set_swap_alpha(png);
  else
    png_set_filler(png, 0xff, PNG_FILLER_BEFORE);
}

// Reads the header and sets up the transforms; false on any failure, on an image beyond the
// size limits, or if the rows would not come out as four bytes per pixel.
bool ReadHeader(png_structp png, png_infop info, PngHeader* header)
{
  if (setjmp(png_jmpbuf(png)))
    return false;
  png_read_info(png, info);
  png_uint_32 width, height;
  int bitDepth, colorType;
  png_get_IHDR(png, info, &width, &height, &bitDepth, &colorType, nullptr, nullptr, nullptr);
  if ((unsigned long long)width * height > LICE_PNG_MAX_PIXELS)
    return false;
  ChooseTransforms(png, info, bitDepth, colorType);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  if (png_get_rowbytes(png, info) != (png_size_t)width * 4)
    return false;
  header->width = width;
  header->height = height;
  return true;
}

bool ReadRows(png_structp png, png_bytepp rows)
{
  if (setjmp(png_jmpbuf(png)))
    return false;
  png_read_image(png, rows);
  return true;
}

// The bitmap to decode into: the given one resized, or a new one. Null if it cannot hold the
// image.
LICE_IBitmap* PrepareTarget(LICE_IBitmap* given, int width, int height)
{
  LICE_IBitmap* target = given;
  if (target)
    target->resize(width, height);
  else
    target = new (std::nothrow) LICE_MemBitmap(width, height, 4);
  if (!target)
    return nullptr;
  const bool fits = target->getWidth() == width && target->getHeight() == height && target->getBits() &&
                    target->getRowSpan() >= width;
  if (!fits && target != given)
    delete target;
  return fits ? target : nullptr;
}

// Row pointers in the image's order, so that the first row of the file is the top row seen.
png_bytepp MakeRowTable(LICE_IBitmap* bmp, int height)
{
  png_bytepp rows = (png_bytepp)std::malloc(sizeof(png_bytep) * (size_t)height);
  if (!rows)
    return nullptr;
  LICE_pixel* bits = bmp->getBits();
  const long long span = bmp->getRowSpan();
  const bool flipped = bmp->isFlipped();
  for (int i = 0; i < height; ++i)
    rows[i] = (png_bytep)(bits + (flipped ? height - 1 - i : i) * span);
  return rows;
}

LICE_IBitmap* DecodeInto(png_structp png, png_infop info, LICE_IBitmap* bmp)
{
  PngHeader header;
  if (!ReadHeader(png, info, &header))
    return nullptr;
  const int width = (int)header.width;
  const int height = (int)header.height;
  LICE_IBitmap* target = PrepareTarget(bmp, width, height);
  if (!target)
    return nullptr;
  png_bytepp rows = MakeRowTable(target, height);
  const bool read = rows && ReadRows(png, rows);
  std::free(rows);
  if (read)
    return target;
  if (target != bmp)
    delete target;
  return nullptr;
}
} // namespace

LICE_IBitmap* DecodePng(PngInputInstaller installInput, void* input, LICE_IBitmap* bmp)
{
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (!png)
    return nullptr;
  png_infop info = png_create_info_struct(png);
  if (!info)
  {
    png_destroy_read_struct(&png, nullptr, nullptr);
    return nullptr;
  }
  png_set_user_limits(png, LICE_PNG_MAX_DIMENSION, LICE_PNG_MAX_DIMENSION);
  png_set_chunk_malloc_max(png, kMaxChunkBytes);
  // Only the header, palette, transparency and image data matter to the pixels. libpng merely
  // warns about an oversized ancillary chunk and then allocates its claimed length, so every
  // other chunk is skipped unread.
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  installInput(png, input);
  LICE_IBitmap* result = DecodeInto(png, info, bmp);
  png_destroy_read_struct(&png, &info, nullptr);
  return result;
}
} // namespace lice_detail
