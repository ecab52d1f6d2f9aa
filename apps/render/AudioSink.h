#pragma once

#include <string>

namespace render {

// Where a render's output goes: the output file, or memory when the renderer measures the effect.
class AudioSink {
 public:
  virtual ~AudioSink() = default;

  // Takes nFrames interleaved frames; on failure returns false and says why.
  virtual bool Write(const float* interleaved, long long nFrames, std::string* error) = 0;
};

}  // namespace render
