#include "Lv2Instance.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Lv2Features.h"
#include "dsp/Tarn.h"
#include "plug/ByteChunk.h"
#include "plug/IParam.h"
#include "plug/StateCheck.h"

namespace tarnlv2 {

namespace {

// The host's bound on run lengths, or 0 when it gives none.
int HostMaxBlock(const LV2_Options_Option* options, const LV2_URID_Map* map) {
  const LV2_URID maxKey = map->map(map->handle, LV2_BUF_SIZE__maxBlockLength);
  const LV2_URID intType = map->map(map->handle, LV2_ATOM__Int);
  for (const LV2_Options_Option* o = options; o->key != 0; ++o) {
    if (o->context == LV2_OPTIONS_INSTANCE && o->key == maxKey && o->type == intType && o->value &&
        o->size == sizeof(int32_t)) {
      return *static_cast<const int32_t*>(o->value);
    }
  }
  return 0;
}

}  // namespace

Lv2Instance::Lv2Instance(const PluginVariant& variant, double sampleRate,
                         const LV2_Feature* const* features)
    : mLog(features),
      mSampleRate(sampleRate),
      mLayout(kNumParams, variant.nChannels),
      mParamPorts(kNumParams, nullptr),
      mLastSeen(kNumParams, 0.0),
      mInPorts(variant.nChannels, nullptr),
      mOutPorts(variant.nChannels, nullptr),
      mInStretch(variant.nChannels, nullptr),
      mOutStretch(variant.nChannels, nullptr) {
  ReadFeatures(features);
  mFiniteIn.assign(variant.nChannels, std::vector<float>(mMaxBlock));
  UsePlug(MakeReadyPlug(nullptr));
  mHostBypass.Prepare(variant.nChannels, mPlug->GetLatency(), mMaxBlock, sampleRate);
}

// A new effect starts from the state given or its default preset, restored as a host reopening
// a session would: that runs OnParamChange for every parameter, so the cached gains agree with
// the table before the first block (exactly what the offline renderer does).
std::unique_ptr<IPlugAdaptor> Lv2Instance::MakeReadyPlug(const ByteChunk* state) const {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  const PresetSlot* defaults = plug->GetPreset(0);
  if (!state && defaults) state = &defaults->mChunk;
  if (state) plug->UnserializeState(state, 0);
  plug->SetSampleRate(mSampleRate);
  plug->Reset();
  plug->SetIO(mLayout.NChannels(), mLayout.NChannels());
  plug->SetBlockSize(mMaxBlock);
  return plug;
}

// MakePlug always makes a Tarn; it hands it over as the adaptor it derives from.
void Lv2Instance::UsePlug(std::unique_ptr<IPlugAdaptor> plug) {
  mPlug = std::move(plug);
  mTarn = static_cast<Tarn*>(mPlug.get());
}

Lv2Instance::~Lv2Instance() = default;

void Lv2Instance::ReadFeatures(const LV2_Feature* const* features) {
  const auto* map = static_cast<const LV2_URID_Map*>(FeatureData(features, LV2_URID__map));
  if (!map) return;
  mStateKey = map->map(map->handle, kStateKeyUri);
  mChunkType = map->map(map->handle, LV2_ATOM__Chunk);

  const auto* options =
      static_cast<const LV2_Options_Option*>(FeatureData(features, LV2_OPTIONS__options));
  if (!options || !FindFeature(features, LV2_BUF_SIZE__boundedBlockLength)) return;
  const int hostMax = HostMaxBlock(options, map);
  if (hostMax > 0) mMaxBlock = std::min(hostMax, kLargestMaxBlock);
}

void Lv2Instance::ConnectPort(uint32_t port, void* data) {
  float* samples = static_cast<float*>(data);
  if (mLayout.IsParam(port)) {
    mParamPorts[port] = samples;
  } else if (port == mLayout.Enabled()) {
    mEnabledPort = samples;
  } else if (port == mLayout.Latency()) {
    mLatencyPort = samples;
  } else if (port == mLayout.Needle()) {
    mNeedlePort = samples;
  } else if (mLayout.IsAudioIn(port)) {
    mInPorts[port - mLayout.AudioIn(0)] = samples;
  } else if (mLayout.IsAudioOut(port)) {
    mOutPorts[port - mLayout.AudioOut(0)] = samples;
  }
}

// LV2 wants all history gone at activation. The effect's Reset restarts its fade but keeps
// its filters' memory and its drift's random sequence, so a fresh effect with the same
// parameter values takes over instead. Its first run then meets the ports as a fresh
// instance's first run does.
void Lv2Instance::Activate() {
  ByteChunk state;
  mPlug->SerializeState(&state);
  UsePlug(MakeReadyPlug(&state));
  mHostBypass.Reset();
  mSeenControls = false;
}

// A control reaches the effect only when it moved since the last run, so a state restored
// between runs is not undone by ports the host left alone. The first run compares with the
// instance's own values instead. The float goes over as a plain value: SetParameter clamps it
// into range and nothing rounds it, so "VU Mode" 1.5 is stored as 1.5 and the effect truncates
// it to mode 1, and any "Bypass" other than 0 switches the effect's own bypass on. A NaN is no
// value at all and is ignored.
void Lv2Instance::ApplyControlChanges() {
  for (int i = 0; i < mLayout.NParams(); ++i) {
    if (!mParamPorts[i]) continue;
    const double value = *mParamPorts[i];
    if (std::isnan(value)) continue;
    const double reference = mSeenControls ? mLastSeen[i] : mPlug->GetParam(i)->Value();
    if (value != reference) mPlug->SetParameter(i, value);
    mLastSeen[i] = value;
  }
  mSeenControls = true;
}

void Lv2Instance::Run(uint32_t nFrames) {
  ApplyControlChanges();
  // lv2:enabled: zero or below is the host's bypass.
  const bool bypassed = mEnabledPort && *mEnabledPort <= 0.0f;
  for (uint32_t done = 0; done < nFrames;) {
    const int stretch =
        static_cast<int>(std::min<uint32_t>(nFrames - done, static_cast<uint32_t>(mMaxBlock)));
    ProcessStretch(done, stretch, bypassed);
    done += static_cast<uint32_t>(stretch);
  }
  WriteOutputControls();
}

// The base copies every input into its own double scratch buffer before any output is
// written, and the host's bypass keeps its copy before the effect runs, so a host that hands
// the same buffer for input and output (in place) is served. The effect runs bypassed or not.
void Lv2Instance::ProcessStretch(uint32_t offset, int nFrames, bool bypassed) {
  for (int c = 0; c < mLayout.NChannels(); ++c) {
    mInStretch[c] = mInPorts[c] ? FiniteInput(c, mInPorts[c] + offset, nFrames) : nullptr;
    mOutStretch[c] = mOutPorts[c] ? mOutPorts[c] + offset : nullptr;
    mHostBypass.TakeInput(c, mInStretch[c], nFrames);
  }
  mPlug->ProcessAudio(mInStretch.data(), mOutStretch.data(), nFrames);
  mHostBypass.Mix(mOutStretch.data(), nFrames, !bypassed);
}

// Hosts do deliver NaN and infinite samples (a faulty plug-in earlier in the chain), and one
// of them would hold the saturator's level detector at the clamp for good. They go in as
// silence; a stretch of finite samples, the usual case, goes in as it is.
float* Lv2Instance::FiniteInput(int channel, float* samples, int nFrames) {
  float* end = samples + nFrames;
  const float* firstBad = std::find_if(samples, end, [](float x) { return !std::isfinite(x); });
  if (firstBad == end) return samples;
  float* finite = mFiniteIn[channel].data();
  std::transform(samples, end, finite, [](float x) { return std::isfinite(x) ? x : 0.0f; });
  return finite;
}

void Lv2Instance::WriteOutputControls() {
  if (mLatencyPort) *mLatencyPort = static_cast<float>(mPlug->GetLatency());
  if (mNeedlePort) *mNeedlePort = static_cast<float>(mTarn->NeedlePosition());
}

LV2_State_Status Lv2Instance::SaveState(LV2_State_Store_Function store, LV2_State_Handle handle) {
  if (!mStateKey) return LV2_STATE_ERR_NO_FEATURE;
  ByteChunk chunk;
  if (!mPlug->SerializeState(&chunk)) return LV2_STATE_ERR_UNKNOWN;
  return store(handle, mStateKey, chunk.GetBytes(), static_cast<size_t>(chunk.Size()), mChunkType,
               LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status Lv2Instance::RestoreState(LV2_State_Retrieve_Function retrieve,
                                           LV2_State_Handle handle) {
  if (!mStateKey) return LV2_STATE_ERR_NO_FEATURE;
  size_t size = 0;
  uint32_t type = 0;
  uint32_t flags = 0;
  const void* data = retrieve(handle, mStateKey, &size, &type, &flags);
  if (!data) return LV2_STATE_ERR_NO_PROPERTY;
  if (type != mChunkType) return LV2_STATE_ERR_BAD_TYPE;
  const std::string problem = RestoreWholeState(*mPlug, data, size);
  if (problem.empty()) return LV2_STATE_SUCCESS;
  mLog.Warning("Tarn: the saved state %s; the settings stay as they were\n", problem.c_str());
  return LV2_STATE_ERR_UNKNOWN;
}

}  // namespace tarnlv2
