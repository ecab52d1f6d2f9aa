// A right click's prompt: a menu of the states for parameters with texts, else a field for the
// value that filters what is typed.
#include "EditorTesting.h"
#include "editor/IKnobControl.h"
#include "editor/IPopupMenu.h"

namespace {

struct Prompted {
  EditorPlug plug;
  TestEditor* editor = new TestEditor(&plug);
  IBitmap frames = editor->Frames(20, 10, 1);
  IMouseMod right{false, true};
  IKnobMultiControl* Knob(int param) {
    auto* knob = new IKnobMultiControl(&plug, 10, 10, param, &frames);
    editor->AttachControl(knob);
    return knob;
  }
  Prompted() { plug.AttachGraphics(editor); }
};

}  // namespace

// The states in value order, the current one checked, for enumerations and booleans with texts;
// the chosen position is the new value. A dismissed menu sends nothing.
TEST(Prompt, MenuOfStates) {
  Prompted p;
  IKnobMultiControl *mode = p.Knob(1), *on = p.Knob(2);
  p.plug.SetParameter(1, 1.0);
  std::string shown;
  int answers[] = {0, 3, 1}, asked = 0;  // 3 is past the end: dismissed
  p.editor->AnswerMenusWith([&](const IPopupMenu& menu) {
    for (int i = 0; i < menu.GetNItems(); ++i)
      shown += menu.GetItem(i)->GetText() + std::string(menu.GetItem(i)->GetChecked() ? "* " : " ");
    return answers[asked++];
  });
  p.plug.log.clear(), mode->OnMouseDown(12, 12, &p.right);
  EXPECT_TRUE(mode->GetValue() == 0.0 && p.plug.GetParam(1)->Value() == 0.0);
  mode->OnMouseDown(12, 12, &p.right), on->OnMouseDown(12, 12, &p.right);  // dismissed, then on
  EXPECT_EQ(shown, "Input RMS* Output Input* RMS Output off* on ");
  EXPECT_EQ(p.plug.log, "set 1 0,set 2 1,");
}

// A centred 30 × 16 field with the value's text takes digits, signs and points (doubles) up to 7
// characters; return applies the number read (0 without one); states are looked up by text.
TEST(Prompt, ValueFieldFiltersAndApplies) {
  Prompted p;
  IKnobMultiControl *gain = p.Knob(0), *count = p.Knob(3);
  gain->OnMouseDown(12, 12, &p.right);
  ASSERT_TRUE(p.editor->TextEntryOpen());
  EXPECT_EQ(p.editor->EntryRECT(), (IRECT{5, 7, 35, 23}));  // centre (20, 15)
  EXPECT_EQ(p.editor->EntryText(), "0.0");
  count->OnMouseDown(12, 12, &p.right);                                // one field at a time
  EXPECT_TRUE(p.editor->Type("\b") && p.editor->EntryText() == "0.");  // from the end
  EXPECT_TRUE(p.editor->Type("\b\b-3.5") && !p.editor->Type("x") && p.editor->Type("000") &&
              !p.editor->Type("0"));  // an eighth character
  p.editor->CommitTextEntry(), count->OnMouseDown(12, 12, &p.right);
  EXPECT_EQ(p.plug.GetParam(0)->Value(), -3.5);
  EXPECT_TRUE(p.editor->Type("\b+1") && !p.editor->Type(".") && p.editor->Type("2-"));
  p.editor->CommitTextEntry();  // signs pass anywhere; the number is read up to the first misfit
  EXPECT_EQ(p.plug.GetParam(3)->Value(), 12.0);
  const TextEntryFilter one{nullptr, 1, 0}, upToOne{nullptr, 0, 1};  // a maximum value, if set
  EXPECT_TRUE(!one.Accepts("12") && one.Accepts("x") && upToOne.Accepts("1") &&
              !upToOne.Accepts("2"));
  const auto set = [&](int param, const char* text) {  // each call sets, then reads
    p.editor->SetFromStringAfterPrompt(gain, p.plug.GetParam(param), text);
    return gain->GetValue();
  };
  p.plug.GetParam(1)->NegateDisplay();  // texts are looked up; unknown ones give state 0
  EXPECT_EQ(std::tuple(set(0, "abc"), set(1, "Output"), set(1, "Loud")), std::tuple(0.5, 1.0, 0.0));
  p.plug.GetParam(0)->NegateDisplay();
  EXPECT_EQ(set(0, "2.5dB"), 0.375);  // -2.5 dB of -10 ... 10
}
