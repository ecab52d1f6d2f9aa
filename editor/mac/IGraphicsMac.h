#pragma once

#include "editor/IGraphics.h"
#include "plug/WDL_String.h"

class IGraphicsCarbon;

// The editor on macOS, UI thread only: a Cocoa view (IGraphicsCocoa_vTarn_rtas) that the host
// puts in its window, or, for hosts that hand over a Carbon window, a Carbon host object. The view
// translates its events into the view-host core's calls; this class copies the back buffer to the
// screen, finds the images in the plug-in's bundle and opens menus and value fields through the
// view. Cocoa objects cross this header as void*, so C++ files can include it.
class IGraphicsMac : public IGraphics {
 public:
  IGraphicsMac(IPlugBase* plug, int w, int h, int refreshFPS = 0);
  ~IGraphicsMac() override;

  // The identifier of the bundle whose resources hold the images.
  void SetBundleID(const char* bundleID) { mBundleID.Set(bundleID); }
  const char* GetBundleID() const { return mBundleID.Get(); }

  // Puts the whole back buffer into the current graphics context; false with none.
  bool DrawScreen(IRECT* rect) override;
  void ForceEndUserEdit() override;
  bool WindowIsOpen() override { return mGraphicsCocoa || mGraphicsCarbon; }
  // "Cocoa gui", or the Carbon host's kind.
  const char* GetGUIAPI() override;
  int ShowMessageBox(const char* text, const char* caption, int type) override;
  IPopupMenu* CreateIPopupMenu(IPopupMenu* menu, IRECT* areaRect) override;
  void CreateTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                       IParam* param) override;
  void PluginPath(WDL_String* path) override;
  void HostPath(WDL_String* path) override;
  void DesktopPath(WDL_String* path) override;
  bool OpenURL(const char* url, const char* windowTitle, const char* confirmMsg,
               const char* errMsgOnFailure) override;
  void HideMouseCursor() override;
  void ShowMouseCursor() override;

  // A new Cocoa view of the editor's size, added to parentView (an NSView*) when one is given.
  void* OpenWindow(void* parentView) override;
  // The Carbon host in a host's Carbon window (macOS only; elsewhere nothing opens).
  void* OpenWindow(void* window, void* control, short left, short top) override;
  // The Cocoa view in a borderless window over a Carbon window (macOS only).
  void AttachSubWindow(void* windowRef) override;
  void RemoveSubWindow() override;
  void CloseWindow() override;
  void* GetWindow() override { return mGraphicsCocoa; }

  LICE_IBitmap* OSLoadBitmap(int id, const char* name) override;
  // A PNG resource of the bundle with that identifier, decoded; null for a name that is not a
  // PNG file's, a bundle or resource that is not there, or an image that does not decode.
  static LICE_IBitmap* LoadImgFromResourceOSX(const char* bundleID, const char* fileName);

 private:
  // What only macOS has: the Carbon host's lifetime, kind, drawing, menus and value field.
  void CloseCarbonHost();
  bool CarbonIsComposited() const;
  bool DrawCarbonScreen();
  IPopupMenu* CarbonPopupMenu(IPopupMenu* menu, IRECT* areaRect);
  void CarbonTextEntry(IControl* control, IText* text, IRECT* textRect, const char* str,
                       IParam* param);
  void EndCarbonEdit();

  IGraphicsCarbon* mGraphicsCarbon = nullptr;
  void* mGraphicsCocoa = nullptr;  // IGraphicsCocoa_vTarn_rtas*, retained
  WDL_String mBundleID;
  void* mSubWindow = nullptr;  // the borderless window over a Carbon window, retained
};
