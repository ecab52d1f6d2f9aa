// The borderless window that shows the editor's view over a host's Carbon window; UI thread only.
#pragma once

#import <Cocoa/Cocoa.h>

// Borderless windows refuse to become key unless told otherwise; this one takes the keyboard so
// that the editor gets its keys.
@interface CustomCocoaWindow_vTarn_rtas : NSWindow
@end
