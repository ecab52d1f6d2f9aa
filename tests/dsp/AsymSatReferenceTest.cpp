// A second, deliberately plain model of the saturator, written straight from its description
// (channels as arrays, filters as loose arrays, the C library's own rand() re-seeded to its
// start-up state), compared bit for bit with AsymSat on a range of signals and settings.
#include "dsp/AsymSat.h"

#include "TestNoise.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace {

namespace model {

double Flush(double v) {
  std::uint64_t bits;
  std::memcpy(&bits, &v, 8);
  if ((bits & 0x7FF0000000000000ull) == 0) return 0.0;
  return v;
}

struct Biquad {
  double b[3] = {}, a[3] = {};  // a[0] is the unused design a0
  double xh[2] = {}, yh[2] = {};

  // Types 6 (peaking) and 8 (high shelf), width as bandwidth in octaves (shelves read it as Q).
  void design(int type, double f, double fs, double width, double g) {
    const double w0 = 6.283185307179586 * f / fs;
    const double sn = std::sin(w0), cs = std::cos(w0);
    const double alpha = sn * std::sinh(std::log(2.0) / 2 * width * w0 / sn);
    const double A = std::exp(g * 0.1151292546497);
    if (type == 6) {
      b[0] = 1 + alpha * A;
      b[1] = -2 * cs;
      b[2] = 1 - alpha * A;
      a[0] = 1 + alpha / A;
      a[1] = -2 * cs;
      a[2] = 1 - alpha / A;
    } else {
      const double P = (A + 1) - (A - 1) * cs, M = (A - 1) - (A + 1) * cs;
      const double Qp = (A + 1) + (A - 1) * cs, N = (A - 1) + (A + 1) * cs;
      const double k = std::sqrt(A) * sn / width;
      b[0] = A * (Qp + k);
      b[1] = -2 * A * N;
      b[2] = A * (Qp - k);
      a[0] = P + k;
      a[1] = 2 * M;
      a[2] = P - k;
    }
    for (int i = 0; i < 3; ++i) b[i] = b[i] / a[0];
    a[1] = a[1] / a[0];
    a[2] = a[2] / a[0];
  }

  double run(double v) {
    double y = b[0] * v + b[1] * xh[0];
    y = y + b[2] * xh[1];
    y = y - a[1] * yh[0];
    y = y - a[2] * yh[1];
    y = Flush(y);
    xh[1] = xh[0];
    xh[0] = v;
    yh[1] = yh[0];
    yh[0] = y;
    return y;
  }
};

struct HalfBand {
  double x[12][3] = {}, y[12][3] = {};
  double old = 0;

  double section(int i, double a, double v) {
    x[i][2] = x[i][1];
    x[i][1] = x[i][0];
    x[i][0] = v;
    y[i][2] = y[i][1];
    y[i][1] = y[i][0];
    y[i][0] = (v - y[i][2]) * a + x[i][2];
    return y[i][0];
  }

  double run(double in) {
    static const double A[6] = {0.036681502163648017, 0.2746317593794541, 0.5610989697879195,
                                0.769741833862266,    0.8922608180038789, 0.962094548378084};
    static const double B[6] = {0.13654762463195771, 0.42313861743656667, 0.6775400499741616,
                                0.839889624849638,   0.9315419599631839,  0.9878163707328971};
    double v = in;
    for (int i = 0; i < 6; ++i) v = section(i, A[i], v);
    const double out = (v + old) * 0.5;
    v = in;
    for (int i = 0; i < 6; ++i) v = section(6 + i, B[i], v);
    old = v;
    return out;
  }
};

struct Tone {
  int mode = 0;
  double b = 0, a = 0, g = 0, z = 0, out = 0;

  void corner(double fs, double w) {
    b = w / (3 * fs + w);
    a = (3 * fs - w) / (3 * fs + w);
  }

