#pragma once

// The SDK's process classes, from which a plug-in's processing object derives. CProcess keeps
// the control table and carries the calls between host and plug-in; the virtual operations are
// the plug-in's answers, with the SDK's defaults.
#include <memory>
#include <vector>

#include "host/rtas/sdk/CPluginControl.h"
#include "host/rtas/sdk/FicTypes.h"
#include "host/rtas/sdk/HostServices.h"

class CPlugInView;

class CProcess {
 public:
  CProcess();
  virtual ~CProcess();
  CProcess(const CProcess&) = delete;
  CProcess& operator=(const CProcess&) = delete;

  // ---- the control table: indices from 1, in the order the controls were added ----
  void AddControl(CPluginControl* control);  // takes ownership
  void DefineMasterBypassControlIndex(int32_t index) { mMasterBypassIndex = index; }
  int32_t GetMasterBypassControlIndex() const { return mMasterBypassIndex; }
  int32_t GetNumControls() const { return static_cast<int32_t>(mControls.size()); }
  bool IsValidControlIndex(int32_t index) const { return index >= 1 && index <= GetNumControls(); }
  CPluginControl* GetControl(int32_t index) const;

  // ---- plug-in to host ----
  // Stores the value in the control (held to its range) and tells the host.
  virtual ComponentResult SetControlValue(int32_t index, int32_t value);
  ComponentResult TouchControl(int32_t index);
  ComponentResult ReleaseControl(int32_t index);
  // Tells the host the plug-in's state changed, so that its session counts as modified.
  void IncrementChangeCounter() { ++mChangeCounter; }
  int32_t GetChangeCounter() const { return mChangeCounter; }
  void DispatchWindowResize(int w, int h);
  virtual void SetViewPort(OpaqueGrafPtr* port) { mViewPort = port; }
  OpaqueGrafPtr* GetViewPort() const { return mViewPort; }

  // ---- host to plug-in: what a host calls when the user or its automation moves a control ----
  // Stores the value (held to the control's range), then UpdateControlValueInAlgorithm. The
  // master bypass control also sets the process's bypass.
  ComponentResult HostSetsControlValue(int32_t index, int32_t value);

  // ---- the plug-in's answers ----
  virtual void EffectInit() {}
  virtual void UpdateControlValueInAlgorithm(int32_t /*index*/) {}
  virtual void SetBypassed(bool /*bypassed*/) {}
  virtual ComponentResult GetControlValue(int32_t index, int32_t* value);
  virtual ComponentResult GetControlDefaultValue(int32_t index, int32_t* value);
  virtual ComponentResult ProcessTouchControl(int32_t index) { return TouchControl(index); }
  virtual ComponentResult ProcessReleaseControl(int32_t index) { return ReleaseControl(index); }
  virtual ComponentResult GetNumChunks(int32_t* count);
  virtual ComponentResult GetIndexedChunkID(int32_t index, OSType* id);
  virtual ComponentResult GetChunkSize(OSType id, int32_t* size);
  virtual ComponentResult GetChunk(OSType id, SFicPlugInChunk* chunk);
  virtual ComponentResult SetChunk(OSType id, SFicPlugInChunk* chunk);
  virtual ComponentResult CompareActiveChunk(SFicPlugInChunk* chunk, unsigned char* isEqual);
  virtual ComponentResult ChooseControl(Point where, int32_t* index);
  virtual CPlugInView* CreateCPlugInView() { return nullptr; }
  virtual void GetViewRect(Rect* rect);
  // Idle calls, between blocks on the host's main thread. How often they come is the host's
  // affair; here the token idle is the SDK's own bookkeeping, with nothing for the plug-in to do,
  // and the process idle is the plug-in's idle time (IPlugProcess hands it to OnIdle).
  virtual void DoTokenIdle() {}
  virtual void ProcessDoIdle() {}

 private:
  std::vector<std::unique_ptr<CPluginControl>> mControls;
  int32_t mMasterBypassIndex = 0;
  int32_t mChangeCounter = 0;
  OpaqueGrafPtr* mViewPort = nullptr;
};

// A process of an effect type: the channels its type gives it and the host's sample rate.
class CEffectProcess : public virtual CProcess {
 public:
  int32_t GetNumInputs() const { return mInputs; }
  int32_t GetNumOutputs() const { return mOutputs; }
  double GetSampleRate() const;
  void SetChannels(int32_t inputs, int32_t outputs) { mInputs = inputs, mOutputs = outputs; }

 private:
  int32_t mInputs = 0, mOutputs = 0;
};

// The process of a host-based (RTAS) type: rendered by the host's processor, block by block.
class CEffectProcessRTAS : public virtual CEffectProcess {
 public:
  virtual void RenderAudio(float** inputs, float** outputs, int32_t nFrames) = 0;
  virtual ComponentResult GetDelaySamplesLong(int32_t* samples);
  virtual ComponentResult IsControlAutomatable(int32_t index, int16_t* automatable);
  // The host's block size and transport.
  int32_t GetHostBlockSize() const;
  HostTime GetHostTime() const;
};
