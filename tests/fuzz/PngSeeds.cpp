// Writes every sample image of PngSamples.h, whole and cut in half, into the folder given: the
// seeds from which the PNG fuzzer starts inside the decoder rather than at the signature.

#include <cstdio>
#include <fstream>
#include <string>

#include "PngSamples.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s OUTPUT_DIR\n", argv[0]);
    return 2;
  }
  int n = 0;
  for (const PngSample& s : PngSamples()) {
    const Bytes png = EncodePng(s, 7, 5, 5);
    for (size_t size : {png.size(), png.size() / 2}) {
      std::ofstream out(std::string(argv[1]) + "/sample" + std::to_string(n++) + ".png",
                        std::ios::binary);
      if (!out.write((const char*)png.data(), (std::streamsize)size)) return 1;
    }
  }
  return 0;
}
