// Context menus made from the editor's popup menus, UI thread only.
#pragma once

#import <Cocoa/Cocoa.h>

class IPopupMenu;

// An NSMenu of an IPopupMenu's lines as the core lists them (numbered titles, checks, indented
// titles, disabled items, separators, submenus), remembering the popup menu it was made from.
// Each selectable item's tag is its line's index in the core's list and its action goes to the
// receiver.
@interface IGraphicsNSMenu_vTarn_rtas : NSMenu {
  IPopupMenu* mIPopupMenu;
}
- (id)initWithIPopupMenu:(IPopupMenu*)menu receiver:(id)receiver;
- (IPopupMenu*)associatedIPopupMenu;
@end

// Takes the item chosen from a menu.
@interface IGraphicsMenuRcvr_vTarn_rtas : NSView {
  NSMenuItem* mChosen;
}
- (void)onMenuSelection:(id)sender;
- (NSMenuItem*)menuItem;  // null while nothing is chosen
@end

// Shows the menu as a context menu of the view with its top-left corner at a point of the view and
// waits for it to close: the menu whose item was chosen, its chosen index set, or null.
IPopupMenu* RunCocoaPopupMenu(NSView* view, IPopupMenu* menu, NSPoint at);
