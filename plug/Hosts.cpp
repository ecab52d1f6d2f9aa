#include "plug/Hosts.h"

#include <cctype>
#include <cstring>

namespace {

struct HostKeyword {
  const char* keyword;
  int code;
};

// Searched in this order; the first keyword contained in the name decides.
constexpr HostKeyword kHostKeywords[] = {
    {"cubase", kHostCubase},
    {"reaper", kHostReaper},
    {"nuendo", kHostNuendo},
    {"cakewalk", kHostCakewalk},
    {"samplitude", kHostSamplitude},
    {"fruity", kHostFruity},
    {"live", kHostLive},
    {"melodyne", kHostMelodyne},
    {"vstmanlib", kHostVstManLib},
    {"aulab", kHostAULab},
    {"garageband", kHostGarageBand},
    {"forte", kHostForte},
    {"chainer", kHostChainer},
    {"audition", kHostAudition},
    {"orion", kHostOrion},
    {"sawstudio", kHostSawStudio},
    {"logic", kHostLogic},
    {"digital", kHostDigital},
    {"audiomulch", kHostAudioMulch},
    {"presonus", kHostPresonus},
    {"vst3plugintesthost", kHostVst3PluginTestHost},
    {"protools", kHostProTools},
    {"ardour", kHostArdour},
    {"standalone", kHostStandalone},
};

}  // namespace

void ToLower(char* dest, const char* src) {
  while (*src) *dest++ = static_cast<char>(std::tolower(static_cast<unsigned char>(*src++)));
  *dest = '\0';
}

int LookUpHost(const char* name) {
  char lowered[kMaxHostNameLength + 1] = "";
  if (name) {
    std::strncpy(lowered, name, kMaxHostNameLength);
    lowered[kMaxHostNameLength] = '\0';
  }
  ToLower(lowered, lowered);
  for (const HostKeyword& host : kHostKeywords) {
    if (std::strstr(lowered, host.keyword)) return host.code;
  }
  return kHostUnknown;
}
