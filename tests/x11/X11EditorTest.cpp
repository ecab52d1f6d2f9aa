// The X11 back end on a private Xvfb display: Tarn's panel opens in a window of a host and answers
// the mouse, the wheel and keys; the LV2 UI embeds it. (What it shows, and its menu, in a real
// host: host.sh's editor test.)
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "dsp/Tarn.h"
#include "editor/x11/IGraphicsX11.h"
#include "host/lv2/Lv2Ui.h"

// Last: Xlib's macros (None, Bool, Status) would clash with the names above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace {

IGraphics* MakeX11(IPlugBase* plug, int w, int h, int fps, void*) {
  return new IGraphicsX11(plug, w, h, fps, TARN_SOURCE_DIR);
}

std::vector<Window> Children(Display* display, Window window) {
  Window root, up, *children = nullptr;
  unsigned n = 0;
  XQueryTree(display, window, &root, &up, &children, &n);
  std::vector<Window> list(children, children + n);
  return XFree(children), list;
}

// A host's window on a connection of its own, which listens for keys handed back, and the
// editor's window in it.
struct HostWindow {
  HostWindow() : display(XOpenDisplay(nullptr)) {
    if (!display) throw std::runtime_error("no X display: run this under with-xvfb.sh");
    parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 400, 500, 0, 0, 0);
    XSelectInput(display, parent, KeyPressMask);
    XMapWindow(display, parent), XSync(display, False);
  }
  ~HostWindow() { XDestroyWindow(display, parent), XCloseDisplay(display); }
  // An event for the editor's window as the server delivers it, at a time in milliseconds.
  void Send(int type, int x, int y, unsigned detail, unsigned state, Time time) {
    XEvent e{};
    e.type = type;
    XButtonEvent& b = e.xbutton;  // buttons, motion and keys share these fields' places
    b.display = display, b.window = window, b.root = DefaultRootWindow(display);
    b.x = x, b.y = y, b.state = state, b.time = time, b.same_screen = True, b.button = detail;
    if (type == KeyPress) e.xkey.keycode = detail;
    XSendEvent(display, window, False, 0, &e), XFlush(display);
  }
  Display* display;
  Window parent, window = 0;
};

// Tarn's editor in the host's window.
struct Host : HostWindow {
  Host() {
    window = reinterpret_cast<Window>(gui().OpenWindow(reinterpret_cast<void*>(parent)));
    Frames(6);
  }
  ~Host() { gui().CloseWindow(); }
  IGraphicsX11& gui() { return *static_cast<IGraphicsX11*>(tarn.GetGUI()); }
  void Frames(int n) {
    for (int i = 0; i < n; ++i) gui().Idle(), usleep(45000);
  }
  void Click(int x, int y, unsigned button, Time time) {
    Send(ButtonPress, x, y, button, 0, time), Send(ButtonRelease, x, y, button, 0, time + 50);
  }
  void Type(std::initializer_list<KeySym> keys) {
    for (KeySym key : keys) Send(KeyPress, 84, 168, XKeysymToKeycode(display, key), 0, 0);
    Frames(2);
  }
  size_t Fields() { return Children(display, window).size(); }
  Tarn tarn{IPlugInstanceInfo{MakeX11}};
};

// What an LV2 host hears from the UI: writes as "port=value", touches as "+port" and "-port".
struct UiHostLog {
  std::string said;
  int w = 0, h = 0;
  static void Write(void* log, uint32_t port, uint32_t size, uint32_t protocol, const void* value) {
    if (size == sizeof(float) && protocol == 0)
      static_cast<UiHostLog*>(log)->said +=
          std::to_string(port) + "=" + std::to_string(*static_cast<const float*>(value)) + " ";
  }
  static void Touch(void* log, uint32_t port, bool grabbed) {
    static_cast<UiHostLog*>(log)->said += (grabbed ? "+" : "-") + std::to_string(port) + " ";
  }
  static int Resize(void* log, int w, int h) {
    return static_cast<UiHostLog*>(log)->w = w, static_cast<UiHostLog*>(log)->h = h, 0;
  }
};

}  // namespace

