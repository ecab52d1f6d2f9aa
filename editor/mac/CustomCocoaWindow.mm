// The borderless window that shows the editor's view over a host's Carbon window; UI thread only.
#import "editor/mac/CustomCocoaWindow.h"

@implementation CustomCocoaWindow_vTarn_rtas

- (BOOL)canBecomeKeyWindow {
  return YES;
}

@end
