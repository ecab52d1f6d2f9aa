#include "AtomicFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include "LinkTarget.h"
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

std::unique_ptr<AtomicFile> AtomicFile::Create(const std::string& path, std::string* error) {
  std::string targetPath;
  if (!FollowLinks(path, &targetPath)) {
    *error = "cannot write " + Quoted(path) + ": " + std::strerror(ELOOP);
    return nullptr;
  }
  const fs::path target(targetPath);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::string temp = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  std::vector<char> pattern(temp.begin(), temp.end());
  pattern.push_back('\0');
  const int fd = mkstemp(pattern.data());
  if (fd < 0) {
    *error = "cannot write " + Quoted(path) + " in folder " + Quoted(folder.string()) + ": " +
             std::strerror(errno);
    return nullptr;
  }
  GiveUsualPermissions(fd);
  return std::unique_ptr<AtomicFile>(new AtomicFile(path, targetPath, pattern.data(), fd));
}

AtomicFile::AtomicFile(std::string path, std::string targetPath, std::string tempPath, int fd)
    : OutputFile(std::move(path), fd),
      mTargetPath(std::move(targetPath)),
      mTempPath(std::move(tempPath)) {}

AtomicFile::~AtomicFile() {
  if (mCommitted) return;
  CloseDescriptor();
  unlink(mTempPath.c_str());
}

bool AtomicFile::Commit(std::string* error) {
  const bool synced = fsync(Descriptor()) == 0;
  const int syncErrno = errno;
  const bool closed = CloseDescriptor();
  const int closeErrno = errno;
  if (!synced || !closed) {
    *error =
        "cannot write " + Quoted(Path()) + ": " + std::strerror(synced ? closeErrno : syncErrno);
    return false;
  }
  if (std::rename(mTempPath.c_str(), mTargetPath.c_str()) != 0) {
    *error = "cannot create " + Quoted(Path()) + ": " + std::strerror(errno);
    return false;
  }
  mCommitted = true;
  return true;
}

}  // namespace render
