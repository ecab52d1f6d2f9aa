#include "ReadableFile.h"

#include "Quoted.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace render {

std::FILE* OpenForReading(const std::string& path, const std::string& what, const std::string& folderNote,
                          std::string* error) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    *error = what + " " + Quoted(path) + " is a folder" + folderNote;
    return nullptr;
  }
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) *error = "cannot read " + what + " " + Quoted(path) + ": " + std::strerror(errno);
  return f;
}

}  // namespace render
