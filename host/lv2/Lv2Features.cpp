#include "Lv2Features.h"

#include <cstring>

namespace tarnlv2 {

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

}  // namespace tarnlv2
