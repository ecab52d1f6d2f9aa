#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editor/IGraphics.h"
#include "editor/TextEntrySession.h"

// An editor back end without a window: the back buffer stays in memory, the redraw timer is a
// call (Tick), images load as PNG files from a folder, and menus and value fields are answered by
// the caller. Tests and snapshots run the editor through it.
class HeadlessGraphics : public IGraphics {
 public:
  HeadlessGraphics(IPlugBase* plug, int w, int h, std::string imageFolder = "");

  // One timer tick: the dirty controls' union is redrawn; what reached the "screen" is returned
  // (empty when nothing was dirty).
  IRECT Tick();
  // The back buffer as an opaque PNG file, what a screen would show; false before the first
  // PrepDraw or when the file cannot be written.
  bool SavePNG(const char* path);
  // The names of the images that could not be loaded, in the order they were asked for.
  const std::vector<std::string>& MissingImages() const { return mMissingImages; }
  // The answer to the next menus: a function of the menu shown, giving the item to choose (or -1).
  void AnswerMenusWith(std::function<int(const IPopupMenu&)> chooser) { mChooser = chooser; }
  // The open value field, as the user edits it: each keystroke's text is offered to the filter
  // and refused if it does not pass. Commit applies it; Cancel drops it.
  bool TextEntryOpen() const { return mEntry.IsOpen(); }
  const std::string& EntryText() const { return mEntry.Text(); }
  const IRECT& EntryRECT() const { return mEntry.Rect(); }
  bool Type(const std::string& keys);
  void CommitTextEntry();

  bool DrawScreen(IRECT* rect) override;
  bool MeasureIText(IText* text, char* str, IRECT* dest) override {
    return MeasureWithCachedFont(text, str, dest);
  }
  void ForceEndUserEdit() override { mEntry.End(this, false); }
  int ShowMessageBox(const char*, const char*, int) override { return 0; }
  IPopupMenu* CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) override;
  void CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                       IParam* param) override;
  void PluginPath(WDL_String* path) override { path->Set(mImageFolder.c_str()); }
  // There is no window to open: the one given is remembered, with the offset, until closed.
  void* OpenWindow(void* parent) override { return OpenWindow(parent, nullptr, 0, 0); }
  void* OpenWindow(void* window, void*, short left, short top) override;
  void CloseWindow() override { mWindow = nullptr; }
  void* GetWindow() override { return mWindow; }
  bool WindowIsOpen() override { return mWindow; }
  LICE_IBitmap* OSLoadBitmap(int id, const char* name) override;

  IRECT mLastScreenUpdate;  // the last rectangle put on the "screen"
  int mScreenUpdates = 0;
  int mWindowLeft = 0, mWindowTop = 0;  // where the editor was last opened in its window

 private:
  void* mWindow = nullptr;
  std::string mImageFolder;
  std::vector<std::string> mMissingImages;
  std::function<int(const IPopupMenu&)> mChooser;
  TextEntrySession mEntry;
};

// The editor factory of hosts without a window (IPlugInstanceInfo::mMakeGraphics): a headless
// editor with the images under resources/img of $TARN_RESOURCE_ROOT, or else of the source tree
// the program was built from.
IGraphics* MakeHeadlessEditor(IPlugBase* plug, int w, int h, int fps, void* context);
