// The editor in a host's Carbon window (macOS only), UI thread only.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "editor/TextEntrySession.h"
#include "editor/ViewHost.h"

class IGraphicsMac;
class IPopupMenu;

// A user-pane control of the editor's size in the host's window, with handlers for its mouse,
// wheel, key and draw events and a timer at the editor's frame rate. In a composited window the
// timer invalidates what is dirty; in another it redraws the controls at once. Events become the
// view-host core's calls, as the Cocoa view's do.
class IGraphicsCarbon {
 public:
  IGraphicsCarbon(IGraphicsMac* graphics, WindowRef window, ControlRef parentControl, short left,
                  short top);
  ~IGraphicsCarbon();
  IGraphicsCarbon(const IGraphicsCarbon&) = delete;
  IGraphicsCarbon& operator=(const IGraphicsCarbon&) = delete;

  ControlRef GetView() const { return mView; }
  CGContextRef GetCGContext() const { return mCGC; }  // during a draw event only
  bool GetIsComposited() const { return mIsComposited; }

  IPopupMenu* CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect);
  void CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                       IParam* param);
  // Ends the field, applying its text when commit is true, and takes it away.
  void EndUserInput(bool commit);

 private:
  static pascal OSStatus MainEventHandler(EventHandlerCallRef next, EventRef event, void* self);
  static pascal OSStatus TextEntryHandler(EventHandlerCallRef next, EventRef event, void* self);
  static pascal void TimerHandler(EventLoopTimerRef timer, void* self);
  OSStatus OnMouse(EventRef event, UInt32 kind);
  OSStatus OnKey(EventRef event);
  OSStatus OnDraw(EventRef event);
  std::string FieldText() const;  // the field's text as it stands, at most 31 bytes

  IGraphicsMac* mGraphicsMac;
  TextEntrySession mEntry;
  ViewHost mViewHost;
  WindowRef mWindow;
  ControlRef mView = nullptr;
  ControlRef mTextField = nullptr;
  EventLoopTimerRef mTimer = nullptr;
  EventHandlerRef mControlHandler = nullptr, mWindowHandler = nullptr, mTextHandler = nullptr;
  CGContextRef mCGC = nullptr;
  bool mIsComposited = false;
  short mLeft, mTop;
};
