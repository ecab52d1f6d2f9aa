#pragma once

#include <cstring>

#include "plug/WDL_HeapBuf.h"

// A growable byte buffer of values stored as their raw in-memory bytes (little-endian on every
// processor we build for; doubles as IEEE 754 binary64). Writes append; reads take a position
// and return the position after the value, or -1 when the buffer is too short.
class ByteChunk {
public:
  ByteChunk() = default;
  ByteChunk(const ByteChunk&) = delete;
  ByteChunk& operator=(const ByteChunk&) = delete;

  template <class T>
  int Put(const T* value) {
    return PutBytes(value, static_cast<int>(sizeof(T)));
  }
  template <class T>
  int Get(T* value, int startPos) const {
    return GetBytes(value, static_cast<int>(sizeof(T)), startPos);
  }

  // Appends `size` bytes; returns the new size (unchanged if the buffer could not grow).
  int PutBytes(const void* data, int size);
  // Copies `size` bytes from startPos; returns startPos + size, or -1 (leaving buf alone).
  int GetBytes(void* buf, int size, int startPos) const;

  unsigned char* GetBytes() { return static_cast<unsigned char*>(mBytes.Get()); }
  const unsigned char* GetBytes() const { return static_cast<const unsigned char*>(mBytes.Get()); }
  int Size() const { return mBytes.GetSize(); }
  void Clear() { mBytes.Resize(0); }
  int Resize(int newSize) {
    mBytes.Resize(newSize);
    return mBytes.GetSize();
  }

private:
  WDL_HeapBuf mBytes{4096};
};
