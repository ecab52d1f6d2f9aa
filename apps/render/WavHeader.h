#pragma once

#include <array>

namespace render {

// A WAV file of 32-bit float samples starts with this many bytes: the RIFF header, a "fmt "
// chunk in the 18-byte form that formats other than integer PCM call for, a "fact" chunk with
// the frame count, and the header of the "data" chunk.
constexpr int kFloatWavHeaderBytes = 58;

using FloatWavHeader = std::array<unsigned char, kFloatWavHeaderBytes>;

// The most frames of nChannels a WAV file can hold: its sizes are 32-bit numbers.
long long MaxFloatWavFrames(int nChannels);

// The header of a file of nFrames (at most MaxFloatWavFrames). Every size in it is known before
// the first sample, so the file can be written front to back, which is all a FIFO or a
// terminal can take.
FloatWavHeader MakeFloatWavHeader(int nChannels, int sampleRate, long long nFrames);

}  // namespace render
