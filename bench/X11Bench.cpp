// One frame of Tarn's panel in its X11 window, as the back end's timer makes it 25 times a
// second: with the needle still and with it moving. The panel repaints whole at every tick (its
// bitmap controls turn strict drawing off), so the two cost about the same. It needs a display:
//   tests/x11/with-xvfb.sh build/bench/tarn_x11_bench
// The X server's own share of the work runs in its process and is not counted here.
#include <benchmark/benchmark.h>

#include "dsp/Tarn.h"
#include "editor/x11/IGraphicsX11.h"

static IGraphics* MakeX11(IPlugBase* plug, int w, int h, int fps, void*) {
  return new IGraphicsX11(plug, w, h, fps, TARN_SOURCE_DIR);
}

static void BM_X11Frame(benchmark::State& state) {
  Tarn tarn(IPlugInstanceInfo{MakeX11});
  auto& editor = *static_cast<IGraphicsX11*>(tarn.GetGUI());
  if (!editor.OpenWindow(nullptr)) return state.SkipWithError("no X display");
  editor.Frame();
  double needle = 0.1;
  for (auto _ : state) {
    if (state.range(0)) editor.SetControlFromPlug(1, needle = needle > 0.9 ? 0.1 : needle + 0.01);
    editor.Frame();
  }
  state.counters["frames/s"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_X11Frame)->ArgName("needle_moving")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
