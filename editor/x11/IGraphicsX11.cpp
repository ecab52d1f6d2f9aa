#include "editor/x11/IGraphicsX11.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/keysym.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "editor/IPopupMenu.h"
#include "editor/MenuLines.h"
#include "lice/LICE_CachedFont.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"

namespace {

constexpr long kEvents = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                         KeyPressMask | StructureNotifyMask;
constexpr Time kDoubleClickMs = 400;
constexpr int kDoubleClickSlop = 4;  // pixels the second press may be away from the first

ViewModifiers Modifiers(unsigned state) {
  return {(state & Mod4Mask) != 0, (state & ShiftMask) != 0, (state & ControlMask) != 0,
          (state & Mod1Mask) != 0};
}

// A pixel as a 24-bit TrueColor display takes it: 0x00RRGGBB.
uint32_t DisplayPixel(LICE_pixel p) {
  return LICE_GETR(p) << 16 | LICE_GETG(p) << 8 | LICE_GETB(p);
}

LICE_pixel Pixel(const IColor& c) { return LICE_RGBA(c.R, c.G, c.B, c.A); }

// The pixels of r in a bitmap, in the display's layout, into rows whose first pixel (x = r.L)
// rowAt(y) gives.
template <class RowAt>
void Convert(LICE_IBitmap* bitmap, const IRECT& r, RowAt rowAt) {
  for (int y = r.T; y < r.B; ++y) {
    const int stored = bitmap->isFlipped() ? bitmap->getHeight() - 1 - y : y;
    const LICE_pixel* from = bitmap->getBits() + stored * bitmap->getRowSpan();
    uint32_t* to = rowAt(y);
    for (int x = r.L; x < r.R; ++x) to[x - r.L] = DisplayPixel(from[x]);
  }
}

// X errors go to a process-wide handler whose default ends the process. Attaching shared memory
// fails with one on a display of another machine, so that call runs under a handler that only
// notes it.
thread_local bool tShmRefused = false;
int NoteShmError(Display*, XErrorEvent*) { return tShmRefused = true, 0; }

// The window's image in memory shared with the X server, so that a frame reaches it without
// going through the connection; none where the server cannot share memory with us.
class SharedImage {
 public:
  static std::unique_ptr<SharedImage> Make(Display* display, int w, int h) {
    if (!XShmQueryExtension(display)) return nullptr;
    std::unique_ptr<SharedImage> shared(new SharedImage(display));
    shared->mInfo.shmid = shmget(IPC_PRIVATE, static_cast<size_t>(w) * h * 4, IPC_CREAT | 0600);
    if (shared->mInfo.shmid < 0) return nullptr;
    shared->mInfo.shmaddr = static_cast<char*>(shmat(shared->mInfo.shmid, nullptr, 0));
    shmctl(shared->mInfo.shmid, IPC_RMID, nullptr);  // gone once both sides let go
    if (shared->mInfo.shmaddr == reinterpret_cast<char*>(-1)) return nullptr;
    shared->mImage = XShmCreateImage(display, DefaultVisual(display, DefaultScreen(display)), 24,
                                     ZPixmap, shared->mInfo.shmaddr, &shared->mInfo, w, h);
    if (!shared->mImage) return nullptr;
    tShmRefused = false;
    XErrorHandler previous = XSetErrorHandler(NoteShmError);
    shared->mAttached = XShmAttach(display, &shared->mInfo);
    XSync(display, False);
    XSetErrorHandler(previous);
    return shared->mAttached && !tShmRefused ? std::move(shared) : nullptr;
  }
  ~SharedImage() {
    if (mAttached) XShmDetach(mDisplay, &mInfo), XSync(mDisplay, False);
    if (mImage) mImage->data = nullptr, XDestroyImage(mImage);
    if (mInfo.shmaddr && mInfo.shmaddr != reinterpret_cast<char*>(-1)) shmdt(mInfo.shmaddr);
  }
  uint32_t* Row(int y) {
    return reinterpret_cast<uint32_t*>(mImage->data + y * mImage->bytes_per_line);
  }
  // Waits for the server to have read it, so that the next frame may write it again.
  void Put(Window window, GC gc, const IRECT& r) {
    XShmPutImage(mDisplay, window, gc, mImage, r.L, r.T, r.L, r.T, r.W(), r.H(), False);
    XSync(mDisplay, False);
  }

