#pragma once

#include "host/rtas/sdk/CEffectGroup.h"

// The plug-in file's description of itself to the host: the maker, the plug-in and one effect
// type per channel layout, whose processes NewProcessRTAS makes.
class IPlugGroup : public CEffectGroup {
 public:
  IPlugGroup();
  // The SDK's preparation, then the editor's view class.
  void Initialize() override;
  void CreateEffectTypes() override;
};

// The SDK's stem format for so many channels, kStemUnknown for counts it has none for.
int32_t StemFormatForChannels(int channels);

CEffectProcess* NewProcessRTAS();
