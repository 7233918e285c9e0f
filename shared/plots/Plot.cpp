// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/Plot.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shared/diagnostics/ThrowError.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/PlotCanvas.h"
#include "shared/plots/PlotMarks.h"
#include "shared/plots/TimeText.h"

namespace shr {

namespace {

constexpr double LEGEND_HEIGHT = 20;
constexpr double X_AXIS_HEIGHT = 46;
constexpr double NOTE_HEIGHT = 16;
constexpr double SMALLEST_WIDTH = 160;
constexpr double SMALLEST_HEIGHT = 120;
/// Share of an axis that stays free at either end.
constexpr double FREE_SHARE = 0.03;

GString EndText(ScaleKind kind, double value) {
  if (kind == ScaleKind::Time) return TimeText(value, TimePrecision::Minute);
  return SignificantText(value, 4);
}

/// Describes the values of one axis: "Magnitude from 0.3 to 7.9."
GString DescribeAxis(const GString& name, ScaleKind kind, const std::vector<double>& values) {
  const PlotAxis scale(kind, 1, 2);
  double lo = std::numeric_limits<double>::infinity();
  double hi = -lo;
  for (const double value : values) {
    if (!scale.CanShow(value)) continue;
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
  if (lo > hi || name.empty()) return GString();
  return L" " + PlainPlotText(name) + L" from " + EndText(kind, lo) + L" to " + EndText(kind, hi) +
         L".";
}

}  // namespace

/// One drawing of a plot.
class PlotDrawing {
public:
  explicit PlotDrawing(const Plot& plot)
      : plot_(plot),
        options_(plot.options_),
        canvas_(std::max(options_.width, SMALLEST_WIDTH),
                std::max(options_.height, SMALLEST_HEIGHT), options_.textMode),
        leftOut_(plot.leftOut_) {}

  std::string Run() {
    CollectValues();
    ChooseAxes();
    canvas_.Begin(options_.title, Describe());
    const PlotFrame frame(xAxis_, yAxis_, Area());
    if (IsEmpty()) {
      canvas_.NoData(frame.Area());
    } else {
      frame.DrawXAxis(canvas_, options_.xLabel);
      frame.DrawYAxis(canvas_, options_.yLabel);
      DrawSeries(frame);
    }
    frame.DrawBorder(canvas_);
    if (HasLegend()) DrawLegend();
    canvas_.Note(Note());
    return canvas_.Finish();
  }

private:
  using Kind = Plot::Kind;
  using Series = Plot::Series;

  /// The places that the axes must show.
  void CollectValues() {
    for (const Series& series : plot_.series_) {
      if (series.kind == Kind::Slope) continue;
      if (series.kind == Kind::Bars) {
        xs_.insert(xs_.end(), series.x.begin(), series.x.end());
        ys_.insert(ys_.end(), series.y.begin(), series.y.end());
        ys_.push_back(0);
        leftOut_ += static_cast<std::size_t>(
            std::count_if(series.y.begin(), series.y.end(),
                          [](double height) { return !std::isfinite(height); }));
        continue;
      }
      for (std::size_t i = 0; i < series.x.size(); ++i) {
        const bool isShown = PlotAxis(options_.xScale, 1, 2).CanShow(series.x[i]) &&
                             PlotAxis(options_.yScale, 1, 2).CanShow(series.y[i]);
        if (!isShown) {
          ++leftOut_;
          continue;
        }
        xs_.push_back(series.x[i]);
        ys_.push_back(series.y[i]);
      }
    }
    if (options_.yFromZero) ys_.push_back(0);
  }

  bool IsEmpty() const { return xs_.empty(); }

  bool HasBarsOnly() const {
    return std::all_of(plot_.series_.begin(), plot_.series_.end(),
                       [](const Series& series) { return series.kind == Kind::Bars; });
  }

