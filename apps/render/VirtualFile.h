#pragma once

#include <sndfile.h>

namespace render {

// A file as libsndfile sees it through virtual I/O: a position and a length, the bytes
// themselves going wherever a subclass places them. libsndfile writes a WAV header, seeks back
// and writes it again, so where a write lands is known only from the offset it comes at.
// Nothing is ever read back: the renderer's files are written only.
class VirtualFile {
 public:
  // The callbacks to give sf_open_virtual, with the VirtualFile as its user data.
  static SF_VIRTUAL_IO* Io();

  virtual ~VirtualFile() = default;

  sf_count_t Position() const { return mPosition; }

 protected:
  VirtualFile() = default;
  VirtualFile(const VirtualFile&) = delete;
  VirtualFile& operator=(const VirtualFile&) = delete;

  // Takes `size` bytes written at `offset`; false makes the write fail, which libsndfile reports.
  virtual bool Place(sf_count_t offset, const unsigned char* data, sf_count_t size) = 0;

 private:
  static sf_count_t Length(void* self);
  static sf_count_t Seek(sf_count_t offset, int whence, void* self);
  static sf_count_t Read(void* data, sf_count_t size, void* self);
  static sf_count_t Write(const void* data, sf_count_t size, void* self);
  static sf_count_t Tell(void* self);

  sf_count_t mPosition = 0;
  sf_count_t mLength = 0;
};

}  // namespace render
