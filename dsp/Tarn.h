#pragma once

#include "dsp/AsymSat.h"
#include "dsp/FilterLanes.h"
#include "dsp/RBJ.h"
#include "plug/IPlugAdaptor.h"

// Tarn's parameters, in index order.
enum EParams {
  kInputTrim = 0,
  kDrive,
  kOutputComp,
  kAsymmetry,
  kFreqResponse,
  kCrosstalk,
  kVuMode,
  kBypass,
  kNumParams
};

// The analogue-style saturation effect: its identity as the host sees it, its parameters and
// its audio engine (input trim, start-up fade, crosstalk, the saturator, output gain, bypass
// crossfade, safety clamp, a coloured noise floor and a VU meter).
class Tarn : public IPlugAdaptor {
 public:
  explicit Tarn(IPlugInstanceInfo instanceInfo);
  ~Tarn() override;

  void Reset() override;
  void OnParamChange(int paramIdx) override;
  void ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames) override;

  // The meter's needle: the ballistics' value while no editor is attached, the scaled needle
  // position sent to the editor otherwise.
  double GetNeedle() const { return mNeedle; }
  // The editor's needle control, which receives the needle once per block.
  void SetMeterControl(int controlIdx) { mMeterControl = controlIdx; }
  // Where the needle of an editor would stand now (0.015 ... 0.98), editor or not.
  double NeedlePosition() const { return NeedleOnScale(mVuHold); }
  // Puts the editor's needle there: for an editor that shows another instance's meter.
  void ShowNeedle(double position);

 private:
  void InitParameters();
  // The 304 × 416 panel on the editor the platform made: images, controls in their order, the
  // editor handed to the base. Returns the needle's control index.
  int LayOutEditor(IGraphics* editor);

  // Everything the coefficient designs read.
  struct DesignInputs {
    double sampleRate, designRate, drive, trim, crosstalkDb, freqResponse, asymmetry;
  };

  // Per block: every coefficient from the current parameter values.
  void SetUpBlock();
  void Design(const DesignInputs& inputs);
  // Frames run in chunks of at most this many, stage by stage.
  static constexpr int kChunkFrames = 64;
  void ProcessStereo(double** inputs, double** outputs, int nFrames);
  void ProcessMono(double** inputs, double** outputs, int nFrames);
  // What the per-frame stages carry from frame to frame. A block keeps these in a local copy
  // and writes it back at the end: as members, every frame would have to store and reload them
  // all (an output buffer might alias them, as far as the compiler knows).
  struct Running {
    double fadeIn, bypassRamp, mix;
    int noiseSeedL, noiseSeedR;
    double vuAvg, vuHold, rmsInSq, rmsOutSq;
  };
  Running LoadRunning() const;
  void StoreRunning(const Running& r);
  // Fade and bypass ramp for one frame; returns the input gain for it.
  double AdvanceFrame(Running& r) const;
  template <class T>
  T MixWetDry(T wet, T dry, double mix) const;
  template <class T>
  T NoiseFloor(T noise, BiquadLanes<T>& noiseFilter) const;
  template <class T>
  T AddNoise(T mixed, T floor, double fade) const;
  // Meter ballistics and RMS sums for one frame; returns the meter's source value.
  double FeedMeter(Running& r, double in, double out) const;
  void UpdateRmsDifference();
  double NeedleOnScale(double ballistics) const;
  // Maps the meter to the needle's scale and hands it to the editor.
  void SendNeedle();

  double mFadeIn = 0.0;
  double mBypassRamp = 0.0;
  RBJ mXtalkToLeft{};
  double mXtalkToLeftGain = 0.0;
  RBJ mXtalkToRight{};
  double mXtalkToRightGain = 0.0;
  AsymSat mSat;
  int mNoiseSeedL = 0, mNoiseSeedR = 0;
  RBJ mNoiseFilterL{}, mNoiseFilterR{};
  double mVuA = 0.0, mVuP = 0.0;
  double mVuAvg = 0.0;
  double mVuHold = 0.0;
  double mVuRise = 0.0, mVuFall = 0.0;
  double mRmsCoef = 0.0;
  double mRmsInSq = 0.0, mRmsIn = 0.0;
  double mRmsOutSq = 0.0, mRmsOut = 0.0;
  int mMeterControl = 0;
  int mVuMode = 0;
  double mMeterSource = 0.0;
  double mNeedle = 0.0;
  double mRmsDiffDb = 0.0;
  double mInGain = 1.0;
  double mInGainInv = 1.0;  // kept in step with mInGain; nothing reads it
  double mOutGain = 1.0;
  double mNoiseLevel = 3.0517578125e-05;  // 2^-15 until the first block sets it
  double mMix = 1.0;
  bool mBypass = false;
  double mDesignRate = 44100.0;
  double mCrosstalkDb = -90.0;  // the block's "Crosstalk Level", read once at set-up
  DesignInputs mDesignedFor{};  // what the current coefficients were designed from
  bool mDesignValid = false;
  double mInL = 0.0, mInR = 0.0;
  double mInMono = 0.0;
  double mOutL = 0.0, mOutR = 0.0;
  double mOutMono = 0.0;
};
