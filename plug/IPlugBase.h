#pragma once

#include "plug/ByteChunk.h"
#include "plug/IParam.h"
#include "plug/IPlugStructs.h"
#include "plug/PassThroughDelay.h"
#include "plug/PresetSlot.h"
#include "plug/WDL_Mutex.h"
#include "plug/WDL_PtrList.h"
#include "plug/WDL_TypedBuf.h"

class IGraphics;

// The format-independent heart of a plug-in: the parameter table, the channel layouts it
// accepts, the per-channel buffers that turn the host's single-precision audio into the double
// buffers the effect processes and back, the mutex that serialises audio, editor and host, and
// the link to the editor. An adaptor for one host API derives from it and supplies every
// operation that talks to the host; the effect derives from the adaptor.
class IPlugBase {
 public:
  IPlugBase(int nParams, const char* channelIOStr, int nPresets, const char* effectName,
            const char* productName, const char* mfrName, int vendorVersion, int uniqueID,
            int mfrID, int latency, bool plugDoesMidi, bool plugDoesChunks, bool plugIsInst,
            EAPI plugAPI);
  virtual ~IPlugBase();
  IPlugBase(const IPlugBase&) = delete;
  IPlugBase& operator=(const IPlugBase&) = delete;

  // ---- what the effect overrides ----
  virtual void Reset();
  virtual void OnParamChange(int paramIdx);
  virtual void ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames);
  virtual void ProcessSingleReplacing(float** inputs, float** outputs, int nFrames);

  // ---- notifications with empty defaults ----
  virtual void OnGUIOpen() {}
  virtual void OnGUIClose() {}
  virtual void OnIdle() {}
  virtual void OnActivate(bool active);
  virtual void ProcessMidiMsg(IMidiMsg* msg) { SendMidiMsg(msg); }
  virtual void ProcessSysEx(ISysEx* /*msg*/) {}
  virtual bool MidiNoteName(int noteNumber, char* name);

  // State: every parameter's plain value as a double, in index order (see SerializeParams).
  virtual bool SerializeState(ByteChunk* chunk) { return SerializeParams(chunk); }
  virtual int UnserializeState(const ByteChunk* chunk, int startPos) {
    return UnserializeParams(chunk, startPos);
  }
  // True when the stored doubles at data (startPos counts doubles) match the current values to
  // within 1e-5 in single precision. `data` must hold NParams() doubles after startPos.
  virtual bool CompareState(const unsigned char* data, int startPos);

  virtual void OnWindowResize() {}
  virtual bool HostRequestingAboutBox() { return false; }
  virtual void OnHostIdentified() {}
  virtual void PopupHostContextMenuForParam(int /*paramIdx*/, int /*x*/, int /*y*/) {}

  // Editor edit: sets the parameter from a normalised value, tells the host, then the effect.
  virtual void SetParameterFromGUI(int paramIdx, double normalizedValue);

  // ---- the host side, supplied by the adaptor ----
  virtual void BeginInformHostOfParamChange(int paramIdx) = 0;
  virtual void InformHostOfParamChange(int paramIdx, double normalizedValue) = 0;
  virtual void EndInformHostOfParamChange(int paramIdx) = 0;
  virtual void InformHostOfProgramChange() = 0;
  virtual bool IsRenderingOffline() { return false; }
  virtual double GetSamplePos() = 0;
  virtual double GetTempo() = 0;
  virtual void GetTimeSig(int* numerator, int* denominator) = 0;
  virtual void GetTime(ITimeInfo* timeInfo) = 0;
  virtual int GetHost() { return mHost; }
  virtual EAPI GetAPI() { return mAPI; }
  virtual void ResizeGraphics(int w, int h) = 0;
  virtual void HostSpecificInit() {}
  virtual void AttachGraphics(IGraphics* graphics);
  virtual void SetLatency(int samples);
  virtual bool SendMidiMsg(IMidiMsg* msg) = 0;
  virtual bool SendSysEx(ISysEx* /*msg*/) { return false; }
  virtual void RedrawParamControls();
  virtual void DirtyPTCompareState() {}
  virtual void PresetsChangedByHost() {}
  virtual void SetBlockSize(int blockSize);

  // ---- accessors ----
  IParam* GetParam(int idx) { return mParams.Get(idx); }
  const IParam* GetParam(int idx) const { return mParams.Get(idx); }
  int NParams() const { return mParams.GetSize(); }
  int NInChannels() const { return mInChannels.GetSize(); }
  int NOutChannels() const { return mOutChannels.GetSize(); }
  int NChannelIO() const { return mChannelIO.GetSize(); }
  void GetChannelIO(int idx, int* nIn, int* nOut) const;
  double GetSampleRate() const { return mSampleRate; }
  int GetBlockSize() const { return mBlockSize; }
  int GetLatency() const { return mLatency; }
  IGraphics* GetGUI() { return mGraphics; }
  WDL_Mutex& GetMutex() { return mMutex; }
  const char* GetEffectName() const { return mEffectName; }
  const char* GetProductName() const { return mProductName; }
  const char* GetMfrName() const { return mMfrName; }
  int GetUniqueID() const { return mUniqueID; }
  int GetMfrID() const { return mMfrID; }
  // The packed version 0xVVVVRRMM, or with `decimal` major x 10000 + minor x 100 + patch.
  int GetEffectVersion(bool decimal) const;
  int GetHostVersion(bool decimal) const;
  bool DoesStateChunks() const { return mStateChunks; }
  bool IsInst() const { return mIsInst; }

  // Identifies the host by name (see LookUpHost) and keeps its packed version.
  bool SetHost(const char* host, int version);

  // ---- state and presets ----
  // Appends each parameter's value; false if an append fails to grow the chunk.
  bool SerializeParams(ByteChunk* chunk);
  // Reads values from startPos in index order, clamping each into its range, up to the first
  // short read, which leaves 0.0 (clamped) in that parameter. OnParamChange then runs for every
  // parameter. Returns the position after the last value, or -1.
  int UnserializeParams(const ByteChunk* chunk, int startPos);
  // Fills up to nPresets uninitialised slots with the current values, named `name` ("Empty"
  // when null).
  void MakeDefaultPreset(const char* name, int nPresets);
  // Drops every slot that was never filled, keeping the others in order.
  void PruneUninitializedPresets();
  int NPresets() const { return mPresets.GetSize(); }
  const PresetSlot* GetPreset(int idx) const { return mPresets.Get(idx); }

  // ---- the processing frame, driven by the adaptor ----
  void SetSampleRate(double sampleRate) { mSampleRate = sampleRate; }
  void SetInputChannelConnections(int idx, int n, bool connected);
  void SetOutputChannelConnections(int idx, int n, bool connected);
  bool IsInChannelConnected(int chIdx) const;
  bool IsOutChannelConnected(int chIdx) const;
  void AttachInputBuffers(int idx, int n, float** data, int nFrames);
  void AttachOutputBuffers(int idx, int n, float** data);
  // The first argument only selects single precision; its value is ignored.
  void ProcessBuffers(float, int nFrames);
  void PassThroughBuffers(float, int nFrames);
  void PassThroughBuffers(double, int nFrames);
  void ZeroScratchBuffers();

 protected:
  // The adaptor makes the bypass delay line when the plug-in has inputs.
  void CreatePassThroughDelay();
  // Host automation in plain units, under the mutex: the editor hears of it first, then the
  // value is clamped into range (never rounded to the step) and the effect is told. An index
  // out of range is ignored.
  void SetParameterFromHost(int paramIdx, double plainValue);
  // One host block under the mutex, all channels attached: processed, or bypassed through the
  // pass-through delay.
  void ProcessHostBlock(float** inputs, float** outputs, int nFrames, bool bypassed);

 private:
  void ParseChannelIOString(const char* channelIOStr);
  void CreateChannels(int maxIn, int maxOut);
  int FramesThatFit(int nFrames) const;
  void CopyInputsClearRest(double** inputs, double** outputs, int nFrames) const;
  void ConvertOutputsToHost(int nFrames);

  WDL_PtrList<ChannelIOPair> mChannelIO;
  WDL_Mutex mMutex;
  char mEffectName[128];
  char mProductName[128];
  char mMfrName[128];
  int mUniqueID;
  int mMfrID;
  int mVersion;
  EAPI mAPI;
  int mHost = -1;
  int mHostVersion = 0;
  bool mStateChunks;
  bool mIsInst;
  double mSampleRate = 44100.0;
  int mBlockSize = 0;      // so that the first SetBlockSize always sizes the buffers
  int mScratchFrames = 0;  // frames every scratch buffer really holds
  int mLatency;
  PassThroughDelay* mDelay = nullptr;
  IGraphics* mGraphics = nullptr;
  WDL_PtrList<IParam> mParams;
  WDL_PtrList<PresetSlot> mPresets;
  WDL_TypedBuf<double*> mInData;
  WDL_TypedBuf<double*> mOutData;
  WDL_PtrList<InputChannel> mInChannels;
  WDL_PtrList<OutputChannel> mOutChannels;
};
