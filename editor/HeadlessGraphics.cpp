#include "editor/HeadlessGraphics.h"

#include "editor/IControl.h"
#include "editor/IPopupMenu.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"

HeadlessGraphics::HeadlessGraphics(IPlugBase* plug, int w, int h, std::string imageFolder)
    : IGraphics(plug, w, h), mImageFolder(std::move(imageFolder)) {}  // the default rate

IRECT HeadlessGraphics::Tick() {
  IRECT dirty;
  if (!IsDirty(&dirty)) return {};
  Draw(&dirty);
  return dirty;
}

bool HeadlessGraphics::SavePNG(const char* path) {
  return LICE_WritePNG(path, GetDrawBitmap(), false);
}

bool HeadlessGraphics::DrawScreen(IRECT* rect) {
  mLastScreenUpdate = *rect, ++mScreenUpdates;
  return true;
}

IPopupMenu* HeadlessGraphics::CreateIPopupMenu(IPopupMenu* menu, IRECT*) {
  ReleaseMouseCapture();  // the mouse up that ends the right click must not reach the control
  const int chosen = mChooser ? mChooser(*menu) : -1;
  if (chosen < 0 || chosen >= menu->GetNItems()) return nullptr;
  menu->SetChosenItemIdx(chosen);
  return menu;
}

// One field at a time: a request while one is open is ignored.
void HeadlessGraphics::CreateTextEntry(IControl* control, IText*, IRECT* textRect, const char* str,
                                       IParam* param) {
  if (mEntryControl || !control) return;
  mEntryControl = control, mEntryParam = param, mEntryRECT = *textRect, mEntryText = str;
  mFilter = TextEntryFilter::ForParam(param, control->GetTextEntryLength());
}

bool HeadlessGraphics::Type(const std::string& keys) {
  bool all = true;
  for (char key : keys) {
    const std::string edited = key == '\b'
                                   ? mEntryText.substr(0, mEntryText.size() - !mEntryText.empty())
                                   : mEntryText + key;
    if (mFilter.Accepts(edited.c_str()))
      mEntryText = edited;
    else
      all = false;
  }
  return all;
}

void HeadlessGraphics::CommitTextEntry() {
  IControl* control = mEntryControl;
  IParam* param = mEntryParam;
  mEntryControl = nullptr, mEntryParam = nullptr;
  if (!control) return;
  if (param)
    SetFromStringAfterPrompt(control, param, mEntryText.c_str());
  else
    control->TextFromTextEntry(mEntryText.c_str());
  SetAllControlsDirty();
}

LICE_IBitmap* HeadlessGraphics::OSLoadBitmap(int, const char* name) {
  LICE_IBitmap* bitmap = mImageFolder.empty() || !name
                             ? nullptr
                             : LICE_LoadPNG((mImageFolder + "/" + name).c_str(), nullptr);
  if (!bitmap) mMissingImages.push_back(name ? name : "");
  return bitmap;
}
