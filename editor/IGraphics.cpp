#include "editor/IGraphics.h"

#include "editor/BitmapCache.h"
#include "editor/IBitmapControl.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"
#include "plug/IPlugBase.h"

IGraphics::IGraphics(IPlugBase* plug, int w, int h, int refreshFPS)
    : mPlug(plug), mWidth(w), mHeight(h), mFPS(refreshFPS < 1 ? 25 : refreshFPS) {}

// The key catcher first, then the controls from the last down, then the bitmaps; the cached
// images outlive every editor.
IGraphics::~IGraphics() {
  delete mKeyCatcher;
  mControls.Empty();
  delete mDrawBitmap;
  delete mTmpBitmap;
}

void IGraphics::PrepDraw() {
  delete mDrawBitmap;
  delete mTmpBitmap;
  mDrawBitmap = new LICE_SysBitmap(mWidth, mHeight);
  mTmpBitmap = new LICE_MemBitmap(0, 0, 4);
}

void IGraphics::Resize(int w, int h) {
  mWidth = w, mHeight = h;
  if (mDrawBitmap) mDrawBitmap->resize(w, h);
  SetAllControlsDirty();
}

// The background is always control 0, whenever it is attached.
void IGraphics::AttachBackground(int id, const char* name) {
  IBitmap bitmap = LoadIBitmap(id, name, 1, false);
  mControls.Insert(0, new IBitmapControl(mPlug, 0, 0, -1, &bitmap, IChannelBlend::kBlendClobber));
}

int IGraphics::AttachControl(IControl* control) {
  mControls.Add(control);
  return mControls.GetSize() - 1;
}

IBitmap IGraphics::LoadIBitmap(int id, const char* name, int nStates, bool framesAreHoriz) {
  IBitmap bitmap;
  bitmap.mData = CachedBitmap(id, name, this);
  bitmap.W = bitmap.mData ? bitmap.mData->getWidth() : 0;
  bitmap.H = bitmap.mData ? bitmap.mData->getHeight() : 0;
  bitmap.N = nStates;
  bitmap.mFramesAreHorizontal = framesAreHoriz;
  return bitmap;
}

void IGraphics::SetStrictDrawing(bool strict) {
  mStrict = strict;
  SetAllControlsDirty();
}

void IGraphics::SetAllControlsDirty() {
  for (int i = 0; i < mControls.GetSize(); ++i) mControls.Get(i)->SetDirty(false);
}

void IGraphics::SetParameterFromPlug(int paramIdx, double value, bool normalized) {
  if (!normalized) {
    const IParam* param = mPlug ? mPlug->GetParam(paramIdx) : nullptr;
    if (!param) return;
    value = param->GetNormalized(value);
  }
  for (int i = 0; i < mControls.GetSize(); ++i) {
    IControl* control = mControls.Get(i);
    if (control->ParamIdx() == paramIdx) control->SetValueFromPlug(value);
    const int auxIdx = control->AuxParamIdx(paramIdx);
    if (auxIdx >= 0) control->SetAuxParamValueFromPlug(auxIdx, value);
  }
}

void IGraphics::SetControlFromPlug(int controlIdx, double normalizedValue) {
  if (IControl* control = mControls.Get(controlIdx)) control->SetValueFromPlug(normalizedValue);
}

// Unions the rectangles of the dirty controls into *rect, which the caller passes empty. True
// when any control is dirty, also when only controls with empty rectangles are.
bool IGraphics::IsDirty(IRECT* rect) {
  bool dirty = false;
  for (int i = 0; i < mControls.GetSize(); ++i) {
    IControl* control = mControls.Get(i);
    if (!control->IsDirty()) continue;
    *rect = rect->Union(control->GetRECT());
    dirty = true;
  }
  return dirty;
}

bool IGraphics::Draw(IRECT* rect) {
  if (mControls.GetSize() == 0) return true;
  if (mStrict) {
    DrawStrict(rect);
  } else if (mControls.Get(0)->IsDirty()) {
    DrawAllOnDirtyBackground();
  } else {
    DrawEachDirtyControl();
  }
  return DrawScreen(rect);
}

// Every visible control that meets the given rectangle draws; every control is then clean.
void IGraphics::DrawStrict(IRECT* rect) {
  mDrawRECT = *rect;
  for (int i = 0; i < mControls.GetSize(); ++i) {
    IControl* control = mControls.Get(i);
    const IRECT& r = control->GetRECT();
    if (!control->IsHidden() && !rect->Empty() && !r.Empty() && Meets(r, *rect))
      control->Draw(this);
    control->SetClean();
  }
}

// A dirty background repaints the whole editor: every visible control draws, then is clean.
void IGraphics::DrawAllOnDirtyBackground() {
  mDrawRECT = mControls.Get(0)->GetRECT();
  for (int i = 0; i < mControls.GetSize(); ++i) {
    IControl* control = mControls.Get(i);
    if (i != 0 && control->IsHidden()) continue;
    control->Draw(this);
    control->SetClean();
  }
}

// Each dirty control is repainted with everything visible that it meets, bottom first.
void IGraphics::DrawEachDirtyControl() {
  for (int i = 1; i < mControls.GetSize(); ++i) {
    IControl* dirty = mControls.Get(i);
    if (!dirty->IsDirty()) continue;
    mDrawRECT = dirty->GetRECT();
    for (int j = 0; j < mControls.GetSize(); ++j) {
      IControl* other = mControls.Get(j);
      if (other->IsHidden()) continue;
      const IRECT& r = other->GetRECT();
      if (j == i || (!r.Empty() && !mDrawRECT.Empty() && Meets(mDrawRECT, r))) other->Draw(this);
    }
    dirty->SetClean();
  }
}

void IGraphics::HostPath(WDL_String* path) { path->Set(""); }

void IGraphics::DesktopPath(WDL_String* path) { path->Set(""); }
