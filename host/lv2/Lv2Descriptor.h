#pragma once

#include <lv2/core/lv2.h>

namespace tarnlv2 {

// The bundle's plug-ins in index order, null past the last; the exported lv2_descriptor
// forwards here.
const LV2_Descriptor* Descriptor(uint32_t index);

}  // namespace tarnlv2
