#pragma once

#include "editor/IControl.h"

// Turned by dragging: the control's own extent times the gearing covers the whole range, ten
// times finer with control or shift held. Draws nothing itself.
class IKnobControl : public IControl {
 public:
  IKnobControl(IPlugBase* plug, IRECT rect, int paramIdx, EDirection direction = kVertical,
               double gearing = 4.0);
  void OnMouseDrag(int x, int y, int dX, int dY, IMouseMod* mod) override;
  void SetGearing(double gearing) { mGearing = gearing; }

 protected:
  EDirection mDirection;
  double mGearing;
};

// A knob drawn as frame trunc((N - 1)·value + 0.5) + 1 of a multi-frame bitmap.
class IKnobMultiControl : public IKnobControl {
 public:
  IKnobMultiControl(IPlugBase* plug, int x, int y, int paramIdx, IBitmap* bitmap,
                    EDirection direction = kVertical);
  bool Draw(IGraphics* graphics) override;

 protected:
  IBitmap mBitmap;
};