 private:
  explicit SharedImage(Display* display) : mDisplay(display) {}
  Display* mDisplay;
  XShmSegmentInfo mInfo{};
  XImage* mImage = nullptr;
  bool mAttached = false;
};

}  // namespace

// A menu's window: its lines, where each starts, which is lit, and its drawing.
struct MenuWindow {
  MenuWindow(Display* display, GC gc, std::vector<MenuLine> lines, int x, int y)
      : display(display),
        gc(gc),
        lines(std::move(lines)),
        font(LICE_CachedFont::Get("Monaco", 12)) {
    int width = 60, top = IGraphicsX11::kMenuMargin;
    for (const MenuLine& line : this->lines) {
      tops.push_back(top);
      top += line.separator ? IGraphicsX11::kMenuSeparator : IGraphicsX11::kMenuLine;
      if (font) width = std::max(width, Indent(line) + font->Measure(line.title.c_str()).w + 12);
    }
    size = {width, top + IGraphicsX11::kMenuMargin};
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.event_mask =
        ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask | KeyPressMask;
    window =
        XCreateWindow(display, DefaultRootWindow(display), x, y, size.w, size.h, 1, CopyFromParent,
                      InputOutput, CopyFromParent, CWOverrideRedirect | CWEventMask, &attributes);
    XMapRaised(display, window);
    XGrabPointer(display, window, True, ButtonPressMask | ButtonReleaseMask | PointerMotionMask,
                 GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
    XGrabKeyboard(display, window, True, GrabModeAsync, GrabModeAsync, CurrentTime);
  }
  ~MenuWindow() {
    XUngrabKeyboard(display, CurrentTime);
    XUngrabPointer(display, CurrentTime);
    XDestroyWindow(display, window);
    XFlush(display);
  }
  // The check column, then 14 pixels a level, one more level for titles.
  static int Indent(const MenuLine& line) { return 18 + 14 * (line.depth + line.indented); }
  bool Selectable(int i) const { return i >= 0 && lines[i].Selectable(); }
  int LineAt(int x, int y) const {
    if (x < 0 || x >= size.w) return -1;
    for (int i = static_cast<int>(lines.size()) - 1; i >= 0; --i)
      if (y >= tops[i]) return y < size.h - IGraphicsX11::kMenuMargin ? i : -1;
    return -1;
  }
  template <class PutPixels>
  void Draw(PutPixels put) {
    LICE_MemBitmap bitmap(size.w, size.h);
    LICE_Clear(&bitmap, LICE_RGBA(246, 244, 238, 255));
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
      const MenuLine& line = lines[i];
      const int top = tops[i];
      if (line.separator) {
        LICE_FillRect(&bitmap, 6, top + 3, size.w - 12, 1, LICE_RGBA(180, 176, 168, 255), 1.0f, 0);
        continue;
      }
      if (i == lit && Selectable(i))
        LICE_FillRect(&bitmap, 0, top, size.w, IGraphicsX11::kMenuLine, LICE_RGBA(60, 90, 150, 255),
                      1.0f, 0);
      const LICE_pixel ink = line.disabled ? LICE_RGBA(150, 150, 150, 255)
                             : i == lit    ? LICE_RGBA(255, 255, 255, 255)
                                           : LICE_RGBA(20, 20, 20, 255);
      const RECT box{Indent(line), top, size.w, top + IGraphicsX11::kMenuLine};
      const RECT all{0, 0, size.w, size.h};
      if (!font) continue;
      font->Draw(&bitmap, (line.title + (line.submenu ? "  \xE2\x96\xB8" : "")).c_str(), box, all,
                 0, ink);
      if (line.checked)
        font->Draw(&bitmap, "\xE2\x9C\x93", {4, top, 18, top + IGraphicsX11::kMenuLine}, all, 0,
                   ink);
    }
    put(window, &bitmap, IRECT{0, 0, size.w, size.h});
  }

