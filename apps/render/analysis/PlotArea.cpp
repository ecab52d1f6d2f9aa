#include "analysis/PlotArea.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace render {

namespace {

constexpr double kTickTextSize = 13.0;
constexpr double kLabelSize = 14.0;
constexpr double kTitleSize = 16.0;
constexpr Colour kGrid = {0.86, 0.86, 0.86};
constexpr Colour kFrame = {0.45, 0.45, 0.45};

void SetColour(cairo_t* cr, Colour c) { cairo_set_source_rgb(cr, c.r, c.g, c.b); }

double TextWidth(cairo_t* cr, const std::string& text) {
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  return extents.x_advance;
}

}  // namespace

void DrawText(cairo_t* cr, double x, double y, const std::string& text, double size, Align align,
              bool bold, Colour colour) {
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, size);
  const double width = TextWidth(cr, text);
  const double left = align == Align::kLeft     ? x
                      : align == Align::kCentre ? x - width / 2
                                                : x - width;
  SetColour(cr, colour);
  cairo_move_to(cr, left, y);
  cairo_show_text(cr, text.c_str());
}

std::string HzText(double hz) {
  char text[32];
  if (hz >= 1000.0)
    std::snprintf(text, sizeof text, "%gk", hz / 1000.0);
  else
    std::snprintf(text, sizeof text, "%g", hz);
  return text;
}

std::string WholeText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, value == 0.0 ? "%.0f" : "%+.0f", value);
  return text;
}

std::string PlainText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::vector<double> FrequencyTicks(double loHz, double hiHz) {
  std::vector<double> ticks;
  for (double decade = 10.0; decade <= hiHz; decade *= 10.0)
    for (double step : {1.0, 2.0, 5.0})
      if (decade * step >= loHz && decade * step <= hiHz) ticks.push_back(decade * step);
  return ticks;
}

std::vector<double> EvenTicks(double min, double max, double step) {
  std::vector<double> ticks;
  for (double tick = std::ceil(min / step) * step; tick <= max + 1e-9; tick += step)
    ticks.push_back(tick);
  return ticks;
}

PlotArea::PlotArea(cairo_t* cr, Rect panel, const std::string& title, Axis x, Axis y)
    : mCr(cr),
      mPanel(panel),
      mPlot{panel.x + 68, panel.y + 34, panel.width - 84, panel.height - 34 - 58},
      mX(std::move(x)),
      mY(std::move(y)) {
  DrawFrame(title);
  DrawTicks();
}

double PlotArea::PixelX(double x) const {
  const double fraction =
      mX.log ? std::log(x / mX.min) / std::log(mX.max / mX.min) : (x - mX.min) / (mX.max - mX.min);
  return mPlot.x + fraction * mPlot.width;
}

double PlotArea::PixelY(double y) const {
  return mPlot.y + mPlot.height * (1.0 - (y - mY.min) / (mY.max - mY.min));
}

void PlotArea::DrawFrame(const std::string& title) {
  DrawText(mCr, mPanel.x + 8, mPanel.y + 20, title, kTitleSize, Align::kLeft, true);
  cairo_set_source_rgb(mCr, 1, 1, 1);
  cairo_rectangle(mCr, mPlot.x, mPlot.y, mPlot.width, mPlot.height);
  cairo_fill(mCr);
  DrawText(mCr, mPlot.x + mPlot.width / 2, mPanel.y + mPanel.height - 8, mX.label, kLabelSize,
           Align::kCentre);
  cairo_save(mCr);
  cairo_translate(mCr, mPanel.x + 16, mPlot.y + mPlot.height / 2);
  cairo_rotate(mCr, -M_PI / 2);
  DrawText(mCr, 0, 0, mY.label, kLabelSize, Align::kCentre);
  cairo_restore(mCr);
}

