#include "plug/IPlugBase.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "editor/IGraphics.h"
#include "plug/Hosts.h"
#include "plug/Version.h"

namespace {

void CopyName(char* dest, const char* src) { std::strcpy(dest, src ? src : ""); }

// Returns the cleared buffer and lowers *fits to what it holds (less than asked if out of memory).
double* ResizeAndClear(WDL_TypedBuf<double>& buf, int frames, int* fits) {
  double* samples = buf.Resize(frames);
  if (samples) std::memset(samples, 0, sizeof(double) * buf.GetSize());
  *fits = std::min(*fits, buf.GetSize());
  return samples;
}

}  // namespace

IPlugBase::IPlugBase(int nParams, const char* channelIOStr, int nPresets, const char* effectName,
                     const char* productName, const char* mfrName, int vendorVersion, int uniqueID,
                     int mfrID, int latency, bool /*plugDoesMidi: the adaptor's*/,
                     bool plugDoesChunks, bool plugIsInst, EAPI plugAPI)
    : mUniqueID(uniqueID),
      mMfrID(mfrID),
      mVersion(vendorVersion),
      mAPI(plugAPI),
      mStateChunks(plugDoesChunks),
      mIsInst(plugIsInst),
      mLatency(latency) {
  CopyName(mEffectName, effectName);
  CopyName(mProductName, productName);
  CopyName(mMfrName, mfrName);
  for (int i = 0; i < nParams; ++i) mParams.Add(new IParam);
  for (int i = 0; i < nPresets; ++i) mPresets.Add(new PresetSlot);
  ParseChannelIOString(channelIOStr);
}

// The editor goes first: it may still look at parameters while it closes.
IPlugBase::~IPlugBase() {
  delete mGraphics;
  mGraphics = nullptr;
  mParams.Empty();
  mPresets.Empty();
  mInChannels.Empty();
  mOutChannels.Empty();
  mChannelIO.Empty();
  delete mDelay;
}

// Tokens "in-out" separated by single spaces. A token that does not scan still adds a 0-0
// layout, and so does the empty token after a trailing space.
void IPlugBase::ParseChannelIOString(const char* channelIOStr) {
  int maxIn = 0, maxOut = 0;
  for (const char* token = channelIOStr; token;) {
    ChannelIOPair* pair = mChannelIO.Add(new ChannelIOPair);
    if (pair) {
      std::sscanf(token, "%d-%d", &pair->mIn, &pair->mOut);
      maxIn = std::max(maxIn, pair->mIn);
      maxOut = std::max(maxOut, pair->mOut);
    }
    token = std::strchr(token, ' ');
    if (token) ++token;
  }
  CreateChannels(maxIn, maxOut);
}

void IPlugBase::CreateChannels(int maxIn, int maxOut) {
  double** inSlots = mInData.Resize(maxIn);
  double** outSlots = mOutData.Resize(maxOut);
  for (int i = 0; i < mInData.GetSize(); ++i) {
    inSlots[i] = nullptr;
    InputChannel* channel = mInChannels.Add(new InputChannel);
    if (channel) channel->mSrc = &inSlots[i];
  }
  for (int i = 0; i < mOutData.GetSize(); ++i) {
    outSlots[i] = nullptr;
    OutputChannel* channel = mOutChannels.Add(new OutputChannel);
    if (channel) channel->mDest = &outSlots[i];
  }
}

void IPlugBase::GetChannelIO(int idx, int* nIn, int* nOut) const {
  const ChannelIOPair* pair = mChannelIO.Get(idx);
  if (nIn) *nIn = pair ? pair->mIn : 0;
  if (nOut) *nOut = pair ? pair->mOut : 0;
}

void IPlugBase::CreatePassThroughDelay() {
  if (!mDelay && NInChannels() > 0)
    mDelay = new PassThroughDelay(NInChannels(), NOutChannels(), mLatency);
}

