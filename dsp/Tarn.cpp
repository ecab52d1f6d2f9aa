#include "dsp/Tarn.h"

#include "plug/FourCharCode.h"
#include "plug/WDL_Mutex.h"

namespace {

constexpr int kNumPresets = 1;
constexpr int kVersion = 0x10000;  // 1.0.0
constexpr int kLatency = 6;

}  // namespace

Tarn::Tarn(IPlugInstanceInfo instanceInfo)
    : IPlugAdaptor(instanceInfo, kNumParams, "1-1 2-2", kNumPresets, "Tarn", "", "Tessmoral",
                   kVersion, FourCharCode("Tarn"), FourCharCode("TsMr"), kLatency, false, false,
                   false, 0) {
  InitParameters();
  MakeDefaultPreset("-", 1);
  IGraphics* editor = instanceInfo.mMakeGraphics
                          ? instanceInfo.mMakeGraphics(this, 304, 416, 0, instanceInfo.mContext)
                          : nullptr;
  if (editor) SetMeterControl(LayOutEditor(editor));
}

// The saturator's destructor runs here and once more as the member is destroyed. It keeps all
// its state inline and releases nothing, so the second run is harmless; it must stay that way.
Tarn::~Tarn() { mSat.~AsymSat(); }

// Crosstalk is a faint leak between the channels, never a mix: its whole range lies below -60 dB.
void Tarn::InitParameters() {
  GetParam(kInputTrim)->InitDouble("Input Trim", 0.0, -20.0, 20.0, 0.1, "dB", "");
  GetParam(kDrive)->InitDouble("Drive", 0.0, 0.0, 10.0, 0.01, "", "");
  GetParam(kOutputComp)->InitDouble("Output Compensation", 0.0, -20.0, 20.0, 0.1, "dB", "");
  GetParam(kAsymmetry)->InitDouble("Asymmetry", 5.0, 0.0, 10.0, 0.01, "", "");
  GetParam(kFreqResponse)->InitDouble("Freq Response", 0.0, -10.0, 10.0, 0.1, "", "");
  GetParam(kCrosstalk)->InitDouble("Crosstalk Level", -90.0, -120.0, -60.0, 0.1, "dB", "");

  IParam* vuMode = GetParam(kVuMode);
  vuMode->InitEnum("VU Mode", 0, 3, "", "");
  vuMode->SetDisplayText(0, "Input");
  vuMode->SetDisplayText(1, "RMS Difference Out-In");
  vuMode->SetDisplayText(2, "Output");

  GetParam(kBypass)->InitBool("Bypass", false, "", "");
}

IPlugAdaptor* MakePlug(IPlugInstanceInfo instanceInfo) {
  static WDL_Mutex sConstructionMutex;  // made on first use, released at process exit
  WDL_MutexLock lock(&sConstructionMutex);
  return new Tarn(instanceInfo);
}
