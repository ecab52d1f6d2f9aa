#pragma once

// Files for tests that write them: a scratch folder that is the working folder while it lives,
// whole-file reads and writes, and what waits in a pipe.

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace test_files {

namespace fs = std::filesystem;
using Bytes = std::vector<unsigned char>;
using Names = std::vector<std::string>;

// A fresh folder under the system's temporary folder, removed with everything in it.
class ScratchFolder {
 public:
  ScratchFolder() : mPrevious(fs::current_path()), mPath(Make()) { fs::current_path(mPath); }
  ~ScratchFolder() { fs::current_path(mPrevious), fs::remove_all(mPath); }

 private:
  static fs::path Make() {
    std::string pattern = (fs::temp_directory_path() / "tarn-test-XXXXXX").string();
    return mkdtemp(pattern.data());
  }
  const fs::path mPrevious, mPath;
};

// The names in a folder, hidden ones too, sorted.
inline Names List(const std::string& folder = ".") {
  Names names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

inline Bytes ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteBytes(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary).write((const char*)bytes.data(), bytes.size());
}

// Everything waiting in a pipe opened without blocking.
inline Bytes Drain(int fd) {
  Bytes bytes;
  unsigned char buffer[4096];
  for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;)
    bytes.insert(bytes.end(), buffer, buffer + n);
  return bytes;
}

}  // namespace test_files