// A drag of 19 pixels up on "Drive" turns it by 19/400; a second press within 400 ms is a double
// click, which restores the value the session opened with; the wheel moves it 0.01 a notch; a
// key the editor does not take reaches the host's window.
TEST(X11Editor, MouseWheelAndKeysReachTheControls) {
  Host host;
  IParam* drive = host.tarn.GetParam(kDrive);
  host.Send(ButtonPress, 84, 168, Button1, 0, 1000);
  host.Send(MotionNotify, 84, 149, 0, Button1Mask, 1010);
  host.Send(ButtonRelease, 84, 149, Button1, Button1Mask, 1020);
  host.Frames(2);
  EXPECT_DOUBLE_EQ(drive->GetNormalized(), 19.0 / 400);
  host.Click(84, 168, Button1, 5000), host.Click(85, 166, Button1, 5300), host.Frames(2);
  EXPECT_EQ(drive->GetNormalized(), 0.0);
  host.Send(ButtonPress, 84, 168, Button4, 0, 9000), host.Frames(2);
  EXPECT_DOUBLE_EQ(drive->GetNormalized(), 0.01);
  host.Send(KeyPress, 84, 168, XKeysymToKeycode(host.display, XK_q), 0, 9100), host.Frames(2);
  XEvent handedBack;
  XSync(host.display, False);
  EXPECT_TRUE(XCheckTypedWindowEvent(host.display, host.parent, KeyPress, &handedBack));
}

// A right press on a knob opens a field over it; typed keys edit it and Return applies the value,
// closing the field; Escape drops what was typed.
TEST(X11Editor, TheValueFieldTakesTypedValues) {
  Host host;
  host.Click(84, 168, Button3, 100), host.Frames(2);
  EXPECT_EQ(host.Fields(), 1u);
  host.Type({XK_BackSpace, XK_BackSpace, XK_BackSpace, XK_3, XK_period, XK_5, XK_a, XK_Return});
  EXPECT_EQ(std::pair(host.tarn.GetParam(kDrive)->Value(), host.Fields()), std::pair(3.5, 0ul));
  host.Click(84, 168, Button3, 900), host.Frames(2), host.Type({XK_9, XK_Escape});
  EXPECT_EQ(std::pair(host.tarn.GetParam(kDrive)->Value(), host.Fields()), std::pair(3.5, 0ul));
}

// A host that destroys its window before closing the editor (which goes with it) must not see
// the editor destroy its window again: an X error would end the host's process.
TEST(X11Editor, ClosesAfterTheHostDestroyedItsWindow) {
  Display* display = XOpenDisplay(nullptr);
  const Window parent =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 400, 500, 0, 0, 0);
  XSync(display, False);
  Tarn tarn{IPlugInstanceInfo{MakeX11}};
  tarn.GetGUI()->OpenWindow(reinterpret_cast<void*>(parent));
  XDestroyWindow(display, parent), XSync(display, False);
  tarn.GetGUI()->CloseWindow();
  EXPECT_FALSE(tarn.GetGUI()->WindowIsOpen());
  XCloseDisplay(display);
}

// The LV2 UI embeds the editor in the host's window at its size and takes the values the host
// reports (anything but a float for a control is ignored); a drag then goes out as port writes
// between touches, starting from the reported value: 3.5 + 19/400 of Drive's 10.
TEST(X11Editor, TheLv2UiTalksThroughThePorts) {
  HostWindow host;
  UiHostLog log;
  LV2UI_Resize resize{&log, UiHostLog::Resize};
  LV2UI_Touch touch{&log, UiHostLog::Touch};
  const LV2_Feature parentFeature{LV2_UI__parent, reinterpret_cast<void*>(host.parent)},
      resizeFeature{LV2_UI__resize, &resize}, touchFeature{LV2_UI__touch, &touch};
  const LV2_Feature* features[] = {&parentFeature, &resizeFeature, &touchFeature, nullptr};
  {
    tarnlv2::Lv2Ui ui(TARN_SOURCE_DIR, UiHostLog::Write, &log, features);
    host.window = reinterpret_cast<Window>(ui.Widget());
    EXPECT_EQ(Children(host.display, host.parent), std::vector<Window>{host.window});
    EXPECT_EQ(std::pair(log.w, log.h), std::pair(304, 416));
    const float drive = 3.5f, bad = 9.0f, nan = std::nanf("");
    ui.PortEvent(kDrive, sizeof drive, 0, &drive);
    ui.PortEvent(kDrive, sizeof bad, 1, &bad), ui.PortEvent(kDrive, 2, 0, &bad);
    ui.PortEvent(kDrive, sizeof nan, 0, &nan), ui.PortEvent(99, sizeof bad, 0, &bad);
    host.Send(ButtonPress, 84, 168, Button1, 0, 1000);
    host.Send(MotionNotify, 84, 149, 0, Button1Mask, 1010);
    host.Send(ButtonRelease, 84, 149, Button1, Button1Mask, 1020);
    for (int i = 0; i < 3; ++i) ui.Idle(), usleep(45000);
    EXPECT_EQ(log.said, "+1 1=3.975000 -1 ");
  }
  EXPECT_TRUE(Children(host.display, host.parent).empty());
}
