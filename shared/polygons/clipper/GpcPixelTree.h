// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A tree over points of the clipper's grid, to find those near an edge. For the library's own use.
///
/// The points are halved again and again, until few are left. Each part is held by an upright or
/// level strip of a parallelogram that takes on the direction of its points: crossings in a bundle
/// of nearly parallel edges lie in a place that is far longer than wide, and only a parallelogram
/// along it tells the edges of the bundle apart.
///
/// Threads: const calls may run together.

#pragma once

#include <algorithm>
#include <cmath>

#include "shared/polygons/clipper/GpcGrid.h"

namespace shr::gpc {

class PixelTree {
public:
  /// The points have to stay where they are while the tree is used.
  void Build(const Buffer<GridPoint>& points) {
    points_ = &points;
    order_.Resize(points.Size());
    for (Index i = 0; i < points.Size(); ++i) order_[i] = i;
    nodes_.Clear();
    if (!points.IsEmpty()) BuildNode(0, points.Size(), false);
  }

  /// Calls `visit(index, passage)` for each point that an edge passes near or through.
  template <class Visit>
  void Find(const GridEdge& edge, const Visit& visit) const {
    if (!nodes_.IsEmpty()) Find(Line(edge), edge, 0, visit);
  }

private:
  static constexpr Index LEAF_SIZE = 8;
  /// A part takes on the direction of its points where that makes it so much narrower.
  static constexpr double MUCH_NARROWER = 0.25;

  /// The points whose `u` is from uMin to uMax and whose `v - slope * (u - uMin)` is from low to
  /// high. `u` is x and `v` is y, or the other way round.
  struct Node {
    double uMin, uMax;
    double slope;
    double low, high;
    bool isSwapped;
    Index first;
    Index count;
    Index second;  ///< the second half; the first one follows
  };

  /// An edge in doubles.
  struct Line {
    explicit Line(const GridEdge& edge)
        : x{static_cast<double>(edge.x), static_cast<double>(edge.end.x)},
          y{static_cast<double>(edge.y), static_cast<double>(edge.end.y)} {}

    double x[2];
    double y[2];
  };

  double GetU(const Node& node, Index index) const {
    const GridPoint& point = (*points_)[index];
    return static_cast<double>(node.isSwapped ? point.y : point.x);
  }
  double GetV(const Node& node, Index index) const {
    const GridPoint& point = (*points_)[index];
    return static_cast<double>(node.isSwapped ? point.x : point.y);
  }

  Index BuildNode(Index first, Index count, bool isCutAcross) {
    const Index number = nodes_.Size();
    Node node{};
    node.first = first;
    node.count = count;
    Fit(node);
    nodes_.Append(node);
    if (count <= LEAF_SIZE) return number;
    const bool isAcross =
        node.slope != 0.0 ? !isCutAcross : node.uMax - node.uMin >= node.high - node.low;
    const Index half = count / 2;
    Index* begin = order_.Data() + first;
    const auto keyOf = [&](Index point) {
      const double u = GetU(node, point);
      return isAcross ? u : GetV(node, point) - node.slope * (u - node.uMin);
    };
    std::nth_element(begin, begin + half, begin + count, [&](Index a, Index b) {
      const double aKey = keyOf(a);
      const double bKey = keyOf(b);
      return aKey < bKey || (aKey == bKey && a < b);
    });
    BuildNode(first, half, isAcross);
    nodes_[number].second = BuildNode(first + half, count - half, isAcross);
    return number;
  }

  /// Lays a parallelogram around the points of a node.
  void Fit(Node& node) const {
    Measure(node);
    if (node.high - node.low > node.uMax - node.uMin) {
      node.isSwapped = true;
      Measure(node);
    }
    if (node.uMax == node.uMin) return;
    const Index* begin = order_.Data() + node.first;
    const auto [left, right] = std::minmax_element(
        begin, begin + node.count, [&](Index a, Index b) { return GetU(node, a) < GetU(node, b); });
    Node tilted = node;
    tilted.slope = (GetV(node, *right) - GetV(node, *left)) / (node.uMax - node.uMin);
    Measure(tilted);
    if (tilted.high - tilted.low <= MUCH_NARROWER * (node.high - node.low)) node = tilted;
  }

  void Measure(Node& node) const {
    if (node.slope == 0.0) node.uMin = HUGE_VAL, node.uMax = -HUGE_VAL;
    node.low = HUGE_VAL;
    node.high = -HUGE_VAL;
    for (Index i = node.first; i < node.first + node.count; ++i) {
      const double u = GetU(node, order_[i]);
      const double rest =
          GetV(node, order_[i]) - (node.slope != 0.0 ? node.slope * (u - node.uMin) : 0.0);
      node.uMin = std::min(node.uMin, u);
      node.uMax = std::max(node.uMax, u);
      node.low = std::min(node.low, rest);
      node.high = std::max(node.high, rest);
    }
  }

  static bool MayMeet(const Line& line, const Node& node) {
    // More than what an edge is compared with and what rounding may add.
    constexpr double MARGIN = NEAR_PIXELS + 6.0;
    const double* u = node.isSwapped ? line.y : line.x;
    const double* v = node.isSwapped ? line.x : line.y;
    const bool rises = u[0] <= u[1];
    const double uStart = rises ? u[0] : u[1];
    const double uEnd = rises ? u[1] : u[0];
    const double low = std::max(uStart, node.uMin - MARGIN);
    const double high = std::min(uEnd, node.uMax + MARGIN);
    if (low > high) return false;
    const double vStart = rises ? v[0] : v[1];
    const double vEnd = rises ? v[1] : v[0];
    const double length = uEnd - uStart;
    // Places at either end, as parts of the way, so that steep edges do not overshoot.
    const auto restAt = [&](double at) {
      const double part = length > 0.0 ? (at - uStart) / length : 0.0;
      return vStart + (vEnd - vStart) * part - node.slope * (at - node.uMin);
    };
    double a = restAt(low);
    double b = restAt(high);
    if (length == 0.0) {
      a = vStart - node.slope * (low - node.uMin);
      b = vEnd - node.slope * (low - node.uMin);
    }
    const double steepness = std::abs(node.slope) + 1.0;
    return std::max(a, b) >= node.low - MARGIN * steepness &&
           std::min(a, b) <= node.high + MARGIN * steepness;
  }

  template <class Visit>
  void Find(const Line& line, const GridEdge& edge, Index number, const Visit& visit) const {
    const Node& node = nodes_[number];
    if (!MayMeet(line, node)) return;
    if (node.second != 0) {
      Find(line, edge, number + 1, visit);
      return Find(line, edge, node.second, visit);
    }
    for (Index i = node.first; i < node.first + node.count; ++i) {
      const Passage passage = GetPassage(edge, (*points_)[order_[i]]);
      if (passage != Passage::Far) visit(order_[i], passage);
    }
  }

  const Buffer<GridPoint>* points_ = nullptr;
  Buffer<Index> order_{L"index creation"};
  Buffer<Node> nodes_{L"index creation"};
};

}  // namespace shr::gpc
