#include "dsp/AsymSat.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "dsp/AsymCurve.h"
#include "dsp/Decibels.h"
#include "dsp/Denormal.h"
#include "dsp/FilterLanes.h"
#include "dsp/LanePair.h"
#include "dsp/NoiseSource.h"
#include "dsp/ParityOversampler.h"
#include "dsp/SplitHalfBand.h"
#include "dsp/WideOversampler.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kOmega14k = 87964.5943005142;    // 2π·14000
constexpr double kOmega12k = 75398.22368615503;   // 2π·12000
constexpr double kOmega10k = 62831.853071795864;  // 2π·10000

// Tone stages map an analogue corner w with 3·fs rather than the bilinear 2·fs; the voicing
// was tuned with that mapping.
void SetCorner(OnePoleStage& stage, double fs, double w) {
  stage.b = w / (3.0 * fs + w);
  stage.a = (3.0 * fs - w) / (3.0 * fs + w);
}

void SetShelf(OnePoleStage& stage, double fs, double w, double k) {
  stage.mode = OnePoleStage::kHighBoost;
  stage.g = std::exp(k) - 1.0;
  SetCorner(stage, fs, w);
}

}  // namespace

void AsymSat::init_all(double sampleRate, double driveDb, double freqResponse, double driftAmount,
                       double asymmetry) {
  const double fs = sampleRate;
  const double T = freqResponse;
  const double S = asymmetry;
  const double t = driveDb + 40.0;

  oversample = 2;

  // The curve's memory runs at the doubled rate, written out as 2·fs.
  const double c = std::exp(-1.0 / (2.0 * fs * 0.0017958));
  memIn = c;
  memFb = 1.0 - c;
  postScale = 1.0 / std::pow(c, 3.131);
  postFb = std::pow(1.0 - c, 3.131);

  detOffset = 122.0;
  detSpare = 2.1;
  detCoef = std::exp(-1.0 / (fs * 0.0008));
  detFastCoef = std::exp(-1.0 / (fs * 0.0001));
  detHold = static_cast<int>(fs * 0.0001);
  detSlope = -0.5238095238095238;

  gainTarget = std::exp(driveDb * kDbToLinear);
  evenWeight = t * 0.0121875 + 0.0125;

  const double k14 = std::max(0.0, 60.0 - t) * S * 0.17 * 0.115;
  SetShelf(tone[4], fs, kOmega14k, k14);
  SetShelf(tone[5], fs, kOmega14k, k14);

  // The biquad gain law doubles its argument: ±0.5·T moves the shelves by ±T dB.
  eq[0].setup(8, 2374.0, fs, 0.4, 0.5 * T, true);
  eq[1].setup(8, 2374.0, fs, 0.4, 0.5 * T, true);
  // A full 1000 Hz above the pre-emphasis: the pair leaves a deliberate tilt.
  eq[2].setup(8, 3374.0, fs, 0.4, -0.5 * T, true);
  eq[3].setup(8, 3374.0, fs, 0.4, -0.5 * T, true);

  const double v = std::fabs(T) * 0.05;
  const double lowPassOmega = T > 0.0 ? kOmega12k : (12000.0 - 6000.0 * std::pow(v, 0.3)) * kTwoPi;
  for (int i = 0; i < 2; ++i) {
    tone[i].mode = OnePoleStage::kLowPass;
    tone[i].g = 0.0;
    SetCorner(tone[i], fs, lowPassOmega);
  }

  eq[6].setup(6, 56.0, fs, 1.8, (30.0 - t) * 0.02 + v, true);
  eq[7].setup(6, 56.0, fs, 1.8, (30.0 - t) * 0.02 + v, true);

  const double k10 = T > 0.0 ? T * 0.7 * 0.115 : 0.0;
  SetShelf(tone[2], fs, kOmega10k, k10);
  SetShelf(tone[3], fs, kOmega10k, k10);

  for (DriftGenerator& d : drift) {
    d.count = 4;
    d.step = 0.25;
    d.coef = std::exp(-1.0 / (fs * 0.005));
    d.coefInv = 1.0 - d.coef;
  }
  driftDepth = 0.5 * std::pow(driftAmount, 5.0);

  posKnee = 1.0 - 0.1 * S;
  posKneeInv = 1.0 / posKnee;
  negKnee = 1.1 - 0.9 * S;
  negKneeInv = 1.0 / negKnee;
}

