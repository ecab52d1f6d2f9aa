#pragma once

#include <memory>
#include <string>

#include "OutputFile.h"

namespace render {

// The rendered output: a WAV file of 32-bit float samples. The number of frames is announced
// up front and the header written first, so the file is written front to back, which a FIFO or a
// terminal takes as well as a regular file; a regular file appears under its name only once
// Commit has succeeded (see OutputFile).
class FloatWavWriter {
 public:
  // Refuses more frames than a WAV file holds before anything is created.
  static std::unique_ptr<FloatWavWriter> Create(const std::string& path, int nChannels,
                                                int sampleRate, long long nFrames,
                                                std::string* error);

  const std::string& Path() const { return mFile->Path(); }

  bool Write(const float* interleaved, long long nFrames, std::string* error);
  // Fails unless exactly the announced frames were written, as the header says.
  bool Commit(std::string* error);

 private:
  FloatWavWriter(std::unique_ptr<OutputFile> file, int nChannels, long long nFrames);

  std::unique_ptr<OutputFile> mFile;
  int mNChannels;
  long long mAnnouncedFrames;
  long long mWrittenFrames = 0;
};

}  // namespace render
