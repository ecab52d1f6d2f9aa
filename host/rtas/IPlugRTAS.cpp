#include "host/rtas/IPlugRTAS.h"

#include "host/rtas/IPlugProcessRTAS.h"
#include "plug/IParam.h"

IPlugRTAS::IPlugRTAS(IPlugInstanceInfo /*instanceInfo*/, int nParams, const char* channelIOStr,
                     int nPresets, const char* effectName, const char* productName,
                     const char* mfrName, int vendorVersion, int uniqueID, int mfrID, int latency,
                     bool plugDoesMidi, bool plugDoesChunks, bool plugIsInst, int plugScChans)
    : IPlugBase(nParams, channelIOStr, nPresets, effectName, productName, mfrName, vendorVersion,
                uniqueID, mfrID, latency, plugDoesMidi, plugDoesChunks, plugIsInst, kAPIRTAS),
      mDoesMidi(plugDoesMidi),
      mSideChain(plugScChans > 0) {
  CreatePassThroughDelay();
  SetInputChannelConnections(0, NInChannels(), true);
  SetOutputChannelConnections(0, NOutChannels(), true);
  SetBlockSize(1024);
}

void IPlugRTAS::Created(IPlugProcess* process) {
  mProcess = process;
  PruneUninitializedPresets();
  SetBlockSize(Rtas()->GetBlockSize());
  OnHostIdentified();
}

void IPlugRTAS::SetIO(int nIn, int nOut) {
  const int n = nIn + (mSideChainConnected ? 1 : 0);
  SetInputChannelConnections(0, n, true);
  SetInputChannelConnections(n, NInChannels() - n, false);
  SetOutputChannelConnections(0, nOut, true);
  SetOutputChannelConnections(nOut, NOutChannels() - nOut, false);
}

bool IPlugRTAS::IsControl(int controlIndex) const {
  return mProcess && mProcess->IsValidControlIndex(controlIndex);
}

void IPlugRTAS::SetParameter(int controlIndex) {
  const IParam* param = GetParam(controlIndex - 2);
  if (!IsControl(controlIndex) || !param) return;
  const CPluginControl* control = mProcess->GetControl(controlIndex);
  double value = 0.0;
  if (param->Type() == IParam::kTypeDouble) {
    value = static_cast<const CPluginControl_Linear*>(control)->GetContinuous();
  } else if (param->Type() != IParam::kTypeNone) {
    value = static_cast<const CPluginControl_Discrete*>(control)->GetDiscrete();
  }
  SetParameterFromHost(controlIndex - 2, value);
}

void IPlugRTAS::ProcessAudio(float** inputs, float** outputs, int nFrames) {
  ProcessHostBlock(inputs, outputs, nFrames, false);
}

void IPlugRTAS::ProcessAudioBypassed(float** inputs, float** outputs, int nFrames) {
  ProcessHostBlock(inputs, outputs, nFrames, true);
}

void IPlugRTAS::SetSideChainConnected(bool connected) {
  if (connected == mSideChainConnected) return;
  ZeroScratchBuffers();
  mSideChainConnected = connected;
}

void IPlugRTAS::BeginInformHostOfParamChange(int paramIdx) {
  if (IsControl(paramIdx + 2)) mProcess->ProcessTouchControl(paramIdx + 2);
}

void IPlugRTAS::EndInformHostOfParamChange(int paramIdx) {
  if (IsControl(paramIdx + 2)) mProcess->ProcessReleaseControl(paramIdx + 2);
}

// The host hears the value the parameter holds, not the normalised one the editor sent: a
// discrete parameter's truncated to its integer.
bool IPlugRTAS::ControlValueForParam(int paramIdx, int* value) {
  const IParam* param = GetParam(paramIdx);
  if (!IsControl(paramIdx + 2) || !param || param->Type() == IParam::kTypeNone) return false;
  const CPluginControl* control = mProcess->GetControl(paramIdx + 2);
  if (param->Type() == IParam::kTypeDouble) {
    *value = static_cast<const CPluginControl_Linear*>(control)->ConvertContinuousToControl(
        param->Value());
  } else {
    *value = static_cast<const CPluginControl_Discrete*>(control)->ConvertDiscreteToControl(
        static_cast<int>(param->Value()));
  }
  return true;
}

void IPlugRTAS::InformHostOfParamChange(int paramIdx, double /*normalizedValue*/) {
  int value;
  if (ControlValueForParam(paramIdx, &value)) mProcess->SetControlValue(paramIdx + 2, value);
}

void IPlugRTAS::InformHostOfProgramChange() {
  for (int i = 0; i < NParams(); ++i) {
    BeginInformHostOfParamChange(i);
    InformHostOfParamChange(i, GetParam(i)->GetNormalized());
    EndInformHostOfParamChange(i);
  }
}

int IPlugRTAS::GetHost() {
  if (IPlugBase::GetHost() == -1 && mProcess) SetHost("ProTools", mProcess->GetHostVersion());
  return IPlugBase::GetHost();
}

void IPlugRTAS::ResizeGraphics(int w, int h) {
  if (mProcess) mProcess->ResizeGraphics(w, h);
}

// The transport as the host reports it (this effect does not use it). Processing objects of
// this build are all RTAS ones.
double IPlugRTAS::GetSamplePos() { return mProcess ? Rtas()->GetSamplePos() : 0.0; }
double IPlugRTAS::GetTempo() { return mProcess ? Rtas()->GetTempo() : 0.0; }

void IPlugRTAS::GetTimeSig(int* numerator, int* denominator) {
  if (mProcess) Rtas()->GetTimeSig(numerator, denominator);
}

void IPlugRTAS::GetTime(ITimeInfo* timeInfo) {
  if (mProcess && timeInfo) Rtas()->GetTime(timeInfo);
}

IPlugProcessRTAS* IPlugRTAS::Rtas() const { return static_cast<IPlugProcessRTAS*>(mProcess); }
