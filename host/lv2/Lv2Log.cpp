#include "Lv2Log.h"

#include <cstdio>

#include "Lv2Features.h"

namespace tarnlv2 {

// The host's log needs message types as URIs mapped by the host; without a map it is no use.
Lv2Log::Lv2Log(const LV2_Feature* const* features) {
  const auto* map = static_cast<const LV2_URID_Map*>(FeatureData(features, LV2_URID__map));
  const auto* log = static_cast<const LV2_Log_Log*>(FeatureData(features, LV2_LOG__log));
  if (!map || !log) return;
  mLog = log;
  mError = map->map(map->handle, LV2_LOG__Error);
  mWarning = map->map(map->handle, LV2_LOG__Warning);
}

void Lv2Log::Error(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Write(mError, format, args);
  va_end(args);
}

void Lv2Log::Warning(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Write(mWarning, format, args);
  va_end(args);
}

void Lv2Log::Write(LV2_URID type, const char* format, va_list args) const {
  if (mLog) {
    mLog->vprintf(mLog->handle, type, format, args);
  } else {
    std::vfprintf(stderr, format, args);
  }
}

}  // namespace tarnlv2
