#include "PortLayout.h"

#include <cctype>

namespace tarnlv2 {

std::string PortLayout::AudioSymbol(bool input, int channel) const {
  std::string symbol = input ? "in" : "out";
  if (mNChannels == 2) symbol += channel == 0 ? "_l" : "_r";
  return symbol;
}

std::string PortLayout::AudioName(bool input, int channel) const {
  std::string name = input ? "In" : "Out";
  if (mNChannels == 2) name += channel == 0 ? " L" : " R";
  return name;
}

std::string SymbolFromName(const char* name) {
  std::string symbol;
  bool pendingSeparator = false;
  for (const char* c = name; *c; ++c) {
    const unsigned char ch = static_cast<unsigned char>(*c);
    if (std::isalnum(ch)) {
      if (pendingSeparator && !symbol.empty()) symbol += '_';
      pendingSeparator = false;
      symbol += static_cast<char>(std::tolower(ch));
    } else {
      pendingSeparator = true;
    }
  }
  // An LV2 symbol must not start with a digit.
  if (symbol.empty() || std::isdigit(static_cast<unsigned char>(symbol[0]))) symbol.insert(0, "p");
  return symbol;
}

}  // namespace tarnlv2
