// The editor in a host's Carbon window (macOS only), UI thread only.
#include "editor/mac/IGraphicsCarbon.h"

#include <string>
#include <vector>

#include "editor/IControl.h"
#include "editor/IPopupMenu.h"
#include "editor/MenuLines.h"
#include "editor/mac/IGraphicsMac.h"

namespace {

const EventTypeSpec kControlEvents[] = {{kEventClassControl, kEventControlDraw}};
const EventTypeSpec kWindowEvents[] = {
    {kEventClassMouse, kEventMouseDown},       {kEventClassMouse, kEventMouseUp},
    {kEventClassMouse, kEventMouseDragged},    {kEventClassMouse, kEventMouseMoved},
    {kEventClassMouse, kEventMouseWheelMoved}, {kEventClassKeyboard, kEventRawKeyDown}};
const EventTypeSpec kTextEvents[] = {{kEventClassTextInput, kEventTextInputUnicodeForKeyEvent}};

ViewModifiers Modifiers(EventRef event) {
  UInt32 keys = 0;
  GetEventParameter(event, kEventParamKeyModifiers, typeUInt32, nullptr, sizeof keys, nullptr,
                    &keys);
  return {(keys & cmdKey) != 0, (keys & shiftKey) != 0, (keys & controlKey) != 0,
          (keys & optionKey) != 0};
}

std::u32string Characters(EventRef event, EventParamName name) {
  UniChar units[8];
  ByteCount size = 0;
  GetEventParameter(event, name, typeUnicodeText, nullptr, sizeof units, &size, units);
  return std::u32string(units, units + size / sizeof(UniChar));
}

CFStringRef String(const std::string& text) {
  return CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8);
}

// The lines of the menu, numbered across its submenus as the core lists them, as Carbon menus whose
// command IDs are the line numbers plus one.
MenuRef MakeMenu(IPopupMenu* menu, int* line, MenuID* nextID) {
  MenuRef made = nullptr;
  CreateNewMenu((*nextID)++, 0, &made);
  const std::vector<MenuLine> lines = FlattenMenu(*menu);
  for (int i = 0, at = 0; i < menu->GetNItems(); ++i, ++at) {
    while (lines[at].depth > 0) ++at;
    const MenuLine& shown = lines[at];
    const MenuCommand command = ++*line;
    CFStringRef title = String(shown.title);
    MenuItemIndex item = 0;
    AppendMenuItemTextWithCFString(made, title, shown.separator ? kMenuItemAttrSeparator : 0,
                                   command, &item);
    CFRelease(title);
    if (IPopupMenu* sub = menu->GetItem(i)->GetSubmenu()) {
      MenuRef submenu = MakeMenu(sub, line, nextID);
      SetMenuItemHierarchicalMenu(made, item, submenu);
      ReleaseMenu(submenu);
      continue;
    }
    SetMenuItemIndent(made, item, shown.indented ? 1 : 0);
    CheckMenuItem(made, item, shown.checked);
    if (shown.disabled) DisableMenuItem(made, item);
  }
  return made;
}

}  // namespace

// The pane sits in the content view of a composited window, else in the root control (or the
// given parent) at the offset.
IGraphicsCarbon::IGraphicsCarbon(IGraphicsMac* graphics, WindowRef window, ControlRef parentControl,
                                 short left, short top)
    : mGraphicsMac(graphics),
      mViewHost(graphics, &mEntry),
      mWindow(window),
      mLeft(left),
      mTop(top) {
  WindowAttributes attributes = 0;
  GetWindowAttributes(window, &attributes);
  mIsComposited = (attributes & kWindowCompositingAttribute) != 0;
  const Rect bounds = {top, left, static_cast<short>(top + graphics->Height()),
                       static_cast<short>(left + graphics->Width())};
  CreateUserPaneControl(window, &bounds, kControlSupportsEmbedding | kControlHandlesTracking,
                        &mView);
  if (mIsComposited) {
    HIViewRef content = nullptr;
    HIViewFindByID(HIViewGetRoot(window), kHIViewWindowContentID, &content);
    HIViewAddSubview(parentControl ? parentControl : content, mView);
  } else {
    ControlRef root = nullptr;
    GetRootControl(window, &root);
    EmbedControl(mView, parentControl ? parentControl : root);
  }
  InstallControlEventHandler(mView, NewEventHandlerUPP(MainEventHandler),
                             GetEventTypeCount(kControlEvents), kControlEvents, this,
                             &mControlHandler);
  InstallWindowEventHandler(window, NewEventHandlerUPP(MainEventHandler),
                            GetEventTypeCount(kWindowEvents), kWindowEvents, this, &mWindowHandler);
  const double interval = 1.0 / graphics->FPS();
  InstallEventLoopTimer(GetMainEventLoop(), interval, interval, NewEventLoopTimerUPP(TimerHandler),
                        this, &mTimer);
}

