#include "plug/IPlugOffline.h"

#include <algorithm>

#include "plug/IParam.h"

IPlugOffline::IPlugOffline(IPlugInstanceInfo instanceInfo, int nParams, const char* channelIOStr,
                           int nPresets, const char* effectName, const char* productName,
                           const char* mfrName, int vendorVersion, int uniqueID, int mfrID,
                           int latency, bool plugDoesMidi, bool plugDoesChunks, bool plugIsInst,
                           int /*plugScChans*/)
    : IPlugBase(nParams, channelIOStr, nPresets, effectName, productName, mfrName, vendorVersion,
                uniqueID, mfrID, latency, plugDoesMidi, plugDoesChunks, plugIsInst, kAPIOffline),
      mDoesMidi(plugDoesMidi),
      mEditListener(instanceInfo.mEditListener) {
  CreatePassThroughDelay();
  SetInputChannelConnections(0, NInChannels(), true);
  SetOutputChannelConnections(0, NOutChannels(), true);
  SetBlockSize(1024);
}

void IPlugOffline::SetIO(int nIn, int nOut) {
  nIn = std::clamp(nIn, 0, NInChannels());
  nOut = std::clamp(nOut, 0, NOutChannels());
  SetInputChannelConnections(0, nIn, true);
  SetInputChannelConnections(nIn, NInChannels() - nIn, false);
  SetOutputChannelConnections(0, nOut, true);
  SetOutputChannelConnections(nOut, NOutChannels() - nOut, false);
}

void IPlugOffline::SetParameter(int paramIdx, double plainValue) {
  SetParameterFromHost(paramIdx, plainValue);
}

void IPlugOffline::BeginInformHostOfParamChange(int paramIdx) {
  if (mEditListener) mEditListener->BeginEdit(paramIdx);
}

// The parameter already holds the value: the plain one, rounded to the step where it is whole.
void IPlugOffline::InformHostOfParamChange(int paramIdx, double /*normalizedValue*/) {
  if (mEditListener) mEditListener->Edit(paramIdx, GetParam(paramIdx)->Value());
}

void IPlugOffline::EndInformHostOfParamChange(int paramIdx) {
  if (mEditListener) mEditListener->EndEdit(paramIdx);
}

void IPlugOffline::ProcessAudio(float** inputs, float** outputs, int nFrames) {
  ProcessHostBlock(inputs, outputs, nFrames, false);
  mSamplePos += std::max(nFrames, 0);
}

void IPlugOffline::ProcessAudioBypassed(float** inputs, float** outputs, int nFrames) {
  ProcessHostBlock(inputs, outputs, nFrames, true);
  mSamplePos += std::max(nFrames, 0);
}

void IPlugOffline::GetTimeSig(int* numerator, int* denominator) {
  if (numerator) *numerator = 4;
  if (denominator) *denominator = 4;
}

void IPlugOffline::GetTime(ITimeInfo* timeInfo) {
  if (!timeInfo) return;
  timeInfo->mTempo = kTempo;
  timeInfo->mSamplePos = mSamplePos;
  timeInfo->mPPQPos = mSamplePos / GetSampleRate() * kTempo / 60.0;
  GetTimeSig(&timeInfo->mNumerator, &timeInfo->mDenominator);
  timeInfo->mTransportIsRunning = true;
}