void IPlugBase::SetParameterFromHost(int paramIdx, double plainValue) {
  IParam* param = GetParam(paramIdx);
  if (!param) return;
  WDL_MutexLock lock(&mMutex);
  if (mGraphics) mGraphics->SetParameterFromPlug(paramIdx, plainValue, false);
  param->Set(std::clamp(plainValue, param->GetMin(), param->GetMax()));
  OnParamChange(paramIdx);
}

void IPlugBase::ProcessHostBlock(float** inputs, float** outputs, int nFrames, bool bypassed) {
  WDL_MutexLock lock(&mMutex);
  AttachInputBuffers(0, NInChannels(), inputs, nFrames);
  AttachOutputBuffers(0, NOutChannels(), outputs);
  bypassed ? PassThroughBuffers(0.f, nFrames) : ProcessBuffers(0.f, nFrames);
}

void IPlugBase::Reset() { WDL_MutexLock lock(&mMutex); }

void IPlugBase::OnParamChange(int /*paramIdx*/) { WDL_MutexLock lock(&mMutex); }

void IPlugBase::OnActivate(bool /*active*/) { WDL_MutexLock lock(&mMutex); }

bool IPlugBase::MidiNoteName(int /*noteNumber*/, char* name) {
  if (name) name[0] = '\0';
  return false;
}

void IPlugBase::SetParameterFromGUI(int paramIdx, double normalizedValue) {
  WDL_MutexLock lock(&mMutex);
  // Controls carry valid indices; a stray one must still not take the host down.
  IParam* param = GetParam(paramIdx);
  if (!param) return;
  param->SetNormalized(normalizedValue);
  InformHostOfParamChange(paramIdx, normalizedValue);
  OnParamChange(paramIdx);
}

// Under the instance mutex: automation may be writing the values meanwhile.
void IPlugBase::RedrawParamControls() {
  if (!mGraphics) return;
  WDL_MutexLock lock(&mMutex);
  for (int i = 0; i < NParams(); ++i)
    mGraphics->SetParameterFromPlug(i, GetParam(i)->Value(), false);
}

// The editor sees every current value and has its surface before the plug-in knows it.
void IPlugBase::AttachGraphics(IGraphics* graphics) {
  if (!graphics) return;
  WDL_MutexLock lock(&mMutex);
  for (int i = 0; i < NParams(); ++i)
    graphics->SetParameterFromPlug(i, GetParam(i)->GetNormalized(), true);
  graphics->PrepDraw();
  mGraphics = graphics;
}

void IPlugBase::SetLatency(int samples) {
  mLatency = std::max(samples, 0);
  if (mDelay) mDelay->SetLength(mLatency);
}

// Sizing moves the scratch buffers, so every slot is pointed at its channel's buffer again:
// the effect must never be handed a stale pointer, connected channel or not.
void IPlugBase::SetBlockSize(int blockSize) {
  if (blockSize == mBlockSize) return;
  int fits = std::max(blockSize, 0);
  for (int i = 0; i < NInChannels(); ++i) {
    InputChannel* channel = mInChannels.Get(i);
    *channel->mSrc = ResizeAndClear(channel->mScratchBuf, blockSize, &fits);
  }
  for (int i = 0; i < NOutChannels(); ++i) {
    OutputChannel* channel = mOutChannels.Get(i);
    *channel->mDest = ResizeAndClear(channel->mScratchBuf, blockSize, &fits);
  }
  mBlockSize = blockSize;
  mScratchFrames = fits;
}

// A disconnected channel reads (or is written to) its own scratch buffer, so the effect always
// finds valid memory behind every slot.
void IPlugBase::SetInputChannelConnections(int idx, int n, bool connected) {
  int end = std::min(idx + n, NInChannels());
  for (int i = std::max(idx, 0); i < end; ++i) {
    InputChannel* channel = mInChannels.Get(i);
    channel->mConnected = connected;
    if (!connected) *channel->mSrc = channel->mScratchBuf.Get();
  }
}

void IPlugBase::SetOutputChannelConnections(int idx, int n, bool connected) {
  int end = std::min(idx + n, NOutChannels());
  for (int i = std::max(idx, 0); i < end; ++i) {
    OutputChannel* channel = mOutChannels.Get(i);
    channel->mConnected = connected;
    if (!connected) *channel->mDest = channel->mScratchBuf.Get();
  }
}

