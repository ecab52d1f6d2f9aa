#pragma once

#include <memory>
#include <string>

#include "OutputFile.h"

namespace render {

// A character device or a FIFO written to directly, as a stream: there is nothing to replace
// and nothing to take back, so the bytes go out as they are written. Opening a FIFO waits for
// its reader.
class StreamFile : public OutputFile {
 public:
  static std::unique_ptr<StreamFile> Open(const std::string& path, std::string* error);

  bool Commit(std::string* error) override;

 private:
  StreamFile(std::string path, int fd) : OutputFile(std::move(path), fd) {}
};

}  // namespace render
