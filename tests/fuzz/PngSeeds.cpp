// Writes every sample image of PngSamples.h, whole and cut in half, into the folder given: the
// seeds from which the PNG fuzzer starts inside the decoder rather than at the signature.
#include <fstream>
#include <string>

#include "PngSamples.h"

int main(int argc, char** argv) {
  int n = 0;
  for (const PngSample& s : PngSamples()) {
    const Bytes png = EncodePng(s, 7, 5, 5);
    for (size_t size : {png.size(), png.size() / 2}) {
      std::ofstream out(std::string(argc > 1 ? argv[1] : ".") + "/sample" + std::to_string(n++) +
                        ".png");
      if (!out.write((const char*)png.data(), (std::streamsize)size)) return 1;
    }
  }
  return 0;
}
