#include "dsp/RBJ.h"

#include "dsp/Decibels.h"

#include <cmath>

namespace {

constexpr double kTwoPi = 6.283185307179586;

struct Coefficients {
  double b0, b1, b2, a0, a1, a2;
};

// The shelves share four sums of A ± 1 weighted by the cosine.
struct ShelfTerms {
  double P, M, Q, N, k;
};

ShelfTerms MakeShelfTerms(double A, double s, double c, double width) {
  ShelfTerms t;
  t.P = (A + 1.0) - (A - 1.0) * c;
  t.M = (A - 1.0) - (A + 1.0) * c;
  t.Q = (A + 1.0) + (A - 1.0) * c;
  t.N = (A - 1.0) + (A + 1.0) * c;
  // The shelves read width as Q whatever the caller's flag says.
  t.k = std::sqrt(A) * s / width;
  return t;
}

bool Design(int type, double s, double c, double alpha, double gainDb, double width, Coefficients& out) {
  const double A = (type >= 6 && type <= 8) ? std::exp(gainDb * kDbToLinear) : 0.0;
  switch (type) {
    case 0:
      out = {(1.0 - c) / 2.0, 1.0 - c, (1.0 - c) / 2.0, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 1:
      out = {(1.0 + c) / 2.0, -(1.0 + c), (1.0 + c) / 2.0, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 2:
      out = {s / 2.0, 0.0, -s / 2.0, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 3:
      out = {alpha, 0.0, -alpha, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 4:
      out = {1.0, -2.0 * c, 1.0, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 5:
      out = {1.0 - alpha, -2.0 * c, 1.0 + alpha, 1.0 + alpha, -2.0 * c, 1.0 - alpha};
      return true;
    case 6:
      out = {1.0 + alpha * A, -2.0 * c, 1.0 - alpha * A, 1.0 + alpha / A, -2.0 * c, 1.0 - alpha / A};
      return true;
    case 7: {
      const ShelfTerms t = MakeShelfTerms(A, s, c, width);
      out = {A * (t.P + t.k), 2.0 * A * t.M, A * (t.P - t.k), t.Q + t.k, -2.0 * t.N, t.Q - t.k};
      return true;
    }
    case 8: {
      const ShelfTerms t = MakeShelfTerms(A, s, c, width);
      out = {A * (t.Q + t.k), -2.0 * A * t.N, A * (t.Q - t.k), t.P + t.k, 2.0 * t.M, t.P - t.k};
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

void RBJ::setup(int type, double freq, double rate, double width, double gainDb, bool widthIsBandwidth) {
  const double w0 = kTwoPi * freq / rate;
  const double s = std::sin(w0);
  const double c = std::cos(w0);
  const double alpha = widthIsBandwidth ? s * std::sinh(std::log(2.0) / 2.0 * width * w0 / s)
                                        : s / (2.0 * width);

  Coefficients designed;
  if (Design(type, s, c, alpha, gainDb, width, designed)) {
    b0 = designed.b0;
    b1 = designed.b1;
    b2 = designed.b2;
    a0 = designed.a0;
    a1 = designed.a1;
    a2 = designed.a2;
  }

  b0 /= a0;
  b1 /= a0;
  b2 /= a0;
  a1 /= a0;
  a2 /= a0;
}
