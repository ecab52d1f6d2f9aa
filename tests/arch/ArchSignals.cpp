// Renders the demo signal, the analysis's test signals and hostile input through Tarn at several
// settings, rates and channel counts, and writes each case's input and output samples, so that
// builds for different processors can be compared bit for bit (scripts/test-arm64).
//
//   tarn_arch_signals DIR   writes DIR/<case>.in and DIR/<case>.out (raw 32-bit floats, in
//                           the processor's byte order, channels interleaved) and lists the
//                           cases on standard output.
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "DemoSignal.h"
#include "RenderEffect.h"
#include "analysis/TestSignals.h"
#include "dsp/Tarn.h"

namespace {

struct Setting {
  const char* name;
  std::vector<std::pair<int, double>> params;
};

const Setting kSettings[] = {
    {"default", {}},
    {"hot", {{kDrive, 8.0}, {kAsymmetry, 10.0}, {kFreqResponse, 10.0}, {kCrosstalk, -60.0}}},
    {"dark", {{kDrive, 3.0}, {kAsymmetry, 0.0}, {kFreqResponse, -10.0}, {kInputTrim, 12.0}}},
};

// Interleaved frames of one or two channels.
struct Signal {
  std::string name;
  int channels;
  std::vector<float> samples;
};

std::vector<float> Interleave(const std::vector<float>& left, const std::vector<float>& right) {
  std::vector<float> out;
  for (std::size_t i = 0; i < left.size(); ++i) out.insert(out.end(), {left[i], right[i]});
  return out;
}

std::vector<Signal> Signals(double rate) {
  using namespace render;
  const long long n = static_cast<long long>(rate / 2);  // half a second each
  std::vector<float> demo(2 * n);
  for (long long i = 0; i < n; ++i) DemoSignal::Frame(i, &demo[2 * i], &demo[2 * i + 1]);
  std::vector<float> hostile = Sine(rate, 997.0, -6.0, n);
  const float specials[] = {std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN(), 1e-40f, -1e-45f, 3e38f};
  for (std::size_t k = 0; k < std::size(specials); ++k) hostile[1000 + 997 * k] = specials[k];
  return {{"demo", 2, demo},
          {"sine-20", 1, Sine(rate, 1000.0, -20.0, n)},
          {"sine0", 1, Sine(rate, 100.0, 0.0, n)},
          {"sweep", 1, LevelSweep(rate, 440.0, -60.0, 6.0, n)},
          {"noise", 1, WhiteNoise(-12.0, n)},
          {"stereo", 2, Interleave(Sine(rate, 220.0, -3.0, n), WhiteNoise(-20.0, n))},
          {"hostile", 1, hostile}};
}

bool WriteFloats(const std::string& path, const std::vector<float>& samples) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return false;
  const bool written = std::fwrite(samples.data(), sizeof(float), samples.size(), file) ==
                       samples.size();
  return std::fclose(file) == 0 && written;
}

// The signal through a fresh effect at the setting, in blocks of 512 frames.
std::vector<float> Render(const Signal& signal, const Setting& setting, double rate) {
  std::string error;
  auto effect = render::MakeTarnEffect(false, &error);
  for (const auto& [index, value] : setting.params) effect->SetParameter(index, value);
  constexpr int kBlock = 512;
  const int channels = signal.channels;
  effect->Prepare(rate, channels, kBlock);
  const std::size_t frames = signal.samples.size() / channels;
  std::vector<float> out(signal.samples.size());
  std::vector<std::vector<float>> in(channels, std::vector<float>(kBlock)), wet = in;
  float* ins[2] = {in[0].data(), in[channels - 1].data()};
  float* outs[2] = {wet[0].data(), wet[channels - 1].data()};
  for (std::size_t start = 0; start < frames; start += kBlock) {
    const int len = static_cast<int>(std::min<std::size_t>(kBlock, frames - start));
    for (int i = 0; i < len; ++i)
      for (int c = 0; c < channels; ++c) in[c][i] = signal.samples[(start + i) * channels + c];
    effect->Process(ins, outs, len);
    for (int i = 0; i < len; ++i)
      for (int c = 0; c < channels; ++c) out[(start + i) * channels + c] = wet[c][i];
  }
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tarn_arch_signals DIR\n");
    return 2;
  }
  const std::string dir = argv[1];
  for (double rate : {44100.0, 48000.0, 96000.0}) {
    for (const Signal& signal : Signals(rate)) {
      for (const Setting& setting : kSettings) {
        const std::string name = signal.name + "-" + setting.name + "-" +
                                 std::to_string(static_cast<int>(rate));
        if (!WriteFloats(dir + "/" + name + ".in", signal.samples) ||
            !WriteFloats(dir + "/" + name + ".out", Render(signal, setting, rate))) {
          std::fprintf(stderr, "tarn_arch_signals: cannot write %s/%s\n", dir.c_str(), name.c_str());
          return 1;
        }
        std::printf("%s\n", name.c_str());
      }
    }
  }
  return 0;
}
