#include "OutputFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "AtomicFile.h"
#include "OutputKind.h"
#include "Quoted.h"
#include "StreamFile.h"

namespace render {

std::unique_ptr<OutputFile> OutputFile::Open(const std::string& path, std::string* error) {
  switch (KindOfOutput(path)) {
    case OutputKind::kFile:
      return AtomicFile::Create(path, error);
    case OutputKind::kStream:
      return StreamFile::Open(path, error);
    case OutputKind::kFolder:
      *error = "output " + Quoted(path) + " is a folder";
      return nullptr;
    case OutputKind::kOther:
      break;
  }
  *error = "output " + Quoted(path) + " is neither a file, a character device nor a FIFO";
  return nullptr;
}

OutputFile::OutputFile(std::string path, int fd) : mPath(std::move(path)), mFd(fd) {}

OutputFile::~OutputFile() { CloseDescriptor(); }

bool OutputFile::CloseDescriptor() {
  if (mFd < 0) return true;
  const int result = close(mFd);
  mFd = -1;
  return result == 0;
}

bool OutputFile::Write(const void* data, std::size_t size, std::string* error) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t n = write(mFd, bytes, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      *error = "cannot write " + Quoted(mPath) + ": " + std::strerror(n < 0 ? errno : EIO);
      return false;
    }
    bytes += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace render
