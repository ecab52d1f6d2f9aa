#include "LinkTarget.h"

#include <filesystem>

namespace render {

namespace fs = std::filesystem;

namespace {

// As many links as Linux follows in one path before it gives up with ELOOP.
constexpr int kMaxLinks = 40;

}  // namespace

bool FollowLinks(const std::string& path, std::string* target) {
  fs::path at(path);
  for (int hops = 0; hops <= kMaxLinks; ++hops) {
    std::error_code ec;
    if (!fs::is_symlink(at, ec)) {
      *target = at.string();
      return true;
    }
    const fs::path next = fs::read_symlink(at, ec);
    if (ec) return false;
    at = next.is_absolute() ? next : at.parent_path() / next;
  }
  return false;
}

}  // namespace render