  Display* display;
  GC gc;
  std::vector<MenuLine> lines;
  std::vector<int> tops;
  LICE_CachedFont* font;
  struct {
    int w, h;
  } size;
  Window window;
  int lit = -1;
};

struct IGraphicsX11::X11Window {
  X11Window(IGraphicsX11& editor, Display* display, Window parent)
      : editor(editor), display(display), parent(parent) {
    window = XCreateSimpleWindow(display, parent, 0, 0, editor.Width(), editor.Height(), 0, 0, 0);
    XSelectInput(display, window, kEvents);
    gc = XCreateGC(display, window, 0, nullptr);
    shared = SharedImage::Make(display, editor.Width(), editor.Height());
    XMapWindow(display, window);
    XSync(display,
          False);  // the window is there when OpenWindow returns, whatever the host does next
  }
  // A host may destroy its window, and ours with it, before closing the editor: destroying ours
  // again would be an X error, which ends the whole host process.
  ~X11Window() {
    shared.reset();
    XSync(display, False);
    XEvent gone;
    if (XCheckTypedWindowEvent(display, window, DestroyNotify, &gone)) window = 0;
    XFreeGC(display, gc);
    if (window) XDestroyWindow(display, window);
    XCloseDisplay(display);
  }

  // The pixels of r in a bitmap, put at (x, y) of a window.
  void Put(Window target, LICE_IBitmap* bitmap, const IRECT& r, int x, int y) {
    std::vector<uint32_t> pixels(r.W() * r.H());
    Convert(bitmap, r, [&](int row) { return pixels.data() + (row - r.T) * r.W(); });
    XImage* image =
        XCreateImage(display, DefaultVisual(display, DefaultScreen(display)), 24, ZPixmap, 0,
                     reinterpret_cast<char*>(pixels.data()), r.W(), r.H(), 32, r.W() * 4);
    XPutImage(display, target, gc, image, 0, 0, x, y, r.W(), r.H());
    image->data = nullptr;  // the pixels are the vector's
    XDestroyImage(image);
  }

  void OpenField(const IRECT& r, const IText& style) {
    field = XCreateSimpleWindow(display, window, r.L, r.T, r.W(), r.H(), 0, 0, 0);
    XSelectInput(display, field, ExposureMask);
    XMapWindow(display, field);
    fieldStyle = style, fieldRect = r;
  }

  // The field's text in its colours, its font a tenth smaller than the control's.
  void DrawField() {
    const int w = fieldRect.W(), h = fieldRect.H();
    LICE_MemBitmap bitmap(w, h);
    LICE_Clear(&bitmap, Pixel(fieldStyle.mTextEntryBGColor));
    const RECT box{0, 0, w, h};
    if (LICE_CachedFont* font =
            LICE_CachedFont::Get(fieldStyle.mFont, TextEntrySession::FontSize(fieldStyle)))
      font->Draw(&bitmap, editor.mEntry.Text().c_str(), box, box, fieldStyle.mAlign,
                 Pixel(fieldStyle.mTextEntryFGColor));
    Put(field, &bitmap, {0, 0, w, h}, 0, 0);
  }

  // Ends the field if it is open, and takes its window away once the session has ended, however
  // it ended; the editor then repaints where it was.
  void EndField(bool apply) {
    editor.mEntry.End(&editor, apply);
    if (!field || editor.mEntry.IsOpen()) return;
    XDestroyWindow(display, field);
    field = 0;
    editor.SetAllControlsDirty();
  }

  bool FieldKey(KeySym sym, int n, const char* text) {
    TextEntrySession& entry = editor.mEntry;
    if (sym == XK_Return || sym == XK_KP_Enter || sym == XK_Escape) {
      EndField(sym != XK_Escape);
      return true;
    }
    if (sym == XK_BackSpace) {
      entry.Type('\b');
    } else if (n == 1 && static_cast<unsigned char>(text[0]) >= 0x20) {
      entry.Type(text[0]);
    }
    DrawField();
    return true;
  }

