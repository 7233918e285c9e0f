// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/PlotMarks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace shr {

namespace {

/// So many dots can be told apart; more are drawn once a pixel.
constexpr std::size_t MANY = 2000;

double DotWidth(std::size_t count) {
  if (count <= 100) return 6;
  if (count <= 1000) return 4.5;
  return count <= 10000 ? 3 : 2;
}

/// Places in pixels, each once, in the order in which they came.
std::vector<Vec2d> OncePerPixel(std::vector<Vec2d> points) {
  std::vector<std::pair<std::pair<long long, long long>, std::size_t>> cells;
  cells.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    cells.push_back({{std::llround(points[i].x), std::llround(points[i].y)}, i});
  }
  std::sort(cells.begin(), cells.end());
  const auto last = std::unique(cells.begin(), cells.end(),
                                [](const auto& a, const auto& b) { return a.first == b.first; });
  std::vector<std::size_t> kept;
  for (auto cell = cells.begin(); cell != last; ++cell) kept.push_back(cell->second);
  std::sort(kept.begin(), kept.end());
  std::vector<Vec2d> result;
  for (const std::size_t index : kept) result.push_back(points[index]);
  return result;
}

/// Of the points of one column of pixels: the first, lowest, highest and last.
class Column {
public:
  void Begin(const Vec2d& point) { points_.fill(point); }
  void Add(const Vec2d& point) {
    if (point.y < points_[LOW].y) points_[LOW] = point;
    if (point.y > points_[HIGH].y) points_[HIGH] = point;
    points_[LAST] = point;
  }
  void AppendTo(std::vector<Vec2d>& line) const {
    const bool isLowFirst = points_[LOW].x <= points_[HIGH].x;
    line.push_back(points_[FIRST]);
    line.push_back(points_[isLowFirst ? LOW : HIGH]);
    line.push_back(points_[isLowFirst ? HIGH : LOW]);
    line.push_back(points_[LAST]);
  }

private:
  enum : std::size_t { FIRST, LOW, HIGH, LAST };
  std::array<Vec2d, 4> points_;
};

/// Thins a line whose x rises, where many points share a column of pixels.
std::vector<Vec2d> Thinned(std::vector<Vec2d> line) {
  const bool isRising = std::is_sorted(line.begin(), line.end(),
                                       [](const Vec2d& a, const Vec2d& b) { return a.x < b.x; });
  if (line.size() <= MANY || !isRising) return line;
  std::vector<Vec2d> thin;
  Column column;
  double current = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const double pixel = std::floor(line[i].x);
    if (i == 0 || pixel != current) {
      if (i != 0) column.AppendTo(thin);
      column.Begin(line[i]);
      current = pixel;
    } else {
      column.Add(line[i]);
    }
  }
  column.AppendTo(thin);
  return thin;
}

void AppendLine(std::vector<Vec2d>& line, SvgPathBuilder& path) {
  const std::vector<Vec2d> points = Thinned(std::move(line));
  line.clear();
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0) {
      path.MoveTo(points[i]);
    } else {
      path.LineTo(points[i]);
    }
  }
}

}  // namespace

std::size_t DrawDots(PlotCanvas& canvas, const PlotFrame& frame, std::span<const double> x,
                     std::span<const double> y, const std::string& cssClass) {
  std::vector<Vec2d> points;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (frame.CanShow(x[i], y[i])) points.push_back(frame.At(x[i], y[i]));
  }
  const std::size_t leftOut = x.size() - points.size();
  const double width = DotWidth(points.size());
  if (points.size() > MANY) points = OncePerPixel(std::move(points));
  if (points.empty()) return leftOut;
  // A line of no length with round ends is a dot; all of them are one path.
  std::string data;
  for (const Vec2d& point : points) {
    data += 'M';
    AppendSvgTenths(data, SvgTenths(point.x));
    data += ' ';
    AppendSvgTenths(data, SvgTenths(point.y));
    data += "h0";
  }
  SvgWriter& svg = canvas.Svg();
  svg.Begin("path").Attribute("class", "dots " + cssClass).Attribute("stroke-width", width);
  svg.Attribute("d", data).End();
  return leftOut;
}

std::size_t DrawLine(PlotCanvas& canvas, const PlotFrame& frame, std::span<const double> x,
                     std::span<const double> y, const std::string& cssClass) {
  std::size_t leftOut = 0;
  SvgPathBuilder path;
  std::vector<Vec2d> line;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (frame.CanShow(x[i], y[i])) {
      line.push_back(frame.At(x[i], y[i]));
    } else {
      ++leftOut;
      AppendLine(line, path);
    }
  }
  AppendLine(line, path);
  if (path.IsEmpty()) return leftOut;
  canvas.Svg().Begin("path").Attribute("class", "line " + cssClass).Attribute("d", path.Data());
  canvas.Svg().End();
  return leftOut;
}

void DrawSlope(PlotCanvas& canvas, const PlotFrame& frame, double slope, double intercept,
               const std::string& cssClass) {
  const PlotAxis& xAxis = frame.XAxis();
  const PlotAxis& yAxis = frame.YAxis();
  if (xAxis.Kind() == ScaleKind::Log || yAxis.Kind() == ScaleKind::Log) return;
  // The parameter t runs from the low end of x to the high one.
  const double x0 = xAxis.ScaledLow();
  const double x1 = xAxis.ScaledHigh();
  const double v0 = yAxis.Share(slope * x0 + intercept);
  const double v1 = yAxis.Share(slope * x1 + intercept);
  if (!std::isfinite(v0) || !std::isfinite(v1)) return;
  double t0 = 0;
  double t1 = 1;
  if (v0 != v1) {
    const double atBottom = -v0 / (v1 - v0);
    const double atTop = (1 - v0) / (v1 - v0);
    t0 = std::max(t0, std::min(atBottom, atTop));
    t1 = std::min(t1, std::max(atBottom, atTop));
  } else if (v0 < 0 || v0 > 1) {
    return;
  }
  if (t0 >= t1) return;
  const Box2d& area = frame.Area();
  const auto at = [&](double t) {
    return Vec2d(area.xMin() + t * area.xRange(),
                 area.yMax() - (v0 + t * (v1 - v0)) * area.yRange());
  };
  SvgPathBuilder path;
  path.MoveTo(at(t0));
  path.LineTo(at(t1));
  canvas.Svg().Begin("path").Attribute("class", "line " + cssClass).Attribute("d", path.Data());
  canvas.Svg().End();
}

}  // namespace shr
