// The effect's panel: a sliding-needle meter behind the front panel's window, the meter-mode
// lamps, two trim knobs beside the meter, four large knobs and the bypass switch.
#include "dsp/Tarn.h"
#include "editor/IBitmapControl.h"
#include "editor/IFaderControl.h"
#include "editor/IGraphics.h"
#include "editor/IKnobControl.h"
#include "editor/IRadioButtonsControl.h"

namespace {

enum EImages {
  kMeterFace = 101,
  kFrontPanel,
  kModeLamp,
  kBigKnob,
  kTrimKnob,
  kNeedle,
  kBypassSwitch
};

// The needle belongs to no parameter, on purpose: no gesture can reach it through the front
// panel, which lies over it, so this index is never sent.
constexpr int kNeedleParam = 9;

}  // namespace

// Attachment order is the drawing order, bottom first: the needle lies between the meter face and
// the front panel so that it shows through the panel's window only. The front panel also takes
// every click on it that no later control takes.
int Tarn::LayOutEditor(IGraphics* editor) {
  editor->AttachBackground(kMeterFace, "resources/img/VUBG1.png");
  IBitmap front = editor->LoadIBitmap(kFrontPanel, "resources/img/BG1.png", 1);
  IBitmap lamp = editor->LoadIBitmap(kModeLamp, "resources/img/LED.png", 2);
  IBitmap big = editor->LoadIBitmap(kBigKnob, "resources/img/KnobS1.png", 128);
  IBitmap trim = editor->LoadIBitmap(kTrimKnob, "resources/img/InGain1.png", 51);
  IBitmap needle = editor->LoadIBitmap(kNeedle, "resources/img/Needle1.png", 1);
  IBitmap bypass = editor->LoadIBitmap(kBypassSwitch, "resources/img/Bypass.png", 2);

  const int needleIdx = editor->AttachControl(
      new IFaderControl(this, 55, 42, 202, kNeedleParam, &needle, kHorizontal, true));
  editor->AttachControl(new IBitmapControl(this, 0, 0, -1, &front));
  editor->AttachControl(
      new IRadioButtonsControl(this, {105, 16, 261, 34}, kVuMode, 3, &lamp, kHorizontal));
  IRECT whole{0, 0, 304, 416};
  const IColor transparent{0, 0, 0, 0};
  editor->DrawRect(&transparent, &whole);  // before any back buffer exists: it draws nothing
  const struct {
    int x, y, param;
    IBitmap* bitmap;
  } knobs[] = {{13, 47, kInputTrim, &trim}, {252, 47, kCrosstalk, &trim},
               {34, 118, kDrive, &big},     {169, 118, kOutputComp, &big},
               {34, 246, kAsymmetry, &big}, {169, 246, kFreqResponse, &big}};
  for (const auto& k : knobs)
    editor->AttachControl(new IKnobMultiControl(this, k.x, k.y, k.param, k.bitmap));
  editor->AttachControl(new ISwitchControl(this, 57, 41, kBypass, &bypass));
  AttachGraphics(editor);
  return needleIdx;
}
