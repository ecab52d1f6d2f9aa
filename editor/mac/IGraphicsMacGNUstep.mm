// The parts of the macOS editor that stand on Carbon, as an AppKit without Carbon has them; UI
// thread only. There is no Carbon window to be handed, so no Carbon host is ever made.
#import <Cocoa/Cocoa.h>

#import "editor/mac/HostWindowEvents.h"
#include "editor/mac/IGraphicsMac.h"

// The window holding the view stands for the host's window: the click goes up the responder
// chain to it.
void SendClickToHostWindow(NSView* view, NSEvent* event) { [[view nextResponder] mouseDown:event]; }

void LoadApplicationFramework() { [NSApplication sharedApplication]; }

void* IGraphicsMac::OpenWindow(void*, void*, short, short) { return nullptr; }

void IGraphicsMac::AttachSubWindow(void*) {}

void IGraphicsMac::RemoveSubWindow() {}

void IGraphicsMac::CloseCarbonHost() {}

bool IGraphicsMac::CarbonIsComposited() const { return false; }

bool IGraphicsMac::DrawCarbonScreen() { return false; }

IPopupMenu* IGraphicsMac::CarbonPopupMenu(IPopupMenu*, IRECT*) { return nullptr; }

void IGraphicsMac::CarbonTextEntry(IControl*, IText*, IRECT*, const char*, IParam*) {}

void IGraphicsMac::EndCarbonEdit() {}
