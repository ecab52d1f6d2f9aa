// The parts of the macOS editor that stand on Carbon (macOS only), UI thread only: the Carbon host
// and the Cocoa view shown over a Carbon window.
#import <Cocoa/Cocoa.h>

#include "editor/ViewHost.h"
#import "editor/mac/CustomCocoaWindow.h"
#import "editor/mac/HostWindowEvents.h"
#include "editor/mac/IGraphicsCarbon.h"
#include "editor/mac/IGraphicsMac.h"
#include "editor/mac/ScreenCopy.h"
#include "lice/LICE_SysBitmap.h"

// The host's window sees the click as if the editor were not there: it shows its automation menu.
void SendClickToHostWindow(NSView* view, NSEvent* event) {
  WindowRef window = static_cast<WindowRef>([[view window] windowRef]);
  if (window) SendEventToEventTarget(GetCurrentEvent(), GetWindowEventTarget(window));
}

void LoadApplicationFramework() { NSApplicationLoad(); }

void* IGraphicsMac::OpenWindow(void* window, void* control, short left, short top) {
  CloseWindow();
  mGraphicsCarbon = new IGraphicsCarbon(this, static_cast<WindowRef>(window),
                                        static_cast<ControlRef>(control), left, top);
  return mGraphicsCarbon->GetView();
}

// The Carbon window is wrapped (its wrapper released when it closes) and the view shown in a
// borderless window centred over it.
void IGraphicsMac::AttachSubWindow(void* windowRef) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSWindow* carbon = [[NSWindow alloc] initWithWindowRef:windowRef];
  [carbon setCanHide:YES];
  [carbon setReleasedWhenClosed:YES];
  const NSRect frame = [carbon frame];
  const NSRect shown =
      NSMakeRect(frame.origin.x + ViewHost::CentredOffset(frame.size.width, Width()),
                 frame.origin.y, Width(), Height());
  CustomCocoaWindow_vTarn_rtas* window =
      [[CustomCocoaWindow_vTarn_rtas alloc] initWithContentRect:shown
                                                      styleMask:NSBorderlessWindowMask
                                                        backing:NSBackingStoreBuffered
                                                          defer:NO];
  [window setOpaque:YES];
  [window setHasShadow:NO];
  [carbon addChildWindow:window ordered:NSWindowAbove];
  OpenWindow([window contentView]);
  [window orderFront:nil];
  mSubWindow = window;
  [pool release];
}

void IGraphicsMac::RemoveSubWindow() {
  if (!mSubWindow) return;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSWindow* window = static_cast<NSWindow*>(mSubWindow);
  CloseWindow();
  [[window parentWindow] removeChildWindow:window];
  [window orderOut:nil];
  [window release];
  mSubWindow = nullptr;
  [pool release];
}

void IGraphicsMac::CloseCarbonHost() {
  delete mGraphicsCarbon;
  mGraphicsCarbon = nullptr;
}

bool IGraphicsMac::CarbonIsComposited() const {
  return mGraphicsCarbon && mGraphicsCarbon->GetIsComposited();
}

bool IGraphicsMac::DrawCarbonScreen() {
  return CopyToContext(GetDrawBitmap(), Height(), mGraphicsCarbon->GetCGContext());
}

IPopupMenu* IGraphicsMac::CarbonPopupMenu(IPopupMenu* menu, IRECT* areaRect) {
  return mGraphicsCarbon->CreateIPopupMenu(menu, areaRect);
}

void IGraphicsMac::CarbonTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                                   IParam* param) {
  mGraphicsCarbon->CreateTextEntry(control, text, textRect, str, param);
}

void IGraphicsMac::EndCarbonEdit() { mGraphicsCarbon->EndUserInput(false); }
