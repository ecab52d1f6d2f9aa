#pragma once

#include <string>

#include "dsp/SampleRateRange.h"

namespace render {

// The rates the effect runs at, as messages and the help text name them: "8000 to 768000 Hz".
inline std::string SupportedRatesText() {
  return std::to_string(static_cast<long>(kMinSampleRate)) + " to " +
         std::to_string(static_cast<long>(kMaxSampleRate)) + " Hz";
}

}  // namespace render
