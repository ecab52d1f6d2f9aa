#include "AtomicFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include "Quoted.h"

namespace render {

namespace fs = std::filesystem;

namespace {

// mkstemp creates files readable by the owner only; a finished render should get the usual
// permissions, as if it had been created with open(0666) under the process's umask.
void GiveUsualPermissions(int fd) {
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(fd, 0666 & ~mask);
}

}  // namespace

std::unique_ptr<AtomicFile> AtomicFile::Create(const std::string& targetPath, std::string* error) {
  const fs::path target(targetPath);
  std::error_code ec;
  if (fs::is_directory(target, ec)) {
    *error = "output " + Quoted(targetPath) + " is a folder";
    return nullptr;
  }
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::string temp = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  std::vector<char> pattern(temp.begin(), temp.end());
  pattern.push_back('\0');
  const int fd = mkstemp(pattern.data());
  if (fd < 0) {
    *error = "cannot write " + Quoted(targetPath) + " in folder " + Quoted(folder.string()) + ": " +
             std::strerror(errno);
    return nullptr;
  }
  GiveUsualPermissions(fd);
  return std::unique_ptr<AtomicFile>(new AtomicFile(targetPath, pattern.data(), fd));
}

AtomicFile::AtomicFile(std::string targetPath, std::string tempPath, int fd)
    : mTargetPath(std::move(targetPath)), mTempPath(std::move(tempPath)), mFd(fd) {}

AtomicFile::~AtomicFile() {
  if (!mCommitted) Discard();
}

void AtomicFile::Discard() {
  if (mFd >= 0) close(mFd);
  mFd = -1;
  unlink(mTempPath.c_str());
}

bool AtomicFile::Write(const void* data, std::size_t size, std::string* error) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t n = write(mFd, bytes, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      *error = "cannot write " + Quoted(mTargetPath) + ": " + std::strerror(n < 0 ? errno : EIO);
      return false;
    }
    bytes += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

bool AtomicFile::Commit(std::string* error) {
  const bool synced = fsync(mFd) == 0;
  const int syncErrno = errno;
  const bool closed = close(mFd) == 0;
  const int closeErrno = errno;
  mFd = -1;
  if (!synced || !closed) {
    *error = "cannot write " + Quoted(mTargetPath) + ": " +
             std::strerror(synced ? closeErrno : syncErrno);
    return false;
  }
  if (std::rename(mTempPath.c_str(), mTargetPath.c_str()) != 0) {
    *error = "cannot create " + Quoted(mTargetPath) + ": " + std::strerror(errno);
    return false;
  }
  mCommitted = true;
  return true;
}

}  // namespace render