  double run(double v) {
    z = 2 * b * v + a * z;
    if (mode == 0) out = z;
    if (mode == 1) out = v - z;
    if (mode == 4) out = v + g * z;
    if (mode == 5) out = v + g * (v - z);
    out = Flush(out);
    return out;
  }
};

struct Saturator {
  HalfBand up[2], down[2];
  Tone lowPass[2], shelf10[2], shelf14[2];
  Biquad pre[2], de[2], bump[2];
  int seed[2] = {0, 0};
  double gain = 0, target = 0, outScale = 0;
  double driftValue = 1, driftTarget = 1, driftCoef = 0, driftCoefInv = 0, driftDepth = 0;
  double memIn = 0.5, memFb = 0.5, postScale = 0.5, postFb = 0.5;
  double mem[2] = {}, prevCurve[2] = {};
  double env = 0, feedback = 0, detCoef = 0, detOffset = 106, detSlope = -0.5833333333333334;
  int detHold = 1;
  double posKnee = 1, posKneeInv = 1, negKnee = 1, negKneeInv = 1, evenWeight = 0.05;
  double dc[2] = {}, dcPrev[2] = {};
  int oversample = 0;

  Saturator() { std::srand(1); }  // the start-up state of rand()

  void init(double fs, double L, double T, double D, double S) {
    const double t = L + 40;
    oversample = 2;
    const double c = std::exp(-1 / (2 * fs * 0.0017958));
    memIn = c;
    memFb = 1 - c;
    postScale = 1 / std::pow(c, 3.131);
    postFb = std::pow(1 - c, 3.131);
    detOffset = 122.0;
    detCoef = std::exp(-1 / (fs * 0.0008));
    detHold = (int)(fs * 0.0001);
    detSlope = -0.5238095238095238;
    target = std::exp(L * 0.1151292546497);
    evenWeight = t * 0.0121875 + 0.0125;
    const double k14 = (60 - t > 0 ? 60 - t : 0) * S * 0.17 * 0.115;
    const double v = std::fabs(T) * 0.05;
    const double wLow = T > 0 ? 75398.22368615503 : (12000 - 6000 * std::pow(v, 0.3)) * 6.283185307179586;
    const double k10 = T > 0 ? T * 0.7 * 0.115 : 0;
    for (int ch = 0; ch < 2; ++ch) {
      shelf14[ch].mode = 5;
      shelf14[ch].g = std::exp(k14) - 1;
      shelf14[ch].corner(fs, 87964.5943005142);
      pre[ch].design(8, 2374.0, fs, 0.4, 0.5 * T);
      de[ch].design(8, 3374.0, fs, 0.4, -0.5 * T);
      lowPass[ch].mode = 0;
      lowPass[ch].g = 0;
      lowPass[ch].corner(fs, wLow);
      bump[ch].design(6, 56.0, fs, 1.8, (30 - t) * 0.02 + v);
      shelf10[ch].mode = 5;
      shelf10[ch].g = std::exp(k10) - 1;
      shelf10[ch].corner(fs, 62831.853071795864);
    }
    driftCoef = std::exp(-1 / (fs * 0.005));
    driftCoefInv = 1 - driftCoef;
    driftDepth = 0.5 * std::pow(D, 5);
    posKnee = 1 - 0.1 * S;
    posKneeInv = 1 / posKnee;
    negKnee = 1.1 - 0.9 * S;
    negKneeInv = 1 / negKnee;
  }

  double bend(int ch, double x) {
    const double s = memIn * x + memFb * mem[ch];
    mem[ch] = s;
    double odd, even;
    if (x > 0) {
      const double p = posKnee * s;
      odd = (p / std::sqrt(p * p + 1)) * posKneeInv;
      even = s * s / std::sqrt(s * s * s * s + 1);
    } else {
      odd = s / std::sqrt(s * s + 1);
      const double u = negKnee * s * s;
      even = (u / std::sqrt(u * u + 1)) * negKneeInv;
    }
    const double y = odd - evenWeight * even;
    const double out = (y - postFb * prevCurve[ch]) * postScale;
    prevCurve[ch] = y;
    return out;
  }

