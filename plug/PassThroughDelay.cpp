#include "plug/PassThroughDelay.h"

#include <algorithm>
#include <climits>
#include <cstring>

PassThroughDelay::PassThroughDelay(int nIn, int nOut, int length) : mNIn(nIn), mNOut(nOut) {
  SetLength(length);
}

void PassThroughDelay::SetLength(int length) {
  length = std::max(length, 0);
  long long samples = static_cast<long long>(length) * mNIn;
  double* line = samples <= INT_MAX ? mBuf.Resize(static_cast<int>(samples)) : nullptr;
  // A line that could not be made as long as asked for delays nothing rather than overrun.
  mLength = mBuf.GetSize() == samples ? static_cast<uint32_t>(length) : 0;
  mWritePos = 0;
  if (line && mLength) std::memset(line, 0, static_cast<size_t>(samples));  // bytes, see above
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
