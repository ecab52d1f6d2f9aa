#include "OutputPath.h"

#include <filesystem>

namespace render {

namespace fs = std::filesystem;

std::string DefaultOutputPath(const std::string& inputPath) {
  if (inputPath.empty()) return "tarn-demo.wav";
  return fs::path(inputPath).stem().string() + "-tarn.wav";
}

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  if (fs::equivalent(a, b, ec)) return true;
  const fs::path canonicalA = fs::weakly_canonical(a, ec);
  if (ec) return false;
  const fs::path canonicalB = fs::weakly_canonical(b, ec);
  if (ec) return false;
  return canonicalA == canonicalB;
}

}  // namespace render
