#include "StateFile.h"

#include "Quoted.h"
#include "ReadableFile.h"

#include <cstdio>
#include <filesystem>

namespace render {

bool ReadStateFile(const std::string& path, std::size_t expectedSize, std::vector<unsigned char>* bytes,
                   std::string* error) {
  std::FILE* f = OpenForReading(path, "state file", "", error);
  if (!f) return false;
  // One byte more than expected is enough to tell a longer file from the right one.
  std::vector<unsigned char> data(expectedSize + 1);
  const std::size_t n = std::fread(data.data(), 1, data.size(), f);
  const bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed) {
    *error = "cannot read state file " + Quoted(path);
    return false;
  }
  if (n != expectedSize) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    *error = "state file " + Quoted(path) + " is " + std::to_string(ec ? n : size) + " bytes; a state is " +
             std::to_string(expectedSize) + " bytes";
    return false;
  }
  data.resize(n);
  *bytes = std::move(data);
  return true;
}

}  // namespace render
