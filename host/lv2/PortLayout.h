#pragma once

#include <cstdint>
#include <string>

namespace tarnlv2 {

// One LV2 plug-in of the bundle: a channel layout of the effect's I/O string under its own URI.
struct PluginVariant {
  const char* uri;
  const char* name;  // appended to the effect's name, e.g. "Tarn (stereo)"
  int nChannels;     // in and out alike
};

// The plug-ins of the bundle, in the order of the effect's I/O string "1-1 2-2".
constexpr int kNumVariants = 2;
inline constexpr PluginVariant kVariants[kNumVariants] = {
    {"urn:tessmoral:tarn#mono", "mono", 1},
    {"urn:tessmoral:tarn#stereo", "stereo", 2},
};

// The editor, one UI for every plug-in of the bundle.
inline constexpr const char* kUiUri = "urn:tessmoral:tarn#ui";

// The key of the 64-byte parameter state in the host's state store.
inline constexpr const char* kStateKeyUri = "urn:tessmoral:tarn#state";

// Where each port sits. Controls come first so that every variant numbers them alike: one
// input per parameter (port index = parameter index), the designated "enabled" input, the
// latency and needle outputs; then the audio inputs and outputs.
class PortLayout {
 public:
  PortLayout(int nParams, int nChannels) : mNParams(nParams), mNChannels(nChannels) {}

  int NParams() const { return mNParams; }
  int NChannels() const { return mNChannels; }

  uint32_t Enabled() const { return Index(mNParams); }
  uint32_t Latency() const { return Index(mNParams + 1); }
  uint32_t Needle() const { return Index(mNParams + 2); }
  uint32_t AudioIn(int channel) const { return Index(mNParams + 3 + channel); }
  uint32_t AudioOut(int channel) const { return Index(mNParams + 3 + mNChannels + channel); }
  uint32_t NPorts() const { return Index(mNParams + 3 + 2 * mNChannels); }

  bool IsParam(uint32_t port) const { return port < Index(mNParams); }
  bool IsAudioIn(uint32_t port) const { return port >= AudioIn(0) && port < AudioOut(0); }
  bool IsAudioOut(uint32_t port) const { return port >= AudioOut(0) && port < NPorts(); }

  // "in"/"out" for one channel, "in_l", "in_r", "out_l", "out_r" for two.
  std::string AudioSymbol(bool input, int channel) const;
  // "In"/"Out", or "In L", "In R", "Out L", "Out R".
  std::string AudioName(bool input, int channel) const;

 private:
  static uint32_t Index(int i) { return static_cast<uint32_t>(i); }

  int mNParams;
  int mNChannels;
};

// A port symbol made from a parameter's host name: lower case, every run of other characters
// turned into one underscore ("Input Trim" -> "input_trim", "VU Mode" -> "vu_mode").
std::string SymbolFromName(const char* name);

}  // namespace tarnlv2
