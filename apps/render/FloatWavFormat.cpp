#include "FloatWavFormat.h"

namespace render {

SoundFilePtr OpenFloatWav(VirtualFile& file, int nChannels, int sampleRate, std::string* why) {
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = nChannels;
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  SoundFilePtr sound(sf_open_virtual(VirtualFile::Io(), SFM_WRITE, &info, &file));
  if (!sound) {
    *why = sf_strerror(nullptr);
    return nullptr;
  }
  // The peak chunk carries the time of writing, which would make two renders of the same input
  // differ; the file is exactly reproducible without it.
  sf_command(sound.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  return sound;
}

}  // namespace render