  // Processes nCh channels (1 or 2) of one frame in place.
  void frame(double* io, int nCh) {
    gain = 0.999 * gain + 0.0010000000000000009 * target;
    outScale = 0.28061551207734 / gain;
    double w[2];
    for (int ch = 0; ch < nCh; ++ch) {
      seed[ch] = (seed[ch] * 3877 + 29573) % 139968;
      const double n = Flush(1 + 2 * seed[ch] * (-7.144490169181527e-6));
      w[ch] = gain * io[ch] + 1e-11 * n;
      w[ch] = pre[ch].run(w[ch]);
    }
    if (std::fabs(driftValue - driftTarget) <= 0.1) driftTarget = ((std::rand() % 4) + 1) * 0.25;
    driftValue = Flush(driftTarget * driftCoefInv + driftValue * driftCoef);
    const double m = driftValue * driftDepth + 1.0;
    for (int ch = 0; ch < nCh; ++ch) w[ch] = w[ch] * m;

    const double q = feedback * feedback;
    const double envBefore = env;
    env = (env - q) * detCoef + q;
    if (!(q > envBefore) && detHold < 0) env = (env - q) * detCoef + q;  // never at a positive rate
    const double e = 8.685889638065037 * std::log(std::fabs(env)) + detOffset;
    const double x = e > 0 ? e * detSlope * 0.1151292546497 : 0;
    const double G = 25.0 * std::exp(x);
    const double r = G / std::sqrt(G * G + 1);
    for (int ch = 0; ch < nCh; ++ch) w[ch] = w[ch] * r;
    feedback = nCh == 2 ? 0.05 * (w[0] + w[1]) : 0.1 * w[0];
    for (int ch = 0; ch < nCh; ++ch) {
      w[ch] = w[ch] * 4.0;
      double kept = 0;
      for (int i = 0; i < oversample; ++i) {
        double o = i == 0 ? oversample * w[ch] : 0.0;
        o = down[ch].run(bend(ch, up[ch].run(o)));
        if (i == 0) kept = o;
      }
      double out = kept * outScale;
      out = shelf14[ch].run(shelf10[ch].run(bump[ch].run(lowPass[ch].run(de[ch].run(out)))));
      out = out / m;
      dc[ch] = Flush(0.999 * dc[ch] + out - dcPrev[ch]);
      dcPrev[ch] = out;
      io[ch] = Flush(dc[ch]);
    }
  }
};

}  // namespace model

struct Settings {
  double fs, driveDb, freqResponse, driftAmount, asymmetry;
};

using Signal = std::function<void(int n, double fs, double& l, double& r)>;

// Identical bits, or both NaN (hostile input may turn the state into NaN of either sign).
bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b)); }

// Runs both models over `frames` frames, re-initialising both every `reinitEvery` frames with
// settings drawn from `settings` in turn, and stops at the first difference.
void ExpectIdentical(const Settings* settings, int nSettings, int reinitEvery, const Signal& signal, int frames,
                     bool mono) {
  model::Saturator reference;
  AsymSat sat;
  for (int n = 0; n < frames; ++n) {
    if (n % reinitEvery == 0) {
      const Settings& s = settings[(n / reinitEvery) % nSettings];
      reference.init(s.fs, s.driveDb, s.freqResponse, s.driftAmount, s.asymmetry);
      sat.init_all(s.fs, s.driveDb, s.freqResponse, s.driftAmount, s.asymmetry);
    }
    double l = 0, r = 0;
    signal(n, settings[0].fs, l, r);
    double io[2] = {l, r};
    reference.frame(io, mono ? 1 : 2);
    if (mono) {
      const double got = sat.process_Mono(l);
      ASSERT_TRUE(SameBits(got, io[0])) << "frame " << n << ": " << got << " vs " << io[0];
    } else {
      const double gotL = sat.process_Stereo(l, r);
      ASSERT_TRUE(SameBits(gotL, io[0])) << "left, frame " << n << ": " << gotL << " vs " << io[0];
      ASSERT_TRUE(SameBits(sat.outR, io[1])) << "right, frame " << n << ": " << sat.outR << " vs " << io[1];
    }
  }
}

