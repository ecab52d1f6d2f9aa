#include "Lv2Instance.h"

#include "dsp/Tarn.h"
#include "plug/ByteChunk.h"
#include "plug/IParam.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tarnlv2 {

namespace {

const LV2_Feature* FindFeature(const LV2_Feature* const* features, const char* uri) {
  for (const LV2_Feature* const* f = features; f && *f; ++f) {
    if (std::strcmp((*f)->URI, uri) == 0) return *f;
  }
  return nullptr;
}

const void* FeatureData(const LV2_Feature* const* features, const char* uri) {
  const LV2_Feature* feature = FindFeature(features, uri);
  return feature ? feature->data : nullptr;
}

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

// The instance starts from its default preset, restored as a host reopening a session would:
// that runs OnParamChange for every parameter, so the cached gains agree with the table before
// the first block (exactly what the offline renderer does).
Lv2Instance::Lv2Instance(const PluginVariant& variant, double sampleRate,
                         const LV2_Feature* const* features)
    : mPlug(MakePlug()),
      mTarn(static_cast<Tarn*>(mPlug.get())),
      mLayout(mPlug->NParams(), variant.nChannels),
      mParamPorts(mPlug->NParams(), nullptr),
      mLastSeen(mPlug->NParams(), 0.0),
      mInPorts(variant.nChannels, nullptr),
      mOutPorts(variant.nChannels, nullptr),
      mInStretch(variant.nChannels, nullptr),
      mOutStretch(variant.nChannels, nullptr) {
  ReadFeatures(features);
  if (const PresetSlot* defaults = mPlug->GetPreset(0)) mPlug->UnserializeState(&defaults->mChunk, 0);
  mPlug->SetSampleRate(sampleRate);
  mPlug->Reset();
  mPlug->SetIO(variant.nChannels, variant.nChannels);
  mPlug->SetBlockSize(mMaxBlock);
}

Lv2Instance::~Lv2Instance() = default;

void Lv2Instance::ReadFeatures(const LV2_Feature* const* features) {
  const auto* map = static_cast<const LV2_URID_Map*>(FeatureData(features, LV2_URID__map));
  if (!map) return;
  mStateKey = map->map(map->handle, kStateKeyUri);
  mChunkType = map->map(map->handle, LV2_ATOM__Chunk);

  const auto* options = static_cast<const LV2_Options_Option*>(FeatureData(features, LV2_OPTIONS__options));
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

void Lv2Instance::Activate() { mPlug->Reset(); }

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
    const int stretch = static_cast<int>(std::min<uint32_t>(nFrames - done, static_cast<uint32_t>(mMaxBlock)));
    ProcessStretch(done, stretch, bypassed);
    done += static_cast<uint32_t>(stretch);
  }
  WriteOutputControls();
}

// The base copies every input into its own double scratch buffer before any output is
// written, so a host that hands the same buffer for input and output (in place) is served.
void Lv2Instance::ProcessStretch(uint32_t offset, int nFrames, bool bypassed) {
  for (int c = 0; c < mLayout.NChannels(); ++c) {
    mInStretch[c] = mInPorts[c] ? mInPorts[c] + offset : nullptr;
    mOutStretch[c] = mOutPorts[c] ? mOutPorts[c] + offset : nullptr;
  }
  if (bypassed) {
    mPlug->ProcessAudioBypassed(mInStretch.data(), mOutStretch.data(), nFrames);
  } else {
    mPlug->ProcessAudio(mInStretch.data(), mOutStretch.data(), nFrames);
  }
}

void Lv2Instance::WriteOutputControls() {
  if (mLatencyPort) *mLatencyPort = static_cast<float>(mPlug->GetLatency());
  if (mNeedlePort) *mNeedlePort = static_cast<float>(mTarn->GetNeedle());
}

LV2_State_Status Lv2Instance::SaveState(LV2_State_Store_Function store, LV2_State_Handle handle) {
  if (!mStateKey) return LV2_STATE_ERR_NO_FEATURE;
  ByteChunk chunk;
  if (!mPlug->SerializeState(&chunk)) return LV2_STATE_ERR_UNKNOWN;
  return store(handle, mStateKey, chunk.GetBytes(), static_cast<size_t>(chunk.Size()), mChunkType,
               LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

// A short chunk is applied as far as it goes, as the effect's own state restore does; bytes
// beyond the parameters are not read.
LV2_State_Status Lv2Instance::RestoreState(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) {
  if (!mStateKey) return LV2_STATE_ERR_NO_FEATURE;
  size_t size = 0;
  uint32_t type = 0;
  uint32_t flags = 0;
  const void* data = retrieve(handle, mStateKey, &size, &type, &flags);
  if (!data) return LV2_STATE_ERR_NO_PROPERTY;
  if (type != mChunkType) return LV2_STATE_ERR_BAD_TYPE;
  const size_t stateBytes = sizeof(double) * static_cast<size_t>(mPlug->NParams());
  ByteChunk chunk;
  chunk.PutBytes(data, static_cast<int>(std::min(size, stateBytes)));
  mPlug->UnserializeState(&chunk, 0);
  return LV2_STATE_SUCCESS;
}

}  // namespace tarnlv2
