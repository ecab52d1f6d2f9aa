#pragma once

#include <vector>

namespace render {

// A band of a fraction of an octave, as the plots show frequencies: evenly spaced on a log scale.
struct LogBand {
  double centreHz, loHz, hiHz;
};

// Bands of 1/perOctave octave whose centres (a grid through 1 kHz) lie from loHz to hiHz.
std::vector<LogBand> LogBands(int perOctave, double loHz, double hiHz);

// How much of an FFT bin (centred on k * binHz, binHz wide) lies inside a band, 0 to 1. Summing
// bins weighted by it gives the band's power even where a band is narrower than one bin.
double BinShare(int k, double binHz, const LogBand& band);

// The FFT bins (of nBins, binHz apart) that reach into a band, DC left out.
struct BinRange {
  int first, last;
};
BinRange BinsReaching(const LogBand& band, double binHz, int nBins);

// Levels of a power spectrum (RealFft::BinPower bins) summed into bands: the band's power in dB.
struct BandSpectrum {
  std::vector<double> hz;  // band centres
  std::vector<double> db;
};
BandSpectrum BandLevels(const std::vector<double>& bins, double binHz,
                        const std::vector<LogBand>& bands);

}  // namespace render
