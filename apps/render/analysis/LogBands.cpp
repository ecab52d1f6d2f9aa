#include "analysis/LogBands.h"

#include <algorithm>
#include <cmath>

namespace render {

std::vector<LogBand> LogBands(int perOctave, double loHz, double hiHz) {
  std::vector<LogBand> bands;
  const double halfWidth = std::pow(2.0, 0.5 / perOctave);
  const int first = static_cast<int>(std::ceil(perOctave * std::log2(loHz / 1000.0) - 1e-9));
  // Nominal 20 kHz is 1 kHz times 2^(13/3), a little above: a percent of slack keeps it.
  const int last = static_cast<int>(std::floor(perOctave * std::log2(1.01 * hiHz / 1000.0)));
  for (int i = first; i <= last; ++i) {
    const double centre = 1000.0 * std::pow(2.0, static_cast<double>(i) / perOctave);
    bands.push_back({centre, centre / halfWidth, centre * halfWidth});
  }
  return bands;
}

double BinShare(int k, double binHz, const LogBand& band) {
  const double lo = std::max(band.loHz, (k - 0.5) * binHz);
  const double hi = std::min(band.hiHz, (k + 0.5) * binHz);
  return hi > lo ? (hi - lo) / binHz : 0.0;
}

BinRange BinsReaching(const LogBand& band, double binHz, int nBins) {
  return {std::max(1, static_cast<int>(band.loHz / binHz) - 1),
          std::min(nBins - 1, static_cast<int>(band.hiHz / binHz) + 1)};
}

BandSpectrum BandLevels(const std::vector<double>& bins, double binHz,
                        const std::vector<LogBand>& bands) {
  BandSpectrum spectrum;
  for (const LogBand& band : bands) {
    const BinRange range = BinsReaching(band, binHz, static_cast<int>(bins.size()));
    double power = 0.0;
    for (int k = range.first; k <= range.last; ++k) power += bins[k] * BinShare(k, binHz, band);
    spectrum.hz.push_back(band.centreHz);
    spectrum.db.push_back(10.0 * std::log10(std::max(power, 1e-30)));
  }
  return spectrum;
}

}  // namespace render