inline void AsymSat::smoothGain() {
  // 0.0010000000000000009 is 1 - 0.999 as the double arithmetic yields it.
  gainSmoothed = 0.999 * gainSmoothed + 0.0010000000000000009 * gainTarget;
  outScale = 0.28061551207734 / gainSmoothed;
}

inline double AsymSat::advanceDrift() {
  const double m = drift[0].advance(driftRandom) * driftDepth + 1.0;
  driftGainL = m;
  driftGainR = m;
  return m;
}

inline void AsymSat::updateDetector(double q) {
  const double before = detEnv;
  // The same smoothing on the way up and down.
  detEnv = (detEnv - q) * detCoef + q;
  if (q > before) {
    detState = 0;
  } else if (detHold < 0) {
    detEnv = (detEnv - q) * detCoef + q;
    detState = -1;
  } else {
    detState = 1;
  }
}

// Gain reduction from last frame's detector feed: a soft knee G/sqrt(G²+1) whose G falls from
// 25 as the level rises above the detector's offset.
inline double AsymSat::detectorGain() {
  updateDetector(detFeedback * detFeedback);
  const double e = kLinearToDb * std::log(std::fabs(detEnv)) + detOffset;
  const double x = e > 0.0 ? e * detSlope * kDbToLinear : 0.0;
  const double G = 25.0 * std::exp(x);
  return G / std::sqrt(G * G + 1.0);
}

// The curve at the doubled rate: its one-pole memory, its shape, and the correction by the
// previous shape value.
template <class T>
inline T AsymSat::curveStep(T x, T& mem, T& curvePrev) const {
  const T s = memIn * x + memFb * mem;
  mem = s;
  const T y = CurveShape(*this, x, s);
  const T out = (y - postFb * curvePrev) * postScale;
  curvePrev = y;
  return out;
}

double AsymSat::curve(double x, double& mem, double& curvePrev) const {
  return curveStep(x, mem, curvePrev);
}

inline void AsymSat::frontStereo(double inL, double inR) {
  smoothGain();
  workL = gainSmoothed * inL + 1e-11 * NextNoise(seedL);
  workR = gainSmoothed * inR + 1e-11 * NextNoise(seedR);

  workL = eq[0].filter(workL);
  workR = eq[1].filter(workR);

  const double m = advanceDrift();
  workL *= m;
  workR *= m;

  const double r = detectorGain();
  workL *= r;
  workR *= r;
  // Feedback design: the reduced signal steers the next frame's gain, linking both channels.
  detFeedback = 0.05 * (workL + workR);
  workL *= 4.0;
  workR *= 4.0;
}

inline void AsymSat::frontMono(double in) {
  smoothGain();
  workL = gainSmoothed * in + 1e-11 * NextNoise(seedL);
  workL = eq[0].filter(workL);
  workL *= advanceDrift();
  workL *= detectorGain();
  // 0.1·x is exactly 0.05·(x + x): the stereo feed when both channels carry the same signal.
  detFeedback = 0.1 * workL;
  workL *= 4.0;
}

// Zero stuffing at twice the rate; the factor restores the level the zeros take away.
// Decimation keeps the first sub-sample, the second only advances the filters.
template <class T>
void AsymSat::oversampleChunk(const T* work, T* kept, int n) {
  if constexpr (std::is_same_v<T, LanePair>) {
    if constexpr (kWideLanesBuilt) {
      if (laneSections && wideLanes) return OversampleStereoChunkWide(*this, work, kept, n);
    }
  } else {
    if (laneSections) return OversampleMonoChunk(*this, work, kept, n, wideLanes);
  }
  T sub[2 * kChunkFrames], scratch[2 * kChunkFrames];
  for (int i = 0; i < n; ++i) {
    sub[2 * i] = 2.0 * work[i];
    sub[2 * i + 1] = Splat<T>(0.0);
  }
  SplitHalfBand<T>::process(upL, upR, sub, scratch, n);

  T mem = Lanes<T>::Load(memL, memR);
  T prev = Lanes<T>::Load(curvePrevL, curvePrevR);
  for (int k = 0; k < 2 * n; ++k) sub[k] = curveStep(sub[k], mem, prev);
  Lanes<T>::Store(mem, memL, memR);
  Lanes<T>::Store(prev, curvePrevL, curvePrevR);

  SplitHalfBand<T>::process(downL, downR, sub, scratch, n);
  for (int i = 0; i < n; ++i) kept[i] = sub[2 * i];
  Lanes<T>::Store(sub[2 * n - 1], osL, osR);
}

