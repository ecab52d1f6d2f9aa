#include "editor/IKnobControl.h"

#include <algorithm>

#include "editor/IGraphics.h"

IKnobControl::IKnobControl(IPlugBase* plug, IRECT rect, int paramIdx, EDirection direction,
                           double gearing)
    : IControl(plug, rect, paramIdx), mDirection(direction), mGearing(gearing) {}

// Every drag event moves the value; up and right raise it (T - B is minus the height).
void IKnobControl::OnMouseDrag(int, int, int dX, int dY, IMouseMod* mod) {
  const double gearing = mod->C || mod->S ? mGearing * 10.0 : mGearing;
  if (mDirection == kVertical)
    SetValue(GetValue() +
             static_cast<double>(dY) / static_cast<double>(mRECT.T - mRECT.B) / gearing);
  else
    SetValue(GetValue() +
             static_cast<double>(dX) / static_cast<double>(mRECT.R - mRECT.L) / gearing);
  SetDirty(true);
}

IKnobMultiControl::IKnobMultiControl(IPlugBase* plug, int x, int y, int paramIdx, IBitmap* bitmap,
                                     EDirection direction)
    : IKnobControl(plug, {x, y, x + bitmap->W, y + bitmap->H / bitmap->N}, paramIdx, direction),
      mBitmap(*bitmap) {}

bool IKnobMultiControl::Draw(IGraphics* graphics) {
  int frame = static_cast<int>((mBitmap.N - 1) * GetValue() + 0.5) + 1;
  frame = frame < 1 ? 1 : std::min(frame, mBitmap.N);
  return graphics->DrawBitmap(&mBitmap, &mRECT, frame, &mBlend);
}
