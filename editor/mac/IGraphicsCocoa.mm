// The editor's Cocoa view, UI thread only: AppKit's events translated into the view-host core's
// calls, and the core's answers carried out.
#import "editor/mac/IGraphicsCocoa.h"

#include <string>

#include "editor/IControl.h"
#include "editor/IGraphics.h"
#include "editor/MenuLines.h"
#include "editor/TextEntrySession.h"
#include "editor/ViewHost.h"
#import "editor/mac/CocoaPopupMenu.h"
#import "editor/mac/CocoaTextEntry.h"
#include "editor/mac/HostWindowEvents.h"

namespace {

ViewModifiers Modifiers(NSEvent* event) {
  const NSUInteger flags = [event modifierFlags];
  return {(flags & NSCommandKeyMask) != 0, (flags & NSShiftKeyMask) != 0,
          (flags & NSControlKeyMask) != 0, (flags & NSAlternateKeyMask) != 0};
}

// The event at its place in the view, to the core's call for it.
void Send(NSView* view, ViewHost* host, void (ViewHost::*call)(double, double, ViewModifiers),
          NSEvent* event) {
  const NSPoint p = [view convertPoint:[event locationInWindow] fromView:nil];
  (host->*call)(p.x, p.y, Modifiers(event));
}

NSRect ToNSRect(const ViewRect& r) { return NSMakeRect(r.x, r.y, r.w, r.h); }

NSColor* ToNSColor(const IColor& c) {
  return [NSColor colorWithCalibratedRed:c.R / 255.0
                                   green:c.G / 255.0
                                    blue:c.B / 255.0
                                   alpha:c.A / 255.0];
}

// The characters as UTF-16 units, which is how AppKit counts a key's characters.
std::u32string Characters(NSString* text) {
  std::u32string characters;
  for (NSUInteger i = 0; i < [text length]; ++i) characters += [text characterAtIndex:i];
  return characters;
}

NSTextAlignment Alignment(int align) {
  return align == 1   ? NSCenterTextAlignment
         : align == 2 ? NSRightTextAlignment
                      : NSLeftTextAlignment;
}

}  // namespace

@implementation IGraphicsCocoa_vTarn_rtas

// The timer is added for the run-loop modes of mouse tracking and modal menus by name as well as
// the common modes: an AppKit that leaves the common modes unexpanded never fires it otherwise.
- (id)initWithIGraphics:(IGraphics*)pGraphics {
  if (!(self = [super initWithFrame:NSMakeRect(0, 0, pGraphics->Width(), pGraphics->Height())]))
    return nil;
  mGraphics = pGraphics;
  mEntry = new TextEntrySession;
  mViewHost = new ViewHost(pGraphics, mEntry);
  mTimer = [[NSTimer timerWithTimeInterval:1.0 / pGraphics->FPS()
                                    target:self
                                  selector:@selector(onTimer:)
                                  userInfo:nil
                                   repeats:YES] retain];
  NSRunLoop* loop = [NSRunLoop currentRunLoop];
  [loop addTimer:mTimer forMode:NSRunLoopCommonModes];
  [loop addTimer:mTimer forMode:NSDefaultRunLoopMode];
  [loop addTimer:mTimer forMode:NSEventTrackingRunLoopMode];
  [loop addTimer:mTimer forMode:NSModalPanelRunLoopMode];
  return self;
}

- (void)dealloc {
  [mTextFieldView release];
  [mHandedBack release];
  delete mViewHost;
  delete mEntry;
  [super dealloc];
}

- (IGraphics*)graphics {
  return mGraphics;
}

- (void)removeFromIGraphics {
  [self dropTextEntry];
  mGraphics = nullptr;
}

- (void)killTimer {
  [mTimer invalidate];
  [mTimer release];
  mTimer = nil;
}

- (BOOL)isOpaque {
  return mGraphics != nullptr;
}

- (BOOL)acceptsFirstResponder {
  return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
  return YES;
}

- (void)viewDidMoveToWindow {
  if (![self window]) return;
  [[self window] makeFirstResponder:self];
  [[self window] setAcceptsMouseMovedEvents:YES];
}

- (void)onTimer:(NSTimer*)timer {
  ViewRect invalid;
  if (mGraphics && mViewHost->OnTimer(&invalid)) [self setNeedsDisplayInRect:ToNSRect(invalid)];
}

- (void)drawRect:(NSRect)rect {
  if (!mGraphics) return;
  IRECT r = mViewHost->FromView(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
  mGraphics->Draw(&r);
}

- (NSPoint)viewPoint:(NSEvent*)event {
  return [self convertPoint:[event locationInWindow] fromView:nil];
}

- (void)mouseDown:(NSEvent*)event {
  if (!mGraphics) return;
  const NSPoint p = [self viewPoint:event];
  if (!mViewHost->MouseDown(p.x, p.y, Modifiers(event), static_cast<int>([event clickCount])))
    SendClickToHostWindow(self, event);  // the host's automation menu for the control
}

- (void)mouseUp:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::MouseUp, event);
}

- (void)mouseDragged:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::MouseDragged, event);
}

- (void)rightMouseDown:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::RightMouseDown, event);
}

- (void)rightMouseUp:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::RightMouseUp, event);
}

- (void)rightMouseDragged:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::RightMouseDragged, event);
}

