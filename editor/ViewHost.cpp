#include "editor/ViewHost.h"

#include <cctype>
#include <cmath>

#include "editor/IGraphics.h"
#include "editor/TextEntrySession.h"

ViewRect ViewHost::ToView(const IRECT& r) const {
  return {r.L, mEditor->Height() - r.B - 1, r.R + 1 - r.L, r.B + 1 - r.T};
}

IRECT ViewHost::FromView(double x, double y, double w, double h) const {
  const int height = mEditor->Height(), left = static_cast<int>(x), bottom = static_cast<int>(y);
  return {left, height - bottom - static_cast<int>(h), left + static_cast<int>(w), height - bottom};
}

bool ViewHost::OnTimer(ViewRect* invalid) const {
  IRECT dirty;
  if (!mEditor->IsDirty(&dirty)) return false;
  *invalid = ToView(dirty);
  return true;
}

// The offsets of 2 and 3 pixels are the original view's and are kept: controls are hit where
// they always were.
void ViewHost::MousePosition(double px, double py, int* x, int* y) {
  *x = mLastX = static_cast<int>(px) - 2;
  *y = mLastY = mEditor->Height() - static_cast<int>(py) - 3;
}

void ViewHost::FromTopDown(int x, int y, double* px, double* py) const {
  *px = x + 2.0, *py = mEditor->Height() - y - 3.0;
}

IMouseMod ViewHost::LeftButton(ViewModifiers m) {
  return {true, m.command, m.shift, m.control, m.option};
}

IMouseMod ViewHost::RightButton(ViewModifiers m) {
  return {false, true, m.shift, m.control, m.option};
}

bool ViewHost::MouseDown(double px, double py, ViewModifiers m, int clickCount) {
  int x, y;
  MousePosition(px, py, &x, &y);
  if (m.command && m.control && mEditor->GetParamIdxForPTAutomation(x, y) >= 0) return false;
  IMouseMod mod = LeftButton(m);
  if (clickCount < 2) {
    mEditor->OnMouseDown(x, y, &mod);
  } else {
    mEditor->OnMouseDblClick(x, y, &mod);
  }
  return true;
}

void ViewHost::MouseUp(double px, double py, ViewModifiers m) {
  Send(&IGraphics::OnMouseUp, px, py, LeftButton(m));
}

void ViewHost::MouseDragged(double px, double py, ViewModifiers m) {
  if (!FieldOpen()) Send(&IGraphics::OnMouseDrag, px, py, LeftButton(m));
}

void ViewHost::RightMouseDown(double px, double py, ViewModifiers m) {
  Send(&IGraphics::OnMouseDown, px, py, RightButton(m));
}

void ViewHost::RightMouseUp(double px, double py, ViewModifiers m) {
  Send(&IGraphics::OnMouseUp, px, py, RightButton(m));
}

void ViewHost::RightMouseDragged(double px, double py, ViewModifiers m) {
  if (!FieldOpen()) Send(&IGraphics::OnMouseDrag, px, py, RightButton(m));
}

bool ViewHost::FieldOpen() const { return mEntry && mEntry->IsOpen(); }

void ViewHost::Send(void (IGraphics::*call)(int, int, IMouseMod*), double px, double py,
                    IMouseMod mod) {
  int x, y;
  MousePosition(px, py, &x, &y);
  (mEditor->*call)(x, y, &mod);
}

void ViewHost::MouseMoved(double px, double py, ViewModifiers m) {
  int x, y;
  MousePosition(px, py, &x, &y);
  IMouseMod mod = LeftButton(m);
  mEditor->OnMouseOver(x, y, &mod);
}

void ViewHost::ScrollWheel(double px, double py, ViewModifiers m, double deltaY) {
  if (mEntry) mEntry->End(mEditor, false);
  int x, y;
  MousePosition(px, py, &x, &y);
  IMouseMod mod = LeftButton(m);
  mEditor->OnMouseWheel(x, y, &mod, static_cast<int>(deltaY));
}

void ViewHost::Removed() {
  if (mEntry) mEntry->End(mEditor, false);
  mEditor->CloseWindow();
}

bool ViewHost::KeyDown(const std::u32string& charactersIgnoringModifiers) {
  const int code = KeyCode(charactersIgnoringModifiers);
  return code >= 0 && mEditor->OnKeyDown(mLastX, mLastY, code);
}

// Matched by the character; the original view's virtual key codes were space 49, up 126, down
// 125, left 123 and right 124.
int ViewHost::KeyCode(const std::u32string& characters) {
  if (characters.size() != 1) return -1;
  const char32_t c = characters[0];
  if (c == U' ') return 0;
  if (c >= kUpArrowCharacter && c <= kRightArrowCharacter) return 1 + (c - kUpArrowCharacter);
  if (c >= U'0' && c <= U'9') return 5 + (c - U'0');
  if (c >= U'A' && c <= U'Z') return 15 + (c - U'A');
  if (c >= U'a' && c <= U'z') return 15 + (c - U'a');
  return -1;
}

bool ViewHost::IsPngName(const std::string& fileName) {
  const std::string::size_type dot = fileName.rfind('.');
  if (dot == std::string::npos || fileName.size() - dot != 4) return false;
  std::string extension = fileName.substr(dot + 1);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == "png";
}

std::string ViewHost::ResourceStem(const std::string& fileName) {
  const std::string::size_type slash = fileName.rfind('/');
  const std::string last = slash == std::string::npos ? fileName : fileName.substr(slash + 1);
  return last.substr(0, last.rfind('.'));
}

int ViewHost::CentredOffset(double frameWidth, int editorWidth) {
  return frameWidth > editorWidth ? static_cast<int>(std::floor((frameWidth - editorWidth) * 0.5))
                                  : 0;
}

const char* ViewHost::GuiApiName(bool carbon, bool composited) {
  if (!carbon) return "Cocoa gui";
  return composited ? "Carbon Composited gui" : "Carbon Non-Composited gui";
}
