#pragma once

#include <string>

namespace render {

// How an output path is written, from what is there now, links followed.
enum class OutputKind {
  kFile,    // a regular file or nothing yet: replaced whole, atomically (AtomicFile)
  kStream,  // a character device or a FIFO: written to directly (StreamFile); replacing it
            // would swap /dev/null or a pipe's name for a file
  kFolder,  // refused
  kOther,   // a block device or a socket: refused
};

OutputKind KindOfOutput(const std::string& path);

}  // namespace render
