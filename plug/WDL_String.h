#pragma once

#include "plug/WDL_HeapBuf.h"

// A growable, always terminated character string on a heap buffer with fine granularity.
class WDL_String {
public:
  explicit WDL_String(const char* initial = "") { Set(initial); }
  WDL_String(const WDL_String&) = delete;
  WDL_String& operator=(const WDL_String&) = delete;

  const char* Get() const;
  int GetLength() const;
  // Copies at most maxLen characters of str (all of it when maxLen is 0 or less).
  void Set(const char* str, int maxLen = 0);
  void Append(const char* str, int maxLen = 0);

private:
  void Replace(int keep, const char* str, int maxLen);

  WDL_HeapBuf mHeap{128};
};
