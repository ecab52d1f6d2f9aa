#pragma once

// What the plug-in's group tells the host about it before any instance exists: the names,
// codes and attributes of this project's one effect as an RTAS plug-in. The attribute values
// are the SDK's (their meaning is its affair); the channel layouts match the effect's own.
#include "host/rtas/sdk/FicTypes.h"
#include "plug/FourCharCode.h"

constexpr OSType Code(const char (&code)[5]) { return static_cast<OSType>(FourCharCode(code)); }

constexpr const char* kMakerNames = "Tessmoral\nTessmoral\nTsMr";
constexpr OSType kMakerCode = Code("TsMr");
constexpr const char* kPlugInNames = "Tarn\nTarn";
constexpr int32_t kPlugInVersion = 1;
constexpr int32_t kGroupAttribute = 14;
constexpr const char* kTypeNames = "Tarn\nTarn";
constexpr const char* kChannelIO = "1-1 2-2";
// One type per channel layout, in the order of kChannelIO.
constexpr OSType PLUG_TYPE_IDS[] = {Code("TRN1"), Code("TRN2")};
constexpr OSType kProductID = Code("Tarn");  // also the chunk ID of the settings
constexpr int32_t kCategory = 64;
constexpr int32_t kSampleRateSupport = 6;
constexpr int32_t kTypeAttributes[] = {8, 48, 55};
constexpr const char* kViewClassName = "IPlugDigiView";
