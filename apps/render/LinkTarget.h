#pragma once

#include <string>

namespace render {

// Where a chain of symbolic links ends: `path` itself when it is no link, else the target of
// the last link in the chain, whether or not a file is there. A relative target is taken from
// its link's own folder. False, with *target untouched, when a link cannot be read or the chain
// is longer than the system itself would follow (a loop).
bool FollowLinks(const std::string& path, std::string* target);

}  // namespace render
