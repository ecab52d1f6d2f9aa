#include <atomic>
#include <thread>

#include "AllocationCounter.h"
#include "EditorTesting.h"
#include "HostBuffers.h"
#include "editor/IKnobControl.h"
#include "plug/ByteChunk.h"

// The host's audio thread (blocks, the meter, automation: nothing allocates), the user-interface
// thread (timer redraws, drags and wheel on the knobs) and its main thread (state save and
// restore) on one instance at once, clean under ThreadSanitizer; afterwards the editor shows what
// the plug-in holds: knob frame trunc(23·value + 0.5) + 1 of 24, meter frame of 16 likewise.
TEST(EditorThreads, BlocksRedrawsGesturesAndStateAtOnce) {
  EditorPlug plug;
  auto* gui = new TestEditor(&plug, 304, 416);
  gui->AttachBackground(1304416, "");
  IBitmap knob = gui->Frames(40, 40, 24), meter = gui->Frames(30, 30, 16);
  for (int k = 0; k < 4; ++k)
    gui->AttachControl(new IKnobMultiControl(&plug, 70 * k, 300, k, &knob));
  const int meterIdx = gui->AttachControl(new IBitmapControl(&plug, 130, 60, -1, &meter));
  plug.AttachGraphics(gui);
  std::atomic<bool> uiDone{false};
  double needle = 0.0;  // the last value sent; read after the join
  std::thread audio([&] {
    HostBuffers in(1, 64, 0.25f), out(1, 64, 0.f);
    plug.ProcessAudio(in.get(), out.get(), 64);  // the first block may size the buffers
    AllocationScope scope;
    for (int b = 0; !uiDone || b < 200; ++b) {
      plug.ProcessAudio(in.get(), out.get(), 64);
      plug.GetGUI()->SetControlFromPlug(meterIdx, needle = b % 37 / 36.0);
      plug.SetParameter(b % 4, b % 41 * 0.5 - 10.0);
    }
    EXPECT_EQ(scope.Count(), 0);
  });
  std::thread ui([&] {
    IMouseMod left{true};
    for (int i = 0; i < 60; ++i) {
      const int x = 70 * (i % 4) + 20, y = 320;
      gui->Tick(), gui->OnMouseDown(x, y, &left);
      for (int d = 1; d <= 4; ++d) gui->OnMouseDrag(x, y + (i % 2 ? d : -d), &left);
      gui->OnMouseUp(x, y, &left), gui->OnMouseWheel(x, y, &left, i % 2 ? 1 : -1);
    }
    uiDone = true;
  });
  for (int i = 0; !uiDone || i < 20; ++i) {
    ByteChunk chunk;
    EXPECT_TRUE(plug.SerializeState(&chunk) && plug.UnserializeState(&chunk, 0) == chunk.Size());
    plug.RedrawParamControls();
  }
  audio.join(), ui.join(), plug.RedrawParamControls(), gui->Tick();
  EXPECT_EQ(gui->Pixel(130, 60)[0], static_cast<int>(15 * needle + 0.5) + 1);
  for (int k = 0; k < 4; ++k)
    EXPECT_EQ(gui->Pixel(70 * k, 300)[0],
              static_cast<int>(23 * plug.GetParam(k)->GetNormalized() + 0.5) + 1);
}
