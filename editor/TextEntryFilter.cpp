#include "editor/TextEntryFilter.h"

#include <cstdlib>
#include <cstring>

#include "plug/IParam.h"

TextEntryFilter TextEntryFilter::ForParam(const IParam* param, int maxLength) {
  if (!param) return {};
  switch (param->Type()) {
    case IParam::kTypeBool:
    case IParam::kTypeInt:
    case IParam::kTypeEnum:
      return {"0123456789-+", maxLength, 0};
    case IParam::kTypeDouble:
      return {"0123456789.-+", maxLength, 0};
    default:
      return {};
  }
}

bool TextEntryFilter::Accepts(const char* text) const {
  if (mAcceptable)
    for (const char* c = text; *c; ++c)
      if (!std::strchr(mAcceptable, *c)) return false;
  if (mMaxLength > 0 && static_cast<int>(std::strlen(text)) > mMaxLength) return false;
  return mMaxValue <= 0 || std::atoi(text) <= mMaxValue;
}
