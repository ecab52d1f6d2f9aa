// Context menus made from the editor's popup menus, UI thread only.
#import "editor/mac/CocoaPopupMenu.h"

#include <vector>

#include "editor/IPopupMenu.h"
#include "editor/MenuLines.h"

namespace {

NSString* String(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

}  // namespace

@interface IGraphicsNSMenu_vTarn_rtas ()
- (id)initWithIPopupMenu:(IPopupMenu*)menu receiver:(id)receiver firstLine:(int*)line;
@end

@implementation IGraphicsNSMenu_vTarn_rtas

// The lines of the menu are numbered across its submenus, whose items follow their entry.
- (id)initWithIPopupMenu:(IPopupMenu*)menu receiver:(id)receiver firstLine:(int*)line {
  if (!(self = [super initWithTitle:@""])) return nil;
  mIPopupMenu = menu;
  [self setAutoenablesItems:NO];
  const std::vector<MenuLine> lines = FlattenMenu(*menu);
  for (int i = 0, lineOfItem = 0; i < menu->GetNItems(); ++i, ++lineOfItem) {
    while (lines[lineOfItem].depth > 0) ++lineOfItem;  // the lines of an earlier submenu
    const MenuLine& shown = lines[lineOfItem];
    const int tag = (*line)++;
    if (shown.separator) {
      [self addItem:[NSMenuItem separatorItem]];
      continue;
    }
    NSMenuItem* item = [self addItemWithTitle:String(shown.title) action:NULL keyEquivalent:@""];
    if (IPopupMenu* sub = menu->GetItem(i)->GetSubmenu()) {
      IGraphicsNSMenu_vTarn_rtas* submenu =
          [[IGraphicsNSMenu_vTarn_rtas alloc] initWithIPopupMenu:sub
                                                        receiver:receiver
                                                       firstLine:line];
      [item setSubmenu:submenu];
      [submenu release];
      continue;
    }
    [item setTag:tag];
    [item setTarget:receiver];
    [item setAction:@selector(onMenuSelection:)];
    [item setIndentationLevel:shown.indented ? 1 : 0];
    [item setState:shown.checked ? NSOnState : NSOffState];
    [item setEnabled:!shown.disabled];
  }
  return self;
}

- (id)initWithIPopupMenu:(IPopupMenu*)menu receiver:(id)receiver {
  int line = 0;
  return [self initWithIPopupMenu:menu receiver:receiver firstLine:&line];
}

- (IPopupMenu*)associatedIPopupMenu {
  return mIPopupMenu;
}

@end

@implementation IGraphicsMenuRcvr_vTarn_rtas

- (void)onMenuSelection:(id)sender {
  [mChosen release];
  mChosen = [sender retain];
}

- (NSMenuItem*)menuItem {
  return mChosen;
}

- (void)dealloc {
  [mChosen release];
  [super dealloc];
}

@end

// The menu opens for a right press at the point: a context menu's top-left corner is where the
// mouse went down.
IPopupMenu* RunCocoaPopupMenu(NSView* view, IPopupMenu* menu, NSPoint at) {
  NSWindow* window = [view window];
  if (!window || !menu) return nullptr;
  IGraphicsMenuRcvr_vTarn_rtas* receiver =
      [[IGraphicsMenuRcvr_vTarn_rtas alloc] initWithFrame:NSZeroRect];
  IGraphicsNSMenu_vTarn_rtas* shown =
      [[IGraphicsNSMenu_vTarn_rtas alloc] initWithIPopupMenu:menu receiver:receiver];
  NSEvent* press = [NSEvent mouseEventWithType:NSRightMouseDown
                                      location:[view convertPoint:at toView:nil]
                                 modifierFlags:0
                                     timestamp:[[NSApp currentEvent] timestamp]
                                  windowNumber:[window windowNumber]
                                       context:nil
                                   eventNumber:0
                                    clickCount:1
                                      pressure:1.0];
  [NSMenu popUpContextMenu:shown withEvent:press forView:view];
  NSMenuItem* chosen = [receiver menuItem];
  IPopupMenu* answer = chosen ? ChooseLine(menu, static_cast<int>([chosen tag])) : nullptr;
  [shown release];
  [receiver release];
  return answer;
}
