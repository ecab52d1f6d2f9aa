#include "host/rtas/sdk/CPlugInView.h"

#include <cstring>
#include <map>
#include <string>

namespace {

std::map<std::string, CustomViewFactory>& ViewClasses() {
  static std::map<std::string, CustomViewFactory> classes;
  return classes;
}

Rect Bounds(int x, int y, int w, int h) {
  return {static_cast<int16_t>(y), static_cast<int16_t>(x), static_cast<int16_t>(y + h),
          static_cast<int16_t>(x + w)};
}

}  // namespace

void RegisterCustomViewClass(const char* className, CustomViewFactory factory) {
  ViewClasses()[className] = factory;
}

CNoResourceView::CNoResourceView(int w, int h) { SetBounds(Bounds(0, 0, w, h)); }

CCustomView* CNoResourceView::AddView(const char* name, int x, int y, int w, int h) {
  if (!name || name[0] != '!') return nullptr;
  const char* end = std::strchr(name, '[');
  const auto found = ViewClasses().find(end ? std::string(name + 1, end) : std::string(name + 1));
  if (found == ViewClasses().end()) return nullptr;
  CCustomView* view = found->second();
  view->SetBounds(Bounds(x, y, w, h));
  mViews.emplace_back(view);
  return view;
}
