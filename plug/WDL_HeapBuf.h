#pragma once

// A growable block of heap memory. Every list and buffer of the plug-in core rests on it.
//
// The allocation grows in page-sized steps that widen with the size of the buffer, so that
// repeated appends cost few reallocations, and it shrinks only when most of it would be wasted.
// Memory handed out for the first time reads as zero: nothing downstream ever sees indeterminate
// bytes, even where a user clears only part of what it asked for.
class WDL_HeapBuf {
public:
  explicit WDL_HeapBuf(int granularity = 4096) : mGranularity(granularity) {}
  ~WDL_HeapBuf();
  WDL_HeapBuf(const WDL_HeapBuf&) = delete;
  WDL_HeapBuf& operator=(const WDL_HeapBuf&) = delete;

  void* Get() const { return mSize ? mBuf : nullptr; }
  int GetSize() const { return mSize; }
  int GetAllocated() const { return mAlloc; }
  int GetGranularity() const { return mGranularity; }
  void SetGranularity(int granularity) { mGranularity = granularity; }
  // The allocation never falls below this many bytes once the buffer is next reallocated.
  void SetMinAllocSize(int bytes) { mMinAlloc = bytes; }

  // Sets the used size in bytes; returns the buffer, or null when the new size is 0. On
  // allocation failure the old buffer and sizes are kept and the old buffer is returned.
  void* Resize(int newSize, bool resizeDown = true);

private:
  bool KeepsAllocation(int newSize, bool resizeDown) const;
  long long AllocationFor(int newSize) const;
  bool Reallocate(int newAlloc, int newSize);

  void* mBuf = nullptr;
  int mGranularity;
  int mAlloc = 0;
  int mSize = 0;
  int mMinAlloc = 0;
};
