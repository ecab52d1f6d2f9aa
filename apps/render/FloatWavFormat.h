#pragma once

#include <sndfile.h>

#include <memory>
#include <string>

#include "VirtualFile.h"

namespace render {

struct SoundFileCloser {
  void operator()(SNDFILE* sound) const { sf_close(sound); }
};
using SoundFilePtr = std::unique_ptr<SNDFILE, SoundFileCloser>;

// Opens libsndfile to write a WAV file of 32-bit float samples onto `file`. The header is made
// twice, once in a dry run to learn it and once for real, and both are opened here, so that
// they cannot differ in anything but where the bytes go. On failure returns null and says why.
SoundFilePtr OpenFloatWav(VirtualFile& file, int nChannels, int sampleRate, std::string* why);

}  // namespace render