IGraphicsCarbon::~IGraphicsCarbon() {
  EndUserInput(false);
  if (mTimer) RemoveEventLoopTimer(mTimer);
  if (mControlHandler) RemoveEventHandler(mControlHandler);
  if (mWindowHandler) RemoveEventHandler(mWindowHandler);
  if (mView) DisposeControl(mView);
}

pascal void IGraphicsCarbon::TimerHandler(EventLoopTimerRef, void* self) {
  IGraphicsCarbon* host = static_cast<IGraphicsCarbon*>(self);
  IRECT r;
  if (!host->mGraphicsMac->IsDirty(&r)) return;
  if (host->mIsComposited) {
    const CGRect invalid = CGRectMake(r.L, r.T, r.R - r.L, r.B - r.T);
    HIViewSetNeedsDisplayInRect(host->mView, &invalid, true);
  } else {
    UpdateControls(host->mWindow, nullptr);
  }
}

pascal OSStatus IGraphicsCarbon::MainEventHandler(EventHandlerCallRef, EventRef event, void* self) {
  IGraphicsCarbon* host = static_cast<IGraphicsCarbon*>(self);
  switch (GetEventClass(event)) {
    case kEventClassControl:
      return host->OnDraw(event);
    case kEventClassMouse:
      return host->OnMouse(event, GetEventKind(event));
    case kEventClassKeyboard:
      return host->OnKey(event);
  }
  return eventNotHandledErr;
}

OSStatus IGraphicsCarbon::OnDraw(EventRef event) {
  IRECT r{0, 0, mGraphicsMac->Width(), mGraphicsMac->Height()};
  if (mIsComposited) {
    GetEventParameter(event, kEventParamCGContextRef, typeCGContextRef, nullptr, sizeof mCGC,
                      nullptr, &mCGC);
    mGraphicsMac->Draw(&r);
  } else {
    QDBeginCGContext(GetWindowPort(mWindow), &mCGC);
    CGContextTranslateCTM(mCGC, mLeft, 0);  // the pane's place in the window
    mGraphicsMac->Draw(&r);
    QDEndCGContext(GetWindowPort(mWindow), &mCGC);
  }
  mCGC = nullptr;
  return noErr;
}

// Mouse positions come top down in the window; the core takes them in the view's terms.
OSStatus IGraphicsCarbon::OnMouse(EventRef event, UInt32 kind) {
  HIPoint point;
  GetEventParameter(event, kEventParamWindowMouseLocation, typeHIPoint, nullptr, sizeof point,
                    nullptr, &point);
  const int x = static_cast<int>(point.x) - mLeft, y = static_cast<int>(point.y) - mTop;
  if (x < 0 || y < 0 || x >= mGraphicsMac->Width() || y >= mGraphicsMac->Height())
    return eventNotHandledErr;
  EventMouseButton button = kEventMouseButtonPrimary;
  GetEventParameter(event, kEventParamMouseButton, typeMouseButton, nullptr, sizeof button, nullptr,
                    &button);
  const bool right = button == kEventMouseButtonSecondary;
  const ViewModifiers mods = Modifiers(event);
  double px, py;
  mViewHost.FromTopDown(x, y, &px, &py);
  switch (kind) {
    case kEventMouseDown: {
      if (mEntry.IsOpen()) EndUserInput(true);  // the focus leaves the field
      UInt32 clicks = 1;
      GetEventParameter(event, kEventParamClickCount, typeUInt32, nullptr, sizeof clicks, nullptr,
                        &clicks);
      if (right) return mViewHost.RightMouseDown(px, py, mods), noErr;
      return mViewHost.MouseDown(px, py, mods, static_cast<int>(clicks)) ? noErr
                                                                         : eventNotHandledErr;
    }
    case kEventMouseUp:
      right ? mViewHost.RightMouseUp(px, py, mods) : mViewHost.MouseUp(px, py, mods);
      return noErr;
    case kEventMouseDragged:
      right ? mViewHost.RightMouseDragged(px, py, mods) : mViewHost.MouseDragged(px, py, mods);
      return noErr;
    case kEventMouseMoved:
      mViewHost.MouseMoved(px, py, mods);
      return noErr;
    case kEventMouseWheelMoved: {
      SInt32 delta = 0;
      GetEventParameter(event, kEventParamMouseWheelDelta, typeSInt32, nullptr, sizeof delta,
                        nullptr, &delta);
      mViewHost.ScrollWheel(px, py, mods, delta);
      EndUserInput(false);
      return noErr;
    }
  }
  return eventNotHandledErr;
}

// A key the editor does not take is left to the host.
OSStatus IGraphicsCarbon::OnKey(EventRef event) {
  if (mEntry.IsOpen()) return eventNotHandledErr;  // the field's own handler has it
  return mViewHost.KeyDown(Characters(event, kEventParamKeyUnicodes)) ? noErr : eventNotHandledErr;
}

