// The metadata writer: numbers that read back exactly, escaped strings, units, and a
// description that follows the parameter table it is given.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "TurtleWriter.h"
#include "dsp/Tarn.h"

namespace {

int Count(const std::string& text, const std::string& what) {
  int n = 0;
  for (std::string::size_type at = text.find(what); at != std::string::npos;
       at = text.find(what, at + 1))
    ++n;
  return n;
}

}  // namespace

TEST(TurtleNumber, ReadsAsANumberWithAFraction) {
  EXPECT_EQ(tarnlv2::TurtleNumber(-20.0), "-20.0");
  EXPECT_EQ(tarnlv2::TurtleNumber(0.0), "0.0");
  EXPECT_EQ(tarnlv2::TurtleNumber(-120.0), "-120.0");
  EXPECT_EQ(tarnlv2::TurtleNumber(0.1), "0.1");
  EXPECT_EQ(tarnlv2::TurtleNumber(1e-05), "1e-05");
}

TEST(TurtleNumber, ReadsBackExactly) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> spread(-1e6, 1e6);
  for (int i = 0; i < 2000; ++i) {
    const double value = spread(random) * std::pow(10.0, static_cast<int>(random() % 20) - 10);
    EXPECT_EQ(std::strtod(tarnlv2::TurtleNumber(value).c_str(), nullptr), value);
  }
}

TEST(TurtleString, EscapesQuotesAndBackslashes) {
  EXPECT_EQ(tarnlv2::TurtleString("RMS Difference Out-In"), "\"RMS Difference Out-In\"");
  EXPECT_EQ(tarnlv2::TurtleString("a \"b\" \\c"), "\"a \\\"b\\\" \\\\c\"");
}

TEST(UnitStatement, StandardUnitsOwnUnitsAndNone) {
  EXPECT_EQ(tarnlv2::UnitStatement("dB"), "units:unit units:db");
  EXPECT_EQ(tarnlv2::UnitStatement("Hz"), "units:unit units:hz");
  EXPECT_EQ(tarnlv2::UnitStatement(""), "");
  EXPECT_EQ(tarnlv2::UnitStatement(nullptr), "");
  EXPECT_EQ(tarnlv2::UnitStatement("ticks"),
            "units:unit [ a units:Unit ; rdfs:label \"ticks\" ; units:symbol \"ticks\" ; "
            "units:render \"%f ticks\" ]");
}

TEST(TurtleWriter, ManifestPointsEveryPluginAtTheLibrary) {
  std::ostringstream out;
  tarnlv2::WriteManifest(out, "tarn.so", "tarn.ttl");
  const std::string text = out.str();
  EXPECT_EQ(Count(text, "<urn:tessmoral:tarn#mono>"), 1);
  EXPECT_EQ(Count(text, "<urn:tessmoral:tarn#stereo>"), 1);
  EXPECT_EQ(Count(text, "lv2:binary <tarn.so>"), 2);
  EXPECT_EQ(Count(text, "rdfs:seeAlso <tarn.ttl>"), 2);
}

// The description follows whatever table it is given: change a range, a name or a label in
// the effect and the metadata changes with it.
TEST(TurtleWriter, DescriptionFollowsTheParameterTable) {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  plug->GetParam(kDrive)->InitDouble("Heat Level", 1.5, -3.25, 12.0, 0.01, "Hz", "");
  std::ostringstream out;
  tarnlv2::WriteDescriptions(out, *plug);
  const std::string text = out.str();
  EXPECT_EQ(
      Count(text,
            "lv2:symbol \"heat_level\" ;\n\t\tlv2:name \"Heat Level\" ;\n\t\tlv2:default 1.5 ;\n"
            "\t\tlv2:minimum -3.25 ;\n\t\tlv2:maximum 12.0 ;\n\t\tunits:unit units:hz"),
      2);
  EXPECT_EQ(Count(text, "\"drive\""), 0);
}

TEST(TurtleWriter, DescriptionOfTarn) {
  std::unique_ptr<IPlugAdaptor> plug(MakePlug());
  std::ostringstream out;
  tarnlv2::WriteDescriptions(out, *plug);
  const std::string text = out.str();
  EXPECT_EQ(Count(text, "doap:name \"Tarn (mono)\""), 1);
  EXPECT_EQ(Count(text, "doap:name \"Tarn (stereo)\""), 1);
  EXPECT_EQ(Count(text, "lv2:InputPort , lv2:ControlPort"), 2 * 9);
  EXPECT_EQ(Count(text, "lv2:OutputPort , lv2:ControlPort"), 2 * 2);
  EXPECT_EQ(Count(text, "lv2:InputPort , lv2:AudioPort"), 1 + 2);
  EXPECT_EQ(Count(text, "lv2:OutputPort , lv2:AudioPort"), 1 + 2);
  EXPECT_EQ(Count(text, "units:unit units:db"), 2 * 3);
  EXPECT_EQ(Count(text, "lv2:designation lv2:enabled"), 2);
  EXPECT_EQ(Count(text, "lv2:designation lv2:latency"), 2);
  EXPECT_EQ(Count(text, "lv2:maximum 6 ;"), 2);
  EXPECT_EQ(Count(text, "lv2:portProperty lv2:integer , lv2:enumeration"), 2);
  EXPECT_EQ(Count(text, "lv2:portProperty lv2:toggled\n"), 2);
  EXPECT_EQ(Count(text, "lv2:scalePoint [ rdfs:label \"RMS Difference Out-In\" ; rdf:value 1.0 ]"),
            2);
  EXPECT_EQ(Count(text, "lv2:optionalFeature lv2:hardRTCapable"), 2);
  EXPECT_EQ(Count(text, "lv2:extensionData state:interface"), 2);
  // A zero or odd minor version marks a development release, which hosts warn about.
  EXPECT_EQ(Count(text, "lv2:minorVersion 2 ;\n\tlv2:microVersion 0 ;"), 2);
  EXPECT_EQ(Count(text, "doap:license <https://spdx.org/licenses/ISC> ;"), 2);
}
