// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/clipper/GpcGrid.h"

#include <algorithm>

namespace shr::gpc {
namespace {

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

  /// Returns the column of the crossing, given a column that is less than two off, if any.
  std::int64_t Find(const std::int64_t* estimate) const {
    std::int64_t first = low;
    std::int64_t last = high;
    if (estimate != nullptr) {
      first = std::max(low, std::min(high, *estimate - 2));
      last = std::max(low, std::min(high, *estimate + 2));
    }
    while (first < last) {
      const std::int64_t middle = first + (last - first) / 2;
      if (IsBeforeBorder(middle)) {
        last = middle;
      } else {
        first = middle + 1;
      }
    }
    return first;
  }
};

/// Returns an edge with all coordinates doubled.
GridLine Double(const GridEdge& edge) {
  return {2 * edge.x, 2 * edge.y, 2 * edge.dx, 2 * edge.dy};
}

/// Returns an edge with its axes exchanged and all coordinates doubled.
GridLine Transpose(const GridEdge& edge) {
  if (edge.dy > 0) return {2 * edge.y, 2 * edge.x, 2 * edge.dy, 2 * edge.dx};
  return {2 * edge.end.y, 2 * edge.end.x, -2 * edge.dy, -2 * edge.dx};
}

/// A crossing as far as doubles tell it: a grid point near it, and which of its coordinates are
/// those of the pixel.
struct CrossingEstimate {
  GridPoint pixel{};
  bool isNear = false;  ///< less than two off
  bool isSureX = false;
  bool isSureY = false;
};

/// Starts at a point of the first edge that the double fraction of its length gives, whose distance
/// from both edges is a few pixels at most, and asks for the offset of the crossing from there. The
/// functions of the edges are small whole numbers in that place, so only the last division rounds.
CrossingEstimate EstimateCrossing(const GridEdge& a, const GridEdge& b) {
  const auto aDx = static_cast<double>(a.dx);
  const auto aDy = static_cast<double>(a.dy);
  const auto bDx = static_cast<double>(b.dx);
  const auto bDy = static_cast<double>(b.dy);
  const double scale = aDx * bDy - aDy * bDx;
  CrossingEstimate estimate;
  // Offsets of up to FARTHEST pixels are off by less than this.
  const double size = (aDx + std::abs(aDy)) * (bDx + std::abs(bDy));
  const double doubt = 0x1p-45 * size / std::abs(scale);
  if (!(doubt < 0.125)) return estimate;
  const double fraction = std::clamp(
      (static_cast<double>(b.x - a.x) * bDy - static_cast<double>(b.y - a.y) * bDx) / scale, 0.0,
      1.0);
  GridPoint& pixel = estimate.pixel;
  pixel = {a.x + static_cast<std::int64_t>(fraction * aDx),
           a.y + static_cast<std::int64_t>(fraction * aDy)};
  constexpr int MOST_STEPS = 4;
  constexpr double FARTHEST = 4.0;
  for (int step = 0; step < MOST_STEPS; ++step) {
    const auto aValue =
        static_cast<double>(SmallDifference(a.dx, pixel.y - a.y, a.dy, pixel.x - a.x));
    const auto bValue =
        static_cast<double>(SmallDifference(b.dx, pixel.y - b.y, b.dy, pixel.x - b.x));
    const double x = (aDx * bValue - bDx * aValue) / scale + 0.5;
    const double y = (aDy * bValue - bDy * aValue) / scale + 0.5;
    const double xWhole = std::floor(x);
    const double yWhole = std::floor(y);
    pixel.x += static_cast<std::int64_t>(xWhole);
    pixel.y += static_cast<std::int64_t>(yWhole);
    if (std::abs(x) > FARTHEST || std::abs(y) > FARTHEST) continue;
    estimate.isNear = true;
    estimate.isSureX = x - xWhole > doubt && x - xWhole < 1.0 - doubt;
    estimate.isSureY = y - yWhole > doubt && y - yWhole < 1.0 - doubt;
    return estimate;
  }
  return estimate;
}

}  // namespace

Passage GetPassage(const GridEdge& edge, const GridPoint& pixel) {
  const std::int64_t low = std::min(edge.y, edge.end.y);
  const std::int64_t high = std::max(edge.y, edge.end.y);
  if (pixel.x < edge.x - NEAR_PIXELS || pixel.x > edge.end.x + NEAR_PIXELS ||
      pixel.y < low - NEAR_PIXELS || pixel.y > high + NEAR_PIXELS) {
    return Passage::Far;
  }
  const double estimate = static_cast<double>(edge.dx) * static_cast<double>(pixel.y - edge.y) -
                          static_cast<double>(edge.dy) * static_cast<double>(pixel.x - edge.x);
  if (std::abs(estimate) > GetPassageLimit(edge)) return Passage::Far;
  const std::int64_t extent = GetExtent(edge);
  const std::int64_t twice =
      2 * SmallDifference(edge.dx, pixel.y - edge.y, edge.dy, pixel.x - edge.x);
  constexpr std::int64_t WIDTH = 2 * NEAR_PIXELS + 1;
  if (twice > WIDTH * extent || twice < -WIDTH * extent) {
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
  const CrossingEstimate estimate = EstimateCrossing(a, b);
  GridPoint pixel = estimate.pixel;
  if (a.dx == 0 || b.dx == 0) {
    pixel.x = a.dx == 0 ? a.x : b.x;
  } else if (!estimate.isSureX) {
    const CrossingAxis axis{Double(a), Double(b), std::max(a.x, b.x), std::min(a.end.x, b.end.x)};
    pixel.x = axis.Find(estimate.isNear ? &estimate.pixel.x : nullptr);
  }
  if (a.dy == 0 || b.dy == 0) {
    pixel.y = a.dy == 0 ? a.y : b.y;
  } else if (!estimate.isSureY) {
    const CrossingAxis axis{Transpose(a), Transpose(b),
                            std::max(std::min(a.y, a.end.y), std::min(b.y, b.end.y)),
                            std::min(std::max(a.y, a.end.y), std::max(b.y, b.end.y))};
    pixel.y = axis.Find(estimate.isNear ? &estimate.pixel.y : nullptr);
  }
  return pixel;
}

}  // namespace shr::gpc
