#pragma once

// The SDK's registration classes: a plug-in file describes itself to the host as one effect
// group holding one effect type per channel layout, each with the creator of its processes.
#include <memory>
#include <string>
#include <vector>

#include "host/rtas/sdk/CPlugInView.h"
#include "host/rtas/sdk/CProcess.h"

// The stem formats a type declares for its input and output, by the channels they carry.
enum StemFormat : int32_t {
  kStemUnknown = -1,
  kStemMono = 0,
  kStemStereo = 1,
  kStem3Channels = 2,
  kStem4Channels = 3,
  kStem5Channels = 5,
  kStem6Channels = 6,
  kStem7Channels = 8,
  kStem8Channels = 12,
};

using ProcessCreator = CEffectProcess* (*)();

class CEffectType {
 public:
  CEffectType(OSType typeID, OSType productID, int32_t category);
  virtual ~CEffectType() = default;
  void DefineTypeNames(const char* names) { mNames = names; }
  void DefineSampleRateSupport(int32_t support) { mSampleRateSupport = support; }
  void DefineStemFormats(int32_t input, int32_t output, int32_t sideChain);
  void AddTypeAttribute(int32_t attribute) { mAttributes.push_back(attribute); }
  void AttachEffectProcessCreator(ProcessCreator creator) { mCreator = creator; }

  // ---- what the host reads ----
  OSType GetTypeID() const { return mTypeID; }
  OSType GetProductID() const { return mProductID; }
  int32_t GetCategory() const { return mCategory; }
  const std::string& GetTypeNames() const { return mNames; }
  int32_t GetSampleRateSupport() const { return mSampleRateSupport; }
  int32_t GetInputStem() const { return mInputStem; }
  int32_t GetOutputStem() const { return mOutputStem; }
  int32_t GetSideChainStem() const { return mSideChainStem; }
  const std::vector<int32_t>& GetTypeAttributes() const { return mAttributes; }
  ProcessCreator GetCreator() const { return mCreator; }
  // A new process of this type for a track of so many channels; null without a creator.
  CEffectProcess* CreateProcess(int32_t inputs, int32_t outputs) const;

 private:
  OSType mTypeID, mProductID;
  int32_t mCategory;
  std::string mNames;
  int32_t mSampleRateSupport = 0;
  int32_t mInputStem = kStemUnknown, mOutputStem = kStemUnknown, mSideChainStem = 0;
  std::vector<int32_t> mAttributes;
  ProcessCreator mCreator = nullptr;
};

class CEffectTypeRTAS : public CEffectType {
 public:
  using CEffectType::CEffectType;
};

class CEffectGroup {
 public:
  virtual ~CEffectGroup() = default;
  void DefineManufacturerNamesAndID(const char* names, OSType id);
  void DefinePlugInNamesAndVersion(const char* names, int32_t version);
  void AddGroupAttribute(int32_t attribute) { mAttributes.push_back(attribute); }
  void AddEffectType(CEffectType* type) { mTypes.emplace_back(type); }  // takes ownership
  void RegisterCustomView(const char* className, CustomViewFactory factory) {
    RegisterCustomViewClass(className, factory);
  }
  // The SDK's own preparation of the group, before its types are made.
  virtual void Initialize() { mInitialized = true; }
  virtual void CreateEffectTypes() = 0;

  // ---- what the host reads ----
  const std::string& GetManufacturerNames() const { return mManufacturerNames; }
  OSType GetManufacturerID() const { return mManufacturerID; }
  const std::string& GetPlugInNames() const { return mPlugInNames; }
  int32_t GetVersion() const { return mVersion; }
  const std::vector<int32_t>& GetGroupAttributes() const { return mAttributes; }
  bool IsInitialized() const { return mInitialized; }
  int NumTypes() const { return static_cast<int>(mTypes.size()); }
  const CEffectType* GetType(int index) const { return mTypes[index].get(); }

 private:
  std::string mManufacturerNames, mPlugInNames;
  OSType mManufacturerID = 0;
  int32_t mVersion = 0;
  std::vector<int32_t> mAttributes;
  std::vector<std::unique_ptr<CEffectType>> mTypes;
  bool mInitialized = false;
};
