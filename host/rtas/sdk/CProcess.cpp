#include "host/rtas/sdk/CProcess.h"

#include "host/rtas/sdk/CPlugInView.h"

CProcess::CProcess() = default;
CProcess::~CProcess() = default;

void CProcess::AddControl(CPluginControl* control) { mControls.emplace_back(control); }

CPluginControl* CProcess::GetControl(int32_t index) const {
  return IsValidControlIndex(index) ? mControls[index - 1].get() : nullptr;
}

ComponentResult CProcess::SetControlValue(int32_t index, int32_t value) {
  CPluginControl* control = GetControl(index);
  if (!control) return kNoErr;
  control->SetValue(value);
  if (HostServices* host = ConnectedHost()) host->ControlChanged(this, index, control->GetValue());
  return kNoErr;
}

ComponentResult CProcess::TouchControl(int32_t index) {
  if (HostServices* host = ConnectedHost(); host && IsValidControlIndex(index))
    host->ControlTouched(this, index, true);
  return kNoErr;
}

ComponentResult CProcess::ReleaseControl(int32_t index) {
  if (HostServices* host = ConnectedHost(); host && IsValidControlIndex(index))
    host->ControlTouched(this, index, false);
  return kNoErr;
}

void CProcess::DispatchWindowResize(int w, int h) {
  if (HostServices* host = ConnectedHost()) host->WindowResized(this, w, h);
}

ComponentResult CProcess::HostSetsControlValue(int32_t index, int32_t value) {
  CPluginControl* control = GetControl(index);
  if (!control) return kNoErr;
  control->SetValue(value);
  if (index == mMasterBypassIndex) SetBypassed(control->GetValue() != 0);
  UpdateControlValueInAlgorithm(index);
  return kNoErr;
}

ComponentResult CProcess::GetControlValue(int32_t index, int32_t* value) {
  if (const CPluginControl* control = GetControl(index)) *value = control->GetValue();
  return kNoErr;
}

ComponentResult CProcess::GetControlDefaultValue(int32_t index, int32_t* value) {
  if (const CPluginControl* control = GetControl(index)) *value = control->GetDefaultValue();
  return kNoErr;
}

// A process without chunks of its own has none to give or take.
ComponentResult CProcess::GetNumChunks(int32_t* count) { return *count = 0, kNoErr; }
ComponentResult CProcess::GetIndexedChunkID(int32_t, OSType*) { return kUnknownChunkErr; }
ComponentResult CProcess::GetChunkSize(OSType, int32_t*) { return kUnknownChunkErr; }
ComponentResult CProcess::GetChunk(OSType, SFicPlugInChunk*) { return kUnknownChunkErr; }
ComponentResult CProcess::SetChunk(OSType, SFicPlugInChunk*) { return kUnknownChunkErr; }
ComponentResult CProcess::CompareActiveChunk(SFicPlugInChunk*, unsigned char* isEqual) {
  return *isEqual = 1, kNoErr;
}

ComponentResult CProcess::ChooseControl(Point, int32_t* index) { return *index = 0, kNoErr; }

void CProcess::GetViewRect(Rect* rect) { *rect = Rect{0, 0, 0, 0}; }

double CEffectProcess::GetSampleRate() const {
  return ConnectedHost() ? ConnectedHost()->SampleRate() : 44100.0;
}

ComponentResult CEffectProcessRTAS::GetDelaySamplesLong(int32_t* samples) {
  return *samples = 0, kNoErr;
}

ComponentResult CEffectProcessRTAS::IsControlAutomatable(int32_t index, int16_t* automatable) {
  const CPluginControl* control = GetControl(index);
  return *automatable = control && control->IsAutomatable(), kNoErr;
}

int32_t CEffectProcessRTAS::GetHostBlockSize() const {
  return ConnectedHost() ? ConnectedHost()->BlockSize() : 1024;
}

HostTime CEffectProcessRTAS::GetHostTime() const {
  return ConnectedHost() ? ConnectedHost()->Time() : HostTime{0.0, 120.0, 0.0, 4, 4, false};
}
