#include "host/rtas/IPlugGroup.h"

#include <cstdio>
#include <sstream>
#include <string>

#include "host/rtas/IPlugCustomUI.h"
#include "host/rtas/IPlugProcessRTAS.h"
#include "host/rtas/PlugDescription.h"

IPlugGroup::IPlugGroup() {
  DefineManufacturerNamesAndID(kMakerNames, kMakerCode);
  DefinePlugInNamesAndVersion(kPlugInNames, kPlugInVersion);
  AddGroupAttribute(kGroupAttribute);
}

void IPlugGroup::Initialize() {
  CEffectGroup::Initialize();
  RegisterCustomView(kViewClassName, CreateIPlugDigiView);
}

int32_t StemFormatForChannels(int channels) {
  static const int32_t kStems[] = {kStemMono,      kStemStereo,    kStem3Channels, kStem4Channels,
                                   kStem5Channels, kStem6Channels, kStem7Channels, kStem8Channels};
  return channels >= 1 && channels <= 8 ? kStems[channels - 1] : kStemUnknown;
}

// A token that is not "inputs-outputs" uses up no type ID.
void IPlugGroup::CreateEffectTypes() {
  std::istringstream tokens(kChannelIO);
  int k = 0;
  for (std::string token; std::getline(tokens, token, ' ');) {
    int nIn, nOut;
    if (std::sscanf(token.c_str(), "%d-%d", &nIn, &nOut) != 2 || k >= int(std::size(PLUG_TYPE_IDS)))
      continue;
    auto* type = new CEffectTypeRTAS(PLUG_TYPE_IDS[k++], kProductID, kCategory);
    type->DefineTypeNames(kTypeNames);
    type->DefineSampleRateSupport(kSampleRateSupport);
    type->DefineStemFormats(StemFormatForChannels(nIn), StemFormatForChannels(nOut), 0);
    for (int32_t attribute : kTypeAttributes) type->AddTypeAttribute(attribute);
    type->AttachEffectProcessCreator(NewProcessRTAS);
    AddEffectType(type);
  }
}

CEffectProcess* NewProcessRTAS() { return new IPlugProcessRTAS(kProductID); }
