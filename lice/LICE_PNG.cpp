#include "lice/LICE_PNG.h"

#include <png.h>

#include <cstdio>
#include <cstring>

#include "lice/PngDecoder.h"

namespace {
struct MemoryInput {
  const unsigned char* data;
  size_t size;
  size_t position;
};

void InstallFileInput(png_structp png, void* file) { png_init_io(png, (FILE*)file); }

void ReadFromMemory(png_structp png, png_bytep out, png_size_t length) {
  MemoryInput* input = (MemoryInput*)png_get_io_ptr(png);
  if (length > input->size - input->position) png_error(png, "unexpected end of PNG data");
  std::memcpy(out, input->data + input->position, length);
  input->position += length;
}

void InstallMemoryInput(png_structp png, void* input) {
  png_set_read_fn(png, input, ReadFromMemory);
}

// The image top row first as red, green, blue (and alpha) bytes: libpng's simplified layout.
std::vector<unsigned char> TopDownBytes(LICE_IBitmap* bmp, bool wantAlpha) {
  const int w = bmp->getWidth(), h = bmp->getHeight();
  std::vector<unsigned char> bytes;
  bytes.reserve((size_t)w * h * (wantAlpha ? 4 : 3));
  for (int y = 0; y < h; ++y) {
    const LICE_pixel* row =
        bmp->getBits() + (size_t)(bmp->isFlipped() ? h - 1 - y : y) * bmp->getRowSpan();
    for (int x = 0; x < w; ++x) {
      bytes.insert(bytes.end(), {(unsigned char)LICE_GETR(row[x]), (unsigned char)LICE_GETG(row[x]),
                                 (unsigned char)LICE_GETB(row[x])});
      if (wantAlpha) bytes.push_back((unsigned char)LICE_GETA(row[x]));
    }
  }
  return bytes;
}
}  // namespace

LICE_IBitmap* LICE_LoadPNG(const char* filename, LICE_IBitmap* bmp) {
  FILE* file = filename ? std::fopen(filename, "rb") : nullptr;
  if (!file) return nullptr;
  LICE_IBitmap* result = lice_detail::DecodePng(InstallFileInput, file, bmp);
  std::fclose(file);
  return result;
}

LICE_IBitmap* LICE_LoadPNGFromMemory(const void* data, size_t size, LICE_IBitmap* bmp) {
  if (!data) return nullptr;
  MemoryInput input = {(const unsigned char*)data, size, 0};
  return lice_detail::DecodePng(InstallMemoryInput, &input, bmp);
}

bool LICE_EncodePNG(LICE_IBitmap* bmp, bool wantAlpha, std::vector<unsigned char>* png) {
  png->clear();
  if (!bmp || !bmp->getBits() || bmp->getWidth() <= 0 || bmp->getHeight() <= 0) return false;
  const std::vector<unsigned char> bytes = TopDownBytes(bmp, wantAlpha);
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = (png_uint_32)bmp->getWidth();
  image.height = (png_uint_32)bmp->getHeight();
  image.format = wantAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
  png_alloc_size_t size = 0;  // asked first, then filled
  if (!png_image_write_to_memory(&image, nullptr, &size, 0, bytes.data(), 0, nullptr)) return false;
  png->resize(size);
  if (png_image_write_to_memory(&image, png->data(), &size, 0, bytes.data(), 0, nullptr))
    return png->resize(size), true;
  png->clear();
  return false;
}

bool LICE_WritePNG(const char* filename, LICE_IBitmap* bmp, bool wantAlpha) {
  std::vector<unsigned char> png;
  if (!filename || !LICE_EncodePNG(bmp, wantAlpha, &png)) return false;
  FILE* file = std::fopen(filename, "wb");
  if (!file) return false;
  const bool written = std::fwrite(png.data(), 1, png.size(), file) == png.size();
  return std::fclose(file) == 0 && written;
}
