#pragma once

#include "plug/IPlugBase.h"
#include "plug/IPlugInstanceInfo.h"

class IPlugProcess;
class IPlugProcessRTAS;

// The adaptor between the plug-in core and the RTAS host: the effect derives from it in a build
// for that host. It talks to the host through the processing object the SDK made for the
// instance, which owns it; host control c is parameter c - 2 (control 1 is the master bypass).
class IPlugRTAS : public IPlugBase {
 public:
  IPlugRTAS(IPlugInstanceInfo instanceInfo, int nParams, const char* channelIOStr, int nPresets,
            const char* effectName, const char* productName, const char* mfrName, int vendorVersion,
            int uniqueID, int mfrID, int latency, bool plugDoesMidi, bool plugDoesChunks,
            bool plugIsInst, int plugScChans);

  // The processing object is known: its block size is taken and the host identified.
  void Created(IPlugProcess* process);
  // Inputs 0 ... nIn - 1 (and one more for a connected side chain) and outputs 0 ... nOut - 1
  // connected, the rest disconnected.
  void SetIO(int nIn, int nOut);
  // Takes host control c's value into parameter c - 2, converted by the control into plain
  // units, as automation does: under the mutex, editor first, clamped, never rounded.
  void SetParameter(int controlIndex);
  void ProcessAudio(float** inputs, float** outputs, int nFrames);
  // The master bypass: the inputs come out through the pass-through delay.
  void ProcessAudioBypassed(float** inputs, float** outputs, int nFrames);
  void SetSideChainConnected(bool connected);

  void BeginInformHostOfParamChange(int paramIdx) override;
  void InformHostOfParamChange(int paramIdx, double normalizedValue) override;
  void EndInformHostOfParamChange(int paramIdx) override;
  void InformHostOfProgramChange() override;
  int GetHost() override;
  double GetSamplePos() override;
  double GetTempo() override;
  void GetTimeSig(int* numerator, int* denominator) override;
  void GetTime(ITimeInfo* timeInfo) override;
  void ResizeGraphics(int w, int h) override;
  bool SendMidiMsg(IMidiMsg*) override { return false; }

  bool DoesMidi() const { return mDoesMidi; }
  bool HasSideChain() const { return mSideChain; }
  // The host value of parameter i's control for the parameter's current value; false for a
  // parameter without a control.
  bool ControlValueForParam(int paramIdx, int* value);

 private:
  bool IsControl(int controlIndex) const;
  IPlugProcessRTAS* Rtas() const;

  IPlugProcess* mProcess = nullptr;
  bool mDoesMidi;
  bool mSideChain;
  bool mSideChainConnected = false;
};
