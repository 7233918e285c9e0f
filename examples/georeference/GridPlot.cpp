// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/GridPlot.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "examples/common/NumberText.h"
#include "shared/geometry/Vec2.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/Plot.h"

namespace georeference {

using namespace shr;

namespace {

/// Part of the extent by which the grid reaches beyond the control points.
constexpr double MARGIN_SHARE = 0.05;
/// Straight pieces of a line in each cell.
constexpr std::size_t PIECES = 4;
/// Part of the map's extent that the longest arrow may take.
constexpr double LONGEST_ARROW = 0.08;
/// Residuals below this part of the map's extent are rounding.
constexpr double ROUNDING = 1e-9;

struct ImageBox {
  RPoint low;
  double cell = 1.0;
  std::size_t columns = 1;
  std::size_t rows = 1;
};

ImageBox BoxOf(const RPoints& image, std::size_t cells) {
  RPoint low = image.front(), high = low;
  for (const RPoint& point : image) {
    low = RPoint(std::min(low.x, point.x), std::min(low.y, point.y));
    high = RPoint(std::max(high.x, point.x), std::max(high.y, point.y));
  }
  const double longer = std::max(high.x - low.x, high.y - low.y);
  const double margin = longer > 0.0 ? MARGIN_SHARE * longer : 0.5;
  ImageBox box;
  box.low = RPoint(low.x - margin, low.y - margin);
  box.cell = (longer + 2 * margin) / static_cast<double>(cells);
  const auto count = [&](double extent) {
    return static_cast<std::size_t>(std::max(1.0, std::round((extent + 2 * margin) / box.cell)));
  };
  box.columns = count(high.x - low.x);
  box.rows = count(high.y - low.y);
  return box;
}

/// All lines of the grid in one stroke: to and fro along the rows, joined along the border, then
/// along the columns from the corner where that ends.
class Stroke {
public:
  explicit Stroke(const ImageBox& box) : box_(box) { Push(); }

  RPoints Take() {
    const auto columns = static_cast<long long>(box_.columns * PIECES);
    const auto rows = static_cast<long long>(box_.rows * PIECES);
    const auto step = static_cast<long long>(PIECES);
    for (long long y = 0;; y += step) {
      MoveTo(x_ == 0 ? columns : 0, y);
      if (y == rows) break;
      MoveTo(x_, y + step);
    }
    const long long direction = x_ == 0 ? step : -step;
    const long long last = x_ == 0 ? columns : 0;
    for (;;) {
      MoveTo(x_, y_ == 0 ? rows : 0);
      if (x_ == last) break;
      MoveTo(x_ + direction, y_);
    }
    return std::move(points_);
  }

private:
  void MoveTo(long long x, long long y) {
    while (x_ != x || y_ != y) {
      x_ += x > x_ ? 1 : x < x_ ? -1 : 0;
      y_ += y > y_ ? 1 : y < y_ ? -1 : 0;
      Push();
    }
  }
  void Push() {
    const double piece = box_.cell / static_cast<double>(PIECES);
    points_.emplace_back(box_.low.x + static_cast<double>(x_) * piece,
                         box_.low.y + static_cast<double>(y_) * piece);
  }

