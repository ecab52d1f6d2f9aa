#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace render {

// A file the renderer writes, the audio or the saved state, through a descriptor. What becomes
// of the bytes depends on what the path names (OutputKind.h): a regular file is replaced whole
// on Commit (AtomicFile), a character device or a FIFO takes them as they come (StreamFile).
class OutputFile {
 public:
  // Opens `path` the way its kind calls for; on failure returns null and says why, naming it.
  static std::unique_ptr<OutputFile> Open(const std::string& path, std::string* error);
  virtual ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // The path as given, which every message names.
  const std::string& Path() const { return mPath; }

  bool Write(const void* data, std::size_t size, std::string* error);
  // Completes the output; until then a regular file has not changed.
  virtual bool Commit(std::string* error) = 0;

 protected:
  OutputFile(std::string path, int fd);

  int Descriptor() const { return mFd; }
  // Closes the descriptor, once; false with errno set when closing reported an error.
  bool CloseDescriptor();

 private:
  std::string mPath;
  int mFd;
};

}  // namespace render
