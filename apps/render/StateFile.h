#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace render {

// The effect's saved state on disk: exactly the bytes the plug-in serialises, nothing around
// them. A file of any other size than the plug-in's state is refused rather than half-applied.
bool ReadStateFile(const std::string& path, std::size_t expectedSize, std::vector<unsigned char>* bytes,
                   std::string* error);

}  // namespace render
