#include "ParamLookup.h"

#include "Quoted.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace render {

namespace {

std::string Lowercase(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

std::string WithoutSpaces(std::string s) {
  s.erase(std::remove(s.begin(), s.end(), ' '), s.end());
  return s;
}

std::vector<std::string> Words(const std::string& s) {
  std::istringstream in(s);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

bool IsFullName(const std::string& key, const std::string& name) {
  return key == Lowercase(name) || key == WithoutSpaces(Lowercase(name));
}

bool IsWordOfName(const std::string& key, const std::string& name) {
  for (const std::string& word : Words(Lowercase(name))) {
    if (key == word) return true;
  }
  return false;
}

std::string ListNames(const std::vector<ParamInfo>& table, const std::vector<int>& indices) {
  std::string list;
  for (int i : indices) list += (list.empty() ? "" : ", ") + Quoted(table[i].name);
  return list;
}

std::vector<int> AllIndices(const std::vector<ParamInfo>& table) {
  std::vector<int> indices;
  for (int i = 0; i < static_cast<int>(table.size()); ++i) indices.push_back(i);
  return indices;
}

std::string FormatNumber(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string ListTexts(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& t : texts) list += (list.empty() ? "" : ", ") + Quoted(t);
  return list;
}

// The parameter's own mapping decides; a text that differs only in letter case ("output" for
// "Output") is taken as the text it spells.
bool MapDisplayText(const ParamInfo& param, const std::string& text, double* value) {
  if (param.displayTexts.empty()) return false;
  int mapped = 0;
  bool found = param.mapDisplayText(text.c_str(), &mapped);
  for (std::size_t i = 0; !found && i < param.displayTexts.size(); ++i) {
    if (Lowercase(param.displayTexts[i]) == Lowercase(text)) {
      found = param.mapDisplayText(param.displayTexts[i].c_str(), &mapped);
    }
  }
  if (found) *value = mapped;
  return found;
}

bool ParseNumber(const std::string& text, double* value) {
  char* end = nullptr;
  const double v = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(v)) return false;
  *value = v;
  return true;
}

}  // namespace

int FindParam(const std::vector<ParamInfo>& table, const std::string& name, std::string* error) {
  const std::string key = Lowercase(name);
  for (bool (*matches)(const std::string&, const std::string&) : {IsFullName, IsWordOfName}) {
    std::vector<int> found;
    for (int i = 0; i < static_cast<int>(table.size()); ++i) {
      if (matches(key, table[i].name)) found.push_back(i);
    }
    if (found.size() == 1) return found[0];
    if (found.size() > 1) {
      *error = "parameter name " + Quoted(name) + " could mean " + ListNames(table, found);
      return -1;
    }
  }
  *error = "unknown parameter " + Quoted(name) + "; the parameters are " + ListNames(table, AllIndices(table));
  return -1;
}

bool ResolveParam(const std::vector<ParamInfo>& table, const ParamArgument& arg, ParamSetting* setting,
                  std::string* warning, std::string* error) {
  warning->clear();
  const int index = FindParam(table, arg.name, error);
  if (index < 0) return false;
  const ParamInfo& param = table[index];

  double value = 0.0;
  if (!MapDisplayText(param, arg.value, &value) && !ParseNumber(arg.value, &value)) {
    *error = "value " + Quoted(arg.value) + " for " + Quoted(param.name) + " is not a number";
    if (!param.displayTexts.empty()) *error += " nor one of " + ListTexts(param.displayTexts);
    return false;
  }

  if (value < param.min || value > param.max) {
    const double clamped = value < param.min ? param.min : param.max;
    *warning = Quoted(param.name) + " " + arg.value + " is outside its range " + FormatNumber(param.min) +
               " to " + FormatNumber(param.max) + "; using " + FormatNumber(clamped);
  }
  setting->index = index;
  setting->value = value;
  return true;
}

std::string DescribeParams(const std::vector<ParamInfo>& table) {
  std::string text;
  for (const ParamInfo& p : table) {
    text += "  " + Quoted(p.name) + ": " + FormatNumber(p.min) + " to " + FormatNumber(p.max);
    if (!p.displayTexts.empty()) text += " or " + ListTexts(p.displayTexts);
    text += "\n";
  }
  return text;
}

}  // namespace render
