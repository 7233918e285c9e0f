// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Exact geometry on the clipper's grid. For the library's own use.
///
/// Coordinates are whole numbers of at most 2^51, so differences have 53 bits and a product of two
/// of them 106. Every question below is the sign of a difference of two such products. It is asked
/// in doubles first; where they cannot tell, the difference itself is so small that arithmetic
/// modulo 2^64 gives it exactly, so no wider integers are needed anywhere.
///
/// Threads: no state.

#pragma once

#include <cmath>
#include <cstdint>

#include "shared/polygons/clipper/GpcBuffer.h"

namespace shr::gpc {

/// Coordinates on the grid are at most 2^GRID_BITS by absolute value.
inline constexpr int GRID_BITS = 51;

struct GridPoint {
  std::int64_t x;
  std::int64_t y;

  friend bool operator==(const GridPoint&, const GridPoint&) = default;
  friend bool operator<(const GridPoint& a, const GridPoint& b) {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
  }
};

/// Returns a difference of products that is known to be between -2^63 and 2^63.
inline std::int64_t SmallDifference(std::int64_t a, std::int64_t b, std::int64_t c,
                                    std::int64_t d) {
  const auto wrap = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
  return static_cast<std::int64_t>(wrap(a) * wrap(b) - wrap(c) * wrap(d));
}

inline int SignOf(std::int64_t value) {
  return (value > 0) - (value < 0);
}

/// Returns the sign of a * b - c * d. Requires: products of at most 2^111 by absolute value.
inline int SignOfDifference(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
  // Rounding moves the value by less than 6 * 2^-53 * 2^111 < 2^61.
  constexpr double LARGEST_ERROR = 0x1p61;
  const double value = static_cast<double>(a) * static_cast<double>(b) -
                       static_cast<double>(c) * static_cast<double>(d);
  if (value > LARGEST_ERROR) return 1;
  if (value < -LARGEST_ERROR) return -1;
  return SignOf(SmallDifference(a, b, c, d));
}

/// The line through a point with a direction to the right.
struct GridLine {
  std::int64_t x, y, dx, dy;  ///< dx > 0
  double slope;

  GridLine(std::int64_t x0, std::int64_t y0, std::int64_t dx0, std::int64_t dy0)
      : x(x0),
        y(y0),
        dx(dx0),
        dy(dy0),
        slope(dx0 == 0 ? 0.0 : static_cast<double>(dy0) / static_cast<double>(dx0)) {}

  /// Returns the height at a column of the edge, off by less than 3.
  double Estimate(std::int64_t column) const {
    return static_cast<double>(y) + static_cast<double>(column - x) * slope;
  }
};

/// How far an estimate may be off, twice and with a margin.
inline constexpr double ESTIMATE_ERROR = 8.0;

/// Returns 1 where `a` is above `b` at a column that both cover, 0 where they meet there.
inline int CompareAtColumn(const GridLine& a, const GridLine& b, std::int64_t column) {
  const double aEstimate = a.Estimate(column);
  const double bEstimate = b.Estimate(column);
  if (aEstimate - bEstimate > ESTIMATE_ERROR) return 1;
  if (bEstimate - aEstimate > ESTIMATE_ERROR) return -1;
  // The heights are whole numbers and remainders: y + rest / dx.
  const auto aWhole = static_cast<std::int64_t>(aEstimate);
  const auto bWhole = static_cast<std::int64_t>(bEstimate);
  const std::int64_t aRest = SmallDifference(a.dy, column - a.x, aWhole - a.y, a.dx);
  const std::int64_t bRest = SmallDifference(b.dy, column - b.x, bWhole - b.y, b.dx);
  return SignOfDifference(b.dx, (aWhole - bWhole) * a.dx + aRest, bRest, a.dx);
}

/// An edge between two points of the grid, the smaller one first.
struct GridEdge : GridLine {
  GridPoint end;
  Index left;  ///< the numbers of its ends in the order of points
  Index right;

  GridEdge(const GridPoint& from, const GridPoint& to, Index leftRank, Index rightRank)
      : GridLine(from.x, from.y, to.x - from.x, to.y - from.y),
        end(to),
        left(leftRank),
        right(rightRank) {}

  bool IsUpright() const { return dx == 0; }
};

/// Returns 1 for a point above an edge (left of it, for an upright one), 0 for one on its line.
inline int SideOf(const GridLine& edge, const GridPoint& point) {
  return SignOfDifference(edge.dx, point.y - edge.y, edge.dy, point.x - edge.x);
}

/// Returns 1 when `a` is steeper than `b`.
inline int CompareSlopes(const GridLine& a, const GridLine& b) {
  return SignOfDifference(a.dy, b.dx, b.dy, a.dx);
}

/// Returns the sign of the turn a, b, c.
inline int TurnOf(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  return SignOfDifference(b.x - a.x, c.y - a.y, b.y - a.y, c.x - a.x);
}

/// How an edge passes a pixel, the square of side 1 around a grid point with its left and lower
/// sides.
enum class Passage { Far, Near, Through };

/// `Near` is within NEAR_PIXELS of the pixel.
inline constexpr std::int64_t NEAR_PIXELS = 2;

/// Returns how far the function of an edge, `dx * (y - edge.y) - dy * (x - edge.x)`, changes over a
/// pixel.
inline std::int64_t GetExtent(const GridEdge& edge) {
  return edge.dx + (edge.dy < 0 ? -edge.dy : edge.dy);
}

/// Returns the value of that function, taken in doubles, beyond which a pixel is far from the edge.
inline double GetPassageLimit(const GridEdge& edge) {
  constexpr double LARGEST_ERROR = 0x1p55;
  return (NEAR_PIXELS + 0.5) * static_cast<double>(GetExtent(edge)) + LARGEST_ERROR;
}

Passage GetPassage(const GridEdge& edge, const GridPoint& pixel);

/// Returns the pixel in which two edges cross. Requires: they do, inside both.
GridPoint GetCrossingPixel(const GridEdge& a, const GridEdge& b);

}  // namespace shr::gpc