  void ChooseAxes() {
    xAxis_ = options_.xRange
                 ? PlotAxis(options_.xScale, options_.xRange->first, options_.xRange->second)
                 : PlotAxis::Around(options_.xScale, xs_, HasBarsOnly() ? 0 : FREE_SHARE);
    yAxis_ = options_.yRange
                 ? PlotAxis(options_.yScale, options_.yRange->first, options_.yRange->second)
                 : PlotAxis::Around(options_.yScale, ys_, FREE_SHARE);
    // Zero at the end of the data is the end of the axis: bars stand on the frame.
    const bool hasFloor = options_.yFromZero || HasBarsOnly();
    if (hasFloor && !options_.yRange && yAxis_.Kind() == ScaleKind::Linear && !IsEmpty() &&
        *std::min_element(ys_.begin(), ys_.end()) == 0 && yAxis_.ScaledHigh() > 0) {
      yAxis_ = PlotAxis(ScaleKind::Linear, 0, yAxis_.ScaledHigh());
    }
    if (options_.unitRatio) KeepUnitRatio(*options_.unitRatio);
  }

  /// Lengthens one axis so that the units of both keep to each other.
  void KeepUnitRatio(double ratio) {
    if (xAxis_.Kind() != ScaleKind::Linear || yAxis_.Kind() != ScaleKind::Linear) return;
    if (!(ratio > 0) || std::isinf(ratio)) return;
    const Box2d area = Area();
    // Halves, because the length of an axis may be too large for a double.
    const double x = xAxis_.ScaledHigh() / 2 - xAxis_.ScaledLow() / 2;
    const double y = (yAxis_.ScaledHigh() / 2 - yAxis_.ScaledLow() / 2) * ratio;
    const double halfX = std::max(x, y * area.xRange() / area.yRange());
    const double halfY = halfX * area.yRange() / area.xRange() / ratio;
    const double middleX = xAxis_.ScaledLow() / 2 + xAxis_.ScaledHigh() / 2;
    const double middleY = yAxis_.ScaledLow() / 2 + yAxis_.ScaledHigh() / 2;
    for (const double end : {std::abs(middleX) + halfX, std::abs(middleY) + halfY}) {
      if (!std::isfinite(end)) return;
    }
    xAxis_ = PlotAxis(ScaleKind::Linear, middleX - halfX, middleX + halfX);
    yAxis_ = PlotAxis(ScaleKind::Linear, middleY - halfY, middleY + halfY);
  }

  Box2d Area() const {
    const double top = (options_.title.empty() ? MARGIN : TITLE_HEIGHT) + LegendHeight();
    const double bottom = canvas_.Height() - X_AXIS_HEIGHT - (Note().empty() ? 0.0 : NOTE_HEIGHT);
    const double left =
        MARGIN + LABEL_SIZE + 14 + WidestLabel(yAxis_.Ticks(MostYTicks(bottom - top)));
    return Box2d(std::min(left, canvas_.Width() / 2), top, canvas_.Width() - MARGIN - 6, bottom);
  }

  GString Note() const { return (options_.note + L" " + LeftOutNote(leftOut_)).Trim(); }

  GString Describe() const {
    GString text = options_.description;
    if (IsEmpty()) return text + (text.empty() ? L"No data." : L" No data.");
    text += DescribeAxis(options_.xLabel, options_.xScale, xs_);
    text += DescribeAxis(options_.yLabel, options_.yScale, ys_);
    text += L" " + PlainPlotText(Note());
    return text.Trim();
  }

  void DrawSeries(const PlotFrame& frame) {
    SvgWriter& svg = canvas_.Svg();
    svg.Begin("clipPath").Attribute("id", "area").BeginRectangle(frame.Area()).End().End();
    svg.Begin("g").Attribute("clip-path", "url(#area)");
    for (std::size_t i = 0; i < plot_.series_.size(); ++i) {
      DrawOne(frame, plot_.series_[i], SeriesClass(i));
    }
    svg.End();
  }

