#pragma once

#include <string>

namespace render {

// Where the renderer's input comes from: a sound file or the built-in demo signal.
class AudioSource {
public:
  virtual ~AudioSource() = default;

  virtual int NChannels() const = 0;
  virtual int SampleRate() const = 0;
  virtual long long NFrames() const = 0;
  // How the summary names the input.
  virtual std::string Describe() const = 0;

  // Reads up to nFrames interleaved frames into `interleaved` and returns how many were read;
  // 0 at the end, -1 on a read error (described in *error).
  virtual long long Read(float* interleaved, long long nFrames, std::string* error) = 0;
};

}  // namespace render
