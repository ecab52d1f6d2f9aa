// The plug-in library's one exported symbol (LV2_SYMBOL_EXPORT gives it C linkage).
#include "Lv2Descriptor.h"

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
  return tarnlv2::Descriptor(index);
}
