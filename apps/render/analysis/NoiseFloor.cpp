#include "analysis/NoiseFloor.h"

#include <cmath>

#include "analysis/AveragedPower.h"
#include "analysis/FrequencyResponse.h"

namespace render {

void MeasureNoiseFloor(const std::vector<float>& output, double rate, long long settleFrames,
                       BandSpectrum* bands, double* rmsDb) {
  AveragedPower spectrum(FftSizeForBins(rate, 6.0));
  spectrum.Add(output.data() + settleFrames, static_cast<long long>(output.size()) - settleFrames);
  const std::vector<double> bins = spectrum.Bins();
  const double binHz = spectrum.BinHz(rate);
  *bands = BandLevels(bins, binHz, LogBands(3, 20.0, TopHz(rate)));
  // The whole audible range as one band.
  const BandSpectrum whole = BandLevels(bins, binHz, {{1000.0, 20.0, TopHz(rate)}});
  *rmsDb = whole.db[0];
}

}  // namespace render
