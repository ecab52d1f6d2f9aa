#pragma once

#include "plug/IPlugBase.h"
#include "plug/IPlugInstanceInfo.h"

// The adaptor for an offline host (the renderer and the tests) and for the LV2 UI's copy of the
// effect: the editor's edits go to the edit listener if there is one, and the transport is a
// steady 120 beats per minute in 4/4 whose position counts the frames processed so far.
class IPlugOffline : public IPlugBase {
 public:
  IPlugOffline(IPlugInstanceInfo instanceInfo, int nParams, const char* channelIOStr, int nPresets,
               const char* effectName, const char* productName, const char* mfrName,
               int vendorVersion, int uniqueID, int mfrID, int latency, bool plugDoesMidi,
               bool plugDoesChunks, bool plugIsInst, int plugScChans);

  // Inputs 0 ... nIn - 1 connected, the rest disconnected; the same for outputs.
  void SetIO(int nIn, int nOut);
  // Host automation in plain units: clamped into range, no step rounding. A parameter index out
  // of range is ignored.
  void SetParameter(int paramIdx, double plainValue);
  void ProcessAudio(float** inputs, float** outputs, int nFrames);
  // Bypass: the inputs come out through the plug-in's pass-through delay.
  void ProcessAudioBypassed(float** inputs, float** outputs, int nFrames);

  bool DoesMidi() const { return mDoesMidi; }

  void BeginInformHostOfParamChange(int paramIdx) override;
  void InformHostOfParamChange(int paramIdx, double normalizedValue) override;
  void EndInformHostOfParamChange(int paramIdx) override;
  void InformHostOfProgramChange() override {}
  bool IsRenderingOffline() override { return true; }
  double GetSamplePos() override { return mSamplePos; }
  double GetTempo() override { return kTempo; }
  void GetTimeSig(int* numerator, int* denominator) override;
  void GetTime(ITimeInfo* timeInfo) override;
  void ResizeGraphics(int, int) override {}
  bool SendMidiMsg(IMidiMsg*) override { return false; }

 private:
  static constexpr double kTempo = 120.0;

  bool mDoesMidi;
  IPlugEditListener* mEditListener;
  double mSamplePos = 0.0;
};
