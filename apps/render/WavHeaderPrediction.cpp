#include "WavHeaderPrediction.h"

#include <algorithm>
#include <limits>

#include "FloatWavFormat.h"
#include "VirtualFile.h"

namespace render {

namespace {

// Keeps what is written within the header and lets the samples after it go by, so the dry run
// takes no memory however long the file.
class HeaderKeeper : public VirtualFile {
 public:
  // Everything written so far is the header, as libsndfile writes it whole on opening.
  void EndHeaderHere() {
    mEnd = Position();
    mBytes.resize(static_cast<std::size_t>(mEnd));
  }
  const std::vector<unsigned char>& Bytes() const { return mBytes; }

 private:
  bool Place(sf_count_t offset, const unsigned char* data, sf_count_t size) override {
    const sf_count_t end = std::min(offset + size, mEnd);
    if (offset >= end) return true;
    if (mBytes.size() < static_cast<std::size_t>(end)) mBytes.resize(end);
    std::copy(data, data + (end - offset), mBytes.begin() + offset);
    return true;
  }

  std::vector<unsigned char> mBytes;
  sf_count_t mEnd = std::numeric_limits<sf_count_t>::max();
};

// The RIFF size, the bytes after its first 8, is a 32-bit number, which libsndfile lets wrap
// around rather than refuse.
long long MostFrames(long long headerBytes, int nChannels) {
  const long long frameBytes = static_cast<long long>(sizeof(float)) * nChannels;
  return (0xFFFFFFFFLL + 8 - headerBytes) / frameBytes;
}

bool WriteSilence(SNDFILE* sound, int nChannels, long long nFrames, std::string* why) {
  constexpr long long kChunkFrames = 1 << 16;
  const std::vector<float> silence(static_cast<std::size_t>(kChunkFrames) * nChannels);
  for (long long done = 0; done < nFrames;) {
    const long long n = std::min(kChunkFrames, nFrames - done);
    if (sf_writef_float(sound, silence.data(), n) != n) {
      *why = sf_strerror(sound);
      return false;
    }
    done += n;
  }
  return true;
}

}  // namespace

bool PredictFloatWavHeader(int nChannels, int sampleRate, long long nFrames,
                           std::vector<unsigned char>* header, std::string* why) {
  HeaderKeeper keeper;
  SoundFilePtr sound = OpenFloatWav(keeper, nChannels, sampleRate, why);
  if (!sound) return false;
  keeper.EndHeaderHere();
  const long long most = MostFrames(keeper.Position(), nChannels);
  if (nFrames > most) {
    *why = std::to_string(nFrames) + " frames are more than a WAV file holds (" +
           std::to_string(most) + ")";
    return false;
  }
  if (!WriteSilence(sound.get(), nChannels, nFrames, why)) return false;
  // Closing is what writes the final sizes into the header.
  const int closed = sf_close(sound.release());
  if (closed != 0) {
    *why = sf_error_number(closed);
    return false;
  }
  *header = keeper.Bytes();
  return true;
}

}  // namespace render
