#include "analysis/MemoryAudio.h"

#include <algorithm>

namespace render {

long long MemorySource::Read(float* interleaved, long long nFrames, std::string*) {
  const long long n = std::min(nFrames, NFrames() - mPosition);
  std::copy(mSamples.begin() + mPosition, mSamples.begin() + mPosition + n, interleaved);
  mPosition += n;
  return n;
}

bool MemorySink::Write(const float* interleaved, long long nFrames, std::string*) {
  mSamples.insert(mSamples.end(), interleaved, interleaved + nFrames);
  return true;
}

}  // namespace render
