// Tarn's audio engine: parameter hand-over, reset and the per-block processing chain.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "dsp/Decibels.h"
#include "dsp/Denormal.h"
#include "dsp/FilterLanes.h"
#include "dsp/LanePair.h"
#include "dsp/NoiseSource.h"
#include "dsp/Tarn.h"
#include "editor/IGraphics.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kFixedOutputTrim = -0.13815510557964;  // -1.2 dB as a natural exponent
constexpr double kNeedleReference = 2.0723265836946;    // +18 dB: -18 dBFS average reads 1.0
constexpr double kClamp = 20.0;
constexpr double kNeedleZeroMark = 0.638;

// Stereo outputs: anything below 2^-54 in magnitude, and infinities and NaNs, become 0. What
// stays is a magnitude from 2^-54 to the largest finite double; both comparisons are false for
// a NaN.
inline LanePair FlushTinyOrNonFinite(LanePair v) {
  const LanePair magnitude = Abs(v);
  return KeepWhere((magnitude >= 0x1p-54) & (magnitude <= DBL_MAX), v);
}

// Below -20 becomes -20, otherwise min(20, v) (which also turns a NaN into 20).
inline double ClampOutput(double v) { return v < -kClamp ? -kClamp : v < kClamp ? v : kClamp; }

// min(v, 20) then max(, -20) as comparisons pick them: the first operand when it compares less
// (greater), else the second; so a NaN becomes 20, and max differs from min(v, 20) only below
// -20, where v itself was below -20.
inline LanePair ClampOutput(LanePair v) {
  const LanePair top = Splat<LanePair>(kClamp), bottom = Splat<LanePair>(-kClamp);
#if defined(__SSE2__)
  return _mm_max_pd(_mm_min_pd(v, top), bottom);  // the same picks, in one instruction each
#else
  const LanePair low = v < top ? v : top;
  return low > bottom ? low : bottom;
#endif
}

}  // namespace

void Tarn::OnParamChange(int paramIdx) {
  WDL_MutexLock lock(&GetMutex());
  switch (paramIdx) {
    case kInputTrim:
      mInGain = GetParam(kInputTrim)->DBToAmp();
      mInGainInv = 1.0 / mInGain;
      break;
    case kOutputComp: {
      const double value = GetParam(kOutputComp)->Value();
      mOutGain = GetParam(kOutputComp)->DBToAmp() * std::exp(kFixedOutputTrim);
      // Superseded by the next block's set-up before it reaches the audio.
      mNoiseLevel = std::exp((0.3 * value - 90.0) * kDbToLinear);
      break;
    }
    case kBypass:
      mBypass = GetParam(kBypass)->Value() != 0.0;
      mMix = mBypass ? 0.0 : 1.0;
      break;
    default:
      break;
  }
}

void Tarn::Reset() {
  WDL_MutexLock lock(&GetMutex());
  mDesignRate = GetSampleRate();
  mSat.init_all(mDesignRate, 0.0, 0.0, 0.2, 0.5);
  mDesignValid = false;
  mRmsDiffDb = 0.0;
  mFadeIn = 1.0;
}

// Coefficients follow the parameters at every block, so parameter changes act at block
// boundaries. The designs are pure functions of the values they read: when none of those
// changed since the last block, designing again would write the very same bits, so it is
// skipped (a Reset, which re-initialises the saturator, always forces the next design).
void Tarn::SetUpBlock() {
  const double trim = GetParam(kInputTrim)->Value();
  // Always rewritten: a change of "Output Compensation" sets its own value in between.
  mNoiseLevel = std::exp((0.1 * trim - 90.0) * kDbToLinear);  // -90 dB, moved by trim / 10
  mVuMode = static_cast<int>(GetParam(kVuMode)->Value());

  const DesignInputs inputs = {GetSampleRate(),
                               mDesignRate,
                               GetParam(kDrive)->Value(),
                               trim,
                               GetParam(kCrosstalk)->Value(),
                               GetParam(kFreqResponse)->Value(),
                               GetParam(kAsymmetry)->Value()};
  if (mDesignValid && std::memcmp(&inputs, &mDesignedFor, sizeof inputs) == 0) return;
  Design(inputs);
  mDesignedFor = inputs;
  mDesignValid = true;
}

