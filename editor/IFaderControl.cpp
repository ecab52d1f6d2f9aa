#include "editor/IFaderControl.h"

#include "editor/IGraphics.h"

namespace {
IRECT FaderRect(int x, int y, int len, const IBitmap& b, EDirection direction) {
  return direction == kHorizontal ? IRECT{x, y, x + len, y + b.H} : IRECT{x, y, x + b.W, y + len};
}
}  // namespace

IFaderControl::IFaderControl(IPlugBase* plug, int x, int y, int len, int paramIdx, IBitmap* bitmap,
                             EDirection direction, bool onlyHandle)
    : IControl(plug, FaderRect(x, y, len, *bitmap, direction), paramIdx),
      mLen(len),
      mHandleSize(direction == kHorizontal ? bitmap->W : bitmap->H),
      mBitmap(*bitmap),
      mDirection(direction),
      mOnlyHandle(onlyHandle) {}

IRECT IFaderControl::GetHandleRECT(double value) const {
  IRECT r{mRECT.L, mRECT.T, mRECT.L + mBitmap.W, mRECT.T + mBitmap.H};
  if (mDirection == kHorizontal) {
    const int offset = static_cast<int>((mLen - mHandleSize) * value);
    r.L += offset, r.R += offset;
  } else {
    const int offset = static_cast<int>((1.0 - value) * (mLen - mHandleSize));
    r.T += offset, r.B += offset;
  }
  return r;
}

bool IFaderControl::Draw(IGraphics* graphics) {
  IRECT handle = GetHandleRECT(GetValue());
  return graphics->DrawBitmap(&mBitmap, &handle, 1, &mBlend);
}

bool IFaderControl::IsHit(int x, int y) {
  if (!mOnlyHandle) return IControl::IsHit(x, y);
  const IRECT handle = GetHandleRECT(GetValue());
  return !handle.Empty() && handle.Contains(x, y);
}

void IFaderControl::OnMouseDown(int x, int y, IMouseMod* mod) {
  if (mod->R) return PromptUserInput();
  SnapToMouse(x, y);
}

void IFaderControl::OnMouseDrag(int x, int y, int, int, IMouseMod*) { SnapToMouse(x, y); }

void IFaderControl::SnapToMouse(int x, int y) {
  const int half = mHandleSize / 2;
  const double travel = mLen - mHandleSize;
  if (mDirection == kHorizontal)
    SetValue((x - mRECT.L - half) / travel);
  else
    SetValue(1.0 - (y - mRECT.T - half) / travel);
  SetDirty(true);
}
