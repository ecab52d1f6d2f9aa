#pragma once

#include <sstream>
#include <string>

#include "editor/IControl.h"

// A control that draws nothing and keeps what the plug-in sent it: the last value, the number of
// values, and (with a log) "index:value," for each and "deleted" when the editor deletes it. It
// also stands for a value or name display, keeping the text it is given.
struct RecordingControl : IControl {
  RecordingControl(IPlugBase* plug, int paramIdx, std::string* log = nullptr,
                   IRECT r = {0, 0, 1, 1})
      : IControl(plug, r, paramIdx), log(log) {}
  ~RecordingControl() override {
    if (log) *log += "deleted";
  }
  void SetValueFromPlug(double value) override {
    IControl::SetValueFromPlug(value);
    last = value, ++calls;
    if (log) *log += (std::ostringstream() << ParamIdx() << ':' << value << ',').str();
  }
  bool Draw(IGraphics*) override { return ++draws, true; }
  const char* GetTextToShow() const override { return text.c_str(); }
  void SetTextToShow(const char* t) override { text = t; }
  std::string* log;
  std::string text;
  double last = -1.0;
  int calls = 0, draws = 0;
};
