// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/clipper/GpcGrid.h"

#include <algorithm>

namespace shr::gpc {
namespace {

/// A sum of two doubles that do not overlap: 106 bits (T. J. Dekker, "A Floating-Point Technique
/// for Extending the Available Precision", 1971).
struct DoubleDouble {
  double high;
  double low;
};

DoubleDouble Multiply(double x, double y) {
  const auto split = [](double value) {
    const double scaled = 134217729.0 * value;  // 2^27 + 1
    return scaled - (scaled - value);
  };
  const double product = x * y;
  const double xHigh = split(x);
  const double yHigh = split(y);
  const double xLow = x - xHigh;
  const double yLow = y - yHigh;
  return {product, ((xHigh * yHigh - product) + xHigh * yLow + xLow * yHigh) + xLow * yLow};
}

DoubleDouble Subtract(const DoubleDouble& a, const DoubleDouble& b) {
  const double sum = a.high - b.high;
  const double part = sum - a.high;
  const double error = (a.high - (sum - part)) - (b.high + part) + (a.low - b.low);
  const double high = sum + error;
  return {high, error - (high - sum)};
}

DoubleDouble Divide(const DoubleDouble& a, const DoubleDouble& b) {
  const double first = a.high / b.high;
  const DoubleDouble product = Multiply(b.high, first);
  const DoubleDouble rest = Subtract(a, {product.high, product.low + b.low * first});
  const double second = rest.high / b.high;
  const double high = first + second;
  return {high, second - (high - first)};
}

/// Returns a * b - c * d.
DoubleDouble GetDifference(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
  return Subtract(Multiply(static_cast<double>(a), static_cast<double>(b)),
                  Multiply(static_cast<double>(c), static_cast<double>(d)));
}

/// A crossing along one axis: both lines as functions of it, with all coordinates doubled so that
/// borders of pixels are whole numbers.
struct CrossingAxis {
  GridLine a;
  GridLine b;
  std::int64_t low;  ///< the range that both cover, not doubled
  std::int64_t high;

  /// Returns true when the crossing lies before the border behind a column.
  bool IsBeforeBorder(std::int64_t column) const {
    return CompareAtColumn(a, b, 2 * column + 1) == CompareSlopes(a, b);
  }

  /// Moves an estimate of the column, off by one at most, to the right one.
  std::int64_t Correct(std::int64_t column) const {
    column = std::clamp(column, low, high);
    while (column < high && !IsBeforeBorder(column)) ++column;
    while (column > low && IsBeforeBorder(column - 1)) --column;
    return column;
  }
};

/// A place near the crossing along one axis.
struct Estimate {
  std::int64_t column;
  bool isSure;
};

/// Returns the column at a fraction of the way from one to another.
Estimate GetColumn(std::int64_t start, std::int64_t length, const DoubleDouble& fraction) {
  // The fraction is off by less than 2^-98 of itself, the way by 2^-45.
  constexpr double DOUBT = 0x1p-40;
  const auto way = static_cast<double>(length);
  DoubleDouble product = Multiply(way, fraction.high);
  product.low += way * fraction.low;
  const double whole = std::floor(product.high);
  const double rest = (product.high - whole) + product.low;  // may lie a little beyond 0 to 1
  const double up = std::floor(rest + 0.5);
  const double past = rest + 0.5 - up;
  return {start + static_cast<std::int64_t>(whole) + static_cast<std::int64_t>(up),
          past > DOUBT && past < 1.0 - DOUBT};
}

/// Returns an edge with all coordinates doubled.
GridLine Double(const GridEdge& edge) {
  return {2 * edge.x, 2 * edge.y, 2 * edge.dx, 2 * edge.dy};
}

/// Returns an edge with its axes exchanged and all coordinates doubled.
GridLine Transpose(const GridEdge& edge) {
  if (edge.dy > 0) return {2 * edge.y, 2 * edge.x, 2 * edge.dy, 2 * edge.dx};
  return {2 * edge.end.y, 2 * edge.end.x, -2 * edge.dy, -2 * edge.dx};
}

}  // namespace

Passage GetPassage(const GridEdge& edge, const GridPoint& pixel) {
  const std::int64_t low = std::min(edge.y, edge.end.y);
  const std::int64_t high = std::max(edge.y, edge.end.y);
  if (pixel.x < edge.x - NEAR_PIXELS || pixel.x > edge.end.x + NEAR_PIXELS ||
      pixel.y < low - NEAR_PIXELS || pixel.y > high + NEAR_PIXELS) {
    return Passage::Far;
  }
  const std::int64_t rise = edge.dy < 0 ? -edge.dy : edge.dy;
  const std::int64_t extent = edge.dx + rise;  // of the function below, over the pixel
  const double estimate = static_cast<double>(edge.dx) * static_cast<double>(pixel.y - edge.y) -
                          static_cast<double>(edge.dy) * static_cast<double>(pixel.x - edge.x);
  constexpr double WIDTH = 2.0 * NEAR_PIXELS + 1.0;
  constexpr double LARGEST_ERROR = 0x1p55;
  const double limit = 0.5 * WIDTH * static_cast<double>(extent);
  if (std::abs(estimate) > limit + LARGEST_ERROR) return Passage::Far;
  const std::int64_t twice =
      2 * SmallDifference(edge.dx, pixel.y - edge.y, edge.dy, pixel.x - edge.x);
  if (twice > static_cast<std::int64_t>(WIDTH) * extent ||
      twice < -static_cast<std::int64_t>(WIDTH) * extent) {
    return Passage::Far;
  }
  if (pixel.x < edge.x || pixel.x > edge.end.x || pixel.y < low || pixel.y > high) {
    return Passage::Near;
  }
  // The corner where the function is largest belongs to the pixel only at the lower left of it.
  const bool hasLargest = edge.dx == 0 && edge.dy > 0;
  const bool hasSmallest = edge.dy <= 0;
  const bool isReached = hasLargest ? twice >= -extent : twice > -extent;
  const bool isPassed = hasSmallest ? twice <= extent : twice < extent;
  return isReached && isPassed ? Passage::Through : Passage::Near;
}

GridPoint GetCrossingPixel(const GridEdge& a, const GridEdge& b) {
  const DoubleDouble scale = GetDifference(a.dx, b.dy, a.dy, b.dx);
  const DoubleDouble fraction = Divide(GetDifference(b.x - a.x, b.dy, b.y - a.y, b.dx), scale);
  const Estimate x = GetColumn(a.x, a.dx, fraction);
  const Estimate y = GetColumn(a.y, a.dy, fraction);
  GridPoint pixel{x.column, y.column};
  if (a.dx == 0 || b.dx == 0) {
    pixel.x = a.dx == 0 ? a.x : b.x;
  } else if (!x.isSure) {
    const CrossingAxis axis{Double(a), Double(b), std::max(a.x, b.x), std::min(a.end.x, b.end.x)};
    pixel.x = axis.Correct(pixel.x);
  }
  if (a.dy == 0 || b.dy == 0) {
    pixel.y = a.dy == 0 ? a.y : b.y;
  } else if (!y.isSure) {
    const CrossingAxis axis{Transpose(a), Transpose(b),
                            std::max(std::min(a.y, a.end.y), std::min(b.y, b.end.y)),
                            std::min(std::max(a.y, a.end.y), std::max(b.y, b.end.y))};
    pixel.y = axis.Correct(pixel.y);
  }
  return pixel;
}

}  // namespace shr::gpc
