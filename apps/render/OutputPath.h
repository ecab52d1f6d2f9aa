#pragma once

#include <string>

namespace render {

// The output name when none is given: "<input stem>-tarn.wav" in the working folder, or
// "tarn-demo.wav" for the demo signal (empty input).
std::string DefaultOutputPath(const std::string& inputPath);

// Whether two paths name the same file, whether or not it exists yet: "./a.wav", "a.wav" and a
// symbolic link to it (even before it exists) all match, and so do two hard links to one
// existing file.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace render