bool IPlugBase::IsInChannelConnected(int chIdx) const {
  const InputChannel* channel = mInChannels.Get(chIdx);
  return channel && channel->mConnected;
}

bool IPlugBase::IsOutChannelConnected(int chIdx) const {
  const OutputChannel* channel = mOutChannels.Get(chIdx);
  return channel && channel->mConnected;
}

// The scratch buffers hold one block of the size last given to SetBlockSize. A host handing
// over more frames than that gets only that many processed: the rest of its buffers are left
// untouched rather than written or read out of bounds.
int IPlugBase::FramesThatFit(int nFrames) const { return std::clamp(nFrames, 0, mScratchFrames); }

// Connected channels consume the host's pointers in order; disconnected ones consume none. A
// null host pointer for a connected channel reads as silence.
void IPlugBase::AttachInputBuffers(int idx, int n, float** data, int nFrames) {
  nFrames = FramesThatFit(nFrames);
  int end = std::min(idx + n, NInChannels());
  for (int i = std::max(idx, 0); i < end; ++i) {
    InputChannel* channel = mInChannels.Get(i);
    if (!channel->mConnected) continue;
    const float* hostSamples = data ? *(data++) : nullptr;
    double* scratch = channel->mScratchBuf.Get();
    if (hostSamples) {
      for (int s = 0; s < nFrames; ++s) scratch[s] = hostSamples[s];
    } else if (scratch) {
      std::memset(scratch, 0, sizeof(double) * nFrames);
    }
    *channel->mSrc = scratch;
  }
}

void IPlugBase::AttachOutputBuffers(int idx, int n, float** data) {
  int end = std::min(idx + n, NOutChannels());
  for (int i = std::max(idx, 0); i < end; ++i) {
    OutputChannel* channel = mOutChannels.Get(i);
    if (!channel->mConnected) continue;
    *channel->mDest = channel->mScratchBuf.Get();
    channel->mFDest = data ? *(data++) : nullptr;
  }
}

void IPlugBase::ProcessBuffers(float, int nFrames) {
  nFrames = FramesThatFit(nFrames);
  ProcessDoubleReplacing(mInData.Get(), mOutData.Get(), nFrames);
  ConvertOutputsToHost(nFrames);
}

void IPlugBase::PassThroughBuffers(float, int nFrames) {
  nFrames = FramesThatFit(nFrames);
  PassThroughBuffers(0.0, nFrames);
  ConvertOutputsToHost(nFrames);
}

void IPlugBase::PassThroughBuffers(double, int nFrames) {
  nFrames = FramesThatFit(nFrames);
  if (mLatency && mDelay) {
    mDelay->Process(mInData.Get(), mOutData.Get(), nFrames);
  } else {
    CopyInputsClearRest(mInData.Get(), mOutData.Get(), nFrames);
  }
}

// Plain truncating conversion: no dither, no clipping.
void IPlugBase::ConvertOutputsToHost(int nFrames) {
  for (int i = 0; i < NOutChannels(); ++i) {
    OutputChannel* channel = mOutChannels.Get(i);
    if (!channel->mConnected || !channel->mFDest) continue;
    const double* samples = *channel->mDest;
    for (int s = 0; s < nFrames; ++s) channel->mFDest[s] = static_cast<float>(samples[s]);
  }
}

void IPlugBase::ZeroScratchBuffers() {
  size_t bytes = sizeof(double) * mScratchFrames;
  for (int i = 0; i < NInChannels(); ++i) {
    double* scratch = mInChannels.Get(i)->mScratchBuf.Get();
    if (scratch) std::memset(scratch, 0, bytes);
  }
  for (int i = 0; i < NOutChannels(); ++i) {
    double* scratch = mOutChannels.Get(i)->mScratchBuf.Get();
    if (scratch) std::memset(scratch, 0, bytes);
  }
}

