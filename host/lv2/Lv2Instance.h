#pragma once

#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <memory>
#include <vector>

#include "HostBypass.h"
#include "Lv2Log.h"
#include "PortLayout.h"
#include "plug/IPlugAdaptor.h"

class ByteChunk;
class Tarn;

namespace tarnlv2 {

// One Tarn instance as an LV2 host sees it. The host owns the port buffers; control input
// ports reach the effect as host automation does (IPlugAdaptor::SetParameter), the designated
// "enabled" port is the host's bypass (see HostBypass), and the state is the effect's 64-byte
// parameter chunk. The host's sample rate must be a supported one (see
// dsp/SampleRateRange.h); the entry point refuses others before an instance is made.
class Lv2Instance {
 public:
  // Largest run handed to the effect at once when the host promises no bound of its own.
  static constexpr int kDefaultMaxBlock = 8192;
  // A host's bound above this is not worth the scratch memory: runs are split anyway.
  static constexpr int kLargestMaxBlock = 65536;

  Lv2Instance(const PluginVariant& variant, double sampleRate, const LV2_Feature* const* features);
  ~Lv2Instance();
  Lv2Instance(const Lv2Instance&) = delete;
  Lv2Instance& operator=(const Lv2Instance&) = delete;

  const PortLayout& Layout() const { return mLayout; }
  // The longest stretch of frames processed in one go.
  int MaxBlock() const { return mMaxBlock; }

  void ConnectPort(uint32_t port, void* data);
  // The host (re)starts processing: from here on the instance sounds exactly like a fresh one
  // with the same settings. May allocate.
  void Activate();
  // Any number of frames, in stretches of at most MaxBlock(); allocates nothing.
  void Run(uint32_t nFrames);

  LV2_State_Status SaveState(LV2_State_Store_Function store, LV2_State_Handle handle);
  // Only a whole state is restored; anything else is refused and changes nothing.
  LV2_State_Status RestoreState(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

 private:
  void ReadFeatures(const LV2_Feature* const* features);
  // A new effect holding `state` (its defaults when null), prepared for this instance's rate,
  // channels and longest stretch.
  std::unique_ptr<IPlugAdaptor> MakeReadyPlug(const ByteChunk* state) const;
  void UsePlug(std::unique_ptr<IPlugAdaptor> plug);
  float* FiniteInput(int channel, float* samples, int nFrames);
  void ApplyControlChanges();
  void ProcessStretch(uint32_t offset, int nFrames, bool bypassed);
  void WriteOutputControls();

  Lv2Log mLog;
  double mSampleRate;
  std::unique_ptr<IPlugAdaptor> mPlug;
  Tarn* mTarn = nullptr;  // the same object, seen as the effect
  PortLayout mLayout;
  int mMaxBlock = kDefaultMaxBlock;
  LV2_URID mStateKey = 0;  // 0: the host maps no URIDs, so there is no state to keep
  LV2_URID mChunkType = 0;

  std::vector<const float*> mParamPorts;
  std::vector<double> mLastSeen;  // each control's value as last applied
  bool mSeenControls = false;     // false until the first run has read the controls
  const float* mEnabledPort = nullptr;
  float* mLatencyPort = nullptr;
  float* mNeedlePort = nullptr;
  std::vector<float*> mInPorts, mOutPorts;
  std::vector<float*> mInStretch, mOutStretch;  // the ports offset to the stretch being run
  std::vector<std::vector<float>> mFiniteIn;    // per channel: an input stretch made finite
  HostBypass mHostBypass;
};

}  // namespace tarnlv2
