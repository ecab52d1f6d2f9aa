#include "plug/WDL_HeapBuf.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kPage = 4096;
constexpr int kMaxStep = 4194304;
constexpr int kAllocatorOverhead = 96;  // left free so that block plus header fill whole pages

long long RoundDownToPage(long long bytes) { return bytes & ~static_cast<long long>(kPage - 1); }

}  // namespace

WDL_HeapBuf::~WDL_HeapBuf() { std::free(mBuf); }

void* WDL_HeapBuf::Resize(int newSize, bool resizeDown) {
  newSize = std::max(newSize, 0);  // a negative size is treated as empty
  if (newSize == mSize) return Get();

  if (!KeepsAllocation(newSize, resizeDown)) {
    long long newAlloc = AllocationFor(newSize);
    if (newAlloc > INT_MAX) return Get();  // as if the allocation had failed
    if (newAlloc != mAlloc && !Reallocate(static_cast<int>(newAlloc), newSize)) return Get();
  }
  mSize = newSize;
  return Get();
}

// Within the allocation, the used size just moves unless the buffer would be left mostly empty.
bool WDL_HeapBuf::KeepsAllocation(int newSize, bool resizeDown) const {
  if (newSize > mAlloc) return false;
  return !resizeDown || mSize <= newSize || newSize >= mAlloc / 2 ||
         newSize >= mAlloc - 4 * mGranularity;
}

// Worked in 64 bits: near the top of int the sums would overflow.
long long WDL_HeapBuf::AllocationFor(int newSize) const {
  long long alloc;
  if (mGranularity >= kPage) {
    long long g = RoundDownToPage(std::max(mGranularity, newSize / 2));
    long long step = g < kPage ? kPage : std::min<long long>(g, kMaxStep);
    alloc = RoundDownToPage(step + newSize + kAllocatorOverhead) - kAllocatorOverhead;
  } else {
    alloc = static_cast<long long>(newSize) + std::max(mGranularity, newSize / 2);
  }
  return std::max<long long>(alloc, mMinAlloc);
}

bool WDL_HeapBuf::Reallocate(int newAlloc, int newSize) {
  char* grown = static_cast<char*>(std::realloc(mBuf, static_cast<size_t>(newAlloc)));
  if (grown) {
    if (newAlloc > mAlloc) std::memset(grown + mAlloc, 0, static_cast<size_t>(newAlloc - mAlloc));
  } else {
    grown = static_cast<char*>(std::malloc(static_cast<size_t>(newAlloc)));
    if (!grown) return false;
    int kept = std::min(mSize, newSize);
    if (kept > 0) std::memcpy(grown, mBuf, static_cast<size_t>(kept));
    std::memset(grown + kept, 0, static_cast<size_t>(newAlloc - kept));
    std::free(mBuf);
  }
  mBuf = grown;
  mAlloc = newAlloc;
  return true;
}
