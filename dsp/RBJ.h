#pragma once

#include "dsp/LanePair.h"

// One second-order IIR section designed with the audio-EQ cookbook formulas and run in direct
// form I. It is a plain structure: the effect runs the same difference equation inline on its
// own sections, reading the coefficients and memories directly.
//
// Types: 0 low-pass, 1 high-pass, 2 band-pass (peak gain = Q), 3 band-pass (0 dB peak), 4 notch,
// 5 all-pass, 6 peaking, 7 low shelf, 8 high shelf.
//
// The gain law of types 6 to 8 is doubled on purpose: A = 10^(gainDb/20), so a section designed
// with gainDb = g moves the level by 2·g dB. Callers pass half the decibels they want.
struct RBJ {
  // Design. freq and rate in Hz; width is Q, or the bandwidth in octaves when widthIsBandwidth
  // (the shelves always read it as Q). Leaves the memories untouched, so it may run between
  // samples. An unknown type writes nothing but still divides the stored coefficients by a0.
  void setup(int type, double freq, double rate, double width, double gainDb, bool widthIsBandwidth);

  // One sample in, one sample out: y = b0·x + b1·x1 + b2·x2 − a1·y1 − a2·y2, summed in that
  // order, with a zero or subnormal y replaced by +0.0.
  double filter(double x) { return Step(x, b0, b1, b2, a1, a2, x1, x2, y1, y2); }

  // The difference equation for one or two channels (T double or LanePair).
  template <class T>
  static T Step(T x, T b0, T b1, T b2, T a1, T a2, T& x1, T& x2, T& y1, T& y2) {
    const T y = FlushDenormal(b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2);
    x2 = x1;
    x1 = x;
    y2 = y1;
    y1 = y;
    return y;
  }

  // Normalised by a0, except a0 itself, which keeps its designed value and is never read.
  double b0 = 0.0, b1 = 0.0, b2 = 0.0;
  double a0 = 0.0;
  double a1 = 0.0, a2 = 0.0;
  double y1 = 0.0, y2 = 0.0;
  double x1 = 0.0, x2 = 0.0;
};
