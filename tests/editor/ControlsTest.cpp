// The control family by its stated numbers: frame choice, switch steps, knob gearing, wheel,
// fader snapping and hit area, radio buttons, defaults from the plug-in, clamping, graying.
#include "EditorTesting.h"
#include "editor/IFaderControl.h"
#include "editor/IKnobControl.h"
#include "editor/IRadioButtonsControl.h"

using Controls = EditorTest;

namespace {

// The frame a bitmap control shows at each value, read from the back buffer's red channel.
std::string FramesShown(TestEditor& editor, IControl* control,
                        std::initializer_list<double> values) {
  std::string frames;
  for (double v : values) {
    control->SetValue(v);  // unclamped, as a first value from the plug-in is
    IRECT all{0, 0, 64, 48};
    editor.Draw(&all);
    frames += std::to_string(editor.Pixel(control->GetRECT().L, control->GetRECT().T)[0]) + " ";
  }
  return frames;
}

}  // namespace

// Frame trunc((N - 1)·value + 0.5) + 1, held to 1..N; drawing a bitmap control turns strict
// drawing off, which marks every control dirty.
TEST_F(Controls, BitmapFramesFollowTheValue) {
  editor.PrepDraw();
  IBitmap knobFrames = editor.Frames(2, 2, 128), lamp = editor.Frames(3, 3, 2);
  auto* knob = new IKnobMultiControl(&plug, 0, 0, 0, &knobFrames);
  auto* bitmap = new IBitmapControl(&plug, 10, 10, -1, &lamp);
  editor.AttachControl(knob), editor.AttachControl(bitmap);
  editor.AttachBackground(1064048, "");  // a dirty background sets the area redrawn: all of it
  EXPECT_EQ(FramesShown(editor, knob, {0.5, 1.0, 0.0, 1.7, -0.3}), "65 128 1 128 1 ");
  EXPECT_EQ(FramesShown(editor, bitmap, {0.49, 0.5, 2.0, -1.0, -2.0}), "1 2 2 1 1 ");
  EXPECT_TRUE(knob->IsDirty());  // drawn and cleaned first, then marked by the bitmap's draw
  IRECT corner{60, 44, 64, 48};  // not strict: a dirty background repaints everything
  bitmap->SetValue(1.0), editor.Draw(&corner);
  EXPECT_EQ(editor.Pixel(10, 10)[0], 2);
}

// A click adds 1/(N - 1), wrapping past 1.001; a knob's height × gearing (4) is the range, 10×
// finer with shift or control; the wheel moves 0.01 a notch (0.001 held); values clamp into range.
TEST_F(Controls, SwitchStepsKnobGearingAndWheel) {
  IBitmap one = editor.Frames(4, 4, 1), two = editor.Frames(4, 4, 2),
          three = editor.Frames(5, 5, 3);
  ISwitchControl single(&plug, 0, 0, -1, &one), toggle(&plug, 0, 0, 2, &two),
      selector(&plug, 0, 0, -1, &three);
  IMouseMod plain, shift, control;
  shift.S = true, control.C = true;
  std::string steps;
  for (ISwitchControl* s : {&single, &toggle, &selector})
    for (int i = 0; i < 4; ++i) {
      i == 1 ? s->OnMouseDblClick(0, 0, &plain) : s->OnMouseDown(0, 0, &plain);
      steps += (std::ostringstream() << s->GetValue() << " ").str();
    }
  EXPECT_EQ(steps, "1 0 1 0 1 0 1 0 0.5 1 0 0.5 ");
  EXPECT_EQ(plug.log, "set 2 1,set 2 0,set 2 1,set 2 0,");
  IBitmap tall = editor.Frames(10, 40, 1), wide = editor.Frames(20, 5, 1);
  IKnobMultiControl knob(&plug, 0, 10, 0, &tall), across(&plug, 0, 0, 0, &wide, kHorizontal);
  across.SetGearing(2.0);
  plug.log.clear(), knob.OnMouseDrag(0, 0, 7, -160, &plain);
  EXPECT_TRUE(knob.GetValue() == 1.0 && plug.log == "set 0 1,");
  knob.OnMouseDrag(0, 0, 0, 160, &shift);
  EXPECT_DOUBLE_EQ(knob.GetValue(), 0.9);
  knob.OnMouseDrag(0, 0, 0, 40, &control);
  across.OnMouseDrag(0, 0, 10, -99, &plain);
  EXPECT_DOUBLE_EQ(knob.GetValue(), 0.875);
  EXPECT_EQ(across.GetValue(), 0.25);
  knob.OnMouseWheel(0, 0, &plain, 3), across.OnMouseWheel(0, 0, &control, -2);
  EXPECT_DOUBLE_EQ(knob.GetValue(), 0.905);
  EXPECT_DOUBLE_EQ(across.GetValue(), 0.248);
  knob.SetClampRange(0.2, 0.6), plug.log.clear(), knob.SetDirty(false);  // clamped, not sent
  EXPECT_TRUE(knob.GetValue() == 0.6 && plug.log.empty());
}

