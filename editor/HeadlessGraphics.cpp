#include "editor/HeadlessGraphics.h"

#include <cstdlib>

#include "editor/IControl.h"
#include "editor/IPopupMenu.h"
#include "editor/MenuLines.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"

HeadlessGraphics::HeadlessGraphics(IPlugBase* plug, int w, int h, std::string imageFolder)
    : IGraphics(plug, w, h), mImageFolder(std::move(imageFolder)) {}  // the default rate

void* HeadlessGraphics::OpenWindow(void* window, void*, short left, short top) {
  mWindowLeft = left, mWindowTop = top;
  return mWindow = window;
}

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

// The chooser answers with a line of the menu as a window system would list it.
IPopupMenu* HeadlessGraphics::CreateIPopupMenu(IPopupMenu* menu, IRECT*) {
  ReleaseMouseCapture();  // the mouse up that ends the right click must not reach the control
  return ChooseLine(menu, mChooser ? mChooser(*menu) : -1);
}

void HeadlessGraphics::CreateTextEntry(IControl* control, IText*, IRECT* textRect, const char* str,
                                       IParam* param) {
  mEntry.Open(control, param, *textRect, str);
}

bool HeadlessGraphics::Type(const std::string& keys) {
  bool all = true;
  for (char key : keys) all &= mEntry.Type(key);
  return all;
}

// The whole view is repainted, as a back end does once the field is gone.
void HeadlessGraphics::CommitTextEntry() {
  if (mEntry.End(this, true)) SetAllControlsDirty();
}

LICE_IBitmap* HeadlessGraphics::OSLoadBitmap(int, const char* name) {
  LICE_IBitmap* bitmap = mImageFolder.empty() || !name
                             ? nullptr
                             : LICE_LoadPNG((mImageFolder + "/" + name).c_str(), nullptr);
  if (!bitmap) mMissingImages.push_back(name ? name : "");
  return bitmap;
}

IGraphics* MakeHeadlessEditor(IPlugBase* plug, int w, int h, int, void*) {
  const char* root = std::getenv("TARN_RESOURCE_ROOT");
  return new HeadlessGraphics(plug, w, h, root ? root : TARN_RESOURCE_ROOT);
}
