// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/HeatMap.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shared/diagnostics/ThrowError.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/PlotCanvas.h"
#include "shared/plots/PlotPalette.h"
#include "shared/plots/TextWidth.h"

namespace shr {

namespace {

constexpr double LARGEST_CELL = 56;
constexpr double CELL_HEIGHT = 34;
constexpr double SMALLEST_CELL_HEIGHT = 14;
constexpr std::size_t MANY_ROWS = 40;
constexpr double SLANT = 0.5;  // sine of the angle of column names, 30 degrees
constexpr double SCALE_SPACE = 76;

double Widest(const std::vector<GString>& names, double limit, SvgTextMode mode) {
  double widest = 0;
  for (const GString& name : names) {
    const GString fitted = Fitted(name, LABEL_SIZE, limit, mode);
    widest = std::max(widest, PlotTextWidth(fitted, LABEL_SIZE, mode));
  }
  return widest;
}

std::pair<double, double> RangeOf(std::span<const double> values) {
  double lo = std::numeric_limits<double>::infinity();
  double hi = -lo;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
  return lo <= hi ? std::pair(lo, hi) : std::pair(0.0, 1.0);
}

class HeatMapDrawing {
public:
  HeatMapDrawing(std::span<const double> values, const HeatMapOptions& options)
      : values_(values),
        options_(options),
        range_(options.range ? *options.range : RangeOf(values)),
        nameLimit_(options.width / 4),
        left_(MARGIN + Widest(options.rows, nameLimit_, options.textMode) + 8),
        top_(TITLE_HEIGHT + Widest(options.columns, nameLimit_, options.textMode) * SLANT + 14),
        cellWidth_(std::min(LARGEST_CELL, (options.width - left_ - SCALE_SPACE - MARGIN) /
                                              std::max(1.0, Columns()))),
        cellHeight_(options.rows.size() > MANY_ROWS ? SMALLEST_CELL_HEIGHT : CELL_HEIGHT),
        canvas_(PictureWidth(), top_ + std::max(2.0, Rows()) * cellHeight_ + MARGIN + 8,
                options.textMode) {}

  std::string Run() {
    canvas_.Begin(options_.title, Describe());
    if (values_.empty()) {
      canvas_.NoData(Box2d(0, 0, canvas_.Width(), canvas_.Height()));
      return canvas_.Finish();
    }
    DrawNames();
    for (std::size_t i = 0; i < values_.size(); ++i) DrawCell(i);
    DrawScale();
    return canvas_.Finish();
  }

private:
  GString Describe() const {
    if (values_.empty()) return (options_.description + L" No data.").Trim();
    const auto [lo, hi] = RangeOf(values_);
    GString text = options_.description + L" A table of " +
                   GString(std::to_wstring(options_.rows.size())) + L" by " +
                   GString(std::to_wstring(options_.columns.size())) + L" numbers from " +
                   SignificantText(lo, options_.digits) + L" to " +
                   SignificantText(hi, options_.digits) + L".";
    return text.Trim();
  }

  double Rows() const { return static_cast<double>(options_.rows.size()); }
  double Columns() const { return static_cast<double>(options_.columns.size()); }

  /// Few columns do not fill the width.
  double PictureWidth() const {
    const double title = PlotTextWidth(options_.title, TITLE_SIZE, options_.textMode) + 3 * MARGIN;
    const double cells = left_ + Columns() * cellWidth_ + SCALE_SPACE + MARGIN;
    return std::min(options_.width, std::max(title, cells));
  }

  Color4b ColorOf(double value) const {
    const double share = (value / 2 - range_.first / 2) / (range_.second / 2 - range_.first / 2);
    return options_.isDiverging ? DivergingColor(2 * share - 1) : SequentialColor(share);
  }

