#include "OutputPath.h"

#include <filesystem>

#include "LinkTarget.h"

namespace render {

namespace fs = std::filesystem;

std::string DefaultOutputPath(const std::string& inputPath) {
  if (inputPath.empty()) return "tarn-demo.wav";
  return fs::path(inputPath).stem().string() + "-tarn.wav";
}

namespace {

// The absolute path with links and "." / ".." resolved as far as the path exists, and a link to
// a file not there yet followed as well, since an output is written through it; a relative
// path is made absolute first, or a name that does not exist yet would stay relative.
bool ResolvedPath(const std::string& path, fs::path* resolved) {
  std::string target;
  if (!FollowLinks(path, &target)) return false;
  std::error_code ec;
  const fs::path absolute = fs::absolute(target, ec);
  if (ec) return false;
  *resolved = fs::weakly_canonical(absolute, ec).lexically_normal();
  return !ec;
}

}  // namespace

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  if (fs::equivalent(a, b, ec)) return true;
  fs::path resolvedA, resolvedB;
  return ResolvedPath(a, &resolvedA) && ResolvedPath(b, &resolvedB) && resolvedA == resolvedB;
}

}  // namespace render