  const ImageBox& box_;
  long long x_ = 0;
  long long y_ = 0;
  RPoints points_;
};

/// The length of a unit of y over that of a unit of x when pixels are square.
double UnitRatio(const ControlPoints& points) {
  CGeneralLinear linear;
  if (!linear.Calibrate(points.image, points.map)) return 1.0;
  const RMatrix& k = linear.Coefficients();
  const double x = Length(RPoint(k(1, 0), k(2, 0)));
  const double y = Length(RPoint(k(1, 1), k(2, 1)));
  const double ratio = std::round(1000 * x / y) / 1000;
  if (!(ratio >= 0.001 && ratio <= 1000.0)) return 1.0;
  return std::abs(ratio - 1.0) < 0.02 ? 1.0 : ratio;
}

/// The largest of 1, 2, 5, 10, 20 ... with which the arrows stay short.
double ArrowScale(double longest, double extent) {
  double scale = 1.0;
  const double most = longest > 0.0 ? LONGEST_ARROW * extent / longest : 1.0;
  for (double decade = 1.0; decade <= most && decade < 1e9; decade *= 10.0) {
    for (const double factor : {1.0, 2.0, 5.0}) {
      if (factor * decade <= most) scale = factor * decade;
    }
  }
  return scale;
}

/// From each control point towards where it is mapped.
struct Arrows {
  std::vector<Vec2d> from;
  std::vector<Vec2d> to;
  GString note;
};

Arrows MakeArrows(const ControlPoints& points, const Georeference& fit) {
  const bool usesLeftOut = MeetsAllPoints(fit);
  const std::vector<RPoint>& errors = usesLeftOut ? fit.leftOut : fit.residuals;
  double longest = 0.0;
  for (const RPoint& error : errors) {
    const double length = Length(error);
    if (std::isfinite(length)) longest = std::max(longest, length);
  }
  Arrows arrows;
  if (longest <= ROUNDING * fit.mapExtent) return arrows;
  const double scale = ArrowScale(longest, fit.mapExtent);
  for (std::size_t i = 0; i < errors.size(); ++i) {
    const RPoint& target = points.map[i];
    if (!std::isfinite(errors[i].x) || !std::isfinite(errors[i].y)) continue;
    arrows.from.emplace_back(target.x, target.y);
    arrows.to.emplace_back(target.x - scale * errors[i].x, target.y - scale * errors[i].y);
  }
  arrows.note = usesLeftOut ? L"Arrows: where each point is mapped when it is left out"
                            : L"Arrows: where each point is mapped";
  if (scale > 1.0) {
    arrows.note +=
        L", " + examples::FormatCount(static_cast<std::size_t>(scale)) + L" times as far";
  }
  arrows.note += L".";
  return arrows;
}

}  // namespace

bool MeetsAllPoints(const Georeference& fit) {
  return fit.rms <= ROUNDING * std::max(fit.mapExtent, fit.leftOutRms) &&
         std::isfinite(fit.leftOutRms);
}

GridPicture DrawGrid(const ControlPoints& points, const Georeference& fit, const Options& choices) {
  const ImageBox box = BoxOf(points.image, choices.grid);
  RPoints stroke = Stroke(box).Take();
  fit.registration.Transform(stroke, stroke);
  std::vector<double> gridX, gridY, pointX, pointY;
  for (const RPoint& point : stroke) {
    gridX.push_back(point.x);
    gridY.push_back(point.y);
  }
  for (const RPoint& point : points.map) {
    pointX.push_back(point.x);
    pointY.push_back(point.y);
  }
  const Arrows arrows = MakeArrows(points, fit);
  PlotOptions options;
  options.title = L"The grid of the image on the map";
  options.description = L"Lines of the image, " + SignificantText(box.cell, 4) +
                        L" units apart, as the registration maps them. " + arrows.note;
  options.xLabel = choices.xLabel;
  options.yLabel = choices.yLabel;
  options.textMode = choices.textMode;
  options.unitRatio = UnitRatio(points);
  options.note = arrows.note;
  options.width = 900;
  options.height = 720;
  Plot plot(options);
  plot.AddLine(gridX, gridY, L"Grid of the image");
  plot.AddPoints(pointX, pointY, L"Control points");
  if (!arrows.from.empty()) plot.AddArrows(arrows.from, arrows.to, L"Errors");
  GridPicture picture{plot.Draw(),
                      L"Lines are " + SignificantText(box.cell, 4) + L" units of the image apart."};
  if (!arrows.note.empty()) picture.caption += L" " + arrows.note;
  return picture;
}

}  // namespace georeference
