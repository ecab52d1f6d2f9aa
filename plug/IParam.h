#pragma once

#include "plug/WDL_TypedBuf.h"

// One automatable parameter: its kind, current value in plain units, range, step, curve shape,
// default, texts for host and editor, and an optional table of texts for discrete values.
// Editor and host exchange values in normalised form (0 ... 1); state keeps the plain value.
class IParam {
public:
  enum EParamType { kTypeNone = 0, kTypeBool, kTypeInt, kTypeEnum, kTypeDouble };

  struct DisplayText {
    int mValue;
    char mText[32];
  };

  IParam() = default;
  IParam(const IParam&) = delete;
  IParam& operator=(const IParam&) = delete;

  // Texts are copied whole: callers pass at most 31 characters.
  void InitDouble(const char* name, double defaultVal, double minVal, double maxVal, double step,
                  const char* label = "", const char* group = "");
  void InitInt(const char* name, int defaultVal, int minVal, int maxVal, const char* label = "",
               const char* group = "");
  void InitEnum(const char* name, int defaultVal, int nEnums, const char* label = "",
                const char* group = "");
  void InitBool(const char* name, bool defaultVal, const char* label = "", const char* group = "");

  int Type() const { return mType; }
  double Value() const { return mValue; }
  void Set(double plain) { mValue = plain; }
  double GetMin() const { return mMin; }
  double GetMax() const { return mMax; }
  double GetStep() const { return mStep; }
  double GetShape() const { return mShape; }
  void SetShape(double shape) { mShape = shape; }
  double GetDefault() const { return mDefault; }
  int GetPrecision() const { return mDisplayPrecision; }
  const char* GetNameForHost() const { return mName; }
  const char* GetLabelForHost() const { return mLabel; }
  const char* GetGroupForHost() const { return mGroup; }
  bool GetCanAutomate() const { return mCanAutomate; }
  bool GetNegateDisplay() const { return mNegateDisplay; }
  void NegateDisplay() { mNegateDisplay = true; }

  void SetNormalized(double normalizedValue);
  double GetNormalized() const;
  double GetNormalized(double nonNormalizedValue) const;
  double DBToAmp() const;

  void SetDisplayText(int value, const char* text);
  const char* GetDisplayText(int value) const;
  int GetNDisplayTexts() const { return mDisplayTexts.GetSize(); }
  const char* GetDisplayTextAtIdx(int idx, int* value = nullptr) const;
  bool MapDisplayText(const char* text, int* value) const;

  // Writes the value (plain, or normalised when `normalized`) as the host and editor show it.
  // `out` must hold at least 32 characters.
  void GetDisplayForHost(double value, bool normalized, char* out, bool withDisplayText = true) const;
  void GetDisplayForHost(char* out, bool withDisplayText = true) const {
    GetDisplayForHost(mValue, false, out, withDisplayText);
  }

private:
  double FromNormalized(double normalizedValue) const;

  int mType = kTypeNone;
  double mValue = 0.0;
  double mMin = 0.0;
  double mMax = 1.0;
  double mStep = 1.0;
  double mShape = 1.0;
  double mDefault = 0.0;
  int mDisplayPrecision = 0;
  char mName[32] = "";
  char mLabel[32] = "";
  char mGroup[32] = "";
  bool mNegateDisplay = false;
  bool mCanAutomate = true;
  WDL_TypedBuf<DisplayText> mDisplayTexts{4096};
};
