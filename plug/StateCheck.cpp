#include "plug/StateCheck.h"

#include <cmath>
#include <cstring>

#include "plug/IPlugBase.h"

namespace {

std::string StateProblem(const IPlugBase& plug, const void* bytes, std::size_t size) {
  const std::size_t expected = sizeof(double) * static_cast<std::size_t>(plug.NParams());
  if (size != expected) {
    return "is " + std::to_string(size) + " bytes; a state is " + std::to_string(expected) +
           " bytes";
  }
  for (int i = 0; i < plug.NParams(); ++i) {
    double value;
    std::memcpy(&value, static_cast<const unsigned char*>(bytes) + i * sizeof(double),
                sizeof(double));
    if (std::isfinite(value)) continue;
    const char* what = std::isnan(value) ? "NaN" : (value > 0.0 ? "+infinity" : "-infinity");
    return std::string("holds ") + what + " for \"" + plug.GetParam(i)->GetNameForHost() + "\"";
  }
  return std::string();
}

}  // namespace

std::string RestoreWholeState(IPlugBase& plug, const void* bytes, std::size_t size) {
  std::string problem = StateProblem(plug, bytes, size);
  if (!problem.empty()) return problem;
  ByteChunk chunk;
  chunk.PutBytes(bytes, static_cast<int>(size));
  plug.UnserializeState(&chunk, 0);
  return problem;
}