  void DrawNames() {
    for (std::size_t i = 0; i < options_.rows.size(); ++i) {
      const double y = top_ + (static_cast<double>(i) + 0.5) * cellHeight_ + LABEL_SIZE * 0.36;
      canvas_.Text(Vec2d(left_ - 6, y), "end", "",
                   Fitted(options_.rows[i], LABEL_SIZE, nameLimit_, options_.textMode));
    }
    for (std::size_t i = 0; i < options_.columns.size(); ++i) {
      const double x = left_ + (static_cast<double>(i) + 0.5) * cellWidth_;
      canvas_.TurnedText(Vec2d(x, top_ - 6), "start", 30,
                         Fitted(options_.columns[i], LABEL_SIZE, nameLimit_, options_.textMode));
    }
  }

  void DrawCell(std::size_t index) {
    const std::size_t row = index / options_.columns.size();
    const std::size_t column = index % options_.columns.size();
    const double value = values_[index];
    const GString text = SignificantText(value, options_.digits);
    const Color4b color = ColorOf(value);
    const double x = left_ + static_cast<double>(column) * cellWidth_;
    const double y = top_ + static_cast<double>(row) * cellHeight_;
    SvgWriter& svg = canvas_.Svg();
    svg.BeginRectangle(Box2d(x, y, x + cellWidth_, y + cellHeight_));
    svg.Attribute("fill", HexColor(color));
    svg.Begin("title").Text(PlainPlotText(options_.rows[row]) + L", " +
                            PlainPlotText(options_.columns[column]) + L": " + text);
    svg.End().End();
    if (EstimateTextWidth(text, TICK_SIZE) + 4 > cellWidth_) return;
    // On a color of its own the text has a color of its own, whatever the page's is.
    canvas_.ColoredText(Vec2d(x + cellWidth_ / 2, y + cellHeight_ / 2 + TICK_SIZE * 0.36),
                        WantsDarkText(color) ? "#000" : "#fff", text);
  }

  void DrawScale() {
    constexpr std::size_t STEPS = 32;
    constexpr double WIDTH = 12;
    constexpr double LONGEST = 240;
    const double x = left_ + Columns() * cellWidth_ + 18;
    const double height = std::min(LONGEST, std::max(2.0, Rows()) * cellHeight_);
    const PlotFrame frame(PlotAxis(), PlotAxis(ScaleKind::Linear, range_.first, range_.second),
                          Box2d(x, top_, x + WIDTH, top_ + height));
    for (std::size_t i = 0; i < STEPS; ++i) {
      const double share = (static_cast<double>(i) + 0.5) / STEPS;
      const double value = range_.first + share * (range_.second - range_.first);
      const double bottom = top_ + height * (1 - static_cast<double>(i) / STEPS);
      // A little overlap, so that no gap shines through.
      const Box2d box(x, bottom - height / STEPS - (i + 1 < STEPS ? 0.3 : 0), x + WIDTH, bottom);
      canvas_.Svg().BeginRectangle(box).Attribute("fill", HexColor(ColorOf(value))).End();
    }
    const TickSet set = frame.YAxis().Ticks(MostYTicks(height));
    for (const Tick& tick : set.ticks) {
      canvas_.Text(Vec2d(x + WIDTH + 5, frame.Y(tick.value) + 4), "start", "tick", tick.label);
    }
    if (!set.context.empty()) canvas_.Text(Vec2d(x, top_ - 6), "start", "tick", set.context);
  }

  std::span<const double> values_;
  const HeatMapOptions& options_;
  std::pair<double, double> range_;
  double nameLimit_;
  double left_;
  double top_;
  double cellWidth_;
  double cellHeight_;
  PlotCanvas canvas_;
};

}  // namespace

std::string DrawHeatMap(std::span<const double> values, const HeatMapOptions& options) {
  if (values.size() != options.rows.size() * options.columns.size()) {
    ThrowInternalError(SHARED_MODULE, L"HeatMap", __LINE__);
  }
  return HeatMapDrawing(values, options).Run();
}

}  // namespace shr
