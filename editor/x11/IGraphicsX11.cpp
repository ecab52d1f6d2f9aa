#include "editor/x11/IGraphicsX11.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdlib>

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

}  // namespace

struct IGraphicsX11::X11Window {
  X11Window(IGraphicsX11& editor, Display* display, Window parent)
      : editor(editor), display(display), parent(parent) {
    window = XCreateSimpleWindow(display, parent, 0, 0, editor.Width(), editor.Height(), 0, 0, 0);
    XSelectInput(display, window, kEvents);
    gc = XCreateGC(display, window, 0, nullptr);
    XMapWindow(display, window);
    XFlush(display);
  }
  ~X11Window() {
    XFreeGC(display, gc);
    XDestroyWindow(display, window);
    XCloseDisplay(display);
  }

  void Handle(XEvent& event) {
    switch (event.type) {
      case Expose: {
        const XExposeEvent& x = event.xexpose;
        IRECT r{x.x, x.y, x.x + x.width, x.y + x.height};
        editor.DrawScreen(&r);
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
    ViewHost& view = editor.mView;
    const ViewModifiers mods = Modifiers(e.state);
    const double x = ViewX(e.x), y = ViewY(e.y);
    if (e.button == Button4 || e.button == Button5) {
      if (press) view.ScrollWheel(x, y, mods, e.button == Button4 ? 1.0 : -1.0);
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
    if (m.state & Button1Mask) {
      view.MouseDragged(ViewX(m.x), ViewY(m.y), mods);
    } else if (m.state & Button3Mask) {
      view.RightMouseDragged(ViewX(m.x), ViewY(m.y), mods);
    } else {
      view.MouseMoved(ViewX(m.x), ViewY(m.y), mods);
    }
  }

  // Keys the editor does not take go to the host's window, so its shortcuts keep working.
  void OnKey(XKeyEvent& e) {
    char text[8] = {};
    KeySym sym = NoSymbol;
    const int n = XLookupString(&e, text, sizeof text - 1, &sym, nullptr);
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

  // X11 points in the view host's terms, so that the editor gets them exactly: the view host
  // keeps the macOS view's offsets of 2 and 3 pixels, which this window has no reason for.
  double ViewX(int x) const { return x + 2.0; }
  double ViewY(int y) const { return editor.Height() - y - 3.0; }

  IGraphicsX11& editor;
  Display* display;
  Window parent, window = 0;
  GC gc = nullptr;
  Time lastPressTime = 0;
  int lastPressX = -100, lastPressY = -100;
};

IGraphicsX11::IGraphicsX11(IPlugBase* plug, int w, int h, int fps, std::string imageFolder)
    : IGraphics(plug, w, h, fps), mImageFolder(std::move(imageFolder)), mPixels(w * h) {}

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
  mEntry.End(this, false);
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
  for (int y = r.T; y < r.B; ++y) {
    const int stored = buffer->isFlipped() ? buffer->getHeight() - 1 - y : y;
    const LICE_pixel* row = buffer->getBits() + stored * buffer->getRowSpan();
    for (int x = r.L; x < r.R; ++x) mPixels[y * Width() + x] = DisplayPixel(row[x]);
  }
  Display* display = mX->display;
  XImage* image =
      XCreateImage(display, DefaultVisual(display, DefaultScreen(display)), 24, ZPixmap, 0,
                   reinterpret_cast<char*>(mPixels.data()), Width(), Height(), 32, Width() * 4);
  XPutImage(display, mX->window, mX->gc, image, r.L, r.T, r.L, r.T, r.W(), r.H());
  image->data = nullptr;  // the pixels stay ours
  XDestroyImage(image);
  return true;
}

LICE_IBitmap* IGraphicsX11::OSLoadBitmap(int, const char* name) {
  if (mImageFolder.empty() || !name) return nullptr;
  return LICE_LoadPNG((mImageFolder + "/" + name).c_str(), nullptr);
}
