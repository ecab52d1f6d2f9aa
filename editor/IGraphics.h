#pragma once

#include "editor/IGraphicsTypes.h"
#include "editor/IRECT.h"
#include "plug/WDL_Mutex.h"
#include "plug/WDL_PtrList.h"
#include "plug/WDL_String.h"

class IControl;
class IParam;
class IPlugBase;
class IPopupMenu;
class LICE_MemBitmap;
class LICE_SysBitmap;

// The editor's platform-neutral core: the ordered control list (index 0 is the background), a
// back buffer the controls draw into, and the routing of mouse, wheel and keys to controls. A
// back end derives from it and supplies what touches a window system: putting the back buffer on
// screen, loading images, menus and text fields, the window itself.
class IGraphics {
 public:
  IGraphics(IPlugBase* plug, int w, int h, int refreshFPS = 0);
  virtual ~IGraphics();
  IGraphics(const IGraphics&) = delete;
  IGraphics& operator=(const IGraphics&) = delete;

  // What a back end supplies.
  virtual bool DrawScreen(IRECT* rect) = 0;  // copies the back buffer's rect to the screen
  virtual bool MeasureIText(IText* /*text*/, char* /*str*/, IRECT* /*dest*/) { return false; }
  virtual void ForceEndUserEdit() = 0;
  virtual void Resize(int w, int h);
  virtual bool WindowIsOpen() { return false; }
  virtual const char* GetGUIAPI() { return nullptr; }
  virtual int ShowMessageBox(const char* text, const char* caption, int type) = 0;
  // Shows the menu and waits: the menu whose item was chosen (its chosen index set), or null.
  virtual IPopupMenu* CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) = 0;
  // Opens a field for typing a value; the text arrives later through SetFromStringAfterPrompt.
  virtual void CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                               IParam* param) = 0;
  virtual void PluginPath(WDL_String* path) = 0;
  // Window-system services this editor never uses: plain answers a back end may replace.
  virtual void HostPath(WDL_String* path);
  virtual void DesktopPath(WDL_String* path);
  virtual void PromptForFile(WDL_String* /*file*/, EFileAction /*action*/, WDL_String* /*dir*/,
                             char* /*extensions*/) {}
  virtual bool PromptForColor(IColor* /*color*/, char* /*prompt*/) { return false; }
  virtual bool OpenURL(const char* /*url*/, const char* /*windowTitle*/, const char* /*confirmMsg*/,
                       const char* /*errMsgOnFailure*/) {
    return false;
  }
  virtual void* OpenWindow(void* parent) = 0;
  virtual void* OpenWindow(void* /*window*/, void* /*control*/, short /*left*/, short /*top*/) {
    return nullptr;
  }
  virtual void AttachSubWindow(void* /*parent*/) {}
  virtual void RemoveSubWindow() {}
  virtual void CloseWindow() = 0;
  virtual void* GetWindow() = 0;
  virtual void HideMouseCursor() {}
  virtual void ShowMouseCursor() {}
  virtual LICE_IBitmap* OSLoadBitmap(int id, const char* name) = 0;  // a new raster or null

  // Set-up.
  void PrepDraw();
  void AttachBackground(int id, const char* name);
  int AttachControl(IControl* control);
  IBitmap LoadIBitmap(int id, const char* name, int nStates = 1, bool framesAreHoriz = false);
  void SetStrictDrawing(bool strict);
  void SetAllControlsDirty();
  void HandleMouseOver(bool handle) { mHandleMouseOver = handle; }
  void SetKeyCatcher(IControl* control) { mKeyCatcher = control; }

  // From the plug-in; the audio thread may call these (they only store values and flags).
  void SetParameterFromPlug(int paramIdx, double value, bool normalized);
  void SetControlFromPlug(int controlIdx, double normalizedValue);

  // From the window system.
  bool IsDirty(IRECT* rect);
  bool Draw(IRECT* rect);
  void OnMouseDown(int x, int y, IMouseMod* mod);
  void OnMouseUp(int x, int y, IMouseMod* mod);
  void OnMouseDrag(int x, int y, IMouseMod* mod);
  bool OnMouseDblClick(int x, int y, IMouseMod* mod);
  void OnMouseWheel(int x, int y, IMouseMod* mod, int delta);
  bool OnMouseOver(int x, int y, IMouseMod* mod);
  bool OnKeyDown(int x, int y, int key);
  void ReleaseMouseCapture();
  int GetParamIdxForPTAutomation(int x, int y);
  int GetLastClickedParamForPTAutomation();

  // Drawing services for controls, into the back buffer and within the rectangle being redrawn.
  bool DrawBitmap(IBitmap* bitmap, IRECT* dest, int bmpState, const IChannelBlend* blend);
  bool DrawBitmap(IBitmap* bitmap, IRECT* dest, int srcX, int srcY, const IChannelBlend* blend);
  bool DrawRect(const IColor* color, IRECT* rect);
  // One line of text in the rectangle (right and bottom exclusive), aligned as text says.
  bool DrawIText(IText* text, char* str, IRECT* rect);

  // A right click's value prompt and its answer.
  void PromptUserInput(IControl* control, IParam* param, IRECT* rect);
  void SetFromStringAfterPrompt(IControl* control, IParam* param, const char* str);

  IPlugBase* GetPlug() { return mPlug; }
  WDL_Mutex& GetMutex() { return mMutex; }
  int Width() const { return mWidth; }
  int Height() const { return mHeight; }
  int FPS() const { return mFPS; }
  int NControls() const { return mControls.GetSize(); }
  IControl* GetControl(int idx) { return mControls.Get(idx); }
  int GetMouseCapture() const { return mMouseCapture; }
  const IRECT& GetDrawRECT() const { return mDrawRECT; }
  LICE_SysBitmap* GetDrawBitmap() { return mDrawBitmap; }

 protected:
  int HitTest(int x, int y);  // the topmost visible, enabled control hit, or -1
  int MouseOverHitTest(int x, int y);
  int CapturedOrHit(int x, int y) { return mMouseCapture >= 0 ? mMouseCapture : HitTest(x, y); }
  void ClearCapture() { mMouseCapture = -1, mMouseX = mMouseY = -1; }
  void DrawStrict(IRECT* rect);
  void DrawAllOnDirtyBackground();
  void DrawEachDirtyControl();
  IRECT ClipToDrawRECT(const IRECT& dest) const;
  // The text's font, looked up once and kept in the text; null when there is none.
  static LICE_CachedFont* CacheFont(IText* text);
  // For back ends that measure: dest keeps its left and top and gets the string's width and
  // its font's line height.
  static bool MeasureWithCachedFont(IText* text, const char* str, IRECT* dest);

  WDL_Mutex mMutex;
  WDL_PtrList<IControl> mControls{4096};
  IPlugBase* mPlug;
  IRECT mDrawRECT;
  bool mCursorHidden = false;
  int mHiddenCursorX = -1, mHiddenCursorY = -1;
  LICE_SysBitmap* mDrawBitmap = nullptr;
  LICE_MemBitmap* mTmpBitmap = nullptr;
  int mWidth, mHeight, mFPS;
  int mIdleTicks = 0;
  int mMouseCapture = -1, mMouseOver = -1;
  int mMouseX = 0, mMouseY = 0;
  int mLastClickedParam = -1;
  bool mHandleMouseOver = false;
  bool mStrict = true;
  IControl* mKeyCatcher = nullptr;
};
