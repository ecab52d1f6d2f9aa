// Routing of mouse, wheel and keys to controls, and the host's automation shortcut lookup.
#include "editor/IControl.h"
#include "editor/IGraphics.h"
#include "plug/IPlugBase.h"

// The last-attached control is on top; hidden and grayed controls are not hit. The background
// covers the editor, so a click on empty space hits it.
int IGraphics::HitTest(int x, int y) {
  for (int i = mControls.GetSize() - 1; i >= 0; --i) {
    IControl* control = mControls.Get(i);
    if (!control->IsHidden() && !control->IsGrayed() && control->IsHit(x, y)) return i;
  }
  return -1;
}

// As HitTest, but a grayed control that asks for mouse-over while grayed is found.
int IGraphics::MouseOverHitTest(int x, int y) {
  for (int i = mControls.GetSize() - 1; i >= 0; --i) {
    IControl* control = mControls.Get(i);
    if (control->IsHidden() || (control->IsGrayed() && !control->GetMOWhenGrayed())) continue;
    if (control->IsHit(x, y)) return i;
  }
  return -1;
}

// The control sees the press after it owns the mouse; a bound control opens the host's gesture.
void IGraphics::OnMouseDown(int x, int y, IMouseMod* mod) {
  ClearCapture();
  const int hit = HitTest(x, y);
  if (hit < 0) return;
  mMouseCapture = hit, mMouseX = x, mMouseY = y;
  IControl* control = mControls.Get(hit);
  control->OnMouseDown(x, y, mod);
  if (control->ParamIdx() >= 0) mPlug->BeginInformHostOfParamChange(control->ParamIdx());
}

void IGraphics::OnMouseUp(int x, int y, IMouseMod* mod) {
  const int target = CapturedOrHit(x, y);
  ClearCapture();
  if (target < 0) return;
  IControl* control = mControls.Get(target);
  control->OnMouseUp(x, y, mod);
  if (control->ParamIdx() >= 0) mPlug->EndInformHostOfParamChange(control->ParamIdx());
}

// The captured control gets the movement since the last event, never the press position.
void IGraphics::OnMouseDrag(int x, int y, IMouseMod* mod) {
  if (mMouseCapture < 0) return;
  const int dX = x - mMouseX, dY = y - mMouseY;
  if (dX == 0 && dY == 0) return;
  mMouseX = x, mMouseY = y;
  mControls.Get(mMouseCapture)->OnMouseDrag(x, y, dX, dY, mod);
}

// A control that takes double clicks as presses is pressed (true), without opening a gesture,
// though the mouse up that follows closes one; others get the double click (false).
bool IGraphics::OnMouseDblClick(int x, int y, IMouseMod* mod) {
  ClearCapture();
  const int hit = HitTest(x, y);
  if (hit < 0) return false;
  IControl* control = mControls.Get(hit);
  if (!control->MouseDblAsSingleClick()) {
    control->OnMouseDblClick(x, y, mod);
    return false;
  }
  mMouseCapture = hit, mMouseX = x, mMouseY = y;
  control->OnMouseDown(x, y, mod);
  return true;
}

void IGraphics::OnMouseWheel(int x, int y, IMouseMod* mod, int delta) {
  const int target = CapturedOrHit(x, y);
  if (target >= 0) mControls.Get(target)->OnMouseWheel(x, y, mod, delta);
}

bool IGraphics::OnMouseOver(int x, int y, IMouseMod* mod) {
  if (!mHandleMouseOver) return false;
  const int target = mMouseCapture >= 0 ? mMouseCapture : MouseOverHitTest(x, y);
  if (target < 0) return mHandleMouseOver;
  mMouseX = x, mMouseY = y;
  mControls.Get(target)->OnMouseOver(x, y, mod);
  if (mMouseOver >= 0 && mMouseOver != target) {
    if (IControl* previous = mControls.Get(mMouseOver)) previous->OnMouseOut();
  }
  mMouseOver = target;
  return mHandleMouseOver;
}

// Keys go to the captured or hit control, or to the key catcher when that is the background.
bool IGraphics::OnKeyDown(int x, int y, int key) {
  const int target = CapturedOrHit(x, y);
  IControl* receiver = target >= 1 ? mControls.Get(target) : mKeyCatcher;
  return receiver ? receiver->OnKeyDown(x, y, key) : false;
}

void IGraphics::ReleaseMouseCapture() { ClearCapture(); }

int IGraphics::GetParamIdxForPTAutomation(int x, int y) {
  const int target = CapturedOrHit(x, y);
  mLastClickedParam = target > 0 ? mControls.Get(target)->ParamIdx() : -1;
  return mLastClickedParam;
}

int IGraphics::GetLastClickedParamForPTAutomation() {
  const int param = mLastClickedParam;
  mLastClickedParam = -1;
  return param;
}
