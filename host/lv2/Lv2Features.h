#pragma once

#include <lv2/core/lv2.h>

namespace tarnlv2 {

// The feature a host offers under `uri`, or null when it offers none.
const LV2_Feature* FindFeature(const LV2_Feature* const* features, const char* uri);
// That feature's data, or null.
const void* FeatureData(const LV2_Feature* const* features, const char* uri);

}  // namespace tarnlv2
