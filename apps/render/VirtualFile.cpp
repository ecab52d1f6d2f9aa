#include "VirtualFile.h"

#include <algorithm>
#include <cstdio>

namespace render {

namespace {

VirtualFile& Self(void* self) { return *static_cast<VirtualFile*>(self); }

}  // namespace

SF_VIRTUAL_IO* VirtualFile::Io() {
  static SF_VIRTUAL_IO io = {&Length, &Seek, &Read, &Write, &Tell};
  return &io;
}

sf_count_t VirtualFile::Length(void* self) { return Self(self).mLength; }

sf_count_t VirtualFile::Seek(sf_count_t offset, int whence, void* self) {
  VirtualFile& file = Self(self);
  const sf_count_t base = whence == SEEK_CUR   ? file.mPosition
                          : whence == SEEK_END ? file.mLength
                                               : 0;
  if (base + offset < 0) return -1;
  file.mPosition = base + offset;
  return file.mPosition;
}

sf_count_t VirtualFile::Read(void*, sf_count_t, void*) { return 0; }

sf_count_t VirtualFile::Write(const void* data, sf_count_t size, void* self) {
  VirtualFile& file = Self(self);
  if (!file.Place(file.mPosition, static_cast<const unsigned char*>(data), size)) return 0;
  file.mPosition += size;
  file.mLength = std::max(file.mLength, file.mPosition);
  return size;
}

sf_count_t VirtualFile::Tell(void* self) { return Self(self).mPosition; }

}  // namespace render
