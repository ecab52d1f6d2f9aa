#pragma once

#include "plug/WDL_TypedBuf.h"

// An ordered list of pointers that owns what it points to: removing an item or destroying the
// list deletes the item, the last one first.
template <class T>
class WDL_PtrList {
public:
  explicit WDL_PtrList(int granularity = 4096) : mList(granularity) {}
  ~WDL_PtrList() { Empty(); }
  WDL_PtrList(const WDL_PtrList&) = delete;
  WDL_PtrList& operator=(const WDL_PtrList&) = delete;

  int GetSize() const { return mList.GetSize(); }
  T* Get(int idx) const { return idx >= 0 && idx < GetSize() ? mList.Get()[idx] : nullptr; }

  // Takes ownership; returns the item, or null (and deletes it) if the list could not grow.
  T* Add(T* item) { return Insert(GetSize(), item); }
  T* Insert(int idx, T* item) {
    int n = GetSize();
    if (idx < 0 || idx > n) idx = n;
    T** items = mList.Resize(n + 1, false);
    if (GetSize() != n + 1) {
      delete item;
      return nullptr;
    }
    for (int i = n; i > idx; --i) items[i] = items[i - 1];
    items[idx] = item;
    return item;
  }

  // Deletes the item at idx and closes the gap; out-of-range indices are ignored.
  void Delete(int idx) {
    int n = GetSize();
    if (idx < 0 || idx >= n) return;
    T** items = mList.Get();
    delete items[idx];
    for (int i = idx; i < n - 1; ++i) items[i] = items[i + 1];
    mList.Resize(n - 1, false);
  }

  void Empty() {
    for (int i = GetSize() - 1; i >= 0; --i) delete mList.Get()[i];
    mList.Resize(0, false);
  }

private:
  WDL_TypedBuf<T*> mList;
};
