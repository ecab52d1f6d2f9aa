#pragma once

#include <cairo.h>

#include <functional>
#include <string>
#include <vector>

namespace render {

struct Rect {
  double x, y, width, height;
};

struct Colour {
  double r, g, b;
};

enum class Align { kLeft, kCentre, kRight };

// Text in the report's face (DejaVu Sans) with its baseline at y.
void DrawText(cairo_t* cr, double x, double y, const std::string& text, double size,
              Align align = Align::kLeft, bool bold = false, Colour colour = {0.1, 0.1, 0.1});

struct Axis {
  double min, max;
  bool log;
  std::string label;  // with its unit, e.g. "frequency (Hz)"
  std::vector<double> ticks;
  std::function<std::string(double)> tickText;
};

// A line, or, without a line, only a legend entry (for bars drawn alike).
struct Series {
  std::string label;
  Colour colour;
  std::vector<double> x, y;
  double width = 2.0;
  bool dashed = false;
};

// One panel of the report: a title, a framed plot with a grid at the ticks, labelled axes, and
// data drawn in data units, clipped to the frame.
class PlotArea {
 public:
  PlotArea(cairo_t* cr, Rect panel, const std::string& title, Axis x, Axis y);

  void Line(const Series& series);
  // A bar from the bottom of the plot up to y, centred on x, `width` in x units.
  void Bar(double x, double width, double y, Colour colour);
  // A box listing the series' labels beside samples of their lines, in a corner of the plot.
  enum Corner { kTopLeft, kTopRight, kBottomLeft };
  void Legend(const std::vector<Series>& entries, Corner corner);

 private:
  double PixelX(double x) const;
  double PixelY(double y) const;
  void DrawFrame(const std::string& title);
  void DrawTicks();

  cairo_t* mCr;
  Rect mPanel, mPlot;
  Axis mX, mY;
};

// Tick texts shared by the plots.
std::string HzText(double hz);        // "20", "1k", "10k"
std::string WholeText(double value);  // "-20", "0", "+6" with a sign: levels and gains
std::string PlainText(double value);  // "-20", "0", "6"
// Frequency ticks of a log axis from loHz to hiHz: 20, 50, 100, 200, 500, 1k, ...
std::vector<double> FrequencyTicks(double loHz, double hiHz);
// Ticks from min to max every `step`.
std::vector<double> EvenTicks(double min, double max, double step);

}  // namespace render