IPopupMenu* IGraphicsCarbon::CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) {
  int line = 0, x, y;
  MenuID nextID = 1000;
  MenuRef shown = MakeMenu(menu, &line, &nextID);
  MenuAnchor(*areaRect, &x, &y);
  Rect bounds;
  GetWindowBounds(mWindow, kWindowContentRgn, &bounds);
  const long chosen = PopUpMenuSelect(shown, bounds.top + mTop + y, bounds.left + mLeft + x, 0);
  MenuCommand command = 0;
  if (LoWord(chosen)) GetMenuItemCommandID(GetMenuRef(HiWord(chosen)), LoWord(chosen), &command);
  ReleaseMenu(shown);
  return command ? ChooseLine(menu, static_cast<int>(command) - 1) : nullptr;
}

void IGraphicsCarbon::CreateTextEntry(IControl* control, IText* text, IRECT* textRect,
                                      const char* str, IParam* param) {
  if (!mEntry.Open(control, param, *textRect, str)) return;
  const Rect bounds = {
      static_cast<short>(mTop + textRect->T), static_cast<short>(mLeft + textRect->L),
      static_cast<short>(mTop + textRect->B), static_cast<short>(mLeft + textRect->R)};
  ControlFontStyleRec style = {};
  style.flags = kControlUseSizeMask | kControlUseJustMask | kControlUseForeColorMask |
                kControlUseBackColorMask;
  style.size = TextEntrySession::FontSize(*text);
  style.just = text->mAlign == 1 ? teCenter : text->mAlign == 2 ? teFlushRight : teFlushLeft;
  const IColor& fg = text->mTextEntryFGColor;
  const IColor& bg = text->mTextEntryBGColor;
  style.foreColor = {static_cast<unsigned short>(fg.R * 257),
                     static_cast<unsigned short>(fg.G * 257),
                     static_cast<unsigned short>(fg.B * 257)};
  style.backColor = {static_cast<unsigned short>(bg.R * 257),
                     static_cast<unsigned short>(bg.G * 257),
                     static_cast<unsigned short>(bg.B * 257)};
  CFStringRef initial = String(mEntry.Text());
  CreateEditUnicodeTextControl(mWindow, &bounds, initial, false, &style, &mTextField);
  CFRelease(initial);
  Boolean singleLine = true;
  SetControlData(mTextField, kControlEditTextPart, kControlEditTextSingleLineTag, sizeof singleLine,
                 &singleLine);
  InstallControlEventHandler(mTextField, NewEventHandlerUPP(TextEntryHandler),
                             GetEventTypeCount(kTextEvents), kTextEvents, this, &mTextHandler);
  SetKeyboardFocus(mWindow, mTextField, kControlFocusNextPart);
  SelectWindow(mWindow);
}

// Return ends the field; any other key is offered to the core's filter, replacing the selection,
// and refused when the filter refuses the text it would make.
pascal OSStatus IGraphicsCarbon::TextEntryHandler(EventHandlerCallRef, EventRef event, void* self) {
  IGraphicsCarbon* host = static_cast<IGraphicsCarbon*>(self);
  EventRef key = nullptr;
  GetEventParameter(event, kEventParamTextInputSendKeyboardEvent, typeEventRef, nullptr, sizeof key,
                    nullptr, &key);
  const std::u32string typed = Characters(key, kEventParamKeyUnicodes);
  if (typed == U"\r" || typed == U"\x03") return host->EndUserInput(true), noErr;
  if (typed.size() != 1 || typed[0] < 0x20 || typed[0] > 0x7e) return eventNotHandledErr;
  ControlEditTextSelectionRec selection = {0, 0};
  GetControlData(host->mTextField, kControlEditTextPart, kControlEditTextSelectionTag,
                 sizeof selection, &selection, nullptr);
  std::string edited = host->FieldText();
  edited.replace(selection.selStart, selection.selEnd - selection.selStart, 1,
                 static_cast<char>(typed[0]));
  return host->mEntry.Edit(edited) ? eventNotHandledErr : noErr;  // noErr swallows the key
}

std::string IGraphicsCarbon::FieldText() const {
  CFStringRef text = nullptr;
  GetControlData(mTextField, kControlEditTextPart, kControlEditTextCFStringTag, sizeof text, &text,
                 nullptr);
  char utf8[32] = {};  // at most 31 bytes
  if (text) CFStringGetCString(text, utf8, sizeof utf8, kCFStringEncodingUTF8), CFRelease(text);
  return utf8;
}

void IGraphicsCarbon::EndUserInput(bool commit) {
  if (!mTextField) return;
  if (commit) mEntry.Edit(FieldText());
  mEntry.End(mGraphicsMac, commit);
  if (mTextHandler) RemoveEventHandler(mTextHandler), mTextHandler = nullptr;
  HideControl(mTextField);
  DisposeControl(mTextField);
  mTextField = nullptr;
  if (mIsComposited) {
    HIViewSetNeedsDisplay(mView, true);
  } else {
    mGraphicsMac->SetAllControlsDirty();
    Draw1Control(mView);
  }
  SetThemeCursor(kThemeArrowCursor);
  SetUserFocusWindow(kUserFocusAuto);
}
