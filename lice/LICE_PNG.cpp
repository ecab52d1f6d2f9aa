#include "lice/LICE_PNG.h"

#include <cstdio>
#include <cstring>

#include "lice/PngDecoder.h"

namespace
{
struct MemoryInput
{
  const unsigned char* data;
  size_t size;
  size_t position;
};

void InstallFileInput(png_structp png, void* file)
{
  png_init_io(png, (FILE*)file);
}

void ReadFromMemory(png_structp png, png_bytep out, png_size_t length)
{
  MemoryInput* input = (MemoryInput*)png_get_io_ptr(png);
  if (length > input->size - input->position)
    png_error(png, "unexpected end of PNG data");
  std::memcpy(out, input->data + input->position, length);
  input->position += length;
}

void InstallMemoryInput(png_structp png, void* input)
{
  png_set_read_fn(png, input, ReadFromMemory);
}
} // namespace

LICE_IBitmap* LICE_LoadPNG(const char* filename, LICE_IBitmap* bmp)
{
  FILE* file = filename ? std::fopen(filename, "rb") : nullptr;
  if (!file)
    return nullptr;
  LICE_IBitmap* result = lice_detail::DecodePng(InstallFileInput, file, bmp);
  std::fclose(file);
  return result;
}

LICE_IBitmap* LICE_LoadPNGFromMemory(const void* data, size_t size, LICE_IBitmap* bmp)
{
  if (!data)
    return nullptr;
  MemoryInput input = {(const unsigned char*)data, size, 0};
  return lice_detail::DecodePng(InstallMemoryInput, &input, bmp);
}
