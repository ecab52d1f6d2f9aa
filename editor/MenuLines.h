#pragma once

#include <string>
#include <vector>

#include "editor/IRECT.h"

class IPopupMenu;

// One line of a popup menu as a window system lists it: a submenu's lines follow its entry, one
// level deeper. Titles carry the menu's numbering; flagged titles are indented one more level.
struct MenuLine {
  int depth = 0;
  std::string title;
  bool separator = false, submenu = false, checked = false, disabled = false, indented = false;
  // A separator, a submenu's entry or a disabled item cannot be chosen.
  bool Selectable() const { return !separator && !submenu && !disabled; }
};

std::vector<MenuLine> FlattenMenu(const IPopupMenu& menu);
// The menu that the chosen line (an index into FlattenMenu's list) belongs to, with its chosen
// index set to the line's place in it; null for a line that cannot be chosen (a separator, a
// submenu's entry, a disabled item, none).
IPopupMenu* ChooseLine(IPopupMenu* menu, int line);
// Where a menu for the area opens: its bottom-left corner, moved 4 pixels down.
inline void MenuAnchor(const IRECT& area, int* x, int* y) { *x = area.L, *y = area.B + 4; }
