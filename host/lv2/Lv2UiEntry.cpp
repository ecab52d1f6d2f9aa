// The UI library's one exported symbol: Tarn's editor, one UI for both plug-ins.
#include <lv2/ui/ui.h>

#include <cstring>
#include <exception>

#include "Lv2Log.h"
#include "Lv2Ui.h"

namespace {

using tarnlv2::Lv2Ui;

Lv2Ui* Self(LV2UI_Handle handle) { return static_cast<Lv2Ui*>(handle); }

// No exception may cross into the host: a UI that cannot be made is a failed instantiation.
LV2UI_Handle Instantiate(const LV2UI_Descriptor*, const char*, const char* bundlePath,
                         LV2UI_Write_Function write, LV2UI_Controller controller,
                         LV2UI_Widget* widget, const LV2_Feature* const* features) {
  try {
    Lv2Ui* ui = new Lv2Ui(bundlePath, write, controller, features);
    if (widget) *widget = ui->Widget();
    return ui;
  } catch (const std::exception& e) {
    tarnlv2::Lv2Log(features).Error("%s\n", e.what());
    return nullptr;
  }
}

void Cleanup(LV2UI_Handle handle) { delete Self(handle); }

void PortEvent(LV2UI_Handle handle, uint32_t port, uint32_t bufferSize, uint32_t format,
               const void* buffer) {
  Self(handle)->PortEvent(port, bufferSize, format, buffer);
}

int Idle(LV2UI_Handle handle) { return Self(handle)->Idle(); }

const LV2UI_Idle_Interface kIdleInterface = {Idle};

const void* ExtensionData(const char* uri) {
  return std::strcmp(uri, LV2_UI__idleInterface) == 0 ? &kIdleInterface : nullptr;
}

const LV2UI_Descriptor kDescriptor = {tarnlv2::kUiUri, Instantiate, Cleanup, PortEvent,
                                      ExtensionData};

}  // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(uint32_t index) {
  return index == 0 ? &kDescriptor : nullptr;
}
