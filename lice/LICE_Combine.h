#pragma once

// The per-pixel combiners shared by blits, fills and lines. Each receives the destination
// pixel's bytes, the source colour as separate 0-255 integers and a weight where 256 is full
// strength. All arithmetic is int and every division truncates toward zero. "NoClamp" members
// store their result's low byte, which for weights of 0 to 256 is always the exact value.
//
// The source-alpha members scale the weight by the source pixel's own alpha first. Some of
// them skip fully transparent source pixels and some do not; callers rely on each one's
// behaviour as it stands.

#include "lice/LICE_HSV.h"
#include "lice/LICE_Types.h"

inline LICE_pixel_chan LICE_ClampChannel(int v)
{
  return (LICE_pixel_chan)(v > 255 ? 255 : v < 0 ? 0 : v);
}

// Weight of a source-alpha combiner: the global weight scaled by alpha + 1 over 256.
inline int LICE_SourceAlphaWeight(int sourceAlpha, int weight)
{
  return (sourceAlpha + 1) * weight / 256;
}

// d moved toward s, keeping keep/256 of their difference.
inline LICE_pixel_chan LICE_MixChannel(int d, int s, int keep)
{
  return (LICE_pixel_chan)((d - s) * keep / 256 + s);
}

inline LICE_pixel_chan LICE_AddChannel(int d, int s, int weight)
{
  return LICE_ClampChannel(d + s * weight / 256);
}

inline LICE_pixel_chan LICE_DodgeChannel(int d, int s, int weight)
{
  const int k = 256 - s * weight / 256;
  return LICE_ClampChannel(k >= 2 ? d * 256 / k : d * 256);
}

inline LICE_pixel_chan LICE_MulChannel(int d, int s, int weight)
{
  return (LICE_pixel_chan)(d * ((256 - weight) * 256 + weight * s) / 65536);
}

inline LICE_pixel_chan LICE_OverlayChannel(int d, int s, int weight)
{
  const int v = (256 - weight) * 128 + weight * s;
  return LICE_ClampChannel((((32768 - v) * d) / 256 + v) * d / 32768);
}

// Applies one channel operation with the same source value and weight to all four channels.
template <LICE_pixel_chan (*Op)(int, int, int)>
inline void LICE_CombineAllChannels(LICE_pixel_chan* dest, int r, int g, int b, int a, int weight)
{
  dest[LICE_PIXEL_R] = Op(dest[LICE_PIXEL_R], r, weight);
  dest[LICE_PIXEL_G] = Op(dest[LICE_PIXEL_G], g, weight);
  dest[LICE_PIXEL_B] = Op(dest[LICE_PIXEL_B], b, weight);
  dest[LICE_PIXEL_A] = Op(dest[LICE_PIXEL_A], a, weight);
}

struct _LICE_CombinePixelsCopyNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    const int keep = 256 - alpha;
    dest[LICE_PIXEL_R] = LICE_MixChannel(dest[LICE_PIXEL_R], r, keep);
    dest[LICE_PIXEL_G] = LICE_MixChannel(dest[LICE_PIXEL_G], g, keep);
    dest[LICE_PIXEL_B] = LICE_MixChannel(dest[LICE_PIXEL_B], b, keep);
    dest[LICE_PIXEL_A] = LICE_MixChannel(dest[LICE_PIXEL_A], a, keep);
  }
};

struct _LICE_CombinePixelsCopySourceAlphaNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    if (a == 0)
      return;
    const int weight = LICE_SourceAlphaWeight(a, alpha);
    const int keep = 256 - weight;
    dest[LICE_PIXEL_R] = LICE_MixChannel(dest[LICE_PIXEL_R], r, keep);
    dest[LICE_PIXEL_G] = LICE_MixChannel(dest[LICE_PIXEL_G], g, keep);
    dest[LICE_PIXEL_B] = LICE_MixChannel(dest[LICE_PIXEL_B], b, keep);
    const int coverage = dest[LICE_PIXEL_A] + weight;
    dest[LICE_PIXEL_A] = (LICE_pixel_chan)(coverage < 255 ? coverage : 255);
  }
};

