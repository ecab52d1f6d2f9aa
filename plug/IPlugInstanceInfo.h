#pragma once

class IPlugBase;
class IGraphics;

// Hears of the edits made in the editor, to pass them on to a host that runs elsewhere (an LV2
// UI's plug-in, maybe in another process). Values are plain, as the parameter holds them.
class IPlugEditListener {
 public:
  virtual void BeginEdit(int paramIdx) = 0;
  virtual void Edit(int paramIdx, double plainValue) = 0;
  virtual void EndEdit(int paramIdx) = 0;

 protected:
  ~IPlugEditListener() = default;
};

// What the host adaptor hands the effect's constructor: the platform's editor factory, or none
// where nothing shows an editor (the LV2 plug-in's audio side, most tests). The factory makes a
// surface of w × h at fps redraws a second (0: the editor's default) with the context given here
// (the folder of the images, say), or returns null.
struct IPlugInstanceInfo {
  IGraphics* (*mMakeGraphics)(IPlugBase* plug, int w, int h, int fps, void* context) = nullptr;
  void* mContext = nullptr;
  IPlugEditListener* mEditListener = nullptr;  // none: the edits go nowhere
};
