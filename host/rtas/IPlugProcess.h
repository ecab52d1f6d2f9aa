#pragma once

#include "host/rtas/IPlugRTAS.h"
#include "host/rtas/sdk/CProcess.h"

class CNoResourceView;
class IPlugCustomUI;
class IPlugDigiView;

// The processing object the SDK makes per instance: it owns the plug-in (made by MakePlug),
// turns the plug-in's parameters into host controls and answers the SDK's calls for controls,
// settings chunks and the editor's view.
class IPlugProcess : public virtual CEffectProcess, public virtual CProcess {
 public:
  explicit IPlugProcess(OSType chunkID);
  ~IPlugProcess() override;

  IPlugRTAS* GetPlug() const { return mPlug; }

  // Controls: the master bypass as control 1, then one per parameter; the channels, the
  // sample rate; Reset.
  void EffectInit() override;
  void UpdateControlValueInAlgorithm(int32_t controlIndex) override;
  // One chunk, whose data are the plug-in's state (see SFicPlugInChunk).
  ComponentResult GetNumChunks(int32_t* count) override;
  ComponentResult GetIndexedChunkID(int32_t index, OSType* id) override;
  ComponentResult GetChunkSize(OSType id, int32_t* size) override;
  ComponentResult GetChunk(OSType id, SFicPlugInChunk* chunk) override;
  ComponentResult SetChunk(OSType id, SFicPlugInChunk* chunk) override;
  ComponentResult CompareActiveChunk(SFicPlugInChunk* chunk, unsigned char* isEqual) override;
  // The control of the parameter last clicked in the editor (for the host's automation menu).
  ComponentResult ChooseControl(Point where, int32_t* controlIndex) override;
  CPlugInView* CreateCPlugInView() override;
  void SetViewPort(OpaqueGrafPtr* port) override;
  void GetViewRect(Rect* rect) override;
  void ProcessDoIdle() override;
  void ResizeGraphics(int w, int h);
  // The host's version, packed as the plug-in base keeps host versions.
  int GetHostVersion() const;

 private:
  void AddParamControl(int paramIdx, OSType id);
  void MakeCustomUI();

  IPlugCustomUI* mCustomUI = nullptr;
  Rect mPlugInRect{0, 0, 0, 0};
  CNoResourceView* mView = nullptr;  // the host's, from CreateCPlugInView until the port closes
  IPlugDigiView* mDigiView = nullptr;
  IPlugRTAS* mPlug;
  OSType mChunkID;
  Point mEditorOffset{0, 0};
  bool mEditorOffsetSet = false;
};
