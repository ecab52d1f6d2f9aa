// The right click's value prompt: a menu of the parameter's states, or a field for its value,
// and the conversion of what was typed.
#include <cstdlib>
#include <cstring>

#include "editor/IControl.h"
#include "editor/IGraphics.h"
#include "editor/IPopupMenu.h"
#include "plug/IParam.h"

void IGraphics::PromptUserInput(IControl* control, IParam* param, IRECT* rect) {
  if (!control || !param || !rect) return;
  const int n = param->GetNDisplayTexts();
  char current[128];
  if (param->Type() == IParam::kTypeEnum || (param->Type() == IParam::kTypeBool && n != 0)) {
    param->GetDisplayForHost(param->Value(), false, current, true);
    IPopupMenu menu;
    for (int i = 0; i < n; ++i) {
      const char* text = param->GetDisplayTextAtIdx(i);
      const bool checked = std::strcmp(text, current) == 0;
      menu.AddItem(text, checked ? IPopupMenuItem::kChecked : IPopupMenuItem::kNoFlags);
    }
    // The chosen position is taken as the value: display texts are registered in value order.
    if (IPopupMenu* chosen = CreateIPopupMenu(&menu, rect))
      control->SetValueFromUserInput(param->GetNormalized(chosen->GetChosenItemIdx()));
    return;
  }
  param->GetDisplayForHost(param->Value(), false, current, false);
  CreateTextEntry(control, control->GetText(), rect, current, param);
}

// Unknown texts and text without a number give 0 in the parameter's own terms.
void IGraphics::SetFromStringAfterPrompt(IControl* control, IParam* param, const char* str) {
  if (!param) return;
  double value = 0.0;
  if (param->Type() == IParam::kTypeBool || param->Type() == IParam::kTypeEnum) {
    int state = 0;
    if (param->MapDisplayText(str, &state)) value = state;
  } else {
    value = std::atof(str);
    if (param->GetNegateDisplay()) value = -value;
  }
  control->SetValueFromUserInput(param->GetNormalized(value));
}