// The stages after the oversampled section, for the left channel or both: output compensation,
// de-emphasis and tone, removal of the drift gain and the DC blocker. Their state is held in
// locals while a chunk runs and written back by store().
template <class T>
class AsymSat::OutputStages {
 public:
  explicit OutputStages(AsymSat& sat)
      : mSat(sat),
        mDeEmphasis(sat.eq[2], sat.eq[3]),
        mLowPass(sat.tone[0], sat.tone[1]),
        mLowBump(sat.eq[6], sat.eq[7]),
        mShelf10k(sat.tone[2], sat.tone[3]),
        mShelf14k(sat.tone[4], sat.tone[5]),
        mDc(Lanes<T>::Load(sat.dcL, sat.dcR)),
        mDcPrev(Lanes<T>::Load(sat.dcPrevL, sat.dcPrevR)) {}

  // The chain in steps that each depend only on their own state and the step before. Run
  // frame by frame, a frame would pass all six before the next could start, far too long a chain
  // for the processor to overlap the frames. So the chunk runs skewed: iteration t takes step k
  // of frame t − k, and the steps of one iteration are independent of one another. Short
  // chunks, where starting and ending the skew would take most of the iterations, run frame by
  // frame.
  void run(T* x, const double* scale, const double* driftGain, int n) {
    if (n < kSkewedFrames) {
      for (int f = 0; f < n; ++f) {
#pragma GCC unroll 6
        for (int k = 0; k < kSteps; ++k) step(k, x[f], scale[f], driftGain[f]);
      }
      return;
    }
    constexpr int kLag = kSteps - 1;
    for (int t = 0; t < n + kLag; ++t) {
      if (t >= kLag && t < n) {
#pragma GCC unroll 6
        for (int k = 0; k < kSteps; ++k) step(k, x[t - k], scale[t - k], driftGain[t - k]);
      } else {
#pragma GCC unroll 6
        for (int k = 0; k < kSteps; ++k) {
          if (t - k >= 0 && t - k < n) step(k, x[t - k], scale[t - k], driftGain[t - k]);
        }
      }
    }
  }

  void store() const {
    mDeEmphasis.store(mSat.eq[2], mSat.eq[3]);
    mLowPass.store(mSat.tone[0], mSat.tone[1]);
    mLowBump.store(mSat.eq[6], mSat.eq[7]);
    mShelf10k.store(mSat.tone[2], mSat.tone[3]);
    mShelf14k.store(mSat.tone[4], mSat.tone[5]);
    Lanes<T>::Store(mDc, mSat.dcL, mSat.dcR);
    Lanes<T>::Store(mDcPrev, mSat.dcPrevL, mSat.dcPrevR);
  }

 private:
  static constexpr int kSteps = 6;
  static constexpr int kSkewedFrames = 24;

  // Inlined by force: called out of line, the switch on k runs on every call and the skewed
  // iterations lose the very overlap they are for.
  __attribute__((always_inline)) void step(int k, T& x, double scale, double driftGain) {
    switch (k) {
      case 0:
        x = mDeEmphasis.filter(x * scale);
        break;
      case 1:
        x = mLowPass.process(x);
        break;
      case 2:
        x = mLowBump.filter(x);
        break;
      case 3:
        x = mShelf10k.process(x);
        break;
      case 4:
        x = mShelf14k.process(x);
        break;
      default: {
        x = x / driftGain;
        // DC blocker: dc = 0.999·dc + x − previous x.
        mDc = FlushDenormal(0.999 * mDc + x - mDcPrev);
        mDcPrev = x;
        x = FlushDenormal(mDc);
      }
    }
  }

