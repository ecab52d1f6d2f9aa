#include "plug/ByteChunk.h"

int ByteChunk::PutBytes(const void* data, int size) {
  int oldSize = mBytes.GetSize();
  if (size <= 0) return oldSize;
  mBytes.Resize(oldSize + size);
  if (mBytes.GetSize() != oldSize + size) return mBytes.GetSize();
  std::memcpy(static_cast<char*>(mBytes.Get()) + oldSize, data, static_cast<size_t>(size));
  return mBytes.GetSize();
}

int ByteChunk::GetBytes(void* buf, int size, int startPos) const {
  // Written as a subtraction so that a start near the top of int cannot overflow.
  if (startPos < 0 || size < 0 || startPos > mBytes.GetSize() - size) return -1;
  if (size > 0) std::memcpy(buf, static_cast<const char*>(mBytes.Get()) + startPos, static_cast<size_t>(size));
  return startPos + size;
}
