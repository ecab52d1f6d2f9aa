#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "dsp/AsymSat.h"

// Cost of one stereo frame of the saturator at the common host rates, on a drive setting loud
// enough to keep the level detector and both curve branches busy.
static void BM_AsymSatStereoFrame(benchmark::State& state) {
  const double fs = static_cast<double>(state.range(0));
  AsymSat sat;
  sat.init_all(fs, 6.0, 3.0, 0.3, 0.5);

  std::vector<double> left(4096), right(4096);
  for (std::size_t i = 0; i < left.size(); ++i) {
    left[i] = 0.7 * std::sin(6.283185307179586 * 440.0 * static_cast<double>(i) / fs);
    right[i] = 0.5 * std::sin(6.283185307179586 * 660.0 * static_cast<double>(i) / fs);
  }

  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(sat.process_Stereo(left[i], right[i]));
    benchmark::DoNotOptimize(sat.outR);
    i = (i + 1) & (left.size() - 1);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AsymSatStereoFrame)->Arg(44100)->Arg(48000)->Arg(96000);

// The same frames through the block form, 64 frames per call. The second argument 0 runs the
// two-lane oversampled section, as on processors without 256-bit vectors.
static void BM_AsymSatStereoBlock64(benchmark::State& state) {
  const double fs = static_cast<double>(state.range(0));
  constexpr int kBlock = 64;
  AsymSat sat;
  sat.init_all(fs, 6.0, 3.0, 0.3, 0.5);
  sat.wideLanes = sat.wideLanes && state.range(1) != 0;

  std::vector<double> left(4096), right(4096), outL(kBlock), outR(kBlock);
  for (std::size_t i = 0; i < left.size(); ++i) {
    left[i] = 0.7 * std::sin(6.283185307179586 * 440.0 * static_cast<double>(i) / fs);
    right[i] = 0.5 * std::sin(6.283185307179586 * 660.0 * static_cast<double>(i) / fs);
  }

  std::size_t i = 0;
  for (auto _ : state) {
    sat.process_StereoBlock(&left[i], &right[i], outL.data(), outR.data(), kBlock);
    benchmark::DoNotOptimize(outL.data());
    benchmark::DoNotOptimize(outR.data());
    i = (i + kBlock) & (left.size() - 1);
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_AsymSatStereoBlock64)->Args({48000, 1})->Args({48000, 0});
