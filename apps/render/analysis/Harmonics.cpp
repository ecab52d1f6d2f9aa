#include "analysis/Harmonics.h"

#include <algorithm>
#include <cmath>

#include "analysis/RealFft.h"

namespace render {

namespace {

// The window's main lobe is four bins either side; two more take in the effect's slow drift.
constexpr int kLobeBins = 6;

int AnalysisSize(double rate, std::size_t available) {
  int size = 1024;
  while (size * 2 <= 0.25 * rate && static_cast<std::size_t>(size) * 2 <= available) size *= 2;
  return size;
}

double PowerNear(const RealFft& fft, double hz, double rate) {
  const int centre = static_cast<int>(std::lround(hz / fft.BinHz(rate)));
  double power = 0.0;
  for (int k = std::max(1, centre - kLobeBins); k <= std::min(fft.NBins() - 1, centre + kLobeBins);
       ++k)
    power += fft.BinPower(k);
  return power;
}

}  // namespace

HarmonicSpectrum MeasureHarmonics(const std::vector<float>& output, double rate, double inDb) {
  RealFft fft(AnalysisSize(rate, output.size()), WindowShape::kBlackmanHarris);
  fft.Transform(output.data() + output.size() - fft.Size());
  HarmonicSpectrum spectrum;
  spectrum.inDb = inDb;
  const double fundamental = std::max(PowerNear(fft, kHarmonicsHz, rate), 1e-30);
  const double highest = std::min(20000.0, 0.5 * rate - kLobeBins * fft.BinHz(rate));
  double even = 0.0, all = 0.0;
  for (int h = 2; h * kHarmonicsHz <= highest; ++h) {
    const double power = PowerNear(fft, h * kHarmonicsHz, rate);
    spectrum.harmonicDb.push_back(10.0 * std::log10(std::max(power / fundamental, 1e-30)));
    all += power;
    if (h % 2 == 0) even += power;
  }
  spectrum.thd = std::sqrt(all / fundamental);
  spectrum.evenShare = all > 0.0 ? even / all : 0.0;
  return spectrum;
}

}  // namespace render
