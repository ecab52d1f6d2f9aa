#pragma once

#include "plug/WDL_TypedBuf.h"

// The host API an instance serves.
enum EAPI { kAPINone = 0, kAPIRTAS = 3, kAPIOffline = 100 };

// One channel layout the plug-in accepts: so many inputs to so many outputs.
struct ChannelIOPair {
  int mIn = 0;
  int mOut = 0;
};

// A host input channel. Its slot in the base's input-pointer array always points at the double
// buffer the effect reads for it: converted host samples when connected, silence when not.
struct InputChannel {
  bool mConnected = false;
  double** mSrc = nullptr;
  WDL_TypedBuf<double> mScratchBuf{4096};
};

// A host output channel: the effect writes into the scratch buffer behind its slot, and the base
// converts that into the host's buffer.
struct OutputChannel {
  bool mConnected = false;
  double** mDest = nullptr;
  float* mFDest = nullptr;
  WDL_TypedBuf<double> mScratchBuf{4096};
};

struct IMidiMsg {
  int mOffset = 0;
  unsigned char mStatus = 0, mData1 = 0, mData2 = 0;
};

struct ISysEx {
  int mOffset = 0;
  const unsigned char* mData = nullptr;
  int mSize = 0;
};

// Transport state as a host reports it.
struct ITimeInfo {
  double mTempo = 120.0;
  double mSamplePos = -1.0;
  double mPPQPos = -1.0;
  int mNumerator = 4;
  int mDenominator = 4;
  bool mTransportIsRunning = false;
};