// A fader's handle centre follows the pointer (only the handle hits); a radio click sets
// i/(n - 1), also between buttons. (Tarn's panel draws its fader and lamps: TarnPanelTest.)
TEST_F(Controls, FaderAndRadioButtons) {
  IBitmap handle = editor.Frames(6, 10, 1), button = editor.Frames(8, 4, 2);
  IFaderControl fader(&plug, 5, 0, 50, 0, &handle, kVertical, true);
  IMouseMod mod;
  EXPECT_EQ(fader.GetRECT(), (IRECT{5, 0, 11, 50}));
  fader.OnMouseDown(7, 25, &mod);  // 1 - (25 - 0 - 5)/40
  EXPECT_TRUE(fader.GetValue() == 0.5 && plug.log == "set 0 0.5,");
  EXPECT_EQ(fader.GetHandleRECT(0.5), (IRECT{5, 20, 11, 30}));
  EXPECT_TRUE(fader.IsHit(5, 20) && fader.IsHit(10, 29) && !fader.IsHit(7, 30) &&
              !fader.IsHit(7, 5));
  IFaderControl across(&plug, 0, 0, 26, 0, &handle, kHorizontal);
  fader.OnMouseDrag(7, 100, 0, 0, &mod), across.OnMouseDrag(13, 0, 0, 0, &mod);  // (13 - 3)/20
  EXPECT_TRUE(fader.GetValue() == 0.0 && across.GetValue() == 0.5);
  IRadioButtonsControl radio(&plug, {0, 0, 30, 4}, 1, 3, &button, kHorizontal);
  plug.log.clear(), radio.OnMouseDown(12, 2, &mod), radio.OnMouseDown(9, 2, &mod);
  EXPECT_EQ(plug.log, "set 1 0.5,set 1 0.5,");
  IRadioButtonsControl reversed(&plug, {0, 2, 4, 32}, 1, 3, &button, kVertical, true);
  EXPECT_EQ(reversed.GetButtonRECT(0), (IRECT{0, 28, 8, 32}));  // gap (30 - 12)/2 = 9
}

// The plug-in's first value is the double-click default; user changes reach the plug-in and the
// displays; graying weighs 0.25 and back 1.0; auxiliary parameters get their own values.
TEST_F(Controls, DefaultsDisplaysGrayingAndAuxiliaries) {
  auto* attached = new TestEditor(&plug);  // the plug-in's own, not the fixture's
  IBitmap lamp = attached->Frames(3, 3, 3);
  auto* knob = new IKnobMultiControl(&plug, 0, 0, 0, &lamp);
  RecordingControl value(nullptr, -1), name(nullptr, -1);
  knob->SetValDisplayControl(&value), knob->SetNameDisplayControl(&name);
  knob->AddAuxParam(3);
  attached->AttachControl(knob);
  IMouseMod mod;
  knob->OnMouseDblClick(0, 0, &mod);
  EXPECT_EQ(knob->GetValue(), 0.0);
  plug.AttachGraphics(attached);  // sends 0.5 for "Gain" 0 dB, and "Count" to the auxiliary entry
  knob->SetValue(0.75), knob->SetDirty(true);
  EXPECT_EQ(value.text + "|" + name.text, "5.0|Gain");
  knob->OnMouseDblClick(0, 0, &mod);
  EXPECT_EQ(plug.GetParam(0)->Value(), 0.0);
  plug.SetParameter(3, 33.0);
  EXPECT_DOUBLE_EQ(knob->GetAuxParamValue(knob->AuxParamIdx(3)), 33.0 / 99.0);
  EXPECT_EQ(plug.log, "set 0 0.75,set 0 0.5,");  // values from the plug-in are not sent back
  EXPECT_EQ(knob->AuxParamIdx(0), -1);
  IBitmapControl zero(&plug, 0, 0, -1, &lamp);  // a first value of 0 is a default too
  zero.SetValueFromPlug(0.0), zero.SetValueFromPlug(0.5), zero.OnMouseDblClick(0, 0, &mod);
  EXPECT_EQ(zero.GetValue(), 0.0);
  knob->GrayOut(true);
  const float grayed = knob->GetBlend().mWeight;
  knob->GrayOut(false);
  EXPECT_TRUE(grayed == 0.25f && knob->GetBlend().mWeight == 1.0f);
}
