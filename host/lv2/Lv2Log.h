#pragma once

#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/urid/urid.h>

#include <cstdarg>

namespace tarnlv2 {

// Messages for the user, through the host's log when it offers one (it shows them where the
// user looks), else on standard error.
class Lv2Log {
 public:
  explicit Lv2Log(const LV2_Feature* const* features);

  void Error(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  void Warning(const char* format, ...) const __attribute__((format(printf, 2, 3)));

 private:
  void Write(LV2_URID type, const char* format, va_list args) const;

  const LV2_Log_Log* mLog = nullptr;
  LV2_URID mError = 0;
  LV2_URID mWarning = 0;
};

}  // namespace tarnlv2
