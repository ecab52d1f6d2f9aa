#pragma once

#include <cstdint>

#include "plug/WDL_TypedBuf.h"

// The delay line that keeps a bypassed plug-in in time with its reported latency.
//
// Its read slot is computed as (write - length) in unsigned 32-bit arithmetic, modulo length. The
// wrap of 2^32 makes the slot run ahead of the write slot by 2^32 mod length, so the delay a
// signal actually sees is not the latency (with length 6 an impulse comes out 2 frames later).
// Hosts have been compensating for exactly this timing; it must stay as it is. Likewise only the
// first length x inputs *bytes* of the line are cleared when it is (re)sized.
class PassThroughDelay {
public:
  PassThroughDelay(int nIn, int nOut, int length);

  void SetLength(int length);
  int GetLength() const { return static_cast<int>(mLength); }

  // Delays the channels that are both inputs and outputs; other outputs are left alone.
  void Process(double** inputs, double** outputs, int nFrames);

private:
  WDL_TypedBuf<double> mBuf{4096};  // channel-major: channel c at c x length ... c x length + length - 1
  uint32_t mWritePos = 0;
  int mNIn;
  int mNOut;
  uint32_t mLength = 0;
};
