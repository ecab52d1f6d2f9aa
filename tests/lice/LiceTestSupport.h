#pragma once

// Helpers for the raster tests: pixel access as seen, a bitmap stored bottom row first, and
// an independent per-pixel model of the combine modes written from their stated arithmetic.

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "lice/LICE_MemBitmap.h"

struct Argb
{
  int a, r, g, b;
  bool operator==(const Argb& o) const { return a == o.a && r == o.r && g == o.g && b == o.b; }
};

inline std::ostream& operator<<(std::ostream& os, const Argb& p)
{
  return os << "(a " << p.a << ", r " << p.r << ", g " << p.g << ", b " << p.b << ")";
}

inline unsigned char* PixelAt(LICE_IBitmap* bmp, int x, int y)
{
  const int row = bmp->isFlipped() ? bmp->getHeight() - 1 - y : y;
  return (unsigned char*)(bmp->getBits() + (long)row * bmp->getRowSpan() + x);
}

inline Argb GetPixel(LICE_IBitmap* bmp, int x, int y)
{
  const unsigned char* p = PixelAt(bmp, x, y);
  return {p[0], p[1], p[2], p[3]}; // bytes in memory: alpha, red, green, blue
}

inline void SetPixel(LICE_IBitmap* bmp, int x, int y, Argb v)
{
  unsigned char* p = PixelAt(bmp, x, y);
  p[0] = (unsigned char)v.a;
  p[1] = (unsigned char)v.r;
  p[2] = (unsigned char)v.g;
  p[3] = (unsigned char)v.b;
}

class FlippedMemBitmap : public LICE_MemBitmap
{
public:
  using LICE_MemBitmap::LICE_MemBitmap;
  bool isFlipped() override { return true; }
};

// The stated per-channel formulas, evaluated in 64 bits with C's truncating division; results
// are stored as bytes the way the NoClamp members store them (low eight bits).
namespace model
{
inline int Trunc(long long num, long long den)
{
  return (int)(num / den); // C++ division truncates toward zero
}

inline int Clamp(long long v)
{
  return (int)std::min<long long>(255, std::max<long long>(0, v));
}

inline int LowByte(long long v)
{
  return (int)(v & 0xff);
}

inline int Scaled(int sa, int w)
{
  return Trunc((long long)(sa + 1) * w, 256);
}

enum Op
{
  kCopy,
  kCopySourceAlpha,
  kCopySourceAlphaFull,
  kAdd,
  kAddSourceAlpha,
  kDodge,
  kDodgeSourceAlpha,
  kMul,
  kMulSourceAlpha,
  kOverlay,
  kOverlaySourceAlpha,
  kHalfMix,
  kClobber
};

inline int Copy(int d, int s, int w) { return LowByte(Trunc((long long)(d - s) * (256 - w), 256) + s); }
inline int Add(int d, int s, int w) { return Clamp(d + Trunc((long long)s * w, 256)); }
inline int Dodge(int d, int s, int w)
{
  const long long k = 256 - Trunc((long long)s * w, 256);
  return k >= 2 ? Clamp(Trunc((long long)d * 256, k)) : Clamp((long long)d * 256);
}
inline int Mul(int d, int s, int w)
{
  return LowByte(Trunc((long long)d * ((256LL - w) * 256 + (long long)w * s), 65536));
}
inline int Overlay(int d, int s, int w)
{
  const long long v = (256LL - w) * 128 + (long long)w * s;
  return Clamp(Trunc((Trunc((32768 - v) * d, 256) + v) * d, 32768));
}

inline Argb PerChannel(Argb d, Argb s, int w, int (*f)(int, int, int))
{
  return {f(d.a, s.a, w), f(d.r, s.r, w), f(d.g, s.g, w), f(d.b, s.b, w)};
}

inline Argb Combine(Op op, Argb d, Argb s, int w)
{
  switch (op)
  {
  case kCopy: return PerChannel(d, s, w, Copy);
  case kCopySourceAlpha:
  {
    if (s.a == 0)
      return d;
    const int w2 = Scaled(s.a, w);
    Argb out = PerChannel(d, s, w2, Copy);
    out.a = LowByte(std::min(255, d.a + w2));
    return out;
  }
  case kCopySourceAlphaFull:
  {
    if (s.a == 0)
      return d;
    if (s.a == 255)
      return {255, s.r, s.g, s.b};
    auto mix = [&](int dc, int sc) { return Trunc((long long)(dc - sc) * (255 - s.a), 256) + sc; };
    return {std::min(255, d.a + s.a), mix(d.r, s.r), mix(d.g, s.g), mix(d.b, s.b)};
  }
  case kAdd: return PerChannel(d, s, w, Add);
  case kAddSourceAlpha: return s.a == 0 ? d : PerChannel(d, s, Scaled(s.a, w), Add);
  case kDodge: return PerChannel(d, s, w, Dodge);
  case kDodgeSourceAlpha: return PerChannel(d, s, Scaled(s.a, w), Dodge);
  case kMul: return PerChannel(d, s, w, Mul);
  case kMulSourceAlpha: return s.a == 0 ? d : PerChannel(d, s, Scaled(s.a, w), Mul);
  case kOverlay: return PerChannel(d, s, w, Overlay);
  case kOverlaySourceAlpha: return PerChannel(d, s, Scaled(s.a, w), Overlay);
  case kHalfMix: return {(d.a + s.a) / 2, (d.r + s.r) / 2, (d.g + s.g) / 2, (d.b + s.b) / 2};
  case kClobber: return s;
  }
  return d;
}
} // namespace model
