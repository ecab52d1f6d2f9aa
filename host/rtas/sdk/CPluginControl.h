#pragma once

// The SDK's control classes: one host control per plug-in parameter, plus the master bypass.
//
// Control values cross between host and plug-in as 32-bit integers. How a control maps its
// values onto them is the SDK's affair, which this project cannot read; our law is decided here,
// in this one place:
//  - on/off, list and discrete controls carry the index of their state, 0 ... states - 1 (state
//    k of a discrete control is the integer min + k; of a list control, its k-th text);
//  - a linear control spreads min ... max evenly over 0 ... kControlMax, to the nearest step.
// A value outside a control's range is held to it.
#include <string>
#include <vector>

#include "host/rtas/sdk/FicTypes.h"

constexpr int32_t kControlMax = 0x7FFFFFFF;

class CPluginControl {
 public:
  CPluginControl(OSType id, const char* names, bool automatable, int32_t maxValue);
  virtual ~CPluginControl() = default;
  CPluginControl(const CPluginControl&) = delete;
  CPluginControl& operator=(const CPluginControl&) = delete;

  OSType GetID() const { return mID; }
  // Names from the longest to the shortest, separated by newlines.
  const std::string& GetNames() const { return mNames; }
  bool IsAutomatable() const { return mAutomatable; }
  int32_t GetValue() const { return mValue; }
  int32_t GetDefaultValue() const { return mDefault; }
  int32_t GetMaxValue() const { return mMax; }
  void SetValue(int32_t value);

 protected:
  void SetDefaultValue(int32_t value);

 private:
  OSType mID;
  std::string mNames;
  bool mAutomatable;
  int32_t mMax;
  int32_t mValue = 0, mDefault = 0;
};

class CPluginControl_Discrete : public CPluginControl {
 public:
  CPluginControl_Discrete(OSType id, const char* names, int32_t min, int32_t max,
                          int32_t defaultValue, bool automatable);
  int32_t GetDiscrete() const { return mMin + GetValue(); }
  int32_t ConvertDiscreteToControl(int32_t discrete) const;

 private:
  int32_t mMin;
};

class CPluginControl_List : public CPluginControl_Discrete {
 public:
  CPluginControl_List(OSType id, const char* names, std::vector<std::string> texts,
                      int32_t defaultValue, bool automatable);
  const std::vector<std::string>& GetTexts() const { return mTexts; }

 private:
  std::vector<std::string> mTexts;
};

class CPluginControl_OnOff : public CPluginControl_List {
 public:
  CPluginControl_OnOff(OSType id, const char* names, bool defaultOn, bool automatable)
      : CPluginControl_List(id, names, {"off", "on"}, defaultOn, automatable) {}
};

// How the host shows a linear control's value: with the SDK's standard prefixes (k, m, ...).
enum class ValueDisplay { kStandardPrefixes };

class CPluginControl_Linear : public CPluginControl {
 public:
  CPluginControl_Linear(OSType id, const char* names, double min, double max, double step,
                        double defaultValue, bool automatable, ValueDisplay display);
  double GetContinuous() const;
  int32_t ConvertContinuousToControl(double value) const;
  double GetStep() const { return mStep; }
  ValueDisplay GetValueDisplay() const { return mDisplay; }

 private:
  double mMin, mMax, mStep;
  ValueDisplay mDisplay;
};