  void DrawOne(const PlotFrame& frame, const Series& series, const std::string& cssClass) {
    switch (series.kind) {
      case Kind::Points:
        DrawDots(canvas_, frame, series.x, series.y, cssClass);
        break;
      case Kind::Line:
        DrawLine(canvas_, frame, series.x, series.y, cssClass);
        break;
      case Kind::Steps:
        DrawSteps(frame, series, cssClass);
        break;
      case Kind::Bars:
        DrawBars(frame, series, cssClass);
        break;
      case Kind::Arrows:
        DrawArrows(frame, series, cssClass);
        break;
      case Kind::Slope:
        DrawSlope(canvas_, frame, series.x[0], series.y[0], cssClass);
        break;
    }
  }

  void DrawSteps(const PlotFrame& frame, const Series& series, const std::string& cssClass) {
    std::vector<double> x;
    std::vector<double> y;
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      if (i > 0) {
        x.push_back(series.x[i]);
        y.push_back(series.y[i - 1]);
      }
      x.push_back(series.x[i]);
      y.push_back(series.y[i]);
    }
    DrawLine(canvas_, frame, x, y, cssClass);
  }

  void DrawBars(const PlotFrame& frame, const Series& series, const std::string& cssClass) {
    SvgWriter& svg = canvas_.Svg();
    const Box2d& area = frame.Area();
    const double floor =
        yAxis_.CanShow(0) ? std::clamp(frame.Y(0), area.yMin(), area.yMax()) : area.yMax();
    svg.Begin("g").Attribute("class", "fill " + cssClass);
    for (std::size_t i = 0; i < series.y.size(); ++i) {
      if (!frame.CanShow(series.x[i], series.y[i]) || !xAxis_.CanShow(series.x[i + 1])) continue;
      if (series.y[i] == 0) continue;
      const double end = frame.Y(series.y[i]);
      svg.BeginRectangle(Box2d(frame.X(series.x[i]), std::min(floor, end), frame.X(series.x[i + 1]),
                               std::max(floor, end)));
      svg.Begin("title").Text(EndText(options_.xScale, series.x[i]) + L" to " +
                              EndText(options_.xScale, series.x[i + 1]) + L": " +
                              SignificantText(series.y[i], 6));
      svg.End().End();
    }
    svg.End();
  }

