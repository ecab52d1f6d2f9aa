#include "host/rtas/sdk/CEffectGroup.h"

CEffectType::CEffectType(OSType typeID, OSType productID, int32_t category)
    : mTypeID(typeID), mProductID(productID), mCategory(category) {}

void CEffectType::DefineStemFormats(int32_t input, int32_t output, int32_t sideChain) {
  mInputStem = input, mOutputStem = output, mSideChainStem = sideChain;
}

CEffectProcess* CEffectType::CreateProcess(int32_t inputs, int32_t outputs) const {
  CEffectProcess* process = mCreator ? mCreator() : nullptr;
  if (process) process->SetChannels(inputs, outputs);
  return process;
}

void CEffectGroup::DefineManufacturerNamesAndID(const char* names, OSType id) {
  mManufacturerNames = names, mManufacturerID = id;
}

void CEffectGroup::DefinePlugInNamesAndVersion(const char* names, int32_t version) {
  mPlugInNames = names, mVersion = version;
}