void PlotArea::DrawTicks() {
  cairo_set_line_width(mCr, 1.0);
  for (double tick : mX.ticks) {
    SetColour(mCr, kGrid);
    cairo_move_to(mCr, std::round(PixelX(tick)) + 0.5, mPlot.y);
    cairo_line_to(mCr, std::round(PixelX(tick)) + 0.5, mPlot.y + mPlot.height);
    cairo_stroke(mCr);
    DrawText(mCr, PixelX(tick), mPlot.y + mPlot.height + 18, mX.tickText(tick), kTickTextSize,
             Align::kCentre);
  }
  for (double tick : mY.ticks) {
    SetColour(mCr, kGrid);
    cairo_move_to(mCr, mPlot.x, std::round(PixelY(tick)) + 0.5);
    cairo_line_to(mCr, mPlot.x + mPlot.width, std::round(PixelY(tick)) + 0.5);
    cairo_stroke(mCr);
    DrawText(mCr, mPlot.x - 6, PixelY(tick) + 4.5, mY.tickText(tick), kTickTextSize, Align::kRight);
  }
  SetColour(mCr, kFrame);
  cairo_rectangle(mCr, mPlot.x + 0.5, mPlot.y + 0.5, mPlot.width - 1, mPlot.height - 1);
  cairo_stroke(mCr);
}

void PlotArea::Line(const Series& series) {
  cairo_save(mCr);
  cairo_rectangle(mCr, mPlot.x, mPlot.y, mPlot.width, mPlot.height);
  cairo_clip(mCr);
  SetColour(mCr, series.colour);
  cairo_set_line_width(mCr, series.width);
  cairo_set_line_join(mCr, CAIRO_LINE_JOIN_ROUND);
  const double dash[] = {7.0, 5.0};
  cairo_set_dash(mCr, dash, series.dashed ? 2 : 0, 0.0);
  for (std::size_t i = 0; i < series.x.size(); ++i) {
    const double y = std::max(series.y[i], mY.min - (mY.max - mY.min));  // -inf stays drawable
    (i == 0 ? cairo_move_to : cairo_line_to)(mCr, PixelX(series.x[i]), PixelY(y));
  }
  cairo_stroke(mCr);
  cairo_restore(mCr);
}

void PlotArea::Bar(double x, double width, double y, Colour colour) {
  const double left = PixelX(x - width / 2), right = PixelX(x + width / 2);
  const double top = PixelY(std::clamp(y, mY.min, mY.max));
  SetColour(mCr, colour);
  cairo_rectangle(mCr, left, top, right - left, mPlot.y + mPlot.height - top);
  cairo_fill(mCr);
}

void PlotArea::Legend(const std::vector<Series>& entries, Corner corner) {
  constexpr double kRow = 20.0, kSample = 26.0, kPad = 8.0;
  cairo_select_font_face(mCr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(mCr, kTickTextSize);
  double textWidth = 0.0;
  for (const Series& entry : entries) textWidth = std::max(textWidth, TextWidth(mCr, entry.label));
  const double width = 3 * kPad + kSample + textWidth;
  const double height = 2 * kPad + kRow * entries.size() - 4;
  const double left = corner == kTopRight ? mPlot.x + mPlot.width - width - 8 : mPlot.x + 8;
  const double top = corner == kBottomLeft ? mPlot.y + mPlot.height - height - 8 : mPlot.y + 8;
  cairo_set_source_rgba(mCr, 1, 1, 1, 0.9);
  cairo_rectangle(mCr, left, top, width, height);
  cairo_fill_preserve(mCr);
  SetColour(mCr, kGrid);
  cairo_set_line_width(mCr, 1.0);
  cairo_stroke(mCr);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const double y = top + kPad + kRow * i + 10;
    SetColour(mCr, entries[i].colour);
    cairo_set_line_width(mCr, std::max(entries[i].width, 3.0));
    const double dash[] = {7.0, 5.0};
    cairo_set_dash(mCr, dash, entries[i].dashed ? 2 : 0, 0.0);
    cairo_move_to(mCr, left + kPad, y - 4);
    cairo_line_to(mCr, left + kPad + kSample, y - 4);
    cairo_stroke(mCr);
    cairo_set_dash(mCr, dash, 0, 0.0);
    DrawText(mCr, left + 2 * kPad + kSample, y, entries[i].label, kTickTextSize);
  }
}

}  // namespace render
