#include "DistinctFiles.h"

#include "OutputPath.h"
#include "Quoted.h"

namespace render {

bool CheckDistinctFiles(const std::vector<NamedPath>& read, const std::vector<NamedPath>& written,
                        std::string* error) {
  for (std::size_t w = 0; w < written.size(); ++w) {
    if (written[w].path.empty()) continue;
    std::vector<NamedPath> others = read;
    others.insert(others.end(), written.begin(), written.begin() + w);
    for (const NamedPath& other : others) {
      if (!other.path.empty() && SameFile(written[w].path, other.path)) {
        *error = written[w].role + " " + Quoted(written[w].path) + " is the same file as " +
                 other.role + " " + Quoted(other.path);
        return false;
      }
    }
  }
  return true;
}

}  // namespace render
