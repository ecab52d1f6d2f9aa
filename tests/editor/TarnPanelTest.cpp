// Tarn's panel on the headless editor with the committed artwork: its controls in their order,
// places and bindings, the lamps, switch and knobs driving their parameters with gestures, and
// the needle standing where the meter puts it.
#include <gtest/gtest.h>

#include <sstream>

#include "HostBuffers.h"
#include "dsp/Tarn.h"
#include "editor/HeadlessGraphics.h"
#include "editor/IBitmapControl.h"
#include "editor/IFaderControl.h"
#include "editor/IKnobControl.h"
#include "lice/LICE_SysBitmap.h"

namespace {

IGraphics* MakeHeadless(IPlugBase* plug, int w, int h, int, void*) {
  return new HeadlessGraphics(plug, w, h, TARN_SOURCE_DIR);
}

// A stereo Tarn at 48 kHz on the headless editor; its host hears "b" and "e" and the index
// around each gesture.
struct Panel : Tarn {
  Panel() : Tarn(IPlugInstanceInfo{MakeHeadless}) { SetSampleRate(48000), SetIO(2, 2), Reset(); }
  HeadlessGraphics& gui() { return *static_cast<HeadlessGraphics*>(GetGUI()); }
  void BeginInformHostOfParamChange(int i) override { log << "b" << i << ","; }
  void EndInformHostOfParamChange(int i) override { log << "e" << i << ","; }
  // Where the needle's line is: the darkest pixel of a row of the meter face below the scale.
  int NeedleColumn() {
    gui().Tick();
    LICE_SysBitmap* b = gui().GetDrawBitmap();
    int darkest = 0;
    for (int x = 56, least = 999; x < 254; ++x) {
      const LICE_pixel p = b->getBits()[88 * b->getRowSpan() + x];
      if (const int sum = LICE_GETR(p) + LICE_GETG(p) + LICE_GETB(p); sum < least)
        least = sum, darkest = x;
    }
    return darkest;
  }
  std::ostringstream log;
};

}  // namespace

// Images set the sizes: panel 304 × 416, needle 6 × 64, lamps 18, trim knobs 38, knobs 100,
// bypass 30 × 14. The background is an opaque copy; everything else composes with alpha.
TEST(TarnPanel, ControlsInTheirOrderPlacesAndBindings) {
  Panel p;
  const std::pair<IRECT, int> table[] = {
      {{0, 0, 304, 416}, -1},    {{55, 42, 257, 106}, 9},   {{0, 0, 304, 416}, -1},
      {{105, 16, 261, 34}, 6},   {{13, 47, 51, 85}, 0},     {{252, 47, 290, 85}, 5},
      {{34, 118, 134, 218}, 1},  {{169, 118, 269, 218}, 2}, {{34, 246, 134, 346}, 3},
      {{169, 246, 269, 346}, 4}, {{57, 41, 87, 55}, 7}};
  ASSERT_EQ(p.gui().NControls(), 11);
  for (int i = 0; i < 11; ++i) {
    IControl* c = p.gui().GetControl(i);
    EXPECT_TRUE(c->GetRECT() == table[i].first && c->ParamIdx() == table[i].second) << i;
    EXPECT_EQ(c->GetBlend().mMethod, i == 0 ? IChannelBlend::kBlendClobber : 0) << i;
    EXPECT_EQ(!!dynamic_cast<IKnobMultiControl*>(c), i >= 4 && i <= 9) << i;
  }
  EXPECT_TRUE(dynamic_cast<IFaderControl*>(p.gui().GetControl(1)) &&
              dynamic_cast<ISwitchControl*>(p.gui().GetControl(10)));  // the lamps: clicked below
}

// Lamps choose the mode; the bypass switch toggles on a click and on a double click (which, as
// ever, opens no gesture but its release ends one); a drag up of 19 pixels adds 19/(4·height) to
// a knob's parameter, between the host's begin and end.
TEST(TarnPanel, LampsSwitchAndKnobsDriveTheirParameters) {
  Panel p;
  IMouseMod mod;
  p.gui().OnMouseDown(183, 25, &mod), p.gui().OnMouseUp(183, 25, &mod);
  EXPECT_EQ(p.GetParam(kVuMode)->Value(), 1.0);
  p.gui().OnMouseDown(252, 25, &mod), p.gui().OnMouseUp(252, 25, &mod);
  EXPECT_EQ(p.GetParam(kVuMode)->Value(), 2.0);
  p.gui().OnMouseDown(70, 48, &mod), p.gui().OnMouseUp(70, 48, &mod);
  EXPECT_EQ(p.GetParam(kBypass)->Value(), 1.0);
  p.gui().OnMouseDblClick(70, 48, &mod), p.gui().OnMouseUp(70, 48, &mod);
  EXPECT_EQ(p.GetParam(kBypass)->Value(), 0.0);
  EXPECT_EQ(p.log.str(), "b6,e6,b6,e6,b7,e7,e7,");  // a double click opens no gesture
  for (int i = 4; i <= 9; ++i) {
    const IRECT r = p.gui().GetControl(i)->GetRECT();
    const int idx = p.gui().GetControl(i)->ParamIdx(), x = (r.L + r.R) / 2, y = (r.T + r.B) / 2;
    const double before = p.GetParam(idx)->GetNormalized();
    p.log.str("");
    p.gui().OnMouseDown(x, y, &mod), p.gui().OnMouseDrag(x, y - 19, &mod);
    p.gui().OnMouseUp(x, y - 19, &mod);
    EXPECT_DOUBLE_EQ(p.GetParam(idx)->GetNormalized(), before + 19.0 / (4 * r.H())) << i;
    EXPECT_EQ(p.log.str(), "b" + std::to_string(idx) + ",e" + std::to_string(idx) + ",");
  }
}

// The handle moves trunc(196·value) from x 55 and its line is its fourth column: silence sends
// 0.015, a raw meter value of 1.0 sends 0.79366, and 0.98 is the ceiling. Without an editor the
// block does no meter work: the needle keeps the ballistics' own value.
TEST(TarnPanel, TheNeedleStandsWhereTheMeterPutsIt) {
  Panel p;
  HostBuffers silence(2, 64, 0.f), out(2, 64, 0.f);
  p.ProcessAudio(silence.get(), out.get(), 64);
  EXPECT_EQ(p.GetNeedle(), 0.015);
  EXPECT_EQ(p.NeedleColumn(), 55 + 2 + 3);
  for (auto [value, left] : {std::pair{0.79366, 55 + 155}, {0.98, 55 + 192}}) {
    p.gui().SetControlFromPlug(1, value);
    EXPECT_EQ(p.NeedleColumn(), left + 3) << value;
  }
  std::unique_ptr<IPlugAdaptor> bare(MakePlug());
  bare->SetSampleRate(48000), bare->SetIO(2, 2), bare->Reset();
  bare->ProcessAudio(silence.get(), out.get(), 64);
  EXPECT_LT(static_cast<Tarn*>(bare.get())->GetNeedle(), 0.015);
}
