#pragma once

// The SDK's plug-in views: the view a process gives the host for its window, and custom views
// placed in it by the name of a registered view class.
#include <memory>
#include <vector>

#include "host/rtas/sdk/FicTypes.h"

// What a custom view asks of the plug-in's own editor.
class EditorInterface {
 public:
  virtual ~EditorInterface() = default;
  virtual bool Open(void* window, int16_t x, int16_t y) = 0;
  virtual bool Close() = 0;
  virtual void GetRect(Rect* rect) = 0;
  virtual void Draw(const Rect& area) = 0;
};

class CPlugInView {
 public:
  virtual ~CPlugInView() = default;
  const Rect& GetBounds() const { return mBounds; }
  void SetBounds(const Rect& bounds) { mBounds = bounds; }

 private:
  Rect mBounds{0, 0, 0, 0};
};

class CCustomView : public CPlugInView {
 public:
  virtual void DrawContents(const Rect& area) = 0;
};

using CustomViewFactory = CCustomView* (*)();
// Makes view classes known by name, for CNoResourceView::AddView.
void RegisterCustomViewClass(const char* className, CustomViewFactory factory);

// A view of a given size without resources of its own, holding the custom views added to it.
class CNoResourceView : public CPlugInView {
 public:
  CNoResourceView(int w, int h);
  // Adds a view of the class named in `name` ("!ClassName[('ID')]") at x, y, w × h and returns
  // it (the view keeps it); null when the name gives no registered class.
  CCustomView* AddView(const char* name, int x, int y, int w, int h);
  int NumViews() const { return static_cast<int>(mViews.size()); }
  CCustomView* GetView(int index) const { return mViews[index].get(); }

 private:
  std::vector<std::unique_ptr<CCustomView>> mViews;
};
