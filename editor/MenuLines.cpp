#include "editor/MenuLines.h"

#include "editor/IPopupMenu.h"

namespace {

MenuLine LineOf(const IPopupMenu& menu, int i, int depth) {
  const IPopupMenuItem* item = menu.GetItem(i);
  WDL_String title;
  menu.ItemTitle(i, &title);
  return {depth,
          title.Get(),
          item->GetIsSeparator(),
          item->GetSubmenu() != nullptr,
          item->GetChecked(),
          !item->GetEnabled(),
          item->GetIsTitle()};
}

void Append(const IPopupMenu& menu, int depth, std::vector<MenuLine>* lines) {
  for (int i = 0; i < menu.GetNItems(); ++i) {
    lines->push_back(LineOf(menu, i, depth));
    if (const IPopupMenu* sub = menu.GetItem(i)->GetSubmenu()) Append(*sub, depth + 1, lines);
  }
}

// Walks the lines as FlattenMenu lists them, counting down *line to the chosen one.
IPopupMenu* Find(IPopupMenu* menu, int* line) {
  for (int i = 0; i < menu->GetNItems(); ++i) {
    const IPopupMenuItem* item = menu->GetItem(i);
    if ((*line)-- == 0) {
      if (!LineOf(*menu, i, 0).Selectable()) return nullptr;
      menu->SetChosenItemIdx(i);
      return menu;
    }
    if (item->GetSubmenu())
      if (IPopupMenu* chosen = Find(item->GetSubmenu(), line); chosen || *line < 0) return chosen;
  }
  return nullptr;
}

}  // namespace

std::vector<MenuLine> FlattenMenu(const IPopupMenu& menu) {
  std::vector<MenuLine> lines;
  Append(menu, 0, &lines);
  return lines;
}

IPopupMenu* ChooseLine(IPopupMenu* menu, int line) {
  return line < 0 ? nullptr : Find(menu, &line);
}
