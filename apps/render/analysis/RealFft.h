#pragma once

#include <fftw3.h>

#include <complex>
#include <vector>

namespace render {

enum class WindowShape {
  kHann,            // for noise and music: averaged spectra
  kBlackmanHarris,  // for a pure tone: side lobes below -92 dB keep the harmonics clean
};

// The smallest power of two (1024 at least) whose bins at `rate` are at most binHz apart.
int FftSizeForBins(double rate, double binHz);

// A windowed real FFT of one fixed size, planned once by FFTW and reused.
class RealFft {
 public:
  RealFft(int size, WindowShape shape);
  ~RealFft();
  RealFft(const RealFft&) = delete;
  RealFft& operator=(const RealFft&) = delete;

  int Size() const { return mSize; }
  int NBins() const { return mSize / 2 + 1; }
  double BinHz(double rate) const { return rate / mSize; }

  // Windows Size() samples and transforms them. Bin k is then available from the calls below.
  void Transform(const float* samples);
  std::complex<double> Bin(int k) const { return {mOut[k][0], mOut[k][1]}; }
  // The bin's share of the signal's power: the one-sided bins of a transform sum to the mean
  // square of the windowed samples divided by that of the window (for noise, the signal's).
  double BinPower(int k) const;
  // The same scale for a product of two transforms' bins (a cross spectrum).
  double BinScale(int k) const;

 private:
  int mSize;
  std::vector<double> mWindow;
  double mWindowEnergy = 0.0;
  double* mIn;
  fftw_complex* mOut;
  fftw_plan mPlan;
};

}  // namespace render
