#pragma once

#include "editor/IControl.h"

// A row or column of buttons drawn from a two-frame bitmap (off, on); the active one shows the
// value, and a click on button i sets i / (n - 1).
class IRadioButtonsControl : public IControl {
 public:
  IRadioButtonsControl(IPlugBase* plug, IRECT rect, int paramIdx, int nButtons, IBitmap* bitmap,
                       EDirection direction = kVertical, bool reverse = false);
  void OnMouseDown(int x, int y, IMouseMod* mod) override;
  bool Draw(IGraphics* graphics) override;
  const IRECT& GetButtonRECT(int i) const { return mRECTs.Get()[i]; }

 protected:
  WDL_TypedBuf<IRECT> mRECTs{4096};
  IBitmap mBitmap;
};