  void Handle(XEvent& event) {
    switch (event.type) {
      case Expose: {
        const XExposeEvent& x = event.xexpose;
        IRECT r{x.x, x.y, x.x + x.width, x.y + x.height};
        x.window == field ? DrawField() : void(editor.DrawScreen(&r));
        break;
      }
      case ButtonPress:
      case ButtonRelease:
        OnButton(event.xbutton, event.type == ButtonPress);
        break;
      case MotionNotify:
        OnMotion(event.xmotion);
        break;
      case KeyPress:
        OnKey(event.xkey);
        break;
    }
  }

  // Buttons 4 and 5 are the wheel, a step up or down; a second left press soon and near enough
  // to the first is a double click.
  void OnButton(const XButtonEvent& e, bool press) {
    if (press && e.button != Button4 && e.button != Button5) EndField(true);  // focus leaves
    ViewHost& view = editor.mView;
    const ViewModifiers mods = Modifiers(e.state);
    double x, y;
    view.FromTopDown(e.x, e.y, &x, &y);
    if (e.button == Button4 || e.button == Button5) {
      if (press) view.ScrollWheel(x, y, mods, e.button == Button4 ? 1.0 : -1.0);
      EndField(false);  // the wheel has ended it; its window goes too
    } else if (e.button == Button1 && press) {
      const bool again = e.time - lastPressTime <= kDoubleClickMs &&
                         std::abs(e.x - lastPressX) <= kDoubleClickSlop &&
                         std::abs(e.y - lastPressY) <= kDoubleClickSlop;
      lastPressTime = again ? 0 : e.time, lastPressX = e.x, lastPressY = e.y;
      view.MouseDown(x, y, mods, again ? 2 : 1);
    } else if (e.button == Button1) {
      view.MouseUp(x, y, mods);
    } else if (e.button == Button3) {
      press ? view.RightMouseDown(x, y, mods) : view.RightMouseUp(x, y, mods);
    }
  }

  void OnMotion(const XMotionEvent& m) {
    ViewHost& view = editor.mView;
    const ViewModifiers mods = Modifiers(m.state);
    double x, y;
    view.FromTopDown(m.x, m.y, &x, &y);
    if (m.state & Button1Mask) {
      view.MouseDragged(x, y, mods);
    } else if (m.state & Button3Mask) {
      view.RightMouseDragged(x, y, mods);
    } else {
      view.MouseMoved(x, y, mods);
    }
  }

  // Keys the editor does not take go to the host's window, so its shortcuts keep working.
  void OnKey(XKeyEvent& e) {
    char text[8] = {};
    KeySym sym = NoSymbol;
    const int n = XLookupString(&e, text, sizeof text - 1, &sym, nullptr);
    if (field && FieldKey(sym, n, text)) return;
    std::u32string characters;
    if (sym >= XK_Left && sym <= XK_Down) {
      static const char32_t kArrows[] = {kLeftArrowCharacter, kUpArrowCharacter,
                                         kRightArrowCharacter, kDownArrowCharacter};
      characters = kArrows[sym - XK_Left];
    } else if (n == 1) {
      characters = static_cast<unsigned char>(text[0]);
    }
    if (editor.mView.KeyDown(characters)) return;
    e.window = parent;
    XSendEvent(display, parent, True, KeyPressMask, reinterpret_cast<XEvent*>(&e));
  }

  IGraphicsX11& editor;
  Display* display;
  Window parent, window = 0;
  GC gc = nullptr;
  std::unique_ptr<SharedImage> shared;  // null: frames go through the connection
  Window field = 0;
  IText fieldStyle;
  IRECT fieldRect;
  Time lastPressTime = 0;
  int lastPressX = -100, lastPressY = -100;
};

IGraphicsX11::IGraphicsX11(IPlugBase* plug, int w, int h, int fps, std::string imageFolder)
    : IGraphics(plug, w, h, fps), mImageFolder(std::move(imageFolder)) {}

IGraphicsX11::~IGraphicsX11() { CloseWindow(); }

void* IGraphicsX11::OpenWindow(void* parent) {
  CloseWindow();
  Display* display = XOpenDisplay(nullptr);
  if (!display) return nullptr;
  const Window parentWindow =
      parent ? reinterpret_cast<Window>(parent) : DefaultRootWindow(display);
  mX = std::make_unique<X11Window>(*this, display, parentWindow);
  if (!GetDrawBitmap()) PrepDraw();
  SetAllControlsDirty();  // the first frame paints everything
  mNextFrame = std::chrono::steady_clock::now();
  return GetWindow();
}

