// The editor's Cocoa view, UI thread only (Objective-C++ includers only).
#pragma once

#import <Cocoa/Cocoa.h>

class IControl;
class IGraphics;
class IParam;
class IPopupMenu;
class TextEntrySession;
class ViewHost;
struct IRECT;
struct IText;

// The editor in an NSView: a 25-per-second timer invalidates what is dirty, drawRect: draws it,
// and mouse, wheel and key events go through the view-host core. It holds at most one value
// field. The timer retains the view until killTimer.
@interface IGraphicsCocoa_vTarn_rtas : NSView <NSTextFieldDelegate> {
  IGraphics* mGraphics;  // null once detached
  ViewHost* mViewHost;
  TextEntrySession* mEntry;
  NSTimer* mTimer;
  NSTextField* mTextFieldView;
  NSEvent* mHandedBack;  // a key given back to the host, in case it comes round to this view
}
- (id)initWithIGraphics:(IGraphics*)pGraphics;
- (IGraphics*)graphics;
// Detaches from the editor, dropping an open field.
- (void)removeFromIGraphics;
- (void)killTimer;
- (void)onTimer:(NSTimer*)timer;
- (void)createTextEntry:(IControl*)
                control:(IParam*)param
                       :(IText*)text
                       :(const char*)str
                       :(IRECT*)textRect;
- (IPopupMenu*)createIPopupMenu:(IPopupMenu*)menu:(IRECT*)areaRect;
// Ends the field without applying it, then removes it.
- (void)dropTextEntry;
// Removes the field, gives the focus back to the view and repaints it.
- (void)endUserInput;
@end