void IPlugBase::CopyInputsClearRest(double** inputs, double** outputs, int nFrames) const {
  if (nFrames <= 0) return;
  size_t bytes = sizeof(double) * nFrames;
  for (int i = 0; i < NOutChannels(); ++i) {
    if (i < NInChannels()) {
      if (outputs[i] != inputs[i]) std::memcpy(outputs[i], inputs[i], bytes);
    } else {
      std::memset(outputs[i], 0, bytes);
    }
  }
}

void IPlugBase::ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames) {
  CopyInputsClearRest(inputs, outputs, nFrames);
}

// Unlike the double form, the inputs are copied without looking at the output count; hosts
// always give at least as many outputs as inputs to a plug-in that relies on this default.
void IPlugBase::ProcessSingleReplacing(float** inputs, float** outputs, int nFrames) {
  if (nFrames <= 0) return;
  size_t bytes = sizeof(float) * nFrames;
  for (int i = 0; i < NInChannels(); ++i) std::memcpy(outputs[i], inputs[i], bytes);
  for (int i = NInChannels(); i < NOutChannels(); ++i) std::memset(outputs[i], 0, bytes);
}

int IPlugBase::GetEffectVersion(bool decimal) const {
  return decimal ? DecimalVersion(mVersion) : mVersion;
}

int IPlugBase::GetHostVersion(bool decimal) const {
  return decimal ? DecimalVersion(mHostVersion) : mHostVersion;
}

bool IPlugBase::SetHost(const char* host, int version) {
  mHost = LookUpHost(host);
  mHostVersion = version;
  return false;
}

bool IPlugBase::SerializeParams(ByteChunk* chunk) {
  if (!chunk) return false;
  WDL_MutexLock lock(&mMutex);
  for (int i = 0; i < NParams(); ++i) {
    double value = GetParam(i)->Value();
    if (chunk->Put(&value) <= 0) return false;
  }
  return true;
}

// A short chunk is applied as far as it goes; the parameter at which it ends falls to 0.0 (in its
// range) and the ones after it keep their values. The effect hears about every parameter.
int IPlugBase::UnserializeParams(const ByteChunk* chunk, int startPos) {
  WDL_MutexLock lock(&mMutex);
  int pos = startPos < 0 ? -1 : startPos;
  for (int i = 0; pos >= 0 && i < NParams(); ++i) {
    IParam* param = GetParam(i);
    double value = 0.0;
    pos = chunk ? chunk->Get(&value, pos) : -1;
    param->Set(std::clamp(value, param->GetMin(), param->GetMax()));
  }
  for (int i = 0; i < NParams(); ++i) OnParamChange(i);
  return pos;
}

// Stored and current values are compared in single precision, so tiny drifts from a host's
// round trip through its own formats do not count as a change. Takes no lock: it only reads.
bool IPlugBase::CompareState(const unsigned char* data, int startPos) {
  const unsigned char* stored = data + static_cast<std::ptrdiff_t>(sizeof(double)) * startPos;
  bool equal = true;
  for (int i = 0; i < NParams(); ++i) {
    double storedValue;
    std::memcpy(&storedValue, stored + sizeof(double) * i, sizeof(double));  // may be unaligned
    float difference = static_cast<float>(GetParam(i)->Value()) - static_cast<float>(storedValue);
    equal &= std::fabs(difference) < 0.00001;
  }
  return equal;
}

void IPlugBase::MakeDefaultPreset(const char* name, int nPresets) {
  for (int round = 0; round < nPresets; ++round) {
    PresetSlot* slot = nullptr;
    for (int i = 0; i < NPresets() && !slot; ++i) {
      if (!mPresets.Get(i)->mInitialized) slot = mPresets.Get(i);
    }
    if (!slot) continue;
    slot->mInitialized = true;
    std::strcpy(slot->mName, name ? name : "Empty");
    SerializeState(&slot->mChunk);
  }
}

void IPlugBase::PruneUninitializedPresets() {
  for (int i = NPresets() - 1; i >= 0; --i) {
    if (!mPresets.Get(i)->mInitialized) mPresets.Delete(i);
  }
}
