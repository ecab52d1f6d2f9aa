#include "StreamFile.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "Quoted.h"

namespace render {

std::unique_ptr<StreamFile> StreamFile::Open(const std::string& path, std::string* error) {
  // Never made the controlling terminal, should the device be one.
  const int fd = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    *error = "cannot write " + Quoted(path) + ": " + std::strerror(errno);
    return nullptr;
  }
  return std::unique_ptr<StreamFile>(new StreamFile(path, fd));
}

bool StreamFile::Commit(std::string* error) {
  if (CloseDescriptor()) return true;
  *error = "cannot write " + Quoted(Path()) + ": " + std::strerror(errno);
  return false;
}

}  // namespace render
