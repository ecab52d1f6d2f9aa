#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "dsp/Tarn.h"

// The whole effect as a host runs it, at its default settings: mono or stereo at 48 kHz through
// the float path, a sine at -6 dBFS in each channel, one
// block per iteration. Reported as frames per second and as the multiple of real time one core
// achieves; after the runs, the mono to stereo ratio of frames per second for each block size.
namespace {

constexpr double kRate = 48000.0;

void BM_Tarn48k(benchmark::State& state) {
  const int channels = static_cast<int>(state.range(0));
  const int block = static_cast<int>(state.range(1));
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetIO(channels, channels);
  plug->SetSampleRate(kRate);
  plug->SetBlockSize(block);
  plug->Reset();

  std::vector<std::vector<float>> in(channels, std::vector<float>(block));
  std::vector<std::vector<float>> out(channels, std::vector<float>(block));
  std::vector<float*> ins, outs;
  for (int c = 0; c < channels; ++c) {
    const double hz = 220.0 * (c + 1);
    for (int i = 0; i < block; ++i)
      in[c][i] = static_cast<float>(0.5 * std::sin(6.283185307179586 * hz * i / kRate));
    ins.push_back(in[c].data());
    outs.push_back(out[c].data());
  }

  for (auto _ : state) {
    plug->ProcessAudio(ins.data(), outs.data(), block);
    benchmark::DoNotOptimize(outs[0]);
  }
  const double frames = static_cast<double>(state.iterations()) * block;
  state.counters["frames/s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
  state.counters["x realtime"] = benchmark::Counter(frames / kRate, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Tarn48k)
    ->ArgNames({"channels", "block"})
    ->ArgsProduct({{1, 2}, {64, 512}})
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// The console report, keeping each run's median frames per second by channels and block.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      const std::string name = run.run_name.str();
      const int channels = name.find("channels:1") != std::string::npos ? 1 : 2;
      const int block = std::stoi(name.substr(name.find("block:") + 6));
      framesPerSecond[block][channels] = run.counters.at("frames/s").value;
    }
  }

  void PrintRatios() const {
    for (const auto& [block, byChannels] : framesPerSecond) {
      if (byChannels.size() < 2) continue;
      std::printf(
          "block %d: mono/stereo frames per second %.2f; x realtime mono %.0f, stereo %.0f\n",
          block, byChannels.at(1) / byChannels.at(2), byChannels.at(1) / kRate,
          byChannels.at(2) / kRate);
    }
  }

 private:
  std::map<int, std::map<int, double>> framesPerSecond;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  benchmark::Shutdown();
  return 0;
}
