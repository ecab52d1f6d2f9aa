#include "OutputKind.h"

#include <sys/stat.h>

namespace render {

OutputKind KindOfOutput(const std::string& path) {
  struct stat st {};
  // Nothing there (or nothing that can be looked at): a new file, whose creation will say why
  // it cannot be made, if it cannot.
  if (stat(path.c_str(), &st) != 0 || S_ISREG(st.st_mode)) return OutputKind::kFile;
  if (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode)) return OutputKind::kStream;
  if (S_ISDIR(st.st_mode)) return OutputKind::kFolder;
  return OutputKind::kOther;
}

}  // namespace render
