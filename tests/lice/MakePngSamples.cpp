// Writes the sample PNG images of PngSamples.h, and a set of broken files, into the directory
// given as the only argument. Run by the build before the tests.

#include <zlib.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "PngFileWriter.h"
#include "PngSamples.h"

namespace
{
typedef std::vector<unsigned char> Bytes;

int ColorType(SampleKind kind)
{
  switch (kind)
  {
  case SampleKind::Grey: return PNG_COLOR_TYPE_GRAY;
  case SampleKind::GreyAlpha: return PNG_COLOR_TYPE_GRAY_ALPHA;
  case SampleKind::Rgb: return PNG_COLOR_TYPE_RGB;
  case SampleKind::Rgba: return PNG_COLOR_TYPE_RGB_ALPHA;
  case SampleKind::Palette: return PNG_COLOR_TYPE_PALETTE;
  }
  return -1;
}

void AppendSample(std::vector<png_byte>& row, int value, int depth)
{
  if (depth == 16)
  {
    row.push_back((png_byte)(value >> 8));
    row.push_back((png_byte)(value & 0xff));
  }
  else
    row.push_back((png_byte)value);
}

PngImageSpec SpecFor(const PngSample& sample)
{
  PngImageSpec image;
  image.width = sample.width;
  image.height = sample.height;
  image.bitDepth = sample.bitDepth;
  image.colorType = ColorType(sample.kind);
  image.interlaced = sample.interlaced;
  const int channels = ChannelCount(sample.kind);
  for (int y = 0; y < sample.height; ++y)
  {
    std::vector<png_byte> row;
    for (int x = 0; x < sample.width; ++x)
    {
      if (sample.kind == SampleKind::Palette)
        row.push_back((png_byte)PaletteIndex(x, y, sample.bitDepth));
      else
        for (int c = 0; c < channels; ++c)
          AppendSample(row, RawSample(x, y, c, sample.bitDepth), sample.bitDepth);
    }
    image.rows.push_back(row);
  }
  if (sample.kind == SampleKind::Palette)
  {
    for (int i = 0; i < PaletteSize(sample.bitDepth); ++i)
    {
      const PaletteEntry e = PaletteColour(i);
      image.palette.push_back({(png_byte)e.r, (png_byte)e.g, (png_byte)e.b});
    }
    if (sample.transparency)
      for (int a : PaletteAlpha())
        if ((int)image.paletteAlpha.size() < PaletteSize(sample.bitDepth))
          image.paletteAlpha.push_back((png_byte)a);
  }
  else if (sample.transparency)
  {
    image.hasTransparentColor = true;
    const int d = sample.bitDepth;
    image.transparentColor.gray = (png_uint_16)RawSample(kTransparentX, kTransparentY, 0, d);
    image.transparentColor.red = (png_uint_16)RawSample(kTransparentX, kTransparentY, 0, d);
    image.transparentColor.green = (png_uint_16)RawSample(kTransparentX, kTransparentY, 1, d);
    image.transparentColor.blue = (png_uint_16)RawSample(kTransparentX, kTransparentY, 2, d);
  }
  return image;
}

Bytes ReadFile(const std::string& path)
{
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool WriteFile(const std::string& path, const Bytes& bytes)
{
  std::ofstream out(path, std::ios::binary);
  out.write((const char*)bytes.data(), (std::streamsize)bytes.size());
  return (bool)out;
}

void AppendBigEndian(Bytes& out, unsigned long v)
{
  for (int shift = 24; shift >= 0; shift -= 8)
    out.push_back((unsigned char)(v >> shift));
}

void AppendChunk(Bytes& out, const char* type, const Bytes& data)
{
  AppendBigEndian(out, data.size());
  Bytes body(type, type + 4);
  body.insert(body.end(), data.begin(), data.end());
  out.insert(out.end(), body.begin(), body.end());
  AppendBigEndian(out, crc32(0, body.data(), (uInt)body.size()));
}

// A well-formed file whose header claims width × height RGBA pixels, followed by a few
// compressed rows of zeros: the decoder must refuse it before allocating the image.
Bytes HandMadePng(unsigned long width, unsigned long height)
{
  Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  Bytes header;
  AppendBigEndian(header, width);
  AppendBigEndian(header, height);
  header.insert(header.end(), {8, 6, 0, 0, 0});
  AppendChunk(png, "IHDR", header);
  Bytes raw(4096, 0);
  Bytes packed(compressBound(raw.size()));
  uLongf packedSize = packed.size();
  compress(packed.data(), &packedSize, raw.data(), raw.size());
  packed.resize(packedSize);
  AppendChunk(png, "IDAT", packed);
  AppendChunk(png, "IEND", {});
  return png;
}

// Red, green and blue bands, opaque in the top half and half transparent below: a picture in
// which swapped channels or a lost alpha show at a glance.
bool WriteBands(const std::string& path)
{
  PngImageSpec image;
  image.width = 48;
  image.height = 16;
  for (int y = 0; y < image.height; ++y)
  {
    std::vector<png_byte> row;
    for (int x = 0; x < image.width; ++x)
    {
      const int band = x / 16;
      row.insert(row.end(), {(png_byte)(band == 0 ? 255 : 0), (png_byte)(band == 1 ? 255 : 0),
                             (png_byte)(band == 2 ? 255 : 0), (png_byte)(y < 8 ? 255 : 128)});
    }
    image.rows.push_back(row);
  }
  return WritePngFile(path, image);
}

bool WriteBrokenFiles(const std::string& dir)
{
  const Bytes good = ReadFile(dir + "/rgba8.png");
  if (good.size() < 64)
    return false;
  Bytes truncated(good.begin(), good.begin() + (long)good.size() / 2);
  Bytes badCrc = good;
  for (size_t i = 8; i + 8 < badCrc.size(); ++i)
    if (badCrc[i] == 'I' && badCrc[i + 1] == 'D' && badCrc[i + 2] == 'A' && badCrc[i + 3] == 'T')
    {
      badCrc[i + 6] ^= 0x55;
      break;
    }
  // An ancillary chunk claiming nearly 2 GB, cut short after a few bytes.
  Bytes hugeChunk(good.begin(), good.begin() + 33); // signature and header
  AppendBigEndian(hugeChunk, 0x74000000ul);
  hugeChunk.insert(hugeChunk.end(), {'s', 'P', 'L', 'T', 'E', 5, 0xff, 'd', 0, 0, 0x10});
  const Bytes signatureOnly(good.begin(), good.begin() + 8);
  const Bytes notPng = {'n', 'o', 't', ' ', 'a', ' ', 'p', 'n', 'g', '\n'};
  return WriteFile(dir + "/truncated.png", truncated) && WriteFile(dir + "/badcrc.png", badCrc) &&
         WriteFile(dir + "/huge-chunk.png", hugeChunk) && WriteFile(dir + "/signature-only.png", signatureOnly) && WriteFile(dir + "/not-png.png", notPng) &&
         WriteFile(dir + "/empty.png", {}) && WriteFile(dir + "/huge.png", HandMadePng(100000, 100000)) &&
         WriteFile(dir + "/too-many-pixels.png", HandMadePng(5000, 5000)) &&
         WriteFile(dir + "/zero-width.png", HandMadePng(0, 4));
}
} // namespace

int main(int argc, char** argv)
{
  if (argc != 2)
  {
    std::fprintf(stderr, "usage: %s OUTPUT_DIR\n", argv[0]);
    return 2;
  }
  const std::string dir = argv[1];
  for (const PngSample& sample : PngSamples())
    if (!WritePngFile(dir + "/" + sample.name + ".png", SpecFor(sample)))
    {
      std::fprintf(stderr, "%s: cannot write %s/%s.png\n", argv[0], dir.c_str(), sample.name.c_str());
      return 1;
    }
  if (!WriteBands(dir + "/bands.png") || !WriteBrokenFiles(dir))
  {
    std::fprintf(stderr, "%s: cannot write the bands or broken samples in %s\n", argv[0], dir.c_str());
    return 1;
  }
  return 0;
}
