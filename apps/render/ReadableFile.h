#pragma once

#include <cstdio>
#include <string>

namespace render {

// Opens a file for reading, or says why not in the renderer's words: `what` names the kind of
// file ("input", "state file") and `folderNote` is added when the path is a folder. The caller
// closes the file.
std::FILE* OpenForReading(const std::string& path, const std::string& what, const std::string& folderNote,
                          std::string* error);

}  // namespace render
