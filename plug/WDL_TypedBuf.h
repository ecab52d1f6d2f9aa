#pragma once

#include "plug/WDL_HeapBuf.h"

// A heap buffer of values of one trivially copyable type; sizes count values, not bytes.
template <class T>
class WDL_TypedBuf {
public:
  explicit WDL_TypedBuf(int granularity = 4096) : mHeap(granularity) {}

  T* Get() const { return static_cast<T*>(mHeap.Get()); }
  int GetSize() const { return mHeap.GetSize() / static_cast<int>(sizeof(T)); }
  T* Resize(int count, bool resizeDown = true) {
    return static_cast<T*>(mHeap.Resize(count * static_cast<int>(sizeof(T)), resizeDown));
  }
  const WDL_HeapBuf& GetHeap() const { return mHeap; }

private:
  WDL_HeapBuf mHeap;
};
