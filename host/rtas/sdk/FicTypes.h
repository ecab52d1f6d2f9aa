#pragma once

// The plain types of the host's plug-in SDK that the adaptor touches. Every 32-bit value of the
// SDK is declared with a fixed width: the SDK says `long`, which was 32 bits on the systems it
// was made for and is 64 bits on Linux.
#include <cstddef>
#include <cstdint>

using OSType = uint32_t;          // a four-character code, the first character in the top byte
using ComponentResult = int32_t;  // 0, or one of the SDK's error codes
constexpr ComponentResult kNoErr = 0;
// The SDK's answer to a chunk ID or chunk index a plug-in does not have.
constexpr ComponentResult kUnknownChunkErr = -7157;

struct Rect {
  int16_t top, left, bottom, right;
};
struct Point {
  int16_t v, h;
};

// A settings chunk as the host stores it: a 56-byte header, then the plug-in's data. The
// adaptor reads and writes the total size (header included), the chunk ID and the data; the
// data are reached by their offset, as they run past the declared array.
struct SFicPlugInChunk {
  int32_t fSize;
  int32_t fVersion;
  OSType fManufacturerID;
  OSType fProductID;
  OSType fTypeID;
  OSType fChunkID;
  char fName[32];
  unsigned char fData[1];
};
constexpr int32_t kChunkHeaderSize = 56;
static_assert(offsetof(SFicPlugInChunk, fSize) == 0 && offsetof(SFicPlugInChunk, fChunkID) == 20 &&
                  offsetof(SFicPlugInChunk, fData) == kChunkHeaderSize,
              "the host's chunk layout");

// The window system's drawing port, reduced to what a plug-in view reads of it: the window it
// draws into and its bounds in that window.
struct OpaqueGrafPtr {
  void* window;
  Rect bounds;
};

// The host application's version in 16 bits: major version in the high byte, minor in the low.
int32_t FicGetVersion();
