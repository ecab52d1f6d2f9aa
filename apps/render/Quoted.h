#pragma once

#include <string>

namespace render {

// Every message names the file or value it is about in double quotes, so that names with
// spaces (and empty ones) stay readable.
inline std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

}  // namespace render
