#include "editor/IControl.h"

#include <cmath>
#include <cstring>

#include "editor/IGraphics.h"
#include "plug/IPlugBase.h"

namespace {
constexpr auto kRelaxed = std::memory_order_relaxed;
}

IControl::IControl(IPlugBase* plug, IRECT rect, int paramIdx,
                   IChannelBlend::EBlendMethod blendMethod)
    : mPlug(plug), mRECT(rect), mTargetRECT(rect), mParamIdx(paramIdx) {
  mBlend.mMethod = blendMethod;
}

IParam* IControl::GetParam() {
  return mPlug && mParamIdx >= 0 ? mPlug->GetParam(mParamIdx) : nullptr;
}

void IControl::OnMouseDown(int, int, IMouseMod* mod) {
  if (mod->R) PromptUserInput();
}

void IControl::OnMouseDblClick(int, int, IMouseMod*) {
  if (GetDefaultValue() < 0.0) return;
  SetValue(GetDefaultValue());
  SetDirty(true);
}

void IControl::OnMouseWheel(int, int, IMouseMod* mod, int d) {
  SetValue(GetValue() + d * (mod->C || mod->S ? 0.001 : 0.01));
  SetDirty(true);
}

// The first value the plug-in sends is also the double-click default: deliberately the value the
// session opened with, not the parameter's declared default.
void IControl::SetValueFromPlug(double value) {
  if (GetDefaultValue() < 0.0) {
    mDefaultValue.store(value, kRelaxed);
    SetValue(value);
    return;
  }
  if (GetValue() == value) return;
  SetValue(value);
  SetDirty(false);
  SetRedraw();
}

void IControl::SetValueFromUserInput(double value) {
  if (GetValue() == value) return;
  SetValue(value);
  SetDirty(true);
  SetRedraw();
}

// The clamp writes only a value that is out of range, and only over the value it read: every
// repaint calls this on the user-interface thread (SetAllControlsDirty) while the audio thread may
// store a new value between the read and the write, and a plain store would put the older value
// back for good.
void IControl::SetDirty(bool pushParamToPlug) {
  double value = GetValue();
  const double clamped = mClampLo > value ? mClampLo : std::min(mClampHi, value);
  if (clamped != value) mValue.compare_exchange_strong(value, clamped, kRelaxed);
  mDirty.store(true, kRelaxed);
  if (!pushParamToPlug || !mPlug || mParamIdx < 0) return;
  mPlug->SetParameterFromGUI(mParamIdx, GetValue());
  const IParam* param = GetParam();
  if (!param) return;
  if (mValDisplayControl) {
    char shown[128];
    param->GetDisplayForHost(param->Value(), false, shown);
    const char* current = mValDisplayControl->GetTextToShow();
    if (!current || std::strcmp(current, shown) != 0) {
      mValDisplayControl->SetTextToShow(shown);
      mValDisplayControl->SetDirty(false);
    }
  }
  if (mNameDisplayControl) {
    const char* current = mNameDisplayControl->GetTextToShow();
    if (!current || std::strcmp(current, param->GetNameForHost()) != 0) {
      mNameDisplayControl->SetTextToShow(param->GetNameForHost());
      mNameDisplayControl->SetDirty(false);
    }
  }
}

// A control that asked for a redraw stays dirty for one more repaint.
void IControl::SetClean() {
  mDirty.store(mRedraw.load(kRelaxed), kRelaxed);
  mRedraw.store(false, kRelaxed);
}

void IControl::Hide(bool hide) {
  mHide = hide;
  SetRedraw();
  SetDirty(false);
}

void IControl::GrayOut(bool gray) {
  mGrayed = gray;
  mBlend.mWeight = gray ? 0.25f : 1.0f;
  SetDirty(false);
}

bool IControl::IsHit(int x, int y) { return !mTargetRECT.Empty() && mTargetRECT.Contains(x, y); }

// Parameters with display texts get a menu over the control; others a 30 × 16 field centred on it.
void IControl::PromptUserInput() {
  IParam* param = GetParam();
  if (mParamIdx < 0 || mDisablePrompt || !param || !mPlug->GetGUI()) return;
  IRECT box = mRECT;
  if (param->GetNDisplayTexts() == 0) {
    const int cx = static_cast<int>((mRECT.L + mRECT.R) * 0.5);
    const int cy = static_cast<int>((mRECT.T + mRECT.B) * 0.5);
    box = {cx - 15, cy - 8, cx + 15, cy + 8};
  }
  mPlug->GetGUI()->PromptUserInput(this, param, &box);
  SetRedraw();
}

void IControl::AddAuxParam(int paramIdx) {
  const int n = mAuxParams.GetSize();
  if (AuxParam* entries = mAuxParams.Resize(n + 1)) entries[n] = AuxParam{0.0, paramIdx};
}

int IControl::AuxParamIdx(int paramIdx) const {
  for (int i = 0; i < mAuxParams.GetSize(); ++i)
    if (mAuxParams.Get()[i].mParamIdx == paramIdx) return i;
  return -1;
}

double IControl::GetAuxParamValue(int auxIdx) const { return mAuxParams.Get()[auxIdx].mValue; }

void IControl::SetAuxParamValueFromPlug(int auxIdx, double value) {
  AuxParam& entry = mAuxParams.Get()[auxIdx];
  if (entry.mValue == value) return;
  entry.mValue = value;
  SetDirty(false);
  SetRedraw();
}
