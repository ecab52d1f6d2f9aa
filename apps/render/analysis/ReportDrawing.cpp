#include "analysis/ReportDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "analysis/FrequencyResponse.h"
#include "analysis/PlotArea.h"
#include "analysis/TestSignals.h"

namespace render {

namespace {

constexpr double kHeaderHeight = 92.0;
constexpr double kRowHeight = 450.0;
constexpr double kMargin = 18.0;
constexpr double kBodySize = 14.0;

// One colour per tone level, quiet to loud, and per response curve; told apart without red-green.
constexpr Colour kLevelColours[] = {{0.0, 0.45, 0.70}, {0.90, 0.62, 0.0}, {0.80, 0.25, 0.0}};
constexpr Colour kBlack = {0.1, 0.1, 0.1};
constexpr Colour kGrey = {0.55, 0.55, 0.55};
constexpr Colour kResponseColours[] = {
    kBlack, {0.0, 0.45, 0.70}, {0.0, 0.62, 0.45}, {0.80, 0.47, 0.65}};

std::string Format(const char* format, double a, double b = 0.0, double c = 0.0) {
  char text[160];
  std::snprintf(text, sizeof text, format, a, b, c);
  return text;
}

Rect Cell(int row, int column, int span = 1) {
  const double width = (kReportWidth - 4 * kMargin) / 3;
  return {kMargin + column * (width + kMargin), kHeaderHeight + row * kRowHeight,
          span * width + (span - 1) * kMargin, kRowHeight - kMargin};
}

std::string LevelName(double db) { return Format("%.0f dBFS in", db); }

Axis LevelAxis(const std::string& label) {
  return {-60.0, 0.0, false, label, EvenTicks(-60.0, 0.0, 10.0), WholeText};
}

Axis FrequencyAxis(double topHz) {
  return {20.0, topHz, true, "frequency (Hz)", FrequencyTicks(20.0, topHz), HzText};
}

// A range of whole steps that holds every value given, at least `least` wide.
Axis FittedAxis(const std::vector<const std::vector<double>*>& values, double step, double least,
                const std::string& label, double floorDb = -200.0) {
  double lo = 1e300, hi = -1e300;
  for (const auto* series : values)
    for (double v : *series)
      if (std::isfinite(v) && v > floorDb) lo = std::min(lo, v), hi = std::max(hi, v);
  if (lo > hi) lo = hi = 0.0;
  lo = std::floor(lo / step) * step, hi = std::ceil(hi / step) * step;
  if (hi - lo < least) lo -= std::floor((least - (hi - lo)) / 2 / step) * step, hi = lo + least;
  return {lo, hi, false, label, EvenTicks(lo, hi, step), WholeText};
}

void DrawHeader(cairo_t* cr, const AnalysisResults& results) {
  DrawText(cr, kMargin, 38, "Tarn: what the effect does at these settings", 26, Align::kLeft, true);
  DrawText(cr, kMargin, 64, results.settings, kBodySize);
  DrawText(cr, kMargin, 84,
           Format("Measured with test signals at %.0f Hz, each through a freshly started effect.",
                  results.rate),
           kBodySize, Align::kLeft, false, kGrey);
}

void DrawTransfer(cairo_t* cr, const AnalysisResults& results) {
  PlotArea plot(cr, Cell(0, 0), "Level in, level out (200 Hz sine, slowly rising)",
                LevelAxis("input level (dBFS)"), LevelAxis("output level (dBFS)"));
  const Series unchanged{"unchanged (out = in)", kGrey, {-60.0, 0.0}, {-60.0, 0.0}, 1.5, true};
  const Series measured{"Tarn", kBlack, results.transfer.inDb, results.transfer.outDb, 2.5};
  plot.Line(unchanged);
  plot.Line(measured);
  plot.Legend({measured, unchanged}, PlotArea::kTopLeft);
}

void DrawWaveforms(cairo_t* cr, const AnalysisResults& results) {
  PlotArea plot(cr, Cell(0, 1), "Waveform of one period (200 Hz sine)",
                {0.0, 360.0, false, "phase (degrees)", EvenTicks(0, 360, 90), PlainText},
                {-1.1, 1.1, false, "output, scaled to its peak", EvenTicks(-1, 1, 0.5), PlainText});
  Series sine{"pure sine", kGrey, {}, {}, 1.5, true};
  for (int degree = 0; degree <= 360; degree += 3)
    sine.x.push_back(degree), sine.y.push_back(std::sin(degree * M_PI / 180.0));
  plot.Line(sine);
  std::vector<Series> legend{sine};
  for (std::size_t i = 0; i < results.waveforms.size(); ++i) {
    const Waveform& wave = results.waveforms[i];
    const Series series{Format("%.0f dBFS in, peak out %.1f dBFS", wave.inDb, wave.outPeakDb),
                        kLevelColours[i], wave.phaseDegrees, wave.shape, 2.0};
    plot.Line(series);
    legend.push_back(series);
  }
  plot.Legend(legend, PlotArea::kBottomLeft);
}

std::string Ordinal(int n) { return n == 2 ? "2nd" : n == 3 ? "3rd" : std::to_string(n) + "th"; }

void DrawHarmonics(cairo_t* cr, const AnalysisResults& results) {
  constexpr int kShown = 9;  // the 2nd to the 10th
  PlotArea plot(
      cr, Cell(0, 2), "Harmonics added to a 1 kHz sine",
      {1.5, kShown + 1.5, false, "harmonic (the 2nd is at 2 kHz, the 3rd at 3 kHz, ...)",
       EvenTicks(2, kShown + 1, 1), [](double h) { return Ordinal(static_cast<int>(h)); }},
      {-120.0, 0.0, false, "level below the 1 kHz tone (dB)", EvenTicks(-120, 0, 20), WholeText});
  std::vector<Series> legend;
  const double barWidth = 0.8 / std::max<std::size_t>(1, results.harmonics.size());
  for (std::size_t i = 0; i < results.harmonics.size(); ++i) {
    const HarmonicSpectrum& h = results.harmonics[i];
    for (int k = 0; k < kShown && k < static_cast<int>(h.harmonicDb.size()); ++k)
      plot.Bar(2 + k - 0.4 + barWidth * (i + 0.5), barWidth * 0.9, h.harmonicDb[k],
               kLevelColours[i]);
    legend.push_back({LevelName(h.inDb) + Format(": THD %.3g %%", 100.0 * h.thd),
                      kLevelColours[i],
                      {},
                      {},
                      6.0});
  }
  plot.Legend(legend, PlotArea::kTopRight);
}

void DrawResponses(cairo_t* cr, const AnalysisResults& results) {
  std::vector<const std::vector<double>*> values;
  for (const ResponseCurve& curve : results.responses) values.push_back(&curve.gain.db);
  const double top = TopHz(results.rate);
  PlotArea plot(cr, Cell(1, 0), "Frequency response (quiet noise, -40 dBFS)", FrequencyAxis(top),
                FittedAxis(values, 3.0, 12.0, "gain (dB)"));
  std::vector<Series> legend;
  for (std::size_t i = 0; i < results.responses.size(); ++i) {
    const ResponseCurve& curve = results.responses[i];
    const Series series{curve.label,   kResponseColours[i % 4], curve.gain.hz,
                        curve.gain.db, i == 0 ? 3.0 : 1.8,      i > 0};
    plot.Line(series);
    legend.push_back(series);
  }
  plot.Legend(legend, PlotArea::kBottomLeft);
}

void DrawNoise(cairo_t* cr, const AnalysisResults& results) {
  const double top = TopHz(results.rate);
  PlotArea plot(cr, Cell(1, 1), Format("Noise floor with silence in: %.1f dBFS", results.noiseDb),
                FrequencyAxis(top),
                FittedAxis({&results.noise.db}, 10.0, 40.0, "level in 1/3-octave bands (dBFS)"));
  plot.Line({"noise", kBlack, results.noise.hz, results.noise.db, 2.5});
}

// The numbers beside the plots: distortion by level, and the noise.
void DrawNumbers(cairo_t* cr, const AnalysisResults& results) {
  const Rect cell = Cell(1, 2);
  double y = cell.y + 20;
  DrawText(cr, cell.x + 8, y, "Distortion of a 1 kHz sine", 16, Align::kLeft, true);
  y += 30;
  const double columns[] = {cell.x + 8, cell.x + 130, cell.x + 320};
  DrawText(cr, columns[0], y, "input level", kBodySize, Align::kLeft, true);
  DrawText(cr, columns[1], y, "THD", kBodySize, Align::kLeft, true);
  DrawText(cr, columns[2], y, "even : odd harmonics", kBodySize, Align::kLeft, true);
  for (std::size_t i = 0; i < results.harmonics.size(); ++i) {
    const HarmonicSpectrum& h = results.harmonics[i];
    y += 24;
    DrawText(cr, columns[0], y, Format("%.0f dBFS", h.inDb), kBodySize, Align::kLeft, false,
             kLevelColours[i]);
    DrawText(cr, columns[1], y,
             Format("%.3g %% (%.1f dB)", 100.0 * h.thd, std::max(GainToDb(h.thd), -200.0)),
             kBodySize);
    DrawText(cr, columns[2], y,
             Format("%.0f %% : %.0f %%", 100.0 * h.evenShare, 100.0 * (1.0 - h.evenShare)),
             kBodySize);
  }
  const char* notes[] = {
      "THD: all harmonics together, against the tone itself.",
      "Even harmonics (2nd, 4th, ...) sound warm and open;",
      "odd ones (3rd, 5th, ...) harder and more edgy.",
      "The shares are of the harmonics' power.",
  };
  y += 34;
  for (const char* note : notes)
    DrawText(cr, columns[0], y, note, 13, Align::kLeft, false, kGrey), y += 20;
  y += 20;
  DrawText(cr, cell.x + 8, y, "Noise floor", 16, Align::kLeft, true);
  DrawText(cr, columns[0], y + 26,
           Format("%.1f dBFS RMS from 20 Hz to %.3g kHz, silence in", results.noiseDb,
                  TopHz(results.rate) / 1000.0),
           kBodySize);
}

void DrawFileBeforeAfter(cairo_t* cr, const AnalysisResults& results) {
  const FileBeforeAfter& file = results.file;
  const double top = TopHz(file.report.fileRate);
  PlotArea plot(cr, Cell(2, 0, 2), "Spectrum of " + file.name + ", before and after",
                FrequencyAxis(top),
                FittedAxis({&file.before.db, &file.after.db}, 10.0, 40.0,
                           "level in 1/6-octave bands (dBFS)", -160.0));
  const Series before{"before (the file)", kGrey, file.before.hz, file.before.db, 2.0};
  const Series after{"after Tarn", kLevelColours[2], file.after.hz, file.after.db, 2.0};
  plot.Line(before);
  plot.Line(after);
  plot.Legend({before, after}, PlotArea::kTopRight);
}

const char* ChannelName(int channel, int nChannels) {
  return nChannels == 1 ? "mono" : channel == 0 ? "left" : "right";
}

void DrawFileLevels(cairo_t* cr, const AnalysisResults& results) {
  const RenderReport& report = results.file.report;
  const Rect cell = Cell(2, 2);
  double y = cell.y + 20;
  DrawText(cr, cell.x + 8, y, "Levels of the file (dBFS)", 16, Align::kLeft, true);
  y += 30;
  const double columns[] = {cell.x + 8, cell.x + 110, cell.x + 200, cell.x + 300, cell.x + 390};
  const char* heads[] = {"", "peak in", "RMS in", "peak out", "RMS out"};
  for (int c = 0; c < 5; ++c) DrawText(cr, columns[c], y, heads[c], kBodySize, Align::kLeft, true);
  for (int channel = 0; channel < report.nChannels; ++channel) {
    y += 24;
    DrawText(cr, columns[0], y, ChannelName(channel, report.nChannels), kBodySize);
    const double values[] = {report.input.PeakDbfs(channel), report.input.RmsDbfs(channel),
                             report.output.PeakDbfs(channel), report.output.RmsDbfs(channel)};
    for (int c = 0; c < 4; ++c)
      DrawText(cr, columns[c + 1], y, Format("%.2f", values[c]), kBodySize);
  }
  y += 34;
  const double seconds =
      report.fileRate > 0 ? static_cast<double>(report.nFrames) / report.fileRate : 0.0;
  DrawText(cr, columns[0], y, Format("%.2f s at %.0f Hz", seconds, report.fileRate), kBodySize);
  if (report.effectRate != report.fileRate)
    DrawText(cr, columns[0], y + 22, Format("the effect ran at %g Hz", report.effectRate),
             kBodySize);
  if (report.nonFinite.Count() > 0)
    DrawText(cr, columns[0], y + 44,
             Format("%.0f samples were not numbers and went in as 0.0", report.nonFinite.Count()),
             kBodySize, Align::kLeft, false, kLevelColours[2]);
}

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length) {
  auto* png = static_cast<std::vector<unsigned char>*>(closure);
  png->insert(png->end(), data, data + length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

int ReportHeight(bool withFile) {
  return static_cast<int>(kHeaderHeight + (withFile ? 3 : 2) * kRowHeight);
}

std::vector<unsigned char> DrawReport(const AnalysisResults& results) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, kReportWidth, ReportHeight(results.hasFile));
  cairo_t* cr = cairo_create(surface);
  cairo_set_source_rgb(cr, 0.96, 0.96, 0.95);
  cairo_paint(cr);
  DrawHeader(cr, results);
  DrawTransfer(cr, results);
  DrawWaveforms(cr, results);
  DrawHarmonics(cr, results);
  DrawResponses(cr, results);
  DrawNoise(cr, results);
  DrawNumbers(cr, results);
  if (results.hasFile) {
    DrawFileBeforeAfter(cr, results);
    DrawFileLevels(cr, results);
  }
  std::vector<unsigned char> png;
  const bool drawn =
      cairo_status(cr) == CAIRO_STATUS_SUCCESS &&
      cairo_surface_write_to_png_stream(surface, AppendBytes, &png) == CAIRO_STATUS_SUCCESS;
  cairo_destroy(cr);
  cairo_surface_destroy(surface);
  if (!drawn) png.clear();
  return png;
}

}  // namespace render
