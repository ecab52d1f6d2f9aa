#pragma once

#include <cstring>

#include "plug/ByteChunk.h"

// One preset: until something fills it, it is uninitialised and named "empty".
struct PresetSlot {
  PresetSlot() { std::strcpy(mName, "empty"); }

  bool mInitialized = false;
  char mName[256];
  ByteChunk mChunk;
};
