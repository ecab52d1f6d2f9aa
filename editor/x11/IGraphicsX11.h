#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "editor/IGraphics.h"
#include "editor/TextEntrySession.h"
#include "editor/ViewHost.h"

// The editor in an X11 window embedded in a window of the host: painted from the back buffer,
// fed with the mouse, the wheel and keys through the view-host core, and repainted where dirty at
// the editor's frame rate from Idle(), which the host calls often (an LV2 UI's idle callback) or a
// loop of the caller's does. It opens its own connection to the display and needs no toolkit;
// Xlib stays out of this header, whose includers need not see its macros.
class IGraphicsX11 : public IGraphics {
 public:
  IGraphicsX11(IPlugBase* plug, int w, int h, int fps, std::string imageFolder);
  ~IGraphicsX11() override;

  // parent: the host's window (an X11 Window id) as a pointer; none: the root window. Returns
  // the editor's window id the same way, or null when the display cannot be opened.
  void* OpenWindow(void* parent) override;
  void CloseWindow() override;
  void* GetWindow() override;
  bool WindowIsOpen() override { return mX != nullptr; }
  const char* GetGUIAPI() override { return "X11 gui"; }
  // Handles the events waiting, then calls Frame once a frame is due.
  void Idle();
  // Repaints what is dirty and sends it to the display.
  void Frame();

  bool DrawScreen(IRECT* rect) override;
  void ForceEndUserEdit() override;
  int ShowMessageBox(const char*, const char*, int) override { return 0; }
  // A menu window below the area, its lines as MenuLines lists them (a submenu's lines indented
  // under its entry); it runs until a line is chosen (a click, or Return on the line under the
  // pointer), or a click outside it or Escape dismisses it.
  IPopupMenu* CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) override;
  // The menu's layout: a line's height, the margin above the first and a separator's height.
  static constexpr int kMenuLine = 18, kMenuMargin = 3, kMenuSeparator = 7;
  // A field over the control's rectangle, typed into until Return (applied), Escape (dropped), a
  // click elsewhere (applied) or the wheel (dropped).
  void CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                       IParam* param) override;
  void PluginPath(WDL_String* path) override { path->Set(mImageFolder.c_str()); }
  LICE_IBitmap* OSLoadBitmap(int id, const char* name) override;

 private:
  struct X11Window;  // the connection, the window and the event handling

  std::string mImageFolder;
  TextEntrySession mEntry;
  ViewHost mView{this, &mEntry};
  std::unique_ptr<X11Window> mX;
  std::chrono::steady_clock::time_point mNextFrame;
};
