#include "analysis/FrequencyResponse.h"

#include <algorithm>
#include <cmath>
#include <complex>

#include "analysis/RealFft.h"

namespace render {

namespace {

// Bins of about 3 Hz at any rate, fine enough for the bottom octave.
int SegmentSize(double rate) { return FftSizeForBins(rate, 3.0); }

}  // namespace

double TopHz(double rate) { return std::min(20000.0, 0.45 * rate); }

ResponseCurve MeasureResponse(const std::vector<float>& input, const std::vector<float>& output,
                              double rate, long long settleFrames, const std::string& label) {
  RealFft in(SegmentSize(rate), WindowShape::kHann);
  RealFft out(in.Size(), WindowShape::kHann);
  std::vector<std::complex<double>> cross(in.NBins());
  std::vector<double> inPower(in.NBins());
  for (std::size_t start = settleFrames; start + in.Size() <= input.size();
       start += in.Size() / 2) {
    in.Transform(input.data() + start);
    out.Transform(output.data() + start);
    for (int k = 0; k < in.NBins(); ++k) {
      cross[k] += std::conj(in.Bin(k)) * out.Bin(k);
      inPower[k] += std::norm(in.Bin(k));
    }
  }
  ResponseCurve curve;
  curve.label = label;
  const double binHz = in.BinHz(rate);
  for (const LogBand& band : LogBands(12, 20.0, TopHz(rate))) {
    std::complex<double> crossSum = 0.0;
    double powerSum = 0.0;
    const BinRange range = BinsReaching(band, binHz, in.NBins());
    for (int k = range.first; k <= range.last; ++k) {
      crossSum += cross[k] * BinShare(k, binHz, band);
      powerSum += inPower[k] * BinShare(k, binHz, band);
    }
    curve.gain.hz.push_back(band.centreHz);
    curve.gain.db.push_back(20.0 * std::log10(std::abs(crossSum) / std::max(powerSum, 1e-30)));
  }
  return curve;
}

}  // namespace render
