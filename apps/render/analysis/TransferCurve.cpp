#include "analysis/TransferCurve.h"

#include <algorithm>
#include <cmath>

#include "analysis/TestSignals.h"

namespace render {

namespace {

constexpr double kTwoPi = 6.283185307179586;

double SineLevelDb(const std::vector<float>& x, long long start, long long n) {
  double sum = 0.0;
  for (long long i = start; i < start + n; ++i) sum += static_cast<double>(x[i]) * x[i];
  return GainToDb(std::sqrt(2.0 * sum / static_cast<double>(n)));
}

// The phase of the fundamental over the last `n` samples, as of the first of them.
double FundamentalPhase(const std::vector<float>& x, long long start, long long n, double rate) {
  double re = 0.0, im = 0.0;
  for (long long i = 0; i < n; ++i) {
    const double angle = kTwoPi * kTransferHz * static_cast<double>(i) / rate;
    re += x[start + i] * std::sin(angle);
    im += x[start + i] * std::cos(angle);
  }
  return std::atan2(im, re);  // x ~ sin(angle + phase)
}

}  // namespace

LevelCurve MeasureLevelCurve(const std::vector<float>& input, const std::vector<float>& output,
                             double rate, long long settleFrames) {
  LevelCurve curve;
  const long long window = std::lround(0.05 * rate);
  const long long end = static_cast<long long>(std::min(input.size(), output.size()));
  for (long long start = settleFrames; start + window <= end; start += window) {
    curve.inDb.push_back(SineLevelDb(input, start, window));
    curve.outDb.push_back(SineLevelDb(output, start, window));
  }
  return curve;
}

Waveform MeasureWaveform(const std::vector<float>& output, double rate, double inDb) {
  const double periodFrames = rate / kTransferHz;
  const long long span = std::lround(4.0 * periodFrames);
  const long long spanStart = static_cast<long long>(output.size()) - span;
  const double phase = FundamentalPhase(output, spanStart, span, rate);
  // The fundamental rises through zero where angle + phase is a whole turn.
  const double turn = std::fmod(kTwoPi - phase, kTwoPi) / kTwoPi;
  const long long start = spanStart + std::lround(turn * periodFrames);
  const long long n = std::lround(periodFrames);
  Waveform wave;
  wave.inDb = inDb;
  double peak = 0.0;
  for (long long i = 0; i <= n && start + i < static_cast<long long>(output.size()); ++i)
    peak = std::max(peak, std::fabs(static_cast<double>(output[start + i])));
  wave.outPeakDb = GainToDb(peak);
  for (long long i = 0; i <= n && start + i < static_cast<long long>(output.size()); ++i) {
    wave.phaseDegrees.push_back(360.0 * static_cast<double>(i) / periodFrames);
    wave.shape.push_back(peak > 0.0 ? output[start + i] / peak : 0.0);
  }
  return wave;
}

}  // namespace render
