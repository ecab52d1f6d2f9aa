#pragma once

#include <cstdio>

// Versions are packed as 0xVVVVRRMM: major from bit 16 up, minor in bits 8-15, patch in 0-7.
struct IVersion {
  int major, minor, patch;
};

inline IVersion UnpackVersion(int version) {
  return {version >> 16, (version >> 8) & 255, version & 255};
}

// The same version as a decimal number, major x 10000 + minor x 100 + patch.
inline int DecimalVersion(int version) {
  IVersion v = UnpackVersion(version);
  return v.major * 10000 + v.minor * 100 + v.patch;
}

// "v1.0.0"; `text` must hold at least 40 characters.
inline void GetVersionText(int version, char* text) {
  IVersion v = UnpackVersion(version);
  std::sprintf(text, "v%d.%d.%d", v.major, v.minor, v.patch);
}