- (void)mouseMoved:(NSEvent*)event {
  if (mGraphics) Send(self, mViewHost, &ViewHost::MouseMoved, event);
}

// The core ends an open field without applying it before the wheel turns anything; its view
// goes here.
- (void)scrollWheel:(NSEvent*)event {
  if (!mGraphics) return;
  const NSPoint p = [self viewPoint:event];
  mViewHost->ScrollWheel(p.x, p.y, Modifiers(event), [event deltaY]);
  [self endUserInput];
}

// Keys the editor does not take go to the host: its main window becomes key and gets a new key
// event of its own (re-posting this one would bring it straight back here). When that window is
// the one holding this view, the key comes back and goes up the responder chain to the window.
- (void)keyDown:(NSEvent*)event {
  if (event == mHandedBack) {
    [mHandedBack release];
    mHandedBack = nil;
    [super keyDown:event];
    return;
  }
  if (mGraphics && mViewHost->KeyDown(Characters([event charactersIgnoringModifiers]))) return;
  NSWindow* host = [NSApp mainWindow];
  if (!host) return [super keyDown:event];
  [host makeKeyWindow];
  [mHandedBack release];
  mHandedBack = [[NSEvent keyEventWithType:[event type]
                                  location:[event locationInWindow]
                             modifierFlags:[event modifierFlags]
                                 timestamp:[event timestamp]
                              windowNumber:[host windowNumber]
                                   context:nil
                                characters:[event characters]
               charactersIgnoringModifiers:[event charactersIgnoringModifiers]
                                 isARepeat:[event isARepeat]
                                   keyCode:[event keyCode]] retain];
  [NSApp postEvent:mHandedBack atStart:YES];
}

// The host takes the view away: an open field is dropped, and the view, detached, closes the
// editor's window. The view may be released meanwhile, so it stays alive to the end of this call.
// (Some AppKits call this on a view they are about to add, which has no superview yet.)
- (void)removeFromSuperview {
  [[self retain] autorelease];
  if (mGraphics && [self superview]) {
    [self removeFromIGraphics];
    mViewHost->Removed();
  }
  [super removeFromSuperview];
}

- (void)createTextEntry:(IControl*)
                control:(IParam*)param
                       :(IText*)text
                       :(const char*)str
                       :(IRECT*)textRect {
  if (!mGraphics || !mEntry->Open(control, param, *textRect, str)) return;  // one at a time
  CocoaTextField_vTarn_rtas* field =
      [[CocoaTextField_vTarn_rtas alloc] initWithFrame:ToNSRect(mViewHost->ToView(*textRect))];
  NSFont* font = [NSFont fontWithName:[NSString stringWithUTF8String:text->mFont]
                                 size:TextEntrySession::FontSize(*text)];
  [field setFont:font ? font : [NSFont userFontOfSize:TextEntrySession::FontSize(*text)]];
  [field setAlignment:Alignment(text->mAlign)];
  [field setTextColor:ToNSColor(text->mTextEntryFGColor)];
  [field setBackgroundColor:ToNSColor(text->mTextEntryBGColor)];
  [field setDrawsBackground:YES];
  [field setBordered:NO];
  [field setBezeled:NO];
  [field setEditable:YES];
  [field setAllowsEditingTextAttributes:NO];
  [field setFocusRingType:NSFocusRingTypeNone];
  [[field cell] setLineBreakMode:NSLineBreakByTruncatingTail];
  [[field cell] setUsesSingleLineMode:YES];
  if (param) {
    CocoaFormatter_vTarn_rtas* formatter =
        [[CocoaFormatter_vTarn_rtas alloc] initWithFilter:mEntry->Filter()];
    [field setFormatter:formatter];
    [formatter release];
  }
  [field setStringValue:[NSString stringWithUTF8String:str ? str : ""]];
  [field setDelegate:self];
  [self addSubview:field];
  mTextFieldView = field;
  [[self window] makeKeyAndOrderFront:nil];
  [[self window] makeFirstResponder:field];
}

// Return, or the focus leaving the field: the text goes to the parameter (or the control).
- (void)controlTextDidEndEditing:(NSNotification*)note {
  if ([note object] != mTextFieldView || !mEntry->IsOpen()) return;
  mEntry->Edit([[mTextFieldView stringValue] UTF8String]);
  mEntry->End(mGraphics, true);
  [self endUserInput];
}

- (void)dropTextEntry {
  if (mGraphics) mEntry->End(mGraphics, false);
  [self endUserInput];
}

// The field leaves the view on the next turn of the run loop: some AppKits crash when a field is
// removed inside its own end-of-editing call.
- (void)endUserInput {
  if (!mTextFieldView || mEntry->IsOpen()) return;
  NSTextField* field = mTextFieldView;
  mTextFieldView = nil;
  [field setDelegate:nil];
  [field performSelector:@selector(removeFromSuperview) withObject:nil afterDelay:0];
  [field release];
  [[self window] makeFirstResponder:self];
  [self setNeedsDisplay:YES];
}

- (IPopupMenu*)createIPopupMenu:(IPopupMenu*)menu:(IRECT*)areaRect {
  if (!mGraphics) return nullptr;
  int x, y;
  MenuAnchor(*areaRect, &x, &y);
  const ViewRect at = mViewHost->ToView({x, y, x, y});
  return RunCocoaPopupMenu(self, menu, NSMakePoint(at.x, at.y));
}

@end
