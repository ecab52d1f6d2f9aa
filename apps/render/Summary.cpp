#include "Summary.h"

#include <cstdarg>
#include <cstdio>

namespace render {

namespace {

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::string Format(const char* format, ...) {
  char text[256];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  return text;
}

const char* ChannelName(int channel, int nChannels) {
  if (nChannels == 1) return "mono";
  return channel == 0 ? "left" : "right";
}

std::string LevelLines(const char* label, const LevelStats& stats) {
  std::string lines;
  for (int c = 0; c < stats.NChannels(); ++c) {
    lines += Format("  %-7s %-6s %10.2f %10.2f\n", label, ChannelName(c, stats.NChannels()),
                    stats.PeakDbfs(c), stats.RmsDbfs(c));
  }
  return lines;
}

std::string NonFiniteWarning(const NonFiniteInput& nonFinite) {
  if (nonFinite.Count() == 0) return std::string();
  if (nonFinite.Count() == 1) {
    return Format(
        "warning: 1 input sample was not a finite number (NaN or infinity) and was replaced with "
        "0.0, at frame %lld\n",
        nonFinite.FirstFrame());
  }
  return Format(
      "warning: %lld input samples were not finite numbers (NaN or infinity) and were replaced "
      "with 0.0; the first at frame %lld\n",
      nonFinite.Count(), nonFinite.FirstFrame());
}

}  // namespace

std::string FormatSummary(const RenderReport& report, const std::string& inputDescription,
                          const std::string& outputPath) {
  const double seconds = static_cast<double>(report.nFrames) / report.fileRate;
  std::string text =
      "input:  " + inputDescription +
      Format(" (%s, %d Hz)\n", report.nChannels == 1 ? "mono" : "stereo", report.fileRate);
  text += "output: " + outputPath + "\n";
  if (report.effectRate != report.fileRate)
    text += Format("effect ran at %g Hz\n", report.effectRate);
  text += Format("  %-14s %10s %10s\n", "", "peak dBFS", "RMS dBFS");
  text += LevelLines("input", report.input);
  text += LevelLines("output", report.output);
  text += Format("needle: %.6f\n", report.needle);
  text += Format("%lld frames, %.3f s of audio processed in %.3f s", report.nFrames, seconds,
                 report.processSeconds);
  if (report.processSeconds > 0.0)
    text += Format(", %.1f times real time", seconds / report.processSeconds);
  return text + "\n" + NonFiniteWarning(report.nonFinite);
}

}  // namespace render
