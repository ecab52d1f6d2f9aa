#pragma once

#include "host/rtas/sdk/CPlugInView.h"

class IGraphics;
class IPlugProcess;
class IPlugRTAS;

// The editor bridge: puts the plug-in's own editor into the window the host gives its view.
class IPlugCustomUI : public EditorInterface {
 public:
  IPlugCustomUI(IPlugProcess* process, IPlugRTAS* plug);
  // Opens the editor in the window at x, y, all of it to be redrawn.
  bool Open(void* window, int16_t x, int16_t y) override;
  bool Close() override;
  // The editor's size: top 0, left 0, bottom its height, right its width.
  void GetRect(Rect* rect) override;
  void Draw(const Rect& area) override;
  IPlugProcess* GetProcess() const { return mProcess; }

 private:
  IPlugProcess* mProcess;
  void* mWindow = nullptr;  // the host's window while open
  IPlugRTAS* mPlug;
  IGraphics* mGraphics;
};

// The view class the host places the editor with, and its factory.
class IPlugDigiView : public CCustomView {
 public:
  void SetCustomUI(EditorInterface* customUI) { mCustomUI = customUI; }
  EditorInterface* GetCustomUI() const { return mCustomUI; }
  void DrawContents(const Rect& area) override;

 private:
  EditorInterface* mCustomUI = nullptr;
};

CCustomView* CreateIPlugDigiView();
IPlugCustomUI* CreateIPlugCustomUI(void* processingObject);
