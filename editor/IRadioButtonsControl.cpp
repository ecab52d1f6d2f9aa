#include "editor/IRadioButtonsControl.h"

#include <algorithm>

#include "editor/IGraphics.h"

// Buttons spread evenly over the rectangle; reversed, the last button takes the first place.
IRadioButtonsControl::IRadioButtonsControl(IPlugBase* plug, IRECT rect, int paramIdx, int nButtons,
                                           IBitmap* bitmap, EDirection direction, bool reverse)
    : IControl(plug, rect, paramIdx), mBitmap(*bitmap) {
  IRECT* buttons = mRECTs.Resize(nButtons);
  if (!buttons) return;
  const int w = bitmap->W, h = bitmap->H / bitmap->N, gaps = std::max(nButtons - 1, 1);
  const int gap = direction == kHorizontal ? (rect.R - rect.L - nButtons * w) / gaps
                                           : (rect.B - rect.T - nButtons * h) / gaps;
  for (int i = 0; i < nButtons; ++i) {
    const int x = direction == kHorizontal ? rect.L + i * (w + gap) : rect.L;
    const int y = direction == kHorizontal ? rect.T : rect.T + i * (h + gap);
    buttons[reverse ? nButtons - 1 - i : i] = {x, y, x + w, y + h};
  }
}

bool IRadioButtonsControl::Draw(IGraphics* graphics) {
  const int n = mRECTs.GetSize();
  const int active = std::clamp(static_cast<int>((n - 1) * GetValue() + 0.5), 0, n - 1);
  for (int i = 0; i < n; ++i)
    graphics->DrawBitmap(&mBitmap, &mRECTs.Get()[i], i == active ? 2 : 1, &mBlend);
  return true;
}

// A click between buttons re-sends the unchanged value.
void IRadioButtonsControl::OnMouseDown(int x, int y, IMouseMod* mod) {
  if (mod->R) return PromptUserInput();
  const int n = mRECTs.GetSize();
  for (int i = 0; i < n; ++i) {
    const IRECT& r = mRECTs.Get()[i];
    if (!r.Empty() && r.Contains(x, y)) {
      SetValue(static_cast<double>(i) / (n - 1));
      break;
    }
  }
  SetDirty(true);
}
