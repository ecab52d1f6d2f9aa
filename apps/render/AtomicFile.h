#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace render {

// A file that appears under its name complete or not at all: it is written as a temporary file
// in the target's own folder (so that the final rename stays on one file system and is atomic)
// and renamed over the target by Commit. Destroying it uncommitted removes the temporary file,
// so a failed render leaves nothing behind and never replaces an existing file.
class AtomicFile {
 public:
  // Creates the temporary file; on failure returns null and says why, naming the target.
  static std::unique_ptr<AtomicFile> Create(const std::string& targetPath, std::string* error);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  int Descriptor() const { return mFd; }
  const std::string& TargetPath() const { return mTargetPath; }
  const std::string& TemporaryPath() const { return mTempPath; }

  bool Write(const void* data, std::size_t size, std::string* error);
  // Flushes the data to disk, closes the file and renames it to the target name.
  bool Commit(std::string* error);

 private:
  AtomicFile(std::string targetPath, std::string tempPath, int fd);
  void Discard();

  std::string mTargetPath;
  std::string mTempPath;
  int mFd;
  bool mCommitted = false;
};

}  // namespace render
