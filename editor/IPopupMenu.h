#pragma once

#include "plug/WDL_PtrList.h"
#include "plug/WDL_String.h"

class IPopupMenu;

// One entry of a popup menu: its text, an optional submenu (owned), and flags.
class IPopupMenuItem {
 public:
  enum Flags { kNoFlags = 0, kDisabled = 1, kTitle = 2, kChecked = 4, kSeparator = 8 };
  explicit IPopupMenuItem(const char* text, int flags = kNoFlags, IPopupMenu* submenu = nullptr);
  ~IPopupMenuItem();
  IPopupMenuItem(const IPopupMenuItem&) = delete;
  IPopupMenuItem& operator=(const IPopupMenuItem&) = delete;

  const char* GetText() const { return mText.Get(); }
  IPopupMenu* GetSubmenu() const { return mSubmenu; }
  int GetFlags() const { return mFlags; }
  bool GetEnabled() const { return !(mFlags & kDisabled); }
  bool GetChecked() const { return mFlags & kChecked; }
  bool GetIsTitle() const { return mFlags & kTitle; }
  bool GetIsSeparator() const { return mFlags & kSeparator; }

 private:
  WDL_String mText;
  IPopupMenu* mSubmenu;
  int mFlags;
};

// A menu as data: items in order, numbering style, and the item chosen (-1 until one is).
class IPopupMenu {
 public:
  enum EPrefix { kNoPrefix = 0, kOneDigit, kTwoDigits, kThreeDigits };
  IPopupMenu() = default;
  IPopupMenu(const IPopupMenu&) = delete;
  IPopupMenu& operator=(const IPopupMenu&) = delete;

  // Appends with index -1, else inserts at index. The menu owns the item.
  IPopupMenuItem* AddItem(IPopupMenuItem* item, int index = -1);
  IPopupMenuItem* AddItem(const char* text, int flags = IPopupMenuItem::kNoFlags);
  IPopupMenuItem* GetItem(int index) const { return mItems.Get(index); }
  int GetNItems() const { return mItems.GetSize(); }
  int GetChosenItemIdx() const { return mChosenItemIdx; }
  void SetChosenItemIdx(int index) { mChosenItemIdx = index; }
  int GetPrefix() const { return mPrefix; }
  void SetPrefix(int style) { mPrefix = style; }
  bool GetCanMultiCheck() const { return mCanMultiCheck; }
  void SetMultiCheck(bool multi) { mCanMultiCheck = multi; }
  // The title a window system shows for item index: the numbering prefix, then the text.
  void ItemTitle(int index, WDL_String* title) const;

 private:
  int mPrefix = kNoPrefix;
  int mChosenItemIdx = -1;
  bool mCanMultiCheck = false;
  WDL_PtrList<IPopupMenuItem> mItems{4096};
};
