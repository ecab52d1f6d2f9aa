#include "WavHeader.h"

#include <cstdint>
#include <cstring>

namespace render {

namespace {

constexpr std::uint32_t kFmtChunkBytes = 18;
constexpr std::uint32_t kFactChunkBytes = 4;
constexpr std::uint32_t kIeeeFloatFormat = 3;
constexpr std::uint32_t kBytesPerSample = 4;
// What the RIFF chunk holds besides the samples: "WAVE" and the other chunks' headers.
constexpr std::uint32_t kRiffBytesBesidesSamples = kFloatWavHeaderBytes - 8;

// Writes the data the header is made of, little-endian as WAV wants it, advancing as it goes.
class HeaderBytes {
 public:
  explicit HeaderBytes(unsigned char* start) : mAt(start) {}

  void Tag(const char* fourLetters) {
    std::memcpy(mAt, fourLetters, 4);
    mAt += 4;
  }
  void U16(std::uint32_t value) { Put(value, 2); }
  void U32(std::uint32_t value) { Put(value, 4); }

 private:
  void Put(std::uint32_t value, int nBytes) {
    for (int i = 0; i < nBytes; ++i) *mAt++ = static_cast<unsigned char>(value >> (8 * i));
  }

  unsigned char* mAt;
};

}  // namespace

long long MaxFloatWavFrames(int nChannels) {
  return (0xFFFFFFFFLL - kRiffBytesBesidesSamples) / (kBytesPerSample * nChannels);
}

FloatWavHeader MakeFloatWavHeader(int nChannels, int sampleRate, long long nFrames) {
  const std::uint32_t frameBytes = kBytesPerSample * nChannels;
  const std::uint32_t sampleBytes = static_cast<std::uint32_t>(nFrames) * frameBytes;
  FloatWavHeader header{};
  HeaderBytes bytes(header.data());
  bytes.Tag("RIFF");
  bytes.U32(kRiffBytesBesidesSamples + sampleBytes);
  bytes.Tag("WAVE");
  bytes.Tag("fmt ");
  bytes.U32(kFmtChunkBytes);
  bytes.U16(kIeeeFloatFormat);
  bytes.U16(nChannels);
  bytes.U32(sampleRate);
  bytes.U32(sampleRate * frameBytes);  // bytes per second
  bytes.U16(frameBytes);
  bytes.U16(8 * kBytesPerSample);
  bytes.U16(0);  // no format extension
  bytes.Tag("fact");
  bytes.U32(kFactChunkBytes);
  bytes.U32(static_cast<std::uint32_t>(nFrames));
  bytes.Tag("data");
  bytes.U32(sampleBytes);
  return header;
}

}  // namespace render
