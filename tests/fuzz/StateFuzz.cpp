// Feeds arbitrary bytes to the state restore and the state comparison of a Tarn instance.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "dsp/Tarn.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static std::unique_ptr<IPlugAdaptor> plug(MakePlug());

  ByteChunk chunk;
  chunk.PutBytes(data, static_cast<int>(size));
  int startPos = size > 0 ? data[0] % 16 - 4 : 0;  // also a few negative and unaligned starts
  plug->UnserializeState(&chunk, startPos);
  plug->UnserializeState(&chunk, 0);

  // CompareState reads one double per parameter from the caller's memory without any size to
  // check against (the host always hands it a whole state), so only whole states go in.
  if (size >= sizeof(double) * kNumParams) plug->CompareState(data, 0);
  return 0;
}
