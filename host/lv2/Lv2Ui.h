#pragma once

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include <memory>
#include <string>

#include "PortLayout.h"
#include "plug/IPlugAdaptor.h"

class IGraphics;
class IGraphicsX11;
class Tarn;

namespace tarnlv2 {

// Tarn's editor as an LV2 UI: an X11 window inside the host's window, showing a copy of the
// effect that processes nothing and only mirrors the plug-in's controls. It talks to the plug-in
// through the ports alone, so the host may run it in another process: a control the host reports
// is set in the copy, an edit in the editor goes out as a port write (between touch
// notifications around a drag), and the needle follows the plug-in's needle output. The host
// drives the editor's frames through the idle interface.
class Lv2Ui final : public IPlugEditListener {
 public:
  // Throws std::runtime_error when there is no display to open the window on.
  Lv2Ui(const char* bundlePath, LV2UI_Write_Function write, LV2UI_Controller controller,
        const LV2_Feature* const* features);
  ~Lv2Ui();
  Lv2Ui(const Lv2Ui&) = delete;
  Lv2Ui& operator=(const Lv2Ui&) = delete;

  // The editor's X11 window, for the host to embed.
  LV2UI_Widget Widget() const { return mWidget; }
  // A value the host reports for a port; anything but a finite float for a control is ignored.
  void PortEvent(uint32_t port, uint32_t bufferSize, uint32_t format, const void* buffer);
  // Handles the window's events and paints a frame when one is due. Returns 0: the window stays
  // open as long as the host keeps the UI.
  int Idle();

  void BeginEdit(int paramIdx) override { Touch(paramIdx, true); }
  void Edit(int paramIdx, double plainValue) override;
  void EndEdit(int paramIdx) override { Touch(paramIdx, false); }

 private:
  static IGraphics* MakeEditor(IPlugBase* plug, int w, int h, int fps, void* self);
  void Touch(int paramIdx, bool grabbed);

  std::string mBundle;
  LV2UI_Write_Function mWrite;
  LV2UI_Controller mController;
  void* mParent;  // the host's window; none: a window of its own
  const LV2UI_Resize* mResize;
  const LV2UI_Touch* mTouch;
  PortLayout mLayout;  // the controls are numbered alike in every variant
  std::unique_ptr<IPlugAdaptor> mPlug;
  Tarn* mTarn = nullptr;            // the same object, seen as the effect
  IGraphicsX11* mEditor = nullptr;  // made for the copy, owned by it
  LV2UI_Widget mWidget = nullptr;
};

}  // namespace tarnlv2
