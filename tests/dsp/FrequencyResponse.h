#pragma once

#include <cmath>
#include <complex>

// Steady-state gain of a linear, time-invariant one-sample-in/one-sample-out block at the
// normalised angular frequency w (radians per sample), measured by running a cosine and a sine
// through two fresh copies: in steady state their outputs are the real and imaginary parts of
// H(e^jw)·e^jwn, so one pair of samples gives |H| with no windowing error.
template <class Block, class Make>
double MeasuredGain(Make make, double w, int settle) {
  Block onCos = make();
  Block onSin = make();
  double yc = 0.0;
  double ys = 0.0;
  for (int n = 0; n <= settle; ++n) {
    yc = onCos.process(std::cos(w * n));
    ys = onSin.process(std::sin(w * n));
  }
  return std::hypot(yc, ys);
}

inline double ToDb(double gain) { return 20.0 * std::log10(gain); }
