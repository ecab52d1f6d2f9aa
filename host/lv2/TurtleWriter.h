#pragma once

#include <iosfwd>
#include <string>

class IParam;
class IPlugBase;

namespace tarnlv2 {

// The files of the bundle, by their names inside it.
struct BundleFiles {
  std::string plugin;       // the plug-ins' library
  std::string ui;           // the editor's library
  std::string description;  // the Turtle file WriteDescriptions fills
};

// The bundle's manifest: each plug-in's and the editor's URI with the library that implements
// it and the file that describes it.
void WriteManifest(std::ostream& out, const BundleFiles& files);

// The description of every plug-in of the bundle, taken from the effect's own identity and
// parameter table: ports, ranges, defaults, units, scale points, features and extensions; then
// the editor's.
void WriteDescriptions(std::ostream& out, IPlugBase& plug);

// The shortest decimal text that reads back as exactly `value`, always with a fraction or
// exponent so that Turtle reads it as a number with a fraction ("-20.0", "0.1", "1e-05").
std::string TurtleNumber(double value);

// A Turtle string literal, quotes included, with quotes and backslashes escaped.
std::string TurtleString(const std::string& text);

// The unit statement for a parameter's unit label: the LV2 units vocabulary where it has the
// unit ("units:unit units:db"), a unit of the label's own otherwise, nothing for no label.
std::string UnitStatement(const char* label);

}  // namespace tarnlv2
