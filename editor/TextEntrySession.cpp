#include "editor/TextEntrySession.h"

#include "editor/IControl.h"
#include "editor/IGraphics.h"

bool TextEntrySession::Open(IControl* control, IParam* param, const IRECT& rect, const char* text) {
  if (mControl || !control) return false;
  mControl = control, mParam = param, mRect = rect, mText = text ? text : "";
  mFilter = TextEntryFilter::ForParam(param, control->GetTextEntryLength());
  return true;
}

bool TextEntrySession::Edit(const std::string& text) {
  if (!mControl || !mFilter.Accepts(text.c_str())) return false;
  mText = text;
  return true;
}

bool TextEntrySession::Type(char key) {
  return Edit(key == '\b' ? mText.substr(0, mText.size() - !mText.empty()) : mText + key);
}

// The field is closed before the text is applied, so that whatever applying it sets off may open
// a new one.
bool TextEntrySession::End(IGraphics* editor, bool apply) {
  IControl* control = mControl;
  IParam* param = mParam;
  mControl = nullptr, mParam = nullptr;
  if (!control) return false;
  if (apply && param) editor->SetFromStringAfterPrompt(control, param, mText.c_str());
  if (apply && !param) control->TextFromTextEntry(mText.c_str());
  return true;
}

int TextEntrySession::FontSize(const IText& style) { return static_cast<int>(style.mSize * 0.9); }
