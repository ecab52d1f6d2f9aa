#pragma once

#include <string>

#include "editor/IRECT.h"
#include "editor/TextEntryFilter.h"

class IControl;
class IGraphics;
class IParam;
struct IText;

// The one value field a window back end may have open, as every back end runs it: opened for a
// control (and the parameter it sets, if any) with the current text, edited through the input
// filter, and ended by applying the text or dropping it.
class TextEntrySession {
 public:
  // False, changing nothing, while another field is open or without a control.
  bool Open(IControl* control, IParam* param, const IRECT& rect, const char* text);
  bool IsOpen() const { return mControl != nullptr; }
  // Offers the text as edited: kept when the filter accepts it; else the field keeps its text.
  bool Edit(const std::string& text);
  // A key typed into the field: a backspace takes the last character, any other is appended.
  bool Type(char key);
  // Ends the field. Applying gives the text to the parameter through the editor, or to the control
  // when there is no parameter. False when no field was open.
  bool End(IGraphics* editor, bool apply);

  const std::string& Text() const { return mText; }
  const IRECT& Rect() const { return mRect; }
  // What the open field accepts, for a window system's own input filter.
  const TextEntryFilter& Filter() const { return mFilter; }
  // The field's font size for a control's text style: a tenth smaller, truncated.
  static int FontSize(const IText& style);

 private:
  IControl* mControl = nullptr;
  IParam* mParam = nullptr;
  IRECT mRect;
  std::string mText;
  TextEntryFilter mFilter;
};
