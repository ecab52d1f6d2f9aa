#pragma once

#include "Lv2Instance.h"

#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <map>
#include <string>
#include <vector>

// A minimal LV2 host for the tests: controls at their defaults, URID mapping, optionally the options and bounded block
// length features, a state store in memory, and one buffer per port.
class Lv2TestHost {
public:
  struct HostFeatures {
    bool map = true;
    bool boundedBlockLength = false;
    int maxBlockLength = 0;  // 0: no maxBlockLength option
  };

  Lv2TestHost(int variant, double sampleRate, HostFeatures features);

  tarnlv2::Lv2Instance& Instance() { return *mInstance; }
  const tarnlv2::PortLayout& Layout() const { return mInstance->Layout(); }

  float& Control(uint32_t port) { return mControls[port]; }
  // Connects the audio ports to the channel buffers; in place, each output shares its
  // input's buffer.
  void ConnectAudio(std::vector<std::vector<float>>& in, std::vector<std::vector<float>>& out);
  void ConnectAudioInPlace(std::vector<std::vector<float>>& buffers);
  // Runs the whole buffers in runs of `runFrames` (the last one shorter).
  void RunInRuns(int totalFrames, int runFrames);

  // The state the instance saves; empty when it saves none.
  std::vector<unsigned char> SavedChunk();
  LV2_State_Status Save() { return mInstance->SaveState(Store, this); }
  LV2_State_Status Restore() { return mInstance->RestoreState(Retrieve, this); }
  // What Restore() hands over: bytes under a key and type of the caller's choice.
  void PutState(const char* keyUri, const char* typeUri, const std::vector<unsigned char>& bytes);

  uint32_t Map(const char* uri);

private:
  struct Stored {
    uint32_t type;
    std::vector<unsigned char> bytes;
  };

  static LV2_URID MapUri(LV2_URID_Map_Handle handle, const char* uri);
  static LV2_State_Status Store(LV2_State_Handle handle, uint32_t key, const void* value, size_t size,
                                uint32_t type, uint32_t flags);
  static const void* Retrieve(LV2_State_Handle handle, uint32_t key, size_t* size, uint32_t* type,
                              uint32_t* flags);

  std::vector<std::string> mUris;
  LV2_URID_Map mMap{this, MapUri};
  int32_t mMaxBlockLength = 0;
  std::vector<LV2_Options_Option> mOptions;
  std::vector<LV2_Feature> mFeatureList;
  std::vector<const LV2_Feature*> mFeatures;
  std::map<uint32_t, Stored> mStore;
  std::vector<float> mControls;
  std::vector<float*> mInputs, mOutputs;
  std::unique_ptr<tarnlv2::Lv2Instance> mInstance;
};
