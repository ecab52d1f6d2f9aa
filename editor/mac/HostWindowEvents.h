// What the view hands to the host's window, and how the application framework is readied, which
// differ between macOS (Carbon event targets) and other AppKits; UI thread only.
#pragma once

#import <Cocoa/Cocoa.h>

// A click the editor leaves to the host (Command-Control on an automatable control), sent to the
// window holding the view.
void SendClickToHostWindow(NSView* view, NSEvent* event);
// Readies AppKit for use from inside a plug-in.
void LoadApplicationFramework();
