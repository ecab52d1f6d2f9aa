#pragma once

#include <string>
#include <vector>

#include "RenderLoop.h"
#include "analysis/LogBands.h"

namespace render {

// What the analysis measured, for the report to draw. Levels are in dBFS (a sine's by its peak,
// noise and music by their RMS); gains in dB.

// Output level against input level of a slowly rising sine.
struct LevelCurve {
  std::vector<double> inDb, outDb;
};

// One period of the output for a steady sine in, scaled to its own peak so that shapes compare.
struct Waveform {
  double inDb = 0.0;
  double outPeakDb = 0.0;
  std::vector<double> phaseDegrees, shape;
};

// The harmonics of a steady 1 kHz sine, each relative to the fundamental.
struct HarmonicSpectrum {
  double inDb = 0.0;
  std::vector<double> harmonicDb;  // [0] is the 2nd harmonic, [1] the 3rd, ...
  double thd = 0.0;                // all harmonics' amplitude over the fundamental's
  double evenShare = 0.0;          // the even harmonics' part of the harmonics' power, 0 to 1
};

// Small-signal gain against frequency.
struct ResponseCurve {
  std::string label;
  BandSpectrum gain;  // db holds the gain
};

// A file's spectrum before and after the effect, with the levels a render's summary prints.
struct FileBeforeAfter {
  std::string name;
  BandSpectrum before, after;
  RenderReport report;
};

struct AnalysisResults {
  std::string settings;  // "Input Trim 0.0 dB, Drive 6.00, ..."
  double rate = 0.0;
  LevelCurve transfer;
  std::vector<Waveform> waveforms;
  std::vector<HarmonicSpectrum> harmonics;
  std::vector<ResponseCurve> responses;  // the current settings first
  BandSpectrum noise;
  double noiseDb = 0.0;  // the noise floor's RMS level from 20 Hz to 20 kHz
  bool hasFile = false;
  FileBeforeAfter file;
};

}  // namespace render
