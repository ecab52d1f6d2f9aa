#pragma once

#include <string>
#include <vector>

namespace render {

// The header libsndfile gives a WAV file of nFrames of 32-bit float samples once it is closed,
// with the final sizes in it. libsndfile writes a header with sizes yet unknown when opening and
// seeks back to write the final one when closing, which a FIFO or a terminal cannot take; knowing
// the final header first lets the file go out front to back (HeaderFirstStream.h).
//
// Learnt from libsndfile itself, in a dry run of nFrames of silence whose samples are counted
// and dropped. Fails, saying why, when the file would be too long for the 32-bit sizes of WAV.
bool PredictFloatWavHeader(int nChannels, int sampleRate, long long nFrames,
                           std::vector<unsigned char>* header, std::string* why);

}  // namespace render
