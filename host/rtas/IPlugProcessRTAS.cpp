#include "host/rtas/IPlugProcessRTAS.h"

#include "plug/IParam.h"

IPlugProcessRTAS::IPlugProcessRTAS(OSType chunkID) : IPlugProcess(chunkID) {
  if (GetPlug()) GetPlug()->Created(this);
}

void IPlugProcessRTAS::RenderAudio(float** inputs, float** outputs, int32_t nFrames) {
  IPlugRTAS* plug = GetPlug();
  if (!plug) return;
  plug->SetIO(GetNumInputs(), GetNumOutputs());
  mBypassed ? plug->ProcessAudioBypassed(inputs, outputs, nFrames)
            : plug->ProcessAudio(inputs, outputs, nFrames);
}

ComponentResult IPlugProcessRTAS::GetDelaySamplesLong(int32_t* samples) {
  *samples = GetPlug() ? GetPlug()->GetLatency() : 0;
  return kNoErr;
}

// The master bypass is always automatable, whatever the parameters say.
ComponentResult IPlugProcessRTAS::IsControlAutomatable(int32_t controlIndex, int16_t* automatable) {
  const IParam* param = GetPlug() ? GetPlug()->GetParam(controlIndex - 2) : nullptr;
  *automatable = controlIndex == 1 || (param && param->GetCanAutomate());
  return kNoErr;
}

void IPlugProcessRTAS::GetTimeSig(int* numerator, int* denominator) const {
  const HostTime time = GetHostTime();
  if (numerator) *numerator = time.numerator;
  if (denominator) *denominator = time.denominator;
}

void IPlugProcessRTAS::GetTime(ITimeInfo* timeInfo) const {
  const HostTime time = GetHostTime();
  timeInfo->mTempo = time.tempo;
  timeInfo->mSamplePos = time.samplePos;
  timeInfo->mPPQPos = time.ppqPos;
  timeInfo->mNumerator = time.numerator;
  timeInfo->mDenominator = time.denominator;
  timeInfo->mTransportIsRunning = time.playing;
}
