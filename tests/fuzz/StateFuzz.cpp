// Arbitrary bytes as a host's saved state. The bindings restore a state only when it is whole
// (plug/StateCheck.h): after any bytes, either the state was refused and nothing changed, or
// every value is finite and inside its range and a block of audio comes out finite. The core's
// own restore and comparison, which take any bytes, must at least never fault.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "dsp/Tarn.h"
#include "plug/StateCheck.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

std::vector<unsigned char> StateOf(IPlugBase& plug) {
  ByteChunk chunk;
  plug.SerializeState(&chunk);
  return std::vector<unsigned char>(chunk.GetBytes(), chunk.GetBytes() + chunk.Size());
}

// A restored state leaves every value finite and in range, and a block of a sine comes out finite.
void CheckRestored(IPlugAdaptor& plug) {
  for (int i = 0; i < plug.NParams(); ++i) {
    const IParam* p = plug.GetParam(i);
    Require(std::isfinite(p->Value()) && p->Value() >= p->GetMin() && p->Value() <= p->GetMax());
  }
  float in[2][64], out[2][64];
  for (int i = 0; i < 64; ++i) in[0][i] = in[1][i] = static_cast<float>(std::sin(0.2 * i));
  float *inputs[] = {in[0], in[1]}, *outputs[] = {out[0], out[1]};
  plug.ProcessAudio(inputs, outputs, 64);
  for (int i = 0; i < 128; ++i) Require(std::isfinite(out[i / 64][i % 64]));
}

void FuzzWholeStateRestore(const uint8_t* data, size_t size) {
  static std::unique_ptr<IPlugAdaptor> plug = [] {
    std::unique_ptr<IPlugAdaptor> made(MakePlug());
    made->SetSampleRate(48000.0), made->Reset(), made->SetIO(2, 2), made->SetBlockSize(64);
    return made;
  }();
  const std::vector<unsigned char> before = StateOf(*plug);
  if (RestoreWholeState(*plug, data, size).empty()) return CheckRestored(*plug);
  Require(StateOf(*plug) == before);
}

void FuzzCoreRestore(const uint8_t* data, size_t size) {
  static std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  ByteChunk chunk;
  chunk.PutBytes(data, static_cast<int>(size));
  plug->UnserializeState(&chunk, size > 0 ? data[0] % 16 - 4 : 0);  // negative, unaligned starts
  plug->UnserializeState(&chunk, 0);
  // CompareState reads one double per parameter with no size to check (hosts always hand it a
  // whole state), so only whole states go in.
  if (size >= sizeof(double) * kNumParams) plug->CompareState(data, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzWholeStateRestore(data, size);
  FuzzCoreRestore(data, size);
  return 0;
}
