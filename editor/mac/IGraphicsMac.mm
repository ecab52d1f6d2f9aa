// The editor on macOS, UI thread only: the Cocoa view's lifetime, the back buffer on screen, the
// bundle's images, and menus and value fields through the view.
#import <Cocoa/Cocoa.h>

#include "editor/mac/IGraphicsMac.h"

#include "editor/ViewHost.h"
#import "editor/mac/HostWindowEvents.h"
#import "editor/mac/IGraphicsCocoa.h"
#include "editor/mac/ScreenCopy.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"

namespace {

IGraphicsCocoa_vTarn_rtas* View(void* view) {
  return static_cast<IGraphicsCocoa_vTarn_rtas*>(view);
}

NSString* String(const char* text) { return [NSString stringWithUTF8String:text ? text : ""]; }

void SetPath(WDL_String* to, NSString* path) {
  to->Set(path ? [path fileSystemRepresentation] : "");
}

}  // namespace

IGraphicsMac::IGraphicsMac(IPlugBase* plug, int w, int h, int refreshFPS)
    : IGraphics(plug, w, h, refreshFPS) {
  LoadApplicationFramework();
}

IGraphicsMac::~IGraphicsMac() { CloseWindow(); }

bool IGraphicsMac::DrawScreen(IRECT*) {
  return mGraphicsCarbon ? DrawCarbonScreen() : CopyToCurrentContext(GetDrawBitmap(), Height());
}

void* IGraphicsMac::OpenWindow(void* parentView) {
  CloseWindow();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  IGraphicsCocoa_vTarn_rtas* view = [[IGraphicsCocoa_vTarn_rtas alloc] initWithIGraphics:this];
  mGraphicsCocoa = view;
  if (parentView) [static_cast<NSView*>(parentView) addSubview:view];
  [pool release];
  return view;
}

// The timer holds the view until it stops; a view the host has already taken away has detached
// itself and is not removed again.
void IGraphicsMac::CloseWindow() {
  if (mGraphicsCarbon) return CloseCarbonHost();
  if (!mGraphicsCocoa) return;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  IGraphicsCocoa_vTarn_rtas* view = View(mGraphicsCocoa);
  [view killTimer];
  mGraphicsCocoa = nullptr;
  if ([view graphics] == this) {
    [view removeFromIGraphics];
    [view removeFromSuperview];
  }
  [view release];
  [pool release];
}

const char* IGraphicsMac::GetGUIAPI() {
  return ViewHost::GuiApiName(mGraphicsCarbon != nullptr, CarbonIsComposited());
}

void IGraphicsMac::ForceEndUserEdit() {
  if (mGraphicsCarbon) EndCarbonEdit();
  if (mGraphicsCocoa) [View(mGraphicsCocoa) dropTextEntry];
}

// The mouse up that ends the right click would otherwise go to the control.
IPopupMenu* IGraphicsMac::CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) {
  ReleaseMouseCapture();
  if (!menu || !areaRect) return nullptr;
  if (mGraphicsCarbon) return CarbonPopupMenu(menu, areaRect);
  if (!mGraphicsCocoa) return nullptr;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  IPopupMenu* chosen = [View(mGraphicsCocoa) createIPopupMenu:menu:areaRect];
  [pool release];
  return chosen;
}

void IGraphicsMac::CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                                   IParam* param) {
  if (!control || !text || !textRect) return;
  if (mGraphicsCarbon) return CarbonTextEntry(control, text, textRect, str, param);
  if (!mGraphicsCocoa) return;
  [View(mGraphicsCocoa) createTextEntry:control:param:text:str:textRect];
}

LICE_IBitmap* IGraphicsMac::OSLoadBitmap(int, const char* name) {
  return LoadImgFromResourceOSX(mBundleID.Get(), name);
}

LICE_IBitmap* IGraphicsMac::LoadImgFromResourceOSX(const char* bundleID, const char* fileName) {
  if (!bundleID || !fileName || !ViewHost::IsPngName(fileName)) return nullptr;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSBundle* bundle = [NSBundle bundleWithIdentifier:String(bundleID)];
  NSString* path = [bundle pathForResource:String(ViewHost::ResourceStem(fileName).c_str())
                                    ofType:@"png"];
  LICE_IBitmap* bitmap = path ? LICE_LoadPNG([path fileSystemRepresentation], nullptr) : nullptr;
  [pool release];
  return bitmap;
}

// Window-system services this editor does not use, done plainly.
int IGraphicsMac::ShowMessageBox(const char* text, const char* caption, int) {
  return static_cast<int>(NSRunAlertPanel(String(caption), @"%@", @"OK", nil, nil, String(text)));
}

void IGraphicsMac::PluginPath(WDL_String* path) {
  SetPath(path, [[NSBundle bundleWithIdentifier:String(mBundleID.Get())] bundlePath]);
}

void IGraphicsMac::HostPath(WDL_String* path) { SetPath(path, [[NSBundle mainBundle] bundlePath]); }

void IGraphicsMac::DesktopPath(WDL_String* path) {
  SetPath(path, [NSHomeDirectory() stringByAppendingPathComponent:@"Desktop"]);
}

bool IGraphicsMac::OpenURL(const char* url, const char*, const char*, const char*) {
  NSURL* address = url ? [NSURL URLWithString:String(url)] : nil;
  return address && [[NSWorkspace sharedWorkspace] openURL:address];
}

void IGraphicsMac::HideMouseCursor() { [NSCursor hide]; }

void IGraphicsMac::ShowMouseCursor() { [NSCursor unhide]; }
