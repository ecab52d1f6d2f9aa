#include "editor/IBitmapControl.h"

#include <algorithm>

#include "editor/IGraphics.h"

IBitmapControl::IBitmapControl(IPlugBase* plug, int x, int y, int paramIdx, IBitmap* bitmap,
                               IChannelBlend::EBlendMethod blendMethod)
    : IControl(plug, {x, y, x + bitmap->W, y + bitmap->H / bitmap->N}, paramIdx, blendMethod),
      mBitmap(*bitmap) {}

// Drawing any bitmap control turns strict drawing off, which marks the whole editor dirty: once
// one has drawn, everything repaints at the timer's rate.
bool IBitmapControl::Draw(IGraphics* graphics) {
  int frame = 1;
  if (mBitmap.N > 1) {
    frame = std::min(static_cast<int>((mBitmap.N - 1) * GetValue() + 0.5) + 1, mBitmap.N);
    if (frame <= 0) frame = 1;
  }
  graphics->SetStrictDrawing(false);
  return graphics->DrawBitmap(&mBitmap, &mRECT, frame, &mBlend);
}

// One step per click; the 1.001 absorbs the rounding of repeated steps before the wrap.
void ISwitchControl::OnMouseDown(int, int, IMouseMod*) {
  const double step = mBitmap.N > 1 ? 1.0 / (mBitmap.N - 1) : 1.0;
  SetValue(GetValue() + step);
  if (GetValue() > 1.001) SetValue(0.0);
  SetDirty(true);
}