  AsymSat& mSat;
  BiquadLanes<T> mDeEmphasis;
  OnePoleLanes<T> mLowPass;
  BiquadLanes<T> mLowBump;
  OnePoleLanes<T> mShelf10k, mShelf14k;
  T mDc, mDcPrev;
};

// The chunk's values handed from stage to stage, and where its outputs go.
template <class T>
struct AsymSat::Chunk {
  T work[kChunkFrames];
  T kept[kChunkFrames];
  double scale[kChunkFrames];
  double driftGain[kChunkFrames];
  double* left = nullptr;
  double* right = nullptr;
  int frames = 0;
};

template <>
inline double AsymSat::front<double>(double in, double) {
  frontMono(in);
  return workL;
}

template <>
inline LanePair AsymSat::front<LanePair>(double inL, double inR) {
  frontStereo(inL, inR);
  return LanePair{workL, workR};
}

template <class T>
void AsymSat::finish(Chunk<T>& c) {
  OutputStages<T> stages(*this);
  stages.run(c.kept, c.scale, c.driftGain, c.frames);
  stages.store();
  for (int i = 0; i < c.frames; ++i) Lanes<T>::Store(c.kept[i], c.left[i], c.right[i]);
  Lanes<T>::Store(c.kept[c.frames - 1], outL, outR);
}

template <class T>
T AsymSat::oversampleFrame() {
  constexpr bool stereo = std::is_same_v<T, LanePair>;
  for (int i = 0; i < oversample; ++i) {
    osL = i == 0 ? oversample * workL : 0.0;
    osL = downL.process(curve(upL.process(osL), memL, curvePrevL));
    if (i == 0) outL = osL;
    if (!stereo) continue;
    osR = i == 0 ? oversample * workR : 0.0;
    osR = downR.process(curve(upR.process(osR), memR, curvePrevR));
    if (i == 0) outR = osR;
  }
  // With no pass at all the previous output goes on.
  return Lanes<T>::Load(outL, outR);
}

double AsymSat::process_Stereo(double inL, double inR) {
  double left, right;
  process_StereoBlock(&inL, &inR, &left, &right, 1);
  return left;
}

double AsymSat::process_Mono(double in) {
  double out;
  process_MonoBlock(&in, &out, 1);
  return out;
}

void AsymSat::process_StereoBlock(const double* inL, const double* inR, double* left, double* right,
                                  int n) {
  runBlock<LanePair>(inL, inR, left, right, n);
}

void AsymSat::process_MonoBlock(const double* in, double* out, int n) {
  runBlock<double>(in, in, out, out, n);
}

// A frame is one long chain of dependent steps, too long for the processor to overlap one frame
// with the next. But only the level detector feeds back from frame to frame; the filters and the
// curve carry just a few samples of state. So a block runs in chunks, each stage over all frames
// of a chunk before the next stage starts: the detector loop, then the oversampled section (both
// channels in step), then the output stages. The detector loop is bound by the latency of its
// own feedback. The few independent steps before the detector (gain, noise, pre-emphasis,
// drift) fill its waits, but the output stages, once run in the same loop, only crowded the
// processor's window of instructions in flight and slowed it down, so they have a loop of their
// own. Each value is still computed by the same operations in the same order, so the output is
// the same to the bit.
template <class T>
void AsymSat::runBlock(const double* inL, const double* inR, double* left, double* right, int n) {
  Chunk<T> c;
  for (int start = 0; start < n; start += c.frames) {
    c.frames = std::min(chunkFrames(), n - start);
    c.left = left + start;
    c.right = right + start;
    for (int i = 0; i < c.frames; ++i) {
      c.work[i] = front<T>(inL[start + i], inR[start + i]);
      c.scale[i] = outScale;
      c.driftGain[i] = driftGainL;  // driftGainR is the same value
    }

    if (oversample == 2) {
      oversampleChunk(c.work, c.kept, c.frames);
    } else {
      c.kept[0] = oversampleFrame<T>();
    }

    finish(c);
  }
}