void IGraphicsX11::CloseWindow() {
  if (!mX) return;
  mX->EndField(false);
  mX.reset();
}

void* IGraphicsX11::GetWindow() { return mX ? reinterpret_cast<void*>(mX->window) : nullptr; }

void IGraphicsX11::Idle() {
  if (!mX) return;
  while (XPending(mX->display)) {
    XEvent event;
    XNextEvent(mX->display, &event);
    mX->Handle(event);
  }
  const auto now = std::chrono::steady_clock::now();
  if (now < mNextFrame) return;
  mNextFrame = now + std::chrono::microseconds(1000000 / FPS());
  Frame();
}

void IGraphicsX11::Frame() {
  if (!mX) return;
  IRECT dirty;
  if (IsDirty(&dirty)) Draw(&dirty);
  XFlush(mX->display);
}

bool IGraphicsX11::DrawScreen(IRECT* rect) {
  LICE_SysBitmap* buffer = GetDrawBitmap();
  if (!mX || !buffer) return false;
  const IRECT r{std::max(rect->L, 0), std::max(rect->T, 0), std::min(rect->R, Width()),
                std::min(rect->B, Height())};
  if (r.R <= r.L || r.B <= r.T) return true;
  if (!mX->shared) return mX->Put(mX->window, buffer, r, r.L, r.T), true;
  Convert(buffer, r, [&](int y) { return mX->shared->Row(y) + r.L; });
  mX->shared->Put(mX->window, mX->gc, r);
  return true;
}

IPopupMenu* IGraphicsX11::CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) {
  ReleaseMouseCapture();  // the mouse up that ends the right click must not reach the control
  if (!mX || !menu || !areaRect) return nullptr;
  int anchorX, anchorY, x, y;
  Window child;
  MenuAnchor(*areaRect, &anchorX, &anchorY);
  XTranslateCoordinates(mX->display, mX->window, DefaultRootWindow(mX->display), anchorX, anchorY,
                        &x, &y, &child);
  MenuWindow shown(mX->display, mX->gc, FlattenMenu(*menu), x, y);
  const auto put = [&](Window w, LICE_IBitmap* b, const IRECT& r) { mX->Put(w, b, r, 0, 0); };
  int chosen = -1;
  bool entered = false;  // the release that ends the opening click is not a choice
  for (bool open = true; open;) {
    XEvent e;
    XNextEvent(mX->display, &e);
    if (e.xany.window != shown.window) continue;
    if (e.type == Expose) {
      shown.Draw(put);
    } else if (e.type == MotionNotify) {
      entered |= shown.LineAt(e.xmotion.x, e.xmotion.y) >= 0;
      if (const int line = shown.LineAt(e.xmotion.x, e.xmotion.y); line != shown.lit)
        shown.lit = line, shown.Draw(put);
    } else if (e.type == ButtonPress || (e.type == ButtonRelease && entered)) {
      const int line = shown.LineAt(e.xbutton.x, e.xbutton.y);
      if (shown.Selectable(line)) chosen = line, open = false;
      if (line < 0 && e.type == ButtonPress) open = false;  // a click outside dismisses
    } else if (e.type == KeyPress) {
      const KeySym sym = XLookupKeysym(&e.xkey, 0);
      if (sym == XK_Escape) open = false;
      if (sym == XK_Return && shown.Selectable(shown.lit)) chosen = shown.lit, open = false;
    }
  }
  return ChooseLine(menu, chosen);
}

void IGraphicsX11::ForceEndUserEdit() {
  if (mX) mX->EndField(false);
}

void IGraphicsX11::CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                                   IParam* param) {
  if (!mX || !mEntry.Open(control, param, *textRect, str)) return;
  mX->OpenField(*textRect, *text);
  mX->DrawField();
}

LICE_IBitmap* IGraphicsX11::OSLoadBitmap(int, const char* name) {
  if (mImageFolder.empty() || !name) return nullptr;
  return LICE_LoadPNG((mImageFolder + "/" + name).c_str(), nullptr);
}
