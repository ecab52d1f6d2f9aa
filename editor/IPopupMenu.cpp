#include "editor/IPopupMenu.h"

#include <cstdio>

IPopupMenuItem::IPopupMenuItem(const char* text, int flags, IPopupMenu* submenu)
    : mText(text), mSubmenu(submenu), mFlags(flags) {}

IPopupMenuItem::~IPopupMenuItem() { delete mSubmenu; }

IPopupMenuItem* IPopupMenu::AddItem(IPopupMenuItem* item, int index) {
  return index == -1 ? mItems.Add(item) : mItems.Insert(index, item);
}

IPopupMenuItem* IPopupMenu::AddItem(const char* text, int flags) {
  return AddItem(new IPopupMenuItem(text, flags));
}

void IPopupMenu::ItemTitle(int index, WDL_String* title) const {
  static const char* const kFormats[] = {"", "%1d: ", "%02d: ", "%03d: "};
  char prefix[16] = "";
  if (mPrefix > kNoPrefix && mPrefix <= kThreeDigits)
    std::snprintf(prefix, sizeof prefix, kFormats[mPrefix], index + 1);
  title->Set(prefix);
  if (const IPopupMenuItem* item = GetItem(index)) title->Append(item->GetText());
}
