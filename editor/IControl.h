#pragma once

#include <atomic>

#include "editor/IGraphicsTypes.h"
#include "editor/IRECT.h"
#include "plug/WDL_TypedBuf.h"

class IGraphics;
class IParam;
class IPlugBase;

// A further parameter a control shows, with its last normalised value.
struct AuxParam {
  double mValue = 0.0;
  int mParamIdx = -1;
};

// One element of the editor: it draws itself into the editor's back buffer, is hit by the mouse
// in its target rectangle, holds a normalised value and tells the plug-in of user changes.
// The audio thread may store a value into it (SetValueFromPlug) while the user-interface thread
// draws: value, default and the two flags are atomics read and written with relaxed order, so a
// value may show one frame late but is never torn.
class IControl {
 public:
  IControl(IPlugBase* plug, IRECT rect, int paramIdx = -1,
           IChannelBlend::EBlendMethod blendMethod = IChannelBlend::kBlendNone);
  virtual ~IControl() = default;
  IControl(const IControl&) = delete;
  IControl& operator=(const IControl&) = delete;

  virtual void OnMouseDown(int x, int y, IMouseMod* mod);
  virtual void OnMouseUp(int /*x*/, int /*y*/, IMouseMod* /*mod*/) {}
  virtual void OnMouseDrag(int /*x*/, int /*y*/, int /*dX*/, int /*dY*/, IMouseMod* /*mod*/) {}
  virtual void OnMouseDblClick(int x, int y, IMouseMod* mod);
  virtual void OnMouseWheel(int x, int y, IMouseMod* mod, int d);
  virtual bool OnKeyDown(int /*x*/, int /*y*/, int /*key*/) { return false; }
  virtual void OnMouseOver(int /*x*/, int /*y*/, IMouseMod* /*mod*/) {}
  virtual void OnMouseOut() {}
  virtual bool Draw(IGraphics* graphics) = 0;
  virtual void SetValueFromPlug(double value);
  virtual void TextFromTextEntry(const char* /*text*/) {}
  virtual void Hide(bool hide);
  virtual void GrayOut(bool gray);
  virtual bool IsHit(int x, int y);
  virtual void SetDirty(bool pushParamToPlug = true);
  virtual void SetClean();
  virtual bool IsDirty() { return mDirty.load(std::memory_order_relaxed); }
  virtual void OnGUIIdle() {}
  virtual void SetAuxParamValueFromPlug(int auxIdx, double value);

  void SetValueFromUserInput(double value);
  // Right click: a menu of the parameter's states or a field for its value (see IGraphics).
  void PromptUserInput();
  void AddAuxParam(int paramIdx);
  int AuxParamIdx(int paramIdx) const;  // the first auxiliary entry bound to paramIdx, or -1
  double GetAuxParamValue(int auxIdx) const;

  int ParamIdx() const { return mParamIdx; }
  IParam* GetParam();
  double GetValue() const { return mValue.load(std::memory_order_relaxed); }
  void SetValue(double value) { mValue.store(value, std::memory_order_relaxed); }
  double GetDefaultValue() const { return mDefaultValue.load(std::memory_order_relaxed); }
  const IRECT& GetRECT() const { return mRECT; }
  const IRECT& GetTargetRECT() const { return mTargetRECT; }
  void SetTargetArea(IRECT r) { mTargetRECT = r; }
  IText* GetText() { return &mText; }
  int GetTextEntryLength() const { return mTextEntryLength; }
  void SetTextEntryLength(int length) { mTextEntryLength = length; }
  const IChannelBlend& GetBlend() const { return mBlend; }
  bool IsHidden() const { return mHide; }
  bool IsGrayed() const { return mGrayed; }
  bool NeedsRedraw() const { return mRedraw.load(std::memory_order_relaxed); }
  void DisablePrompt(bool disable) { mDisablePrompt = disable; }
  bool GetMOWhenGrayed() const { return mMOWhenGrayed; }
  void SetMOWhenGrayed(bool allow) { mMOWhenGrayed = allow; }
  bool MouseDblAsSingleClick() const { return mDblAsSingleClick; }
  void SetMouseDblAsSingleClick(bool single) { mDblAsSingleClick = single; }
  void SetClampRange(double lo, double hi) { mClampLo = lo, mClampHi = hi; }
  // Text controls that show the parameter's display text and its name; the editor's layout may
  // attach them, and SetDirty(true) keeps them current.
  void SetValDisplayControl(IControl* control) { mValDisplayControl = control; }
  void SetNameDisplayControl(IControl* control) { mNameDisplayControl = control; }
  // What a text control shows; controls that show no text ignore it.
  virtual const char* GetTextToShow() const { return nullptr; }
  virtual void SetTextToShow(const char* /*text*/) {}

 protected:
  void SetRedraw() { mRedraw.store(true, std::memory_order_relaxed); }

  int mTextEntryLength = 7;
  IText mText;
  IPlugBase* mPlug;
  IRECT mRECT, mTargetRECT;
  int mParamIdx;
  WDL_TypedBuf<AuxParam> mAuxParams{4096};
  std::atomic<double> mValue{0.0};
  std::atomic<double> mDefaultValue{-1.0};  // negative: the plug-in has sent no value yet
  double mClampLo = 0.0, mClampHi = 1.0;
  std::atomic<bool> mDirty{true};
  bool mHide = false, mGrayed = false;
  std::atomic<bool> mRedraw{false};  // stays dirty for one more frame after the next SetClean
  bool mDisablePrompt = false;
  bool mDblAsSingleClick = false, mMOWhenGrayed = false;
  IChannelBlend mBlend;
  IControl* mValDisplayControl = nullptr;
  IControl* mNameDisplayControl = nullptr;
};
