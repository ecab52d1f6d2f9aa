#include "dsp/Tarn.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

// The whole effect as a host runs it: stereo at 48 kHz through the float path, one block per
// iteration, with the block size as the argument. Reported as frames per second and as the
// multiple of real time one core achieves.
static void BM_TarnStereo48k(benchmark::State& state) {
  constexpr double kRate = 48000.0;
  const int block = static_cast<int>(state.range(0));
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetIO(2, 2);
  plug->SetSampleRate(kRate);
  plug->SetBlockSize(block);
  plug->SetParameter(kDrive, 6.0);
  plug->Reset();

  std::vector<float> inL(block), inR(block), outL(block), outR(block);
  for (int i = 0; i < block; ++i) {
    inL[i] = static_cast<float>(0.5 * std::sin(6.283185307179586 * 220.0 * i / kRate));
    inR[i] = static_cast<float>(0.4 * std::sin(6.283185307179586 * 330.0 * i / kRate));
  }
  float* ins[2] = {inL.data(), inR.data()};
  float* outs[2] = {outL.data(), outR.data()};

  for (auto _ : state) {
    plug->ProcessAudio(ins, outs, block);
    benchmark::DoNotOptimize(outL.data());
    benchmark::DoNotOptimize(outR.data());
  }
  const double frames = static_cast<double>(state.iterations()) * block;
  state.counters["frames/s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
  state.counters["x realtime"] = benchmark::Counter(frames / kRate, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_TarnStereo48k)->Arg(16)->Arg(64)->Arg(512);
