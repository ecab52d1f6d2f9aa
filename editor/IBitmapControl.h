#pragma once

#include "editor/IControl.h"

// Shows frame trunc((N - 1)·value + 0.5) + 1 of a multi-frame bitmap at its position.
class IBitmapControl : public IControl {
 public:
  IBitmapControl(IPlugBase* plug, int x, int y, int paramIdx, IBitmap* bitmap,
                 IChannelBlend::EBlendMethod blendMethod = IChannelBlend::kBlendNone);
  bool Draw(IGraphics* graphics) override;

 protected:
  IBitmap mBitmap;
};

// A bitmap control that steps through its frames on each click, wrapping to the first.
class ISwitchControl : public IBitmapControl {
 public:
  using IBitmapControl::IBitmapControl;
  void OnMouseDown(int x, int y, IMouseMod* mod) override;
  void OnMouseDblClick(int x, int y, IMouseMod* mod) override { OnMouseDown(x, y, mod); }
};
