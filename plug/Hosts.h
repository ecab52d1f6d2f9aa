#pragma once

// Host applications the plug-in can tell apart by name, so that host-specific behaviour can be
// keyed on a small integer. The codes are fixed: they are not in the order of the name table.
enum EHost {
  kHostUninit = -1,
  kHostUnknown = 0,
  kHostReaper = 1,
  kHostProTools = 2,
  kHostCubase = 3,
  kHostNuendo = 4,
  kHostCakewalk = 5,
  kHostFruity = 7,
  kHostSamplitude = 8,
  kHostLive = 9,
  kHostMelodyne = 12,
  kHostVstManLib = 13,
  kHostAULab = 14,
  kHostForte = 15,
  kHostChainer = 16,
  kHostAudition = 17,
  kHostOrion = 18,
  kHostSawStudio = 20,
  kHostLogic = 21,
  kHostGarageBand = 22,
  kHostDigital = 23,
  kHostStandalone = 24,
  kHostAudioMulch = 25,
  kHostPresonus = 26,
  kHostVst3PluginTestHost = 27,
  kHostArdour = 28,
};

// The host code for a host's name: the first keyword of a fixed list found anywhere in the
// lower-cased name (so "live" in a name wins over every later keyword), else kHostUnknown.
// Names longer than kMaxHostNameLength characters are judged by their beginning.
constexpr int kMaxHostNameLength = 255;
int LookUpHost(const char* name);

// Copies src to dest with each character lower-cased; dest must hold strlen(src) + 1 chars.
void ToLower(char* dest, const char* src);
