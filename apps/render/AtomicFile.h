#pragma once

#include <memory>
#include <string>

#include "OutputFile.h"

namespace render {

// A regular file that appears under its name complete or not at all: it is written as a
// temporary file in the target's own folder (so that the final rename stays on one file system
// and is atomic) and renamed over the target by Commit. Destroying it uncommitted removes the
// temporary file, so a failed render leaves nothing behind and never replaces an existing file.
// When the path is a symbolic link (or a chain of them), the target is the file the chain ends
// at, there or not yet, so the link stays and comes to point at the new file.
class AtomicFile : public OutputFile {
 public:
  // Creates the temporary file; on failure returns null and says why, naming the path.
  static std::unique_ptr<AtomicFile> Create(const std::string& path, std::string* error);
  ~AtomicFile() override;

  // Flushes the data to disk, closes the file and renames it to the target name.
  bool Commit(std::string* error) override;

 private:
  AtomicFile(std::string path, std::string targetPath, std::string tempPath, int fd);

  std::string mTargetPath;
  std::string mTempPath;
  bool mCommitted = false;
};

}  // namespace render
