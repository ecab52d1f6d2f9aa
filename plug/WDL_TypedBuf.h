#pragma once

#include <climits>

#include "plug/WDL_HeapBuf.h"

// A heap buffer of values of one trivially copyable type; sizes count values, not bytes.
template <class T>
class WDL_TypedBuf {
public:
  explicit WDL_TypedBuf(int granularity = 4096) : mHeap(granularity) {}

  T* Get() const { return static_cast<T*>(mHeap.Get()); }
  int GetSize() const { return mHeap.GetSize() / static_cast<int>(sizeof(T)); }
  // A count whose byte size does not fit an int fails like an allocation: nothing changes.
  T* Resize(int count, bool resizeDown = true) {
    if (count > INT_MAX / static_cast<int>(sizeof(T))) return Get();
    return static_cast<T*>(mHeap.Resize(count * static_cast<int>(sizeof(T)), resizeDown));
  }
  const WDL_HeapBuf& GetHeap() const { return mHeap; }

private:
  WDL_HeapBuf mHeap;
};