void Tarn::Design(const DesignInputs& in) {
  const double fs = in.sampleRate;
  // Ballistics settle to 1 % in 300 ms; the averaging low-pass has unity gain at DC.
  mVuRise = mVuFall = std::pow(0.01, 1.0 / (fs * 0.001 * 300.0));
  mVuP = (3.0 * fs - kTwoPi) / (3.0 * fs + kTwoPi);
  mVuA = kTwoPi / (3.0 * fs + kTwoPi);
  mRmsCoef = std::exp(-1.0 / (0.6 * fs));  // 600 ms integration

  const double levelDb = 6.0 * in.drive - 40.0;  // "Drive" 0 to 10 spans -40 to +20 dB
  // The noise and crosstalk filters are designed at the rate captured by the last Reset.
  mNoiseFilterL.setup(8, 850.0, in.designRate, 0.2, levelDb * 0.25 - 14.0, true);
  mNoiseFilterR.setup(8, 850.0, in.designRate, 0.2, levelDb * 0.25 - 14.0, true);
  mXtalkToLeft.setup(7, 867.0, in.designRate, 0.24, -3.1, true);
  mXtalkToRight.setup(7, 867.0, in.designRate, 0.24, -3.1, true);
  mXtalkToLeftGain = std::exp(in.crosstalkDb * kDbToLinear);
  mXtalkToRightGain = std::exp((in.crosstalkDb + 1.0) * kDbToLinear);  // 1 dB stronger on purpose
  mCrosstalkDb = in.crosstalkDb;

  mSat.init_all(fs, levelDb, in.freqResponse, 0.01 * in.trim + 0.2, 0.1 * in.asymmetry);
}

Tarn::Running Tarn::LoadRunning() const {
  return {mFadeIn, mBypassRamp, mMix,     mNoiseSeedL, mNoiseSeedR,
          mVuAvg,  mVuHold,     mRmsInSq, mRmsOutSq};
}

void Tarn::StoreRunning(const Running& r) {
  mFadeIn = r.fadeIn;
  mBypassRamp = r.bypassRamp;
  mMix = r.mix;
  mNoiseSeedL = r.noiseSeedL;
  mNoiseSeedR = r.noiseSeedR;
  mVuAvg = r.vuAvg;
  mVuHold = r.vuHold;
  mRmsInSq = r.rmsInSq;
  mRmsOutSq = r.rmsOutSq;
}

inline double Tarn::AdvanceFrame(Running& r) const {
  if (r.fadeIn <= 1.0) r.fadeIn += 0.0001;
  r.bypassRamp = 0.99 * r.bypassRamp + (mBypass ? 0.0 : 0.010000000000000009);
  r.mix = r.bypassRamp;
  return mInGain * r.fadeIn;
}

template <class T>
inline T Tarn::MixWetDry(T wet, T dry, double mix) const {
  return ClampOutput(wet * mOutGain * mix + (1.0 - mix) * dry);
}

// The channel's noise floor for a frame: its noise through its shelf.
template <class T>
inline T Tarn::NoiseFloor(T noise, BiquadLanes<T>& noiseFilter) const {
  return noiseFilter.filter(noise * mNoiseLevel);
}

// The mixed output plus the noise floor, faded.
template <class T>
inline T Tarn::AddNoise(T mixed, T floor, double fade) const {
  return (mixed + floor) * fade;
}

