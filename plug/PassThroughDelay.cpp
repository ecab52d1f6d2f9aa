#include "plug/PassThroughDelay.h"

#include <algorithm>
#include <cstring>

PassThroughDelay::PassThroughDelay(int nIn, int nOut, int length) : mNIn(nIn), mNOut(nOut) {
  SetLength(length);
}

void PassThroughDelay::SetLength(int length) {
  length = std::max(length, 0);
  mLength = static_cast<uint32_t>(length);
  double* samples = mBuf.Resize(length * mNIn);
  mWritePos = 0;
  if (samples) std::memset(samples, 0, static_cast<size_t>(length * mNIn));  // bytes, see above
}

void PassThroughDelay::Process(double** inputs, double** outputs, int nFrames) {
  if (mLength == 0) return;
  double* line = mBuf.Get();
  int nChannels = std::min(mNIn, mNOut);
  for (int s = 0; s < nFrames; ++s) {
    uint32_t readPos = (mWritePos - mLength) % mLength;
    for (int c = 0; c < nChannels; ++c) {
      double* channelLine = line + c * mLength;
      outputs[c][s] = channelLine[readPos];
      channelLine[mWritePos] = inputs[c][s];
    }
    mWritePos = (mWritePos + 1) % mLength;
  }
}