const Signal kSines = [](int n, double fs, double& l, double& r) {
  l = 0.5 * std::sin(6.283185307179586 * 440.0 * n / fs);
  r = 0.3 * std::sin(6.283185307179586 * 97.0 * n / fs) + 0.2 * std::sin(6.283185307179586 * 5100.0 * n / fs);
};
const Signal kLoud = [](int n, double fs, double& l, double& r) {
  const double sweep = std::sin(6.283185307179586 * (50.0 + 0.05 * n) * n / fs);
  l = 3.0 * sweep;
  r = 2.0 * (TestNoise(n) > 0 ? 1.0 : -1.0);
};
const Signal kNoiseAndSilence = [](int n, double, double& l, double& r) {
  const bool silent = (n / 3000) % 2 == 1;
  l = silent ? 0.0 : 0.8 * TestNoise(n);
  r = silent ? 0.0 : -0.6 * TestNoise(n + 99991);
};

// Subnormal and negative-zero input, tiny values, then huge spikes and infinities.
const Signal kHostile = [](int n, double, double& l, double& r) {
  const double kinds[] = {4.9e-324, -0.0, 1e-300, -2.2e-308, 0.5, 1e30, -1e300, 0.0};
  l = n < 4000 ? kinds[n % 4] : (n % 97 == 0 ? kinds[4 + n % 4] : 0.3 * TestNoise(n));
  r = n == 9000 ? HUGE_VAL : (n < 4000 ? kinds[(n + 1) % 4] : -0.2 * TestNoise(n + 7));
};

}  // namespace

TEST(AsymSatReference, DefaultSettingsOnSines) {
  const Settings s[] = {{44100.0, 0.0, 0.0, 0.2, 0.5}};
  ExpectIdentical(s, 1, 1 << 30, kSines, 30000, false);
}

TEST(AsymSatReference, HotDriveAndEdgesOfEveryControlOnLoudSignals) {
  const Settings s[] = {{96000.0, 20.0, 10.0, 0.4, 1.0}, {96000.0, -40.0, -10.0, 0.0, 0.0}};
  ExpectIdentical(s, 2, 4096, kLoud, 30000, false);
}

TEST(AsymSatReference, ControlsChangingEveryBlockOnNoiseAndSilence) {
  const Settings s[] = {{48000.0, 6.0, -3.5, 0.35, 0.2},
                        {48000.0, -12.0, 4.0, 0.1, 0.9},
                        {48000.0, 14.0, 0.0, 0.4, 0.5}};
  ExpectIdentical(s, 3, 64, kNoiseAndSilence, 30000, false);
}

TEST(AsymSatReference, MonoPassOnSinesAndNoise) {
  const Settings s[] = {{44100.0, 12.0, 7.0, 0.4, 0.7}, {44100.0, -20.0, -8.0, 0.3, 0.1}};
  ExpectIdentical(s, 2, 2048, kNoiseAndSilence, 20000, true);
  ExpectIdentical(s, 2, 5000, kLoud, 20000, true);
}

TEST(AsymSatReference, HostileInputStereoAndMono) {
  const Settings s[] = {{44100.0, 0.0, 5.0, 0.4, 0.5}};
  ExpectIdentical(s, 1, 1 << 30, kHostile, 12000, false);
  ExpectIdentical(s, 1, 1 << 30, kHostile, 12000, true);
}

// Controls beyond their ranges reach the saturator unclamped; both models must agree there too.
TEST(AsymSatReference, ControlsOutsideTheirRanges) {
  const Settings s[] = {{22050.0, 60.0, 25.0, 1.5, 3.0}, {192000.0, -90.0, -30.0, -0.5, -1.0}};
  ExpectIdentical(s, 2, 3000, kSines, 12000, false);
}
