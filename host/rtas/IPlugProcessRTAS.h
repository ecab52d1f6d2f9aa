#pragma once

#include "host/rtas/IPlugProcess.h"

// The processing object of a host-based type: renders the host's blocks, through the
// pass-through delay while the host's master bypass is on, and reports the transport.
class IPlugProcessRTAS : public IPlugProcess, public CEffectProcessRTAS {
 public:
  explicit IPlugProcessRTAS(OSType chunkID);

  void RenderAudio(float** inputs, float** outputs, int32_t nFrames) override;
  ComponentResult GetDelaySamplesLong(int32_t* samples) override;
  ComponentResult IsControlAutomatable(int32_t controlIndex, int16_t* automatable) override;
  void SetBypassed(bool bypassed) override { mBypassed = bypassed; }

  int GetBlockSize() const { return GetHostBlockSize(); }
  double GetSamplePos() const { return GetHostTime().samplePos; }
  double GetTempo() const { return GetHostTime().tempo; }
  void GetTimeSig(int* numerator, int* denominator) const;
  void GetTime(ITimeInfo* timeInfo) const;

 private:
  bool mBypassed = false;  // the master bypass, as the SDK reports it
};
