// One full repaint of the editor (304 × 416): a background and a dozen bitmap controls, all
// dirty, drawn by one timer tick. Reported per repaint and as the share of one core that the
// editor's timer rate of 25 repaints a second takes.

#include <benchmark/benchmark.h>
#include <time.h>

#include <cmath>

#include "editor/HeadlessGraphics.h"
#include "editor/IBitmapControl.h"
#include "editor/IKnobControl.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"

namespace {

constexpr int kWidth = 304, kHeight = 416, kFramesPerSecond = 25;
constexpr int kBackground = 9101, kKnob = 9102, kMeter = 9103, kSwitch = 9104;
constexpr int kKnobFrames = 64, kMeterFrames = 32;

// Pixel (x, y) of a frame: opaque inside a disc, transparent outside, a soft rim between, so
// the source-alpha blits see what anti-aliased artwork gives them.
LICE_pixel Disc(int x, int y, int size, int frame) {
  const double r = size * 0.5, dx = x + 0.5 - r, dy = y + 0.5 - r;
  const double edge = r - 1.0 - std::sqrt(dx * dx + dy * dy);
  const unsigned a = edge >= 1.0 ? 255u : edge <= 0.0 ? 0u : static_cast<unsigned>(255 * edge);
  return LICE_RGBA(40 + frame * 3, 90 + (x * 7 + y) % 64, 120, a);
}

double ThreadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec + now.tv_nsec * 1e-9;
}

struct GeneratedGraphics : HeadlessGraphics {
  using HeadlessGraphics::HeadlessGraphics;
  // Square frames stacked vertically; the background is one opaque frame of the editor's size.
  LICE_IBitmap* OSLoadBitmap(int id, const char*) override {
    const int size = id == kKnob ? 100 : id == kMeter ? 120 : 36;
    const int frames = id == kKnob ? kKnobFrames : id == kMeter ? kMeterFrames : 2;
    if (id == kBackground) {
      auto* bitmap = new LICE_MemBitmap(kWidth, kHeight);
      for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
          bitmap->getBits()[y * bitmap->getRowSpan() + x] = LICE_RGBA(x % 256, y % 256, 60, 255);
      return bitmap;
    }
    auto* bitmap = new LICE_MemBitmap(size, size * frames);
    for (int f = 0; f < frames; ++f)
      for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
          bitmap->getBits()[(f * size + y) * bitmap->getRowSpan() + x] = Disc(x, y, size, f);
    return bitmap;
  }
};

void BM_FullEditorRedraw(benchmark::State& state) {
  GeneratedGraphics gui(nullptr, kWidth, kHeight);
  gui.AttachBackground(kBackground, "background");
  IBitmap knob = gui.LoadIBitmap(kKnob, "knob", kKnobFrames);
  IBitmap meter = gui.LoadIBitmap(kMeter, "meter", kMeterFrames);
  IBitmap toggle = gui.LoadIBitmap(kSwitch, "switch", 2);
  gui.AttachControl(new IBitmapControl(nullptr, 92, 4, -1, &meter));
  for (int i = 0; i < 6; ++i)  // two rows of three knobs, overlapping by a few pixels
    gui.AttachControl(
        new IKnobMultiControl(nullptr, 2 + 100 * (i % 3), 128 + 96 * (i / 3), i, &knob));
  for (int i = 0; i < 5; ++i)
    gui.AttachControl(new ISwitchControl(nullptr, 12 + 58 * i, 340, 6 + i % 2, &toggle));
  for (int i = 1; i < gui.NControls(); ++i) gui.GetControl(i)->SetValueFromPlug(i / 13.0);
  gui.PrepDraw();

  const double cpuStart = ThreadCpuSeconds();
  for (auto _ : state) {
    gui.SetAllControlsDirty();
    if (gui.Tick().W() != kWidth) state.SkipWithError("the tick did not repaint the whole editor");
    benchmark::DoNotOptimize(gui.GetDrawBitmap()->getBits());
    benchmark::ClobberMemory();
  }
  // The share of one core that 25 repaints a second take, in percent: CPU time per repaint × 25.
  const double perRepaint = (ThreadCpuSeconds() - cpuStart) / state.iterations();
  state.counters["core_pct_at_25fps"] = perRepaint * kFramesPerSecond * 100.0;
  state.counters["controls"] = gui.NControls();
}

BENCHMARK(BM_FullEditorRedraw)->Unit(benchmark::kMicrosecond);

}  // namespace
