#pragma once

#include "dsp/DriftGenerator.h"
#include "dsp/HalfBandFilter.h"
#include "dsp/OnePoleStage.h"
#include "dsp/RBJ.h"
#include "dsp/SystemRand.h"
#include "dsp/WideOversampler.h"

// The sound of the effect: a sample-by-sample saturator with smoothed input gain and a tiny
// noise floor, pre-emphasis, slow random gain drift, a linked feedback level detector, a curve
// run at twice the sample rate that bends the two half-waves differently, output
// compensation, de-emphasis and tone shaping, removal of the drift gain and a DC blocker.
//
// A plain structure with all its state inline: the effect reads outR after each stereo frame,
// nothing is allocated, and destruction releases nothing.
// init_all sets coefficients only; no filter state is ever cleared except by construction.
struct AsymSat {
  AsymSat() = default;

  // driveDb sets the input gain and the even-harmonic weight; freqResponse (-10 to 10) the
  // emphasis and tone; driftAmount the depth of the random drift; asymmetry (0 to 1) how
  // differently the two half-waves bend.
  void init_all(double sampleRate, double driveDb, double freqResponse, double driftAmount,
                double asymmetry);

  // One frame; returns the left output, the right one is left in outR.
  double process_Stereo(double inL, double inR);

  // The left-channel path alone, with the shared stages (gain smoothing, drift, level detector)
  // run once. For equal left and right input it returns what process_Stereo returns.
  double process_Mono(double in);

  // n frames at once, bit for bit what n calls of process_Stereo or process_Mono give, and
  // leaving the same state. Outputs may be the input buffers.
  void process_StereoBlock(const double* inL, const double* inR, double* left, double* right,
                           int n);
  void process_MonoBlock(const double* in, double* out, int n);

  // One channel's curve step at the doubled rate, with that channel's memory and previous
  // curve output.
  double curve(double x, double& mem, double& curvePrev) const;

  HalfBandFilter upL, upR, downL, downR;
  // [0]/[1] low-pass, [2]/[3] 10 kHz shelf, [4]/[5] 14 kHz shelf; even slots left, odd right.
  OnePoleStage tone[6];
  // [0]/[1] pre-emphasis, [2]/[3] de-emphasis, [6]/[7] low bump; [4], [5], [8], [9] idle.
  RBJ eq[10];
  // Only drift[0] runs; drift[1] is configured alike and stays idle.
  DriftGenerator drift[2];
  int seedL = 0, seedR = 0;
  double gainSmoothed = 0.0;
  double dcL = 0.0, dcPrevL = 0.0, dcR = 0.0, dcPrevR = 0.0;
  double workL = 0.0, workR = 0.0;
  double osL = 0.0, osR = 0.0;
  double memIn = 0.5, memFb = 0.5, postScale = 0.5, postFb = 0.5;
  double memL = 0.0, memR = 0.0;
  double curvePrevL = 0.0, curvePrevR = 0.0;
  double driftGainL = 0.0, driftGainR = 0.0;
  double driftDepth = 0.0;
  double gainTarget = 0.0;
  double outScale = 0.0;
  double outL = 0.0, outR = 0.0;
  double detEnv = 0.0;
  double detOffset = 106.0;
  double detFastCoef = 0.0;  // kept for a faster detector; nothing reads it yet
  double detCoef = 0.0;
  double detFeedback = 0.0;
  double detSpare = 2.4;  // not read
  double detSlope = -0.5833333333333334;
  double posKnee = 1.0, posKneeInv = 1.0, negKnee = 1.0, negKneeInv = 1.0;
  double evenWeight = 0.05;
  int oversample = 0;
  int spareFlag = 1;  // not read
  int detState = 0;   // direction of the last detector update; informational
  int detHold = 1;

  // The drift targets' random source, private to this instance.
  SystemRand driftRandom;

  // The oversampled section runs sub-samples side by side in vector lanes: a frame's even and
  // odd sub-samples together, of both channels in stereo. Where the processor has 256-bit vectors
  // (wideLanes) four lanes run at once, else two. Every form gives the bits of the section that
  // runs one sub-sample at a time; tests turn these off to compare them.
  bool laneSections = true;
  bool wideLanes = WideLanesAvailable();

  // Frames run in chunks of at most this many, stage by stage (see runBlock).
  static constexpr int kChunkFrames = 64;

 private:
  template <class T>
  struct Chunk;
  template <class T>
  void runBlock(const double* inL, const double* inR, double* left, double* right, int n);

  // Up to the level detector: what feeds the detector loop, in frame order. Returns the
  // working sample(s) for the oversampled section.
  template <class T>
  T front(double inL, double inR);
  void frontStereo(double inL, double inR);
  void frontMono(double in);
  void smoothGain();
  double advanceDrift();
  double detectorGain();
  void updateDetector(double q);

  // The oversampled section for a chunk: working samples in, the kept sub-samples out. T is
  // double for the left channel alone or LanePair for both.
  template <class T>
  void oversampleChunk(const T* work, T* kept, int n);
  template <class T>
  T curveStep(T x, T& mem, T& curvePrev) const;
  // Any factor other than 2 (a fresh object has 0): the general pass loop for one frame.
  template <class T>
  T oversampleFrame();
  int chunkFrames() const { return oversample == 2 ? kChunkFrames : 1; }

  // After the oversampled section: output compensation, tone, drift removal and DC blocker.
  template <class T>
  class OutputStages;
  template <class T>
  void finish(Chunk<T>& chunk);
};
