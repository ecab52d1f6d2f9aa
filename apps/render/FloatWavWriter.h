#pragma once

#include <memory>
#include <string>

#include "AudioSink.h"
#include "FloatWavFormat.h"
#include "HeaderFirstStream.h"
#include "OutputFile.h"

namespace render {

// The rendered output: a WAV file of 32-bit float samples, written by libsndfile. The number of
// frames is announced up front, so the final header is known before the first sample and the
// file is written front to back (HeaderFirstStream), which a FIFO or a terminal takes as well as
// a regular file; a regular file appears under its name only once Commit has succeeded (see
// OutputFile).
class FloatWavWriter : public AudioSink {
 public:
  // Refuses more frames than a WAV file holds before anything is created.
  static std::unique_ptr<FloatWavWriter> Create(const std::string& path, int nChannels,
                                                int sampleRate, long long nFrames,
                                                std::string* error);

  const std::string& Path() const { return mFile->Path(); }

  bool Write(const float* interleaved, long long nFrames, std::string* error) override;
  // Fails unless exactly the announced frames were written, as the header says.
  bool Commit(std::string* error);

 private:
  FloatWavWriter(std::unique_ptr<OutputFile> file, std::vector<unsigned char> header,
                 long long nFrames);

  // What went wrong in libsndfile, or in the stream under it, which knows better.
  std::string Failure(const std::string& libraryReason) const;

  std::unique_ptr<OutputFile> mFile;
  HeaderFirstStream mStream;
  // Last, so that it is closed first, while the stream and the file are still there.
  SoundFilePtr mSound;
  long long mAnnouncedFrames;
  long long mWrittenFrames = 0;
};

}  // namespace render
