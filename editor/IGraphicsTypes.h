#pragma once

class LICE_CachedFont;
class LICE_IBitmap;

// A colour, each channel 0 to 255.
struct IColor {
  int A = 255, R = 0, G = 0, B = 0;
  bool operator==(const IColor& o) const { return A == o.A && R == o.R && G == o.G && B == o.B; }
};

// How a control's text looks, and the colours of the field in which the user types a value.
struct IText {
  char mFont[32] = "Monaco";
  int mSize = 10;
  IColor mColor{255, 0, 0, 0};
  IColor mTextEntryBGColor{255, 255, 255, 255};
  IColor mTextEntryFGColor{255, 0, 0, 0};
  int mStyle = 0, mAlign = 1, mOrientation = 0, mQuality = 0;  // align: 0 left, 1 centre, 2 right
  LICE_CachedFont* mCached = nullptr;                          // the font, found on first use
};

// How bitmaps are composed: 0 with source alpha, 1 copy, 2 add, 3 colour dodge; and a weight.
struct IChannelBlend {
  enum EBlendMethod { kBlendNone = 0, kBlendClobber, kBlendAdd, kBlendColorDodge };
  int mMethod = kBlendNone;
  float mWeight = 1.0f;
};

// The buttons and keys held during a mouse event: left, right (the secondary action), shift,
// control, alt.
struct IMouseMod {
  bool L = false, R = false, S = false, C = false, A = false;
};

// A raster from the bitmap cache seen as N frames, stacked top to bottom unless horizontal.
struct IBitmap {
  LICE_IBitmap* mData = nullptr;
  int W = 0, H = 0, N = 1;
  bool mFramesAreHorizontal = false;
};

enum EDirection { kVertical = 0, kHorizontal = 1 };
enum EFileAction { kFileOpen = 0, kFileSave };
