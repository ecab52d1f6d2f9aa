// tarn-lv2-ttl DIR BINARY UI_BINARY: writes DIR/manifest.ttl and DIR/tarn.ttl for the plug-in
// library BINARY and the editor's library UI_BINARY (file names inside the bundle), from a freshly
// made effect's identity and parameter table, so the bundle's metadata can never drift from the
// code.
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

#include "TurtleWriter.h"
#include "dsp/Tarn.h"

namespace {

// Whole or not at all: the text goes to a temporary file that is then renamed into place.
bool WriteFile(const std::string& path, const std::string& text) {
  const std::string temporary = path + ".tmp";
  std::FILE* file = std::fopen(temporary.c_str(), "w");
  bool ok = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (file) ok = std::fclose(file) == 0 && ok;
  ok = ok && std::rename(temporary.c_str(), path.c_str()) == 0;
  if (!ok) {
    std::remove(temporary.c_str());
    std::fprintf(stderr, "tarn-lv2-ttl: cannot write '%s'\n", path.c_str());
  }
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: tarn-lv2-ttl BUNDLE_DIR BINARY_FILE_NAME UI_BINARY_FILE_NAME\n");
    return 2;
  }
  const std::string dir = argv[1];
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());

  std::ostringstream manifest, descriptions;
  tarnlv2::WriteManifest(manifest, {argv[2], argv[3], "tarn.ttl"});
  tarnlv2::WriteDescriptions(descriptions, *plug);
  const bool ok = WriteFile(dir + "/manifest.ttl", manifest.str()) &&
                  WriteFile(dir + "/tarn.ttl", descriptions.str());
  return ok ? 0 : 1;
}
