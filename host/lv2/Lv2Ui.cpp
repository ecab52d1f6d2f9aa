#include "Lv2Ui.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "Lv2Features.h"
#include "dsp/Tarn.h"
#include "editor/x11/IGraphicsX11.h"

namespace tarnlv2 {

Lv2Ui::Lv2Ui(const char* bundlePath, LV2UI_Write_Function write, LV2UI_Controller controller,
             const LV2_Feature* const* features)
    : mBundle(bundlePath ? bundlePath : ""),
      mWrite(write),
      mController(controller),
      mParent(const_cast<void*>(FeatureData(features, LV2_UI__parent))),
      mResize(static_cast<const LV2UI_Resize*>(FeatureData(features, LV2_UI__resize))),
      mTouch(static_cast<const LV2UI_Touch*>(FeatureData(features, LV2_UI__touch))),
      mLayout(kNumParams, 1) {
  mPlug.reset(MakePlug(IPlugInstanceInfo{MakeEditor, this, this}));
  mTarn = static_cast<Tarn*>(mPlug.get());
  mWidget = mEditor ? mEditor->OpenWindow(mParent) : nullptr;
  if (!mWidget) throw std::runtime_error("Tarn: no X display to open the editor on");
  if (mResize) mResize->ui_resize(mResize->handle, mEditor->Width(), mEditor->Height());
}

// The window goes before the copy that owns the editor.
Lv2Ui::~Lv2Ui() {
  if (mEditor) mEditor->CloseWindow();
}

// The images lie in the bundle, under the names the panel loads them by.
IGraphics* Lv2Ui::MakeEditor(IPlugBase* plug, int w, int h, int fps, void* self) {
  Lv2Ui* ui = static_cast<Lv2Ui*>(self);
  ui->mEditor = new IGraphicsX11(plug, w, h, fps, ui->mBundle);
  return ui->mEditor;
}

// Values the host reports are plain, as the ports carry them; the copy takes them as host
// automation, which moves the controls without reporting back.
void Lv2Ui::PortEvent(uint32_t port, uint32_t bufferSize, uint32_t format, const void* buffer) {
  if (format != 0 || bufferSize != sizeof(float) || !buffer) return;
  float value;
  std::memcpy(&value, buffer, sizeof value);
  if (!std::isfinite(value)) return;
  if (mLayout.IsParam(port)) {
    mPlug->SetParameter(static_cast<int>(port), value);
  } else if (port == mLayout.Needle()) {
    mTarn->ShowNeedle(std::clamp(value, 0.0f, 1.0f));  // the needle stays inside the window
  }
}

int Lv2Ui::Idle() {
  mEditor->Idle();
  return 0;
}

void Lv2Ui::Edit(int paramIdx, double plainValue) {
  const float value = static_cast<float>(plainValue);
  if (mWrite) mWrite(mController, static_cast<uint32_t>(paramIdx), sizeof value, 0, &value);
}

void Lv2Ui::Touch(int paramIdx, bool grabbed) {
  if (mTouch) mTouch->touch(mTouch->handle, static_cast<uint32_t>(paramIdx), grabbed);
}

}  // namespace tarnlv2
