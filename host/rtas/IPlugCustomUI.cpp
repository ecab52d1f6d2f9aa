#include "host/rtas/IPlugCustomUI.h"

#include "editor/IGraphics.h"
#include "host/rtas/IPlugProcess.h"

IPlugCustomUI::IPlugCustomUI(IPlugProcess* process, IPlugRTAS* plug)
    : mProcess(process), mPlug(plug), mGraphics(plug ? plug->GetGUI() : nullptr) {}

bool IPlugCustomUI::Open(void* window, int16_t x, int16_t y) {
  mWindow = window;
  if (!mGraphics) return false;
  mGraphics->OpenWindow(window, nullptr, x, y);
  mGraphics->SetAllControlsDirty();
  mPlug->OnGUIOpen();
  return true;
}

bool IPlugCustomUI::Close() {
  if (!mWindow || !mGraphics) return false;
  mGraphics->CloseWindow();
  mWindow = nullptr;
  return true;
}

void IPlugCustomUI::GetRect(Rect* rect) {
  *rect = {0, 0, static_cast<int16_t>(mGraphics ? mGraphics->Height() : 0),
           static_cast<int16_t>(mGraphics ? mGraphics->Width() : 0)};
}

void IPlugCustomUI::Draw(const Rect& area) {
  IRECT r{area.left, area.top, area.right, area.bottom};
  if (mGraphics) mGraphics->Draw(&r);
}

void IPlugDigiView::DrawContents(const Rect& area) {
  if (mCustomUI) mCustomUI->Draw(area);
}

CCustomView* CreateIPlugDigiView() { return new IPlugDigiView; }

IPlugCustomUI* CreateIPlugCustomUI(void* processingObject) {
  auto* process = static_cast<IPlugProcess*>(processingObject);
  return new IPlugCustomUI(process, process->GetPlug());
}
