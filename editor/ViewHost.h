#pragma once

#include <string>

#include "editor/IGraphicsTypes.h"
#include "editor/IRECT.h"

class IGraphics;
class TextEntrySession;

// A rectangle in a view's own coordinates, whose origin is the bottom-left corner.
struct ViewRect {
  int x = 0, y = 0, w = 0, h = 0;
  bool operator==(const ViewRect& o) const { return x == o.x && y == o.y && w == o.w && h == o.h; }
};

// The modifier keys of a window-system event, by their macOS names; other window systems map
// theirs onto these (Super or Meta for Command, Alt for Option).
struct ViewModifiers {
  bool command = false, shift = false, control = false, option = false;
};

// The characters of the arrow keys as macOS reports them (its function-key range); a back end of
// another window system reports its arrow keys with the same characters.
enum : char32_t {
  kUpArrowCharacter = 0xF700,
  kDownArrowCharacter,
  kLeftArrowCharacter,
  kRightArrowCharacter
};

// What a window back end's view does with its editor, with no window system in it: the
// conversions between the editor's top-down coordinates and the view's bottom-up ones (with the
// deliberate 2- and 3-pixel mouse offsets), the modifier and key mapping, which editor call each
// event becomes, and the repaint timer. The back end only translates its events into these calls
// and carries out the answers (invalidate this rectangle, give this key back to the host).
class ViewHost {
 public:
  // The view's value field, if the back end has one, is ended and consulted by the events.
  explicit ViewHost(IGraphics* editor, TextEntrySession* entry = nullptr)
      : mEditor(editor), mEntry(entry) {}

  // An editor rectangle in view coordinates: (L, height - B - 1, R + 1 - L, B + 1 - T).
  ViewRect ToView(const IRECT& r) const;
  // The editor rectangle a view asks to redraw: L = trunc(x), T = height - trunc(y) - trunc(h),
  // R = L + trunc(w), B = height - trunc(y).
  IRECT FromView(double x, double y, double w, double h) const;

  // One timer tick: true, with the area to invalidate in view coordinates, when something is
  // dirty.
  bool OnTimer(ViewRect* invalid) const;

  // Mouse events at a position in view coordinates. A press with Command and Control held over a
  // control that automation can reach goes to the host instead (MouseDown returns false): the
  // host shows its automation menu. Drags are dropped while a value field is open; the wheel
  // first ends an open field without applying it.
  bool MouseDown(double px, double py, ViewModifiers m, int clickCount);
  void MouseUp(double px, double py, ViewModifiers m);
  void MouseDragged(double px, double py, ViewModifiers m);
  void RightMouseDown(double px, double py, ViewModifiers m);
  void RightMouseUp(double px, double py, ViewModifiers m);
  void RightMouseDragged(double px, double py, ViewModifiers m);
  void MouseMoved(double px, double py, ViewModifiers m);
  void ScrollWheel(double px, double py, ViewModifiers m, double deltaY);
  // The host took the view away: an open field is dropped and the editor's window closed.
  void Removed();
  // A key at the last mouse position; false when the host should have it back.
  bool KeyDown(const std::u32string& charactersIgnoringModifiers);

  // The editor's mouse position for a view position: trunc(px) - 2, height - trunc(py) - 3.
  void MousePosition(double px, double py, int* x, int* y);
  // A point of a top-down window (X11, Carbon) in the view's terms, such that the editor gets it
  // exactly: the offsets are the macOS view's own, which such a window has no reason for.
  void FromTopDown(int x, int y, double* px, double* py) const;
  static IMouseMod LeftButton(ViewModifiers m);   // L, and Command as R
  static IMouseMod RightButton(ViewModifiers m);  // R
  // The editor's code for a key: space 0, arrows up, down, left, right 1 to 4, digits 5 to 14,
  // letters 15 to 40 in either case; -1 for anything else, which goes back to the host.
  static int KeyCode(const std::u32string& charactersIgnoringModifiers);

  // An image resource name is a PNG file name (the extension compared without case); the
  // resource is looked up by its last path component without the extension.
  static bool IsPngName(const std::string& fileName);
  static std::string ResourceStem(const std::string& fileName);
  // How the editor is hosted, as reported to the host.
  static const char* GuiApiName(bool carbon, bool composited);
  // A view of editorWidth centred over a wider frame starts floor((frame - editor) / 2) in; over a
  // narrower one, at 0.
  static int CentredOffset(double frameWidth, int editorWidth);

 private:
  // The call at the editor's position for the event, which is remembered for keys.
  void Send(void (IGraphics::*call)(int, int, IMouseMod*), double px, double py, IMouseMod mod);

  bool FieldOpen() const;

  IGraphics* mEditor;
  TextEntrySession* mEntry;
  int mLastX = 0, mLastY = 0;  // the last mouse position, for keys
};
