// Arbitrary bytes as a host's saved state. The bindings restore a state only when it is whole
// (plug/StateCheck.h): after any bytes, either the state was refused and nothing changed, or
// every value is finite and inside its range and a block of audio comes out finite. The core's
// own restore and comparison, which take any bytes, must at least never fault.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "dsp/Tarn.h"
#include "plug/StateCheck.h"

namespace {

std::unique_ptr<IPlugAdaptor> StereoPlugAt48k() {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->SetSampleRate(48000.0);
  plug->Reset();
  plug->SetIO(2, 2);
  plug->SetBlockSize(64);
  return plug;
}

std::vector<unsigned char> StateOf(IPlugBase& plug) {
  ByteChunk chunk;
  plug.SerializeState(&chunk);
  return std::vector<unsigned char>(chunk.GetBytes(), chunk.GetBytes() + chunk.Size());
}

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckValuesInRange(IPlugBase& plug) {
  for (int i = 0; i < plug.NParams(); ++i) {
    const IParam* param = plug.GetParam(i);
    const double value = param->Value();
    Require(std::isfinite(value) && value >= param->GetMin() && value <= param->GetMax());
  }
}

void CheckBlockIsFinite(IPlugAdaptor& plug) {
  float in[2][64], out[2][64];
  for (int i = 0; i < 64; ++i) in[0][i] = in[1][i] = static_cast<float>(std::sin(0.2 * i));
  float* inputs[] = {in[0], in[1]};
  float* outputs[] = {out[0], out[1]};
  plug.ProcessAudio(inputs, outputs, 64);
  for (const float* channel : outputs) {
    for (int i = 0; i < 64; ++i) Require(std::isfinite(channel[i]));
  }
}

void FuzzWholeStateRestore(const uint8_t* data, size_t size) {
  static std::unique_ptr<IPlugAdaptor> plug = StereoPlugAt48k();
  const std::vector<unsigned char> before = StateOf(*plug);
  if (!RestoreWholeState(*plug, data, size).empty()) {
    Require(StateOf(*plug) == before);
    return;
  }
  CheckValuesInRange(*plug);
  CheckBlockIsFinite(*plug);
}

void FuzzCoreRestore(const uint8_t* data, size_t size) {
  static std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  ByteChunk chunk;
  chunk.PutBytes(data, static_cast<int>(size));
  const int startPos = size > 0 ? data[0] % 16 - 4 : 0;  // a few negative and unaligned starts
  plug->UnserializeState(&chunk, startPos);
  plug->UnserializeState(&chunk, 0);
  // CompareState reads one double per parameter without a size to check against (hosts always
  // hand it a whole state), so only whole states go in.
  if (size >= sizeof(double) * kNumParams) plug->CompareState(data, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzWholeStateRestore(data, size);
  FuzzCoreRestore(data, size);
  return 0;
}
