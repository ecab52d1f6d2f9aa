#include "TurtleWriter.h"

#include <charconv>
#include <cstring>
#include <ostream>

#include "PortLayout.h"
#include "plug/IParam.h"
#include "plug/IPlugBase.h"

namespace tarnlv2 {

namespace {

const char* const kHostBypassComment =
    "The host's bypass: the input comes out delayed by the plug-in's latency, in step with the "
    "processed sound, and each switch crossfades in 5 ms. Reach for it to compare with and "
    "without Tarn. The \"Bypass\" control is the effect's own switch to its dry path, part of "
    "its sound, with its own fade.";

const char* const kPrefixes =
    "@prefix atom: <http://lv2plug.in/ns/ext/atom#> .\n"
    "@prefix bufsz: <http://lv2plug.in/ns/ext/buf-size#> .\n"
    "@prefix doap: <http://usefulinc.com/ns/doap#> .\n"
    "@prefix foaf: <http://xmlns.com/foaf/0.1/> .\n"
    "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
    "@prefix opts: <http://lv2plug.in/ns/ext/options#> .\n"
    "@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .\n"
    "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
    "@prefix state: <http://lv2plug.in/ns/ext/state#> .\n"
    "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
    "@prefix units: <http://lv2plug.in/ns/extensions/units#> .\n"
    "@prefix urid: <http://lv2plug.in/ns/ext/urid#> .\n";

// The plug-ins' LV2 version, numbered apart from the effect's own. Hosts take a zero or odd
// minor version for a development release, and compare the pair to pick the newer of two
// installed copies: each release raises the minor version by 2, each fix the micro version.
constexpr int kMinorVersion = 2;
constexpr int kMicroVersion = 0;

const char* const kLicense = "https://spdx.org/licenses/ISC";

struct StandardUnit {
  const char* label;
  const char* unit;
};

const StandardUnit kStandardUnits[] = {
    {"dB", "units:db"}, {"Hz", "units:hz"}, {"ms", "units:ms"}, {"s", "units:s"}, {"%", "units:pc"},
};

std::string Uri(const char* uri) { return std::string("<") + uri + ">"; }

// Opens one port's blank node; the caller adds its own statements and closes it.
void BeginPort(std::ostream& out, const char* direction, const char* type, uint32_t index,
               const std::string& symbol, const std::string& name) {
  out << "\t\t"
      << "a lv2:" << direction << " , lv2:" << type << " ;\n"
      << "\t\tlv2:index " << index << " ;\n"
      << "\t\tlv2:symbol " << TurtleString(symbol) << " ;\n"
      << "\t\tlv2:name " << TurtleString(name);
}

void WriteRange(std::ostream& out, double defaultValue, double minValue, double maxValue) {
  out << " ;\n\t\tlv2:default " << TurtleNumber(defaultValue) << " ;\n"
      << "\t\tlv2:minimum " << TurtleNumber(minValue) << " ;\n"
      << "\t\tlv2:maximum " << TurtleNumber(maxValue);
}

const char* PortProperties(const IParam& param) {
  switch (param.Type()) {
    case IParam::kTypeBool:
      return "lv2:toggled";
    case IParam::kTypeInt:
      return "lv2:integer";
    case IParam::kTypeEnum:
      return "lv2:integer , lv2:enumeration";
    default:
      return nullptr;
  }
}

void WriteScalePoints(std::ostream& out, const IParam& param) {
  if (param.Type() != IParam::kTypeEnum) return;
  for (int i = 0; i < param.GetNDisplayTexts(); ++i) {
    int value = 0;
    const char* text = param.GetDisplayTextAtIdx(i, &value);
    out << " ;\n\t\tlv2:scalePoint [ rdfs:label " << TurtleString(text) << " ; rdf:value "
        << TurtleNumber(value) << " ]";
  }
}

void WriteParamPort(std::ostream& out, const IParam& param, uint32_t index) {
  BeginPort(out, "InputPort", "ControlPort", index, SymbolFromName(param.GetNameForHost()),
            param.GetNameForHost());
  WriteRange(out, param.GetDefault(), param.GetMin(), param.GetMax());
  if (const char* properties = PortProperties(param))
    out << " ;\n\t\tlv2:portProperty " << properties;
  const std::string unit = UnitStatement(param.GetLabelForHost());
  if (!unit.empty()) out << " ;\n\t\t" << unit;
  WriteScalePoints(out, param);
}

// The host's bypass: 1 runs the effect, 0 sends the input out aligned with it. Its comment
// tells users which bypass to reach for.
void WriteEnabledPort(std::ostream& out, uint32_t index) {
  BeginPort(out, "InputPort", "ControlPort", index, "enabled", "Enabled");
  WriteRange(out, 1.0, 0.0, 1.0);
  out << " ;\n\t\tlv2:designation lv2:enabled ;\n\t\tlv2:portProperty lv2:toggled , lv2:integer"
      << " ;\n\t\trdfs:comment " << TurtleString(kHostBypassComment);
}

void WriteLatencyPort(std::ostream& out, uint32_t index, int latency) {
  BeginPort(out, "OutputPort", "ControlPort", index, "latency", "Latency");
  out << " ;\n\t\tlv2:minimum 0 ;\n\t\tlv2:maximum " << latency << " ;\n"
      << "\t\tlv2:designation lv2:latency ;\n"
      << "\t\tlv2:portProperty lv2:reportsLatency , lv2:integer ;\n"
      << "\t\tunits:unit units:frame";
}

// The meter's needle after each run, for hosts that show output controls.
void WriteNeedlePort(std::ostream& out, uint32_t index) {
  BeginPort(out, "OutputPort", "ControlPort", index, "needle", "Meter Needle");
  out << " ;\n\t\tlv2:minimum 0.0 ;\n\t\tlv2:maximum 1.0";
}

// Each audio port follows the port before it, whose blank node is still open.
void WriteAudioPorts(std::ostream& out, const PortLayout& layout, bool input) {
  for (int c = 0; c < layout.NChannels(); ++c) {
    out << "\n\t] , [\n";
    BeginPort(out, input ? "InputPort" : "OutputPort", "AudioPort",
              input ? layout.AudioIn(c) : layout.AudioOut(c), layout.AudioSymbol(input, c),
              layout.AudioName(input, c));
  }
}

void WritePorts(std::ostream& out, IPlugBase& plug, const PortLayout& layout) {
  out << "\tlv2:port [\n";
  for (int i = 0; i < layout.NParams(); ++i) {
    WriteParamPort(out, *plug.GetParam(i), static_cast<uint32_t>(i));
    out << "\n\t] , [\n";
  }
  WriteEnabledPort(out, layout.Enabled());
  out << "\n\t] , [\n";
  WriteLatencyPort(out, layout.Latency(), plug.GetLatency());
  out << "\n\t] , [\n";
  WriteNeedlePort(out, layout.Needle());
  WriteAudioPorts(out, layout, true);
  WriteAudioPorts(out, layout, false);
  out << "\n\t] .\n";
}

void WritePlugin(std::ostream& out, IPlugBase& plug, const PluginVariant& variant) {
  out << "\n"
      << Uri(variant.uri) << "\n"
      << "\ta lv2:Plugin , lv2:DistortionPlugin , doap:Project ;\n"
      << "\tdoap:name "
      << TurtleString(std::string(plug.GetEffectName()) + " (" + variant.name + ")") << " ;\n"
      << "\tdoap:maintainer [ foaf:name " << TurtleString(plug.GetMfrName()) << " ] ;\n"
      << "\tdoap:license " << Uri(kLicense) << " ;\n"
      << "\tlv2:minorVersion " << kMinorVersion << " ;\n"
      << "\tlv2:microVersion " << kMicroVersion << " ;\n"
      << "\tlv2:optionalFeature lv2:hardRTCapable , urid:map , opts:options , "
         "bufsz:boundedBlockLength ;\n"
      << "\topts:supportedOption bufsz:maxBlockLength ;\n"
      << "\tlv2:extensionData state:interface ;\n"
      << "\tui:ui " << Uri(kUiUri) << " ;\n";
  WritePorts(out, plug, PortLayout(plug.NParams(), variant.nChannels));
}

// The editor needs the host's idle calls for its frames and its events. It embeds itself in the
// host's window when given one, asks for its fixed size, reports drags as touches, and shows
// the needle the plug-in reports.
void WriteUi(std::ostream& out, const PortLayout& layout) {
  out << "\n"
      << Uri(kUiUri) << "\n"
      << "\ta ui:X11UI ;\n"
      << "\tlv2:requiredFeature ui:idleInterface ;\n"
      << "\tlv2:optionalFeature ui:parent , ui:resize , ui:touch ;\n"
      << "\tlv2:extensionData ui:idleInterface ;\n"
      << "\tui:portNotification ";
  for (int i = 0; i < kNumVariants; ++i) {
    out << (i ? " , " : "") << "[\n\t\tui:plugin " << Uri(kVariants[i].uri) << " ;\n"
        << "\t\tui:portIndex " << layout.Needle() << " ;\n"
        << "\t\tui:protocol ui:floatProtocol\n\t]";
  }
  out << " .\n";
}

}  // namespace

void WriteManifest(std::ostream& out, const BundleFiles& files) {
  out << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
      << "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
      << "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n";
  for (const PluginVariant& variant : kVariants) {
    out << "\n"
        << Uri(variant.uri) << "\n"
        << "\ta lv2:Plugin ;\n"
        << "\tlv2:binary " << Uri(files.plugin.c_str()) << " ;\n"
        << "\trdfs:seeAlso " << Uri(files.description.c_str()) << " .\n";
  }
  out << "\n"
      << Uri(kUiUri) << "\n"
      << "\ta ui:X11UI ;\n"
      << "\tui:binary " << Uri(files.ui.c_str()) << " ;\n"
      << "\trdfs:seeAlso " << Uri(files.description.c_str()) << " .\n";
}

void WriteDescriptions(std::ostream& out, IPlugBase& plug) {
  out << kPrefixes;
  for (const PluginVariant& variant : kVariants) WritePlugin(out, plug, variant);
  WriteUi(out, PortLayout(plug.NParams(), 1));
}

std::string TurtleNumber(double value) {
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
  std::string number(text, end.ptr);
  if (number.find_first_of(".e") == std::string::npos) number += ".0";
  return number;
}

std::string TurtleString(const std::string& text) {
  std::string literal = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') literal += '\\';
    literal += c;
  }
  return literal + "\"";
}

std::string UnitStatement(const char* label) {
  if (!label || !*label) return "";
  for (const StandardUnit& standard : kStandardUnits) {
    if (std::strcmp(label, standard.label) == 0) return std::string("units:unit ") + standard.unit;
  }
  const std::string text = TurtleString(label);
  return "units:unit [ a units:Unit ; rdfs:label " + text + " ; units:symbol " + text +
         " ; units:render " + TurtleString(std::string("%f ") + label) + " ]";
}

}  // namespace tarnlv2