inline double Tarn::FeedMeter(Running& r, double in, double out) const {
  const double source = mVuMode == 0 ? in : out;
  r.vuAvg = mVuP * r.vuAvg + 2.0 * mVuA * std::fabs(source);
  const double coef = r.vuAvg > r.vuHold ? mVuRise : mVuFall;
  r.vuHold = FlushDenormal(r.vuAvg + (r.vuHold - r.vuAvg) * coef);

  r.rmsInSq = mRmsCoef * r.rmsInSq + (1.0 - mRmsCoef) * (in * in);
  r.rmsOutSq = mRmsCoef * r.rmsOutSq + (1.0 - mRmsCoef) * (out * out);
  return source;
}

// The RMS levels and their difference feed nothing inside the block; only the last frame's
// values are ever read, so they are taken once, after the block's last frame.
void Tarn::UpdateRmsDifference() {
  mRmsIn = std::sqrt(mRmsInSq);
  mRmsOut = std::sqrt(mRmsOutSq);
  if (mRmsOut < 1e-06) mRmsOut = 0.0;
  mRmsDiffDb = FlushDenormal(kLinearToDb * std::log(std::fabs(mRmsOut)) -
                             kLinearToDb * std::log(std::fabs(mRmsIn)));
}

// The saturator runs a chunk of frames at a time (AsymSat::process_StereoBlock), so the engine
// is staged alike: the input stage (fade, bypass ramp, trim, crosstalk, and the noise floor,
// which depends on nothing else) for every frame of the chunk, the saturator, then the output
// stage (mix, clamp, noise, fade), then the meter. Each frame's
// values are the same as if the frames ran one by one. Left and right run in step as lane pairs,
// with the filters' state and the running values in locals for the whole block; the values only
// the last frame leaves behind (levels, meter source, needle) are written once, after it.
void Tarn::ProcessStereo(double** inputs, double** outputs, int nFrames) {
  if (nFrames <= 0) return;
  // At the bottom of the range the leak is off and both crosstalk filters stand still.
  const bool crosstalkOn = mCrosstalkDb > -120.0;
  // Left lane first: the leak into the right channel filters the left input, and vice versa.
  BiquadLanes<LanePair> leakFilters(mXtalkToRight, mXtalkToLeft);
  const LanePair leakGains = {mXtalkToLeftGain, mXtalkToRightGain};
  BiquadLanes<LanePair> noiseFilters(mNoiseFilterL, mNoiseFilterR);
  Running run = LoadRunning();
  LanePair lastDry{}, lastOut{};
  double lastSource = 0.0;
  for (int start = 0; start < nFrames; start += kChunkFrames) {
    const int len = std::min(kChunkFrames, nFrames - start);
    const double* inL = inputs[0] + start;
    const double* inR = inputs[1] + start;
    double* outL = outputs[0] + start;
    double* outR = outputs[1] + start;
    LanePair dry[kChunkFrames], noise[kChunkFrames], out[kChunkFrames];
    double wetL[kChunkFrames], wetR[kChunkFrames], mix[kChunkFrames], fade[kChunkFrames];

    for (int n = 0; n < len; ++n) {
      noise[n] =
          NoiseFloor(LanePair{NextNoise(run.noiseSeedL), NextNoise(run.noiseSeedR)}, noiseFilters);
      const double g = AdvanceFrame(run);
      mix[n] = run.mix;
      fade[n] = run.fadeIn;
      const LanePair in = LanePair{inL[n], inR[n]} * g;
      dry[n] = in;
      LanePair wet = in;
      if (crosstalkOn) {
        const LanePair leak = leakFilters.filter(in);
        wet = in + LanePair{leak[1], leak[0]} * leakGains;
      }
      wetL[n] = wet[0];
      wetR[n] = wet[1];
    }

    mSat.process_StereoBlock(wetL, wetR, wetL, wetR, len);

    for (int n = 0; n < len; ++n) {
      const LanePair mixed = MixWetDry(LanePair{wetL[n], wetR[n]}, dry[n], mix[n]);
      out[n] = FlushTinyOrNonFinite(AddNoise(mixed, noise[n], fade[n]));
      outL[n] = out[n][0];
      outR[n] = out[n][1];
    }
    // The meter in a loop of its own: its ballistics are a chain of their own that would only
    // lengthen each frame's path through the output stage.
    for (int n = 0; n < len; ++n) {
      lastSource = FeedMeter(run, 0.5 * (dry[n][0] + dry[n][1]), 0.5 * (out[n][0] + out[n][1]));
    }
    lastDry = dry[len - 1];
    lastOut = out[len - 1];
  }
  StoreRunning(run);
  mInL = lastDry[0];
  mInR = lastDry[1];
  mOutL = lastOut[0];
  mOutR = lastOut[1];
  mInMono = 0.5 * (mInL + mInR);
  mOutMono = 0.5 * (mOutL + mOutR);
  mMeterSource = lastSource;
  mNeedle = mVuHold;
  leakFilters.store(mXtalkToRight, mXtalkToLeft);
  noiseFilters.store(mNoiseFilterL, mNoiseFilterR);
}

