#include "plug/WDL_String.h"

#include <cstring>

const char* WDL_String::Get() const {
  const char* text = static_cast<const char*>(mHeap.Get());
  return text ? text : "";
}

int WDL_String::GetLength() const { return static_cast<int>(std::strlen(Get())); }

void WDL_String::Set(const char* str, int maxLen) { Replace(0, str, maxLen); }

void WDL_String::Append(const char* str, int maxLen) { Replace(GetLength(), str, maxLen); }

// Keeps the first `keep` characters and puts (up to maxLen characters of) str after them.
void WDL_String::Replace(int keep, const char* str, int maxLen) {
  if (!str) str = "";
  int len = static_cast<int>(std::strlen(str));
  if (maxLen > 0 && len > maxLen) len = maxLen;
  char* text = static_cast<char*>(mHeap.Resize(keep + len + 1));
  if (mHeap.GetSize() != keep + len + 1) return;  // out of memory: the old text stays
  std::memmove(text + keep, str, static_cast<size_t>(len));
  text[keep + len] = '\0';
}
