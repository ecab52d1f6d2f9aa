#pragma once

#include "editor/IControl.h"

// A handle bitmap on a track of `len` pixels; the handle's centre follows the pointer, value 1 at
// the right or the top. With only-handle set, the track outside the handle is not hit.
class IFaderControl : public IControl {
 public:
  IFaderControl(IPlugBase* plug, int x, int y, int len, int paramIdx, IBitmap* bitmap,
                EDirection direction = kVertical, bool onlyHandle = false);
  void OnMouseDown(int x, int y, IMouseMod* mod) override;
  void OnMouseDrag(int x, int y, int dX, int dY, IMouseMod* mod) override;
  bool Draw(IGraphics* graphics) override;
  bool IsHit(int x, int y) override;
  IRECT GetHandleRECT(double value) const;

 protected:
  void SnapToMouse(int x, int y);

  int mLen, mHandleSize;
  IBitmap mBitmap;
  EDirection mDirection;
  bool mOnlyHandle;
};
