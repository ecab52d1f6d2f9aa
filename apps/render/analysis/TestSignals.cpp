#include "analysis/TestSignals.h"

#include <cmath>
#include <cstdint>

namespace render {

namespace {

constexpr double kTwoPi = 6.283185307179586;

}  // namespace

double DbToGain(double db) { return std::pow(10.0, db / 20.0); }
double GainToDb(double gain) { return 20.0 * std::log10(gain); }

std::vector<float> Sine(double rate, double hz, double levelDb, long long frames) {
  return LevelSweep(rate, hz, levelDb, levelDb, frames);
}

std::vector<float> LevelSweep(double rate, double hz, double fromDb, double toDb,
                              long long frames) {
  std::vector<float> samples(frames);
  const double step = frames > 1 ? (toDb - fromDb) / static_cast<double>(frames - 1) : 0.0;
  for (long long n = 0; n < frames; ++n) {
    const double level = DbToGain(fromDb + step * static_cast<double>(n));
    samples[n] = static_cast<float>(level * std::sin(kTwoPi * hz * static_cast<double>(n) / rate));
  }
  return samples;
}

// A 64-bit linear congruential generator's top bits: plenty white for a measurement, and the
// same sequence everywhere, unlike the C library's generators.
std::vector<float> WhiteNoise(double rmsDb, long long frames) {
  const double peak = DbToGain(rmsDb) * std::sqrt(3.0);  // an even spread of +-a has RMS a/sqrt(3)
  std::vector<float> samples(frames);
  std::uint64_t state = 0x2545F4914F6CDD1DULL;
  for (long long n = 0; n < frames; ++n) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    const double unit = static_cast<double>(state >> 11) / 9007199254740992.0;  // [0, 1)
    samples[n] = static_cast<float>(peak * (2.0 * unit - 1.0));
  }
  return samples;
}

}  // namespace render
