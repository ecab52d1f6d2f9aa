#pragma once

#include <sstream>
#include <string>

#include "editor/IControl.h"

// A control that draws nothing and keeps what reaches it: the last value from the plug-in, the
// number of values and of draws, and the text it is to show or was typed for it (it stands for
// a value or name display too). With a log it also writes "index:value," for each value, its tag
// and a letter for each event ("d" down, "u" up, "g" drag dX dY, "2" double click, "w" wheel, "k"
// key, "o" over, "x" out) and "deleted" when the editor deletes it.
struct RecordingControl : IControl {
  RecordingControl(IPlugBase* plug, int paramIdx, std::string* log = nullptr,
                   IRECT r = {0, 0, 1, 1}, std::string tag = "")
      : IControl(plug, r, paramIdx), log(log), tag(tag) {}
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
  void TextFromTextEntry(const char* t) override { text = t; }
  void Log(const std::string& event) {
    if (log) *log += tag + event + ",";
  }
  void OnMouseDown(int, int, IMouseMod*) override { Log("d"); }
  void OnMouseUp(int, int, IMouseMod*) override { Log("u"); }
  void OnMouseDrag(int, int, int dX, int dY, IMouseMod*) override {
    Log("g" + std::to_string(dX) + " " + std::to_string(dY));
  }
  void OnMouseDblClick(int, int, IMouseMod*) override { Log("2"); }
  void OnMouseWheel(int, int, IMouseMod*, int d) override { Log("w" + std::to_string(d)); }
  bool OnKeyDown(int, int, int key) override { return Log("k" + std::to_string(key)), true; }
  void OnMouseOver(int, int, IMouseMod*) override { Log("o"); }
  void OnMouseOut() override { Log("x"); }
  std::string* log;
  std::string tag, text;
  double last = -1.0;
  int calls = 0, draws = 0;
};
