#include "plug/IParam.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kMaxDisplayPrecision = 6;

void CopyText(char* dest, const char* src) { std::strcpy(dest, src ? src : ""); }

// Digits needed to show one step: count the multiplications by ten that make it whole.
int PrecisionForStep(double step) {
  if (std::floor(step) == step) return 0;
  double x = step;
  for (int digits = 1; digits < kMaxDisplayPrecision; ++digits) {
    x *= 10.0;
    if (std::floor(x) == x) return digits;
  }
  return kMaxDisplayPrecision;
}

}  // namespace

void IParam::InitDouble(const char* name, double defaultVal, double minVal, double maxVal,
                        double step, const char* label, const char* group) {
  if (mType == kTypeNone) mType = kTypeDouble;
  CopyText(mName, name);
  CopyText(mLabel, label);
  CopyText(mGroup, group);
  mValue = mDefault = defaultVal;
  mMin = minVal;
  mMax = std::fmax(maxVal, minVal + step);  // a range is never narrower than one step
  mStep = step;
  mDisplayPrecision = PrecisionForStep(step);
}

void IParam::InitInt(const char* name, int defaultVal, int minVal, int maxVal, const char* label,
                     const char* group) {
  if (mType == kTypeNone) mType = kTypeInt;
  InitDouble(name, defaultVal, minVal, maxVal, 1.0, label, group);
}

void IParam::InitEnum(const char* name, int defaultVal, int nEnums, const char* label,
                      const char* group) {
  if (mType == kTypeNone) mType = kTypeEnum;
  InitDouble(name, defaultVal, 0.0, nEnums - 1, 1.0, label, group);
}

void IParam::InitBool(const char* name, bool defaultVal, const char* label, const char* group) {
  if (mType == kTypeNone) mType = kTypeBool;
  InitDouble(name, defaultVal ? 1.0 : 0.0, 0.0, 1.0, 1.0, label, group);
  SetDisplayText(0, "off");
  SetDisplayText(1, "on");
}

double IParam::FromNormalized(double normalizedValue) const {
  return std::pow(normalizedValue, mShape) * (mMax - mMin) + mMin;
}

// Only the top of the range is enforced: a normalised value below 0 passes through unchanged.
void IParam::SetNormalized(double normalizedValue) {
  mValue = FromNormalized(normalizedValue);
  if (mType != kTypeDouble) mValue = mStep * std::floor(mValue / mStep + 0.5);
  mValue = std::fmin(mValue, mMax);
}

double IParam::GetNormalized() const { return GetNormalized(mValue); }

double IParam::GetNormalized(double nonNormalizedValue) const {
  double v = nonNormalizedValue < mMin ? mMin : (nonNormalizedValue > mMax ? mMax : nonNormalizedValue);
  return std::pow((v - mMin) / (mMax - mMin), 1.0 / mShape);
}

double IParam::DBToAmp() const { return std::exp(0.1151292546497 * mValue); }

// Appends even when the value already has a text: lookups find the first entry.
void IParam::SetDisplayText(int value, const char* text) {
  int n = mDisplayTexts.GetSize();
  DisplayText* texts = mDisplayTexts.Resize(n + 1);
  if (mDisplayTexts.GetSize() != n + 1) return;
  texts[n].mValue = value;
  CopyText(texts[n].mText, text);
}

const char* IParam::GetDisplayText(int value) const {
  const DisplayText* texts = mDisplayTexts.Get();
  for (int i = 0; i < mDisplayTexts.GetSize(); ++i) {
    if (texts[i].mValue == value) return texts[i].mText;
  }
  return "";
}

// The index is the caller's to keep in range (see GetNDisplayTexts).
const char* IParam::GetDisplayTextAtIdx(int idx, int* value) const {
  const DisplayText& entry = mDisplayTexts.Get()[idx];
  if (value) *value = entry.mValue;
  return entry.mText;
}

bool IParam::MapDisplayText(const char* text, int* value) const {
  const DisplayText* texts = mDisplayTexts.Get();
  for (int i = 0; i < mDisplayTexts.GetSize(); ++i) {
    if (std::strcmp(texts[i].mText, text) == 0) {
      *value = texts[i].mValue;
      return true;
    }
  }
  return false;
}

void IParam::GetDisplayForHost(double value, bool normalized, char* out, bool withDisplayText) const {
  if (normalized) value = mMin + (mMax - mMin) * std::pow(value, mShape);

  if (withDisplayText && mDisplayTexts.GetSize() > 0) {
    const char* text = GetDisplayText(static_cast<int>(value));
    if (text[0]) {
      std::strcpy(out, text);
      return;
    }
  }

  if (mNegateDisplay) value = -value;

  if (mDisplayPrecision == 0) {
    std::sprintf(out, "%d", static_cast<int>(value));
  } else {
    std::sprintf(out, "%.*f", mDisplayPrecision, value);
  }
}
