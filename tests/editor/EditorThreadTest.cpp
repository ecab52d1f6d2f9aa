#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "../plug/TestPlug.h"
#include "editor/HeadlessGraphics.h"
#include "editor/IBitmapControl.h"
#include "editor/IKnobControl.h"
#include "lice/LICE_Blit.h"
#include "lice/LICE_Fill.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"
#include "plug/ByteChunk.h"

namespace {

// Resource IDs of this program alone in the process-wide cache. Frame f (from 0) of each strip is
// filled with red 8·f, so the back buffer tells which frame a control drew.
constexpr int kBackground = 9001, kKnob = 9002, kMeter = 9003, kKnobFrames = 24, kMeterFrames = 16;

struct GeneratedGraphics : HeadlessGraphics {
  using HeadlessGraphics::HeadlessGraphics;
  LICE_IBitmap* OSLoadBitmap(int id, const char*) override {
    const int w = id == kBackground ? 304 : 40, h = id == kBackground ? 416 : 40;
    const int n = id == kKnob ? kKnobFrames : id == kMeter ? kMeterFrames : 1;
    auto* bitmap = new LICE_MemBitmap(w, h * n);
    for (int f = 0; f < n; ++f)
      LICE_FillRect(bitmap, 0, f * h, w, h, LICE_RGBA(8 * f, id % 100, 90, 255), 1.f,
                    LICE_BLIT_MODE_COPY);
    return bitmap;
  }
  // Whether the control drew the frame for this value (frame trunc((N - 1)·value + 0.5) from 0).
  bool Shows(int controlIdx, double value, int nFrames) {
    const IRECT& r = GetControl(controlIdx)->GetRECT();
    LICE_SysBitmap* screen = GetDrawBitmap();
    const LICE_pixel shown = screen->getBits()[(r.T + 5) * screen->getRowSpan() + r.L + 5];
    return static_cast<int>(LICE_GETR(shown) / 8) == static_cast<int>((nFrames - 1) * value + 0.5);
  }
};

}  // namespace

// The host's audio thread (blocks, the meter, automation), the user-interface thread (timer
// redraws, drags and wheel on the knobs) and the host's main thread (state save and restore) on
// one instance at once; CI runs it under ThreadSanitizer. Afterwards the editor draws what the
// plug-in holds.
TEST(EditorThreads, BlocksRedrawsGesturesAndStateAtOnce) {
  TestPlug plug;
  auto* gui = new GeneratedGraphics(&plug, 304, 416);
  gui->AttachBackground(kBackground, "background");
  IBitmap knob = gui->LoadIBitmap(kKnob, "knob", kKnobFrames);
  IBitmap meter = gui->LoadIBitmap(kMeter, "meter", kMeterFrames);
  for (int p = 0; p < 3; ++p)
    gui->AttachControl(new IKnobMultiControl(&plug, 20 + 100 * p, 300, p, &knob));
  const int meterIdx = gui->AttachControl(new IBitmapControl(&plug, 130, 60, -1, &meter));
  plug.AttachGraphics(gui);

  std::atomic<bool> uiDone{false};
  double needle = 0.0;  // the last value the audio thread sent; read after the join
  std::thread audio([&] {
    HostBuffers in(2, 64, 0.25f), out(2, 64, 0.f);
    for (int b = 0; !uiDone || b < 200; ++b) {
      plug.ProcessAudio(in.get(), out.get(), 64);
      plug.GetGUI()->SetControlFromPlug(meterIdx, needle = b % 37 / 36.0);
      plug.SetParameter(b % 3, b % 41 * 0.5 - 10.0);
    }
  });
  std::thread ui([&] {
    IMouseMod left{true};
    for (int i = 0; i < 60; ++i) {
      gui->Tick();
      const IRECT r = gui->GetControl(1 + i % 3)->GetRECT();
      gui->OnMouseDown(r.L + 20, r.T + 20, &left);
      for (int d = 1; d <= 4; ++d) gui->OnMouseDrag(r.L + 20, r.T + 20 + (i % 2 ? d : -d), &left);
      gui->OnMouseUp(r.L + 20, r.T + 20, &left);
      gui->OnMouseWheel(r.L + 5, r.T + 5, &left, i % 2 ? 1 : -1);
    }
    uiDone = true;
  });
  for (int i = 0; !uiDone || i < 20; ++i) {
    ByteChunk chunk;
    EXPECT_TRUE(plug.SerializeState(&chunk));
    // RedrawParamControls reads the parameters without the lock: the host holds it around the
    // restore and the push of the restored values to the editor.
    WDL_MutexLock lock(&plug.GetMutex());
    EXPECT_EQ(plug.UnserializeState(&chunk, 0), chunk.Size());
    plug.RedrawParamControls();
  }
  audio.join(), ui.join();

  plug.RedrawParamControls();
  gui->Tick();
  EXPECT_TRUE(gui->Shows(meterIdx, needle, kMeterFrames));
  for (int p = 0; p < 3; ++p)
    EXPECT_TRUE(gui->Shows(1 + p, plug.GetParam(p)->GetNormalized(), kKnobFrames)) << "knob " << p;
}
