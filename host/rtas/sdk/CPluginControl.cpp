#include "host/rtas/sdk/CPluginControl.h"

#include <algorithm>
#include <cmath>

CPluginControl::CPluginControl(OSType id, const char* names, bool automatable, int32_t maxValue)
    : mID(id), mNames(names ? names : ""), mAutomatable(automatable), mMax(std::max(maxValue, 0)) {}

void CPluginControl::SetValue(int32_t value) { mValue = std::clamp(value, 0, mMax); }

void CPluginControl::SetDefaultValue(int32_t value) {
  SetValue(value);
  mDefault = mValue;
}

CPluginControl_Discrete::CPluginControl_Discrete(OSType id, const char* names, int32_t min,
                                                 int32_t max, int32_t defaultValue,
                                                 bool automatable)
    : CPluginControl(id, names, automatable, max - min), mMin(min) {
  SetDefaultValue(ConvertDiscreteToControl(defaultValue));
}

int32_t CPluginControl_Discrete::ConvertDiscreteToControl(int32_t discrete) const {
  return std::clamp(discrete - mMin, 0, GetMaxValue());
}

CPluginControl_List::CPluginControl_List(OSType id, const char* names,
                                         std::vector<std::string> texts, int32_t defaultValue,
                                         bool automatable)
    : CPluginControl_Discrete(id, names, 0, static_cast<int32_t>(texts.size()) - 1, defaultValue,
                              automatable),
      mTexts(std::move(texts)) {}

CPluginControl_Linear::CPluginControl_Linear(OSType id, const char* names, double min, double max,
                                             double step, double defaultValue, bool automatable,
                                             ValueDisplay display)
    : CPluginControl(id, names, automatable, kControlMax),
      mMin(min),
      mMax(max),
      mStep(step),
      mDisplay(display) {
  SetDefaultValue(ConvertContinuousToControl(defaultValue));
}

double CPluginControl_Linear::GetContinuous() const {
  return mMin + (mMax - mMin) * GetValue() / kControlMax;
}

// NaN and a range of no width give the bottom of the range.
int32_t CPluginControl_Linear::ConvertContinuousToControl(double value) const {
  const double position = (value - mMin) / (mMax - mMin);
  if (!(position > 0.0)) return 0;
  return position >= 1.0 ? kControlMax : static_cast<int32_t>(std::lround(position * kControlMax));
}