void Tarn::ProcessMono(double** inputs, double** outputs, int nFrames) {
  if (nFrames <= 0) return;
  BiquadLanes<double> noiseFilter(mNoiseFilterL, mNoiseFilterL);
  Running run = LoadRunning();
  double lastSource = 0.0;
  for (int start = 0; start < nFrames; start += kChunkFrames) {
    const int len = std::min(kChunkFrames, nFrames - start);
    const double* inL = inputs[0] + start;
    double* outL = outputs[0] + start;
    double dry[kChunkFrames], wet[kChunkFrames], mix[kChunkFrames], fade[kChunkFrames],
        noise[kChunkFrames];

    for (int n = 0; n < len; ++n) {
      noise[n] = NoiseFloor(NextNoise(run.noiseSeedL), noiseFilter);
      const double g = AdvanceFrame(run);
      mix[n] = run.mix;
      fade[n] = run.fadeIn;
      dry[n] = inL[n] * g;
    }

    mSat.process_MonoBlock(dry, wet, len);

    for (int n = 0; n < len; ++n) {
      const double mixed = MixWetDry(wet[n], dry[n], mix[n]);
      const double out = AddNoise(mixed, noise[n], fade[n]);
      mOutL = outL[n] = FlushDenormal(out);  // infinities and NaNs pass in mono
      lastSource = FeedMeter(run, dry[n], mOutL);
    }
    mInL = dry[len - 1];
  }
  StoreRunning(run);
  mMeterSource = lastSource;
  mNeedle = mVuHold;
  noiseFilter.store(mNoiseFilterL, mNoiseFilterL);
}

// The needle on the meter's scale: the RMS difference in mode 1, the ballistics otherwise.
double Tarn::NeedleOnScale(double ballistics) const {
  double needle;
  if (mVuMode == 1) {
    needle = std::fabs(mRmsDiffDb) < 50.0 ? std::exp((mRmsDiffDb - 3.95) * kDbToLinear)
                                          : kNeedleZeroMark;
  } else {
    needle = ballistics * std::exp(kNeedleReference);
  }
  if (needle > kNeedleZeroMark) needle = kNeedleZeroMark + (needle - kNeedleZeroMark) * 0.43;
  return needle >= 0.015 ? std::min(0.98, needle) : 0.015;
}

void Tarn::ShowNeedle(double position) {
  if (IGraphics* editor = GetGUI()) editor->SetControlFromPlug(mMeterControl, position);
}

void Tarn::SendNeedle() {
  mNeedle = NeedleOnScale(mNeedle);
  ShowNeedle(mNeedle);
}

// The base calls this under the instance mutex with the host's audio widened to double.
void Tarn::ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames) {
  SetUpBlock();
  if (IsInChannelConnected(1)) {
    ProcessStereo(inputs, outputs, nFrames);
  } else {
    ProcessMono(inputs, outputs, nFrames);
  }
  if (nFrames > 0) UpdateRmsDifference();
  if (GetGUI()) SendNeedle();
}
