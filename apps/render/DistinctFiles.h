#pragma once

#include <string>
#include <vector>

namespace render {

struct NamedPath {
  std::string role;  // "the input", "the output", ...
  std::string path;  // empty: not used in this run
};

// Nothing a run writes may land on a file it reads, nor two outputs on one file. On a clash
// returns false and names both files.
bool CheckDistinctFiles(const std::vector<NamedPath>& read, const std::vector<NamedPath>& written,
                        std::string* error);

}  // namespace render
