#pragma once

// One second-order all-pass section in z², H(z) = (a + z⁻²) / (1 + a·z⁻²). The coefficient
// belongs to the section's place in the cascade, not to the section, so it is passed in.
struct AllPassStage {
  double process(double v, double a) {
    x2 = x1;
    x1 = x0;
    x0 = v;
    y2 = y1;
    y1 = y0;
    y0 = (v - y2) * a + x2;
    return y0;
  }

  double x0 = 0.0, x1 = 0.0, x2 = 0.0;
  double y0 = 0.0, y1 = 0.0, y2 = 0.0;
};

// The two polyphase paths of the half-band low-pass: six sections each, run in order. The
// coefficients are the same at every sample rate; the cutoff is always a quarter of the rate
// the cascade runs at.
class CAllPassFilterCascade {
public:
  static constexpr int kStagesPerPath = 6;

  double processPathA(double x) { return runPath(x, 0, kPathA); }
  double processPathB(double x) { return runPath(x, kStagesPerPath, kPathB); }

  // Sections 0 to 5 are path A, 6 to 11 path B.
  AllPassStage stages[2 * kStagesPerPath];

  // Section coefficients of each path, first section first.
  static constexpr double kPathA[kStagesPerPath] = {
      0.036681502163648017, 0.2746317593794541, 0.5610989697879195,
      0.769741833862266,    0.8922608180038789, 0.962094548378084};
  static constexpr double kPathB[kStagesPerPath] = {
      0.13654762463195771, 0.42313861743656667, 0.6775400499741616,
      0.839889624849638,   0.9315419599631839,  0.9878163707328971};

private:
  double runPath(double x, int first, const double (&coefficients)[kStagesPerPath]) {
    for (int i = 0; i < kStagesPerPath; ++i) x = stages[first + i].process(x, coefficients[i]);
    return x;
  }
};
