#include "Lv2TestHost.h"

#include "dsp/Tarn.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>

#include <algorithm>

Lv2TestHost::Lv2TestHost(int variant, double sampleRate, HostFeatures features)
    : mMaxBlockLength(features.maxBlockLength) {
  if (features.maxBlockLength) {
    mOptions.push_back({LV2_OPTIONS_INSTANCE, 0, Map(LV2_BUF_SIZE__maxBlockLength), sizeof(int32_t),
                        Map(LV2_ATOM__Int), &mMaxBlockLength});
  }
  mOptions.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});
  if (features.map) mFeatureList.push_back({LV2_URID__map, &mMap});
  mFeatureList.push_back({LV2_OPTIONS__options, mOptions.data()});
  if (features.boundedBlockLength) mFeatureList.push_back({LV2_BUF_SIZE__boundedBlockLength, nullptr});
  for (const LV2_Feature& feature : mFeatureList) mFeatures.push_back(&feature);
  mFeatures.push_back(nullptr);

  mInstance = std::make_unique<tarnlv2::Lv2Instance>(tarnlv2::kVariants[variant], sampleRate, mFeatures.data());
  const tarnlv2::PortLayout& layout = mInstance->Layout();
  // Every control starts at its default, as a host reads it from the plug-in's description.
  std::unique_ptr<IPlugAdaptor> defaults(MakePlug());
  mControls.assign(layout.AudioIn(0), 0.0f);
  for (int i = 0; i < layout.NParams(); ++i) mControls[i] = static_cast<float>(defaults->GetParam(i)->GetDefault());
  for (uint32_t port = 0; port < layout.AudioIn(0); ++port) mInstance->ConnectPort(port, &mControls[port]);
  mControls[layout.Enabled()] = 1.0f;
}

void Lv2TestHost::ConnectAudio(std::vector<std::vector<float>>& in, std::vector<std::vector<float>>& out) {
  for (int c = 0; c < Layout().NChannels(); ++c) {
    mInstance->ConnectPort(Layout().AudioIn(c), in[c].data());
    mInstance->ConnectPort(Layout().AudioOut(c), out[c].data());
  }
  mInputs.clear();
  mOutputs.clear();
  for (int c = 0; c < Layout().NChannels(); ++c) {
    mInputs.push_back(in[c].data());
    mOutputs.push_back(out[c].data());
  }
}

void Lv2TestHost::ConnectAudioInPlace(std::vector<std::vector<float>>& buffers) { ConnectAudio(buffers, buffers); }

void Lv2TestHost::RunInRuns(int totalFrames, int runFrames) {
  for (int done = 0; done < totalFrames; done += runFrames) {
    const int n = std::min(runFrames, totalFrames - done);
    for (int c = 0; c < Layout().NChannels(); ++c) {
      mInstance->ConnectPort(Layout().AudioIn(c), mInputs[c] + done);
      mInstance->ConnectPort(Layout().AudioOut(c), mOutputs[c] + done);
    }
    mInstance->Run(static_cast<uint32_t>(n));
  }
}

std::vector<unsigned char> Lv2TestHost::SavedChunk() {
  mStore.clear();
  if (Save() != LV2_STATE_SUCCESS) return {};
  const auto found = mStore.find(Map(tarnlv2::kStateKeyUri));
  return found == mStore.end() ? std::vector<unsigned char>() : found->second.bytes;
}

void Lv2TestHost::PutState(const char* keyUri, const char* typeUri, const std::vector<unsigned char>& bytes) {
  mStore.clear();
  mStore[Map(keyUri)] = {Map(typeUri), bytes};
}

uint32_t Lv2TestHost::Map(const char* uri) {
  const auto found = std::find(mUris.begin(), mUris.end(), uri);
  if (found != mUris.end()) return static_cast<uint32_t>(found - mUris.begin()) + 1;
  mUris.push_back(uri);
  return static_cast<uint32_t>(mUris.size());
}

LV2_URID Lv2TestHost::MapUri(LV2_URID_Map_Handle handle, const char* uri) {
  return static_cast<Lv2TestHost*>(handle)->Map(uri);
}

LV2_State_Status Lv2TestHost::Store(LV2_State_Handle handle, uint32_t key, const void* value, size_t size,
                                    uint32_t type, uint32_t) {
  const auto* bytes = static_cast<const unsigned char*>(value);
  static_cast<Lv2TestHost*>(handle)->mStore[key] = {type, std::vector<unsigned char>(bytes, bytes + size)};
  return LV2_STATE_SUCCESS;
}

const void* Lv2TestHost::Retrieve(LV2_State_Handle handle, uint32_t key, size_t* size, uint32_t* type,
                                  uint32_t* flags) {
  auto& store = static_cast<Lv2TestHost*>(handle)->mStore;
  const auto found = store.find(key);
  if (found == store.end()) return nullptr;
  *size = found->second.bytes.size();
  *type = found->second.type;
  *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
  return found->second.bytes.data();
}
