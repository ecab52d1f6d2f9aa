#include "analysis/RealFft.h"

#include <cmath>

namespace render {

namespace {

constexpr double kTwoPi = 6.283185307179586;

double WindowAt(WindowShape shape, int n, int size) {
  const double x = kTwoPi * n / size;  // periodic form: the window tiles with half overlap
  if (shape == WindowShape::kHann) return 0.5 - 0.5 * std::cos(x);
  return 0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2.0 * x) -
         0.01168 * std::cos(3.0 * x);
}

}  // namespace

int FftSizeForBins(double rate, double binHz) {
  int size = 1024;
  while (rate / size > binHz) size *= 2;
  return size;
}

RealFft::RealFft(int size, WindowShape shape)
    : mSize(size),
      mWindow(size),
      mIn(fftw_alloc_real(size)),
      mOut(fftw_alloc_complex(size / 2 + 1)),
      mPlan(fftw_plan_dft_r2c_1d(size, mIn, mOut, FFTW_ESTIMATE)) {
  for (int n = 0; n < size; ++n) {
    mWindow[n] = WindowAt(shape, n, size);
    mWindowEnergy += mWindow[n] * mWindow[n];
  }
}

RealFft::~RealFft() {
  fftw_destroy_plan(mPlan);
  fftw_free(mOut);
  fftw_free(mIn);
}

void RealFft::Transform(const float* samples) {
  for (int n = 0; n < mSize; ++n) mIn[n] = mWindow[n] * samples[n];
  fftw_execute(mPlan);
}

// Parseval: the squared bins over the whole circle sum to size times the windowed energy; the
// bins other than DC and Nyquist stand for their mirror images as well.
double RealFft::BinScale(int k) const {
  const bool mirrored = k > 0 && 2 * k < mSize;
  return (mirrored ? 2.0 : 1.0) / (mSize * mWindowEnergy);
}

double RealFft::BinPower(int k) const { return std::norm(Bin(k)) * BinScale(k); }

}  // namespace render