// The full-strength form: the source alpha alone decides, and an opaque pixel is copied.
struct _LICE_CombinePixelsCopySourceAlphaIgnoreAlphaParmNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int /*alpha*/)
  {
    if (a == 0)
      return;
    if (a == 255)
    {
      dest[LICE_PIXEL_R] = (LICE_pixel_chan)r;
      dest[LICE_PIXEL_G] = (LICE_pixel_chan)g;
      dest[LICE_PIXEL_B] = (LICE_pixel_chan)b;
      dest[LICE_PIXEL_A] = 255;
      return;
    }
    const int keep = 255 - a;
    dest[LICE_PIXEL_R] = LICE_MixChannel(dest[LICE_PIXEL_R], r, keep);
    dest[LICE_PIXEL_G] = LICE_MixChannel(dest[LICE_PIXEL_G], g, keep);
    dest[LICE_PIXEL_B] = LICE_MixChannel(dest[LICE_PIXEL_B], b, keep);
    const int coverage = dest[LICE_PIXEL_A] + a;
    dest[LICE_PIXEL_A] = (LICE_pixel_chan)(coverage < 255 ? coverage : 255);
  }
};

struct _LICE_CombinePixelsAdd
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_AddChannel>(dest, r, g, b, a, alpha);
  }
};

struct _LICE_CombinePixelsAddSourceAlpha
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    if (a == 0)
      return;
    LICE_CombineAllChannels<LICE_AddChannel>(dest, r, g, b, a, LICE_SourceAlphaWeight(a, alpha));
  }
};

struct _LICE_CombinePixelsColorDodge
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_DodgeChannel>(dest, r, g, b, a, alpha);
  }
};

struct _LICE_CombinePixelsColorDodgeSourceAlpha
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_DodgeChannel>(dest, r, g, b, a, LICE_SourceAlphaWeight(a, alpha));
  }
};

struct _LICE_CombinePixelsMulNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_MulChannel>(dest, r, g, b, a, alpha);
  }
};

struct _LICE_CombinePixelsMulSourceAlphaNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    if (a == 0)
      return;
    LICE_CombineAllChannels<LICE_MulChannel>(dest, r, g, b, a, LICE_SourceAlphaWeight(a, alpha));
  }
};

struct _LICE_CombinePixelsOverlay
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_OverlayChannel>(dest, r, g, b, a, alpha);
  }
};

struct _LICE_CombinePixelsOverlaySourceAlpha
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    LICE_CombineAllChannels<LICE_OverlayChannel>(dest, r, g, b, a, LICE_SourceAlphaWeight(a, alpha));
  }
};

// Red turns the hue (128 holds it, 0 turns it half way round), green moves the saturation and
// blue the value, each by up to the weight; the destination's alpha is kept.
struct _LICE_CombinePixelsHSVAdjust
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int /*a*/, int alpha)
  {
    int h, s, v;
    LICE_RGB2HSV(dest[LICE_PIXEL_R], dest[LICE_PIXEL_G], dest[LICE_PIXEL_B], &h, &s, &v);
    h = (h + alpha * (r + r / 2 - 192) / 256) % LICE_HSV_HUE_RANGE;
    if (h < 0)
      h += LICE_HSV_HUE_RANGE;
    s = LICE_ClampChannel(s + (g - 128) * alpha / 128);
    v = LICE_ClampChannel(v + (b - 128) * alpha / 128);
    int outR, outG, outB;
    LICE_HSV2RGB(h, s, v, &outR, &outG, &outB);
    dest[LICE_PIXEL_R] = (LICE_pixel_chan)outR;
    dest[LICE_PIXEL_G] = (LICE_pixel_chan)outG;
    dest[LICE_PIXEL_B] = (LICE_pixel_chan)outB;
  }
};

struct _LICE_CombinePixelsHSVAdjustSourceAlpha
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int alpha)
  {
    _LICE_CombinePixelsHSVAdjust::doPix(dest, r, g, b, a, LICE_SourceAlphaWeight(a, alpha));
  }
};

// The line routines' two cheap members: an even mix and an overwrite, weight ignored.
struct _LICE_CombinePixelsHalfMixNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int /*alpha*/)
  {
    dest[LICE_PIXEL_R] = (LICE_pixel_chan)((dest[LICE_PIXEL_R] + r) / 2);
    dest[LICE_PIXEL_G] = (LICE_pixel_chan)((dest[LICE_PIXEL_G] + g) / 2);
    dest[LICE_PIXEL_B] = (LICE_pixel_chan)((dest[LICE_PIXEL_B] + b) / 2);
    dest[LICE_PIXEL_A] = (LICE_pixel_chan)((dest[LICE_PIXEL_A] + a) / 2);
  }
};

struct _LICE_CombinePixelsClobberNoClamp
{
  static void doPix(LICE_pixel_chan* dest, int r, int g, int b, int a, int /*alpha*/)
  {
    dest[LICE_PIXEL_R] = (LICE_pixel_chan)r;
    dest[LICE_PIXEL_G] = (LICE_pixel_chan)g;
    dest[LICE_PIXEL_B] = (LICE_pixel_chan)b;
    dest[LICE_PIXEL_A] = (LICE_pixel_chan)a;
  }
};
