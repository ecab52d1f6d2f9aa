#pragma once

#include <sndfile.h>

#include <memory>
#include <string>

#include "AtomicFile.h"

namespace render {

// The rendered output: a 32-bit float WAV file that appears under its name only once Commit
// has succeeded (see AtomicFile).
class SoundFileWriter {
 public:
  static std::unique_ptr<SoundFileWriter> Create(const std::string& path, int nChannels,
                                                 int sampleRate, std::string* error);
  ~SoundFileWriter();
  SoundFileWriter(const SoundFileWriter&) = delete;
  SoundFileWriter& operator=(const SoundFileWriter&) = delete;

  const std::string& Path() const { return mFile->TargetPath(); }

  bool Write(const float* interleaved, long long nFrames, std::string* error);
  bool Commit(std::string* error);

 private:
  SoundFileWriter(std::unique_ptr<AtomicFile> file, SNDFILE* sound);

  std::unique_ptr<AtomicFile> mFile;
  SNDFILE* mSound;
};

}  // namespace render
