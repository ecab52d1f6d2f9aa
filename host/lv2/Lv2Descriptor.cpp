#include "Lv2Descriptor.h"

#include <new>
#include <string_view>

#include "Lv2Instance.h"
#include "Lv2Log.h"
#include "dsp/SampleRateRange.h"

namespace tarnlv2 {

namespace {

Lv2Instance* Self(LV2_Handle handle) { return static_cast<Lv2Instance*>(handle); }

// No exception may cross into the host: a failed construction is a failed instantiation. So is
// a sample rate the effect's filters are not made for, which would only give noise or NaN.
template <int kVariant>
LV2_Handle Instantiate(const LV2_Descriptor*, double sampleRate, const char*,
                       const LV2_Feature* const* features) {
  if (!IsSupportedSampleRate(sampleRate)) {
    Lv2Log(features).Error("Tarn: cannot run at %.10g Hz; it runs at %.10g to %.10g Hz\n",
                           sampleRate, kMinSampleRate, kMaxSampleRate);
    return nullptr;
  }
  try {
    return new Lv2Instance(kVariants[kVariant], sampleRate, features);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void ConnectPort(LV2_Handle handle, uint32_t port, void* data) {
  Self(handle)->ConnectPort(port, data);
}
void Activate(LV2_Handle handle) { Self(handle)->Activate(); }
void Run(LV2_Handle handle, uint32_t nFrames) { Self(handle)->Run(nFrames); }
void Deactivate(LV2_Handle) {}
void Cleanup(LV2_Handle handle) { delete Self(handle); }

LV2_State_Status Save(LV2_Handle handle, LV2_State_Store_Function store,
                      LV2_State_Handle stateHandle, uint32_t, const LV2_Feature* const*) {
  return Self(handle)->SaveState(store, stateHandle);
}

LV2_State_Status Restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle stateHandle, uint32_t, const LV2_Feature* const*) {
  return Self(handle)->RestoreState(retrieve, stateHandle);
}

const LV2_State_Interface kStateInterface = {Save, Restore};

const void* ExtensionData(const char* uri) {
  return std::string_view(uri) == LV2_STATE__interface ? &kStateInterface : nullptr;
}

const LV2_Descriptor kDescriptors[kNumVariants] = {
    {kVariants[0].uri, Instantiate<0>, ConnectPort, Activate, Run, Deactivate, Cleanup,
     ExtensionData},
    {kVariants[1].uri, Instantiate<1>, ConnectPort, Activate, Run, Deactivate, Cleanup,
     ExtensionData},
};

}  // namespace

const LV2_Descriptor* Descriptor(uint32_t index) {
  return index < kNumVariants ? &kDescriptors[index] : nullptr;
}

}  // namespace tarnlv2
