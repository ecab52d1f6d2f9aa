#include "PngFileWriter.h"

#include <cstdio>

namespace
{
bool WriteRows(png_structp png, png_infop info, FILE* file, const PngImageSpec& image, png_bytepp rows)
{
  if (setjmp(png_jmpbuf(png)))
    return false;
  png_init_io(png, file);
  png_set_IHDR(png, info, (png_uint_32)image.width, (png_uint_32)image.height, image.bitDepth, image.colorType,
               image.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (!image.palette.empty())
    png_set_PLTE(png, info, image.palette.data(), (int)image.palette.size());
  if (!image.paletteAlpha.empty())
    png_set_tRNS(png, info, image.paletteAlpha.data(), (int)image.paletteAlpha.size(), nullptr);
  if (image.hasTransparentColor)
    png_set_tRNS(png, info, nullptr, 1, &image.transparentColor);
  png_write_info(png, info);
  if (image.bitDepth < 8)
    png_set_packing(png);
  png_write_image(png, rows);
  png_write_end(png, info);
  return true;
}
} // namespace

bool WritePngFile(const std::string& path, const PngImageSpec& image)
{
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file)
    return false;
  std::vector<png_bytep> rows;
  for (const auto& row : image.rows)
    rows.push_back(const_cast<png_bytep>(row.data()));
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  const bool written = info && WriteRows(png, info, file, image, rows.data());
  png_destroy_write_struct(&png, &info);
  return std::fclose(file) == 0 && written;
}

bool WriteBitmapPng(const std::string& path, LICE_IBitmap* bmp)
{
  PngImageSpec image;
  image.width = bmp->getWidth();
  image.height = bmp->getHeight();
  const int span = bmp->getRowSpan();
  for (int y = 0; y < image.height; ++y)
  {
    const int memoryRow = bmp->isFlipped() ? image.height - 1 - y : y;
    const LICE_pixel_chan* pixel = (const LICE_pixel_chan*)(bmp->getBits() + (long)memoryRow * span);
    std::vector<png_byte> row;
    for (int x = 0; x < image.width; ++x, pixel += 4)
      row.insert(row.end(), {pixel[LICE_PIXEL_R], pixel[LICE_PIXEL_G], pixel[LICE_PIXEL_B], pixel[LICE_PIXEL_A]});
    image.rows.push_back(row);
  }
  return WritePngFile(path, image);
}