  void DrawArrows(const PlotFrame& frame, const Series& series, const std::string& cssClass) {
    constexpr double HEAD = 5;
    SvgPathBuilder path;
    for (std::size_t i = 0; i + 1 < series.x.size(); i += 2) {
      if (!frame.CanShow(series.x[i], series.y[i])) continue;
      if (!frame.CanShow(series.x[i + 1], series.y[i + 1])) continue;
      const Vec2d from = frame.At(series.x[i], series.y[i]);
      const Vec2d to = frame.At(series.x[i + 1], series.y[i + 1]);
      path.MoveTo(from);
      path.LineTo(to);
      const double length =
          std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y));
      if (length < 1) continue;
      const double size = std::min(HEAD, length) / length;
      const Vec2d along((to.x - from.x) * size, (to.y - from.y) * size);
      path.MoveTo(Vec2d(to.x - along.x - along.y / 2, to.y - along.y + along.x / 2));
      path.LineTo(to);
      path.LineTo(Vec2d(to.x - along.x + along.y / 2, to.y - along.y - along.x / 2));
    }
    if (path.IsEmpty()) return;
    canvas_.Svg().Begin("path").Attribute("class", "line " + cssClass);
    canvas_.Svg().Attribute("d", path.Data()).End();
  }

  bool HasLegend() const {
    return std::count_if(plot_.series_.begin(), plot_.series_.end(),
                         [](const Series& series) { return !series.name.empty(); }) > 1;
  }

  /// Returns how wide the entry of a series is; names are cut at half of the picture.
  double EntryWidth(const Series& series) const {
    return 38 + PlotTextWidth(EntryText(series), LABEL_SIZE, options_.textMode);
  }
  GString EntryText(const Series& series) const {
    return Fitted(series.name, LABEL_SIZE, canvas_.Width() / 2 - 50, options_.textMode);
  }

  /// Calls `visit` (index, left, row) for each entry of the legend.
  template <class Visit>
  void ForEachEntry(const Visit& visit) const {
    double x = MARGIN;
    std::size_t row = 0;
    for (std::size_t i = 0; i < plot_.series_.size(); ++i) {
      const Series& series = plot_.series_[i];
      if (series.name.empty()) continue;
      const double width = EntryWidth(series);
      if (x > MARGIN && x + width > canvas_.Width() - MARGIN) {
        x = MARGIN;
        ++row;
      }
      visit(i, x, row);
      x += width;
    }
  }

  double LegendHeight() const {
    if (!HasLegend()) return 0;
    std::size_t rows = 0;
    ForEachEntry([&](std::size_t, double, std::size_t row) { rows = row + 1; });
    return LEGEND_HEIGHT * static_cast<double>(rows);
  }

  void DrawLegend() {
    SvgWriter& svg = canvas_.Svg();
    const double top = options_.title.empty() ? MARGIN : TITLE_HEIGHT;
    ForEachEntry([&](std::size_t index, double x, std::size_t row) {
      const Series& series = plot_.series_[index];
      const double y = top + LEGEND_HEIGHT * static_cast<double>(row) + 6;
      const bool isDot = series.kind == Kind::Points;
      SvgPathBuilder path;
      path.MoveTo(Vec2d(isDot ? x + 9 : x, y));
      if (!isDot) path.LineTo(Vec2d(x + 18, y));
      svg.Begin("path").Attribute("class", (isDot ? "dots " : "line ") + SeriesClass(index));
      if (isDot) svg.Attribute("stroke-width", 7.0);
      svg.Attribute("d", path.Data() + (isDot ? "h0" : "")).End();
      canvas_.Text(Vec2d(x + 24, y + 4), "start", "", EntryText(series));
    });
  }

  const Plot& plot_;
  const PlotOptions& options_;
  PlotCanvas canvas_;
  std::vector<double> xs_;
  std::vector<double> ys_;
  PlotAxis xAxis_;
  PlotAxis yAxis_;
  std::size_t leftOut_ = 0;
};

void Plot::Add(Kind kind, std::span<const double> x, std::span<const double> y,
               const GString& name) {
  if (x.size() != y.size() + (kind == Kind::Bars ? 1 : 0)) {
    ThrowInternalError(SHARED_MODULE, L"Plot", __LINE__);
  }
  series_.push_back({kind, name, {x.begin(), x.end()}, {y.begin(), y.end()}});
}

void Plot::AddPoints(std::span<const double> x, std::span<const double> y, const GString& name) {
  Add(Kind::Points, x, y, name);
}

void Plot::AddLine(std::span<const double> x, std::span<const double> y, const GString& name) {
  Add(Kind::Line, x, y, name);
}

void Plot::AddSteps(std::span<const double> x, std::span<const double> y, const GString& name) {
  Add(Kind::Steps, x, y, name);
}

void Plot::AddBars(std::span<const double> edges, std::span<const double> heights,
                   const GString& name) {
  Add(Kind::Bars, edges, heights, name);
}

void Plot::AddArrows(std::span<const Vec2d> from, std::span<const Vec2d> to, const GString& name) {
  if (from.size() != to.size()) ThrowInternalError(SHARED_MODULE, L"Plot", __LINE__);
  std::vector<double> x;
  std::vector<double> y;
  for (std::size_t i = 0; i < from.size(); ++i) {
    for (const Vec2d& point : {from[i], to[i]}) {
      x.push_back(point.x);
      y.push_back(point.y);
    }
  }
  Add(Kind::Arrows, x, y, name);
}

void Plot::AddSlope(double slope, double intercept, const GString& name) {
  Add(Kind::Slope, std::span(&slope, 1), std::span(&intercept, 1), name);
}

std::string Plot::Draw() const {
  return PlotDrawing(*this).Run();
}

}  // namespace shr
