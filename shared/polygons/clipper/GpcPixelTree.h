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
  void Build(const Buffer<GridPoint>& points) {
    entries_.Resize(points.Size());
    for (Index i = 0; i < points.Size(); ++i) {
      entries_[i] = {{static_cast<double>(points[i].x), static_cast<double>(points[i].y)}, i};
    }
    nodes_.Clear();
    if (!points.IsEmpty()) BuildNode(0, points.Size(), false);
  }

  /// Calls `visit(index, passage)` for each point that an edge passes near or through.
  template <class Visit>
  void Find(const GridEdge& edge, const Visit& visit) const {
    const Line line(edge);
    for (Index i = 0; i < nodes_.Size();) {
      const Node& node = nodes_[i];
      if (!MayMeet(line, node)) {
        i = node.next;
        continue;
      }
      ++i;
      if (i == node.next) FindInLeaf(line, edge, node, visit);
    }
  }

private:
  static constexpr Index LEAF_SIZE = 8;
  /// A part takes on the direction of its points where that makes it so much narrower.
  static constexpr double MUCH_NARROWER = 0.25;
  /// A part is cut in the middle unless that leaves so few of its points on one side, as a share.
  static constexpr Index FEWEST = 8;
  /// More than what an edge is compared with and what rounding may add.
  static constexpr double MARGIN = NEAR_PIXELS + 6.0;

  /// A point by x and y.
  struct Entry {
    double place[2];
    Index index;
  };

  /// Points whose `u` is from uLow to uHigh and whose `v - slope * (u - uFirst)` is from low to
  /// high, where `u` is x and `v` is y or, if `swap` is 1, the other way round. The two ranges are
  /// wider by the margin. The slope is at most 1.
  struct Node {
    double uLow, uHigh;
    double uFirst;
    double slope;
    double low, high;
    Index swap;
    Index first;
    Index count;
    Index next;  ///< the next node that is no part of this one; a leaf's is the one behind it

    double RestOf(const Entry& entry) const {
      return entry.place[1 - swap] - slope * (entry.place[swap] - uFirst);
    }
  };

  /// An edge as a function of x and of y.
  struct Line {
    struct Course {
      double uStart, uEnd;
      double vStart;
      double rise;
      double jump;  ///< of an edge without a length along u: the way that it goes along v

      void Set(double u0, double u1, double v0, double v1) {
        uStart = std::min(u0, u1);
        uEnd = std::max(u0, u1);
        vStart = u0 <= u1 ? v0 : v1;
        rise = u0 != u1 ? (v1 - v0) / (u1 - u0) : 0.0;
        jump = u0 != u1 ? 0.0 : v1 - v0;
      }
    };

    explicit Line(const GridEdge& edge)
        : x(static_cast<double>(edge.x)),
          y(static_cast<double>(edge.y)),
          dx(static_cast<double>(edge.dx)),
          dy(static_cast<double>(edge.dy)),
          limit(GetPassageLimit(edge)) {
      courses[0].Set(x, x + dx, y, y + dy);
      courses[1].Set(y, y + dy, x, x + dx);
    }

    bool IsFar(const Entry& entry) const {
      return std::abs(dx * (entry.place[1] - y) - dy * (entry.place[0] - x)) > limit;
    }

    double x, y, dx, dy;
    double limit;
    Course courses[2];
  };

  void BuildNode(Index first, Index count, bool isCutAcross) {
    const Index number = nodes_.Size();
    Node node = Fit(first, count);
    nodes_.Append(node);
    if (count > LEAF_SIZE) {
      const bool isAcross =
          node.slope != 0.0 ? !isCutAcross : node.uHigh - node.uLow >= node.high - node.low;
      const Index half = isAcross ? Part(first, count, node.uLow + (node.uHigh - node.uLow) * 0.5,
                                         [&](const Entry& entry) { return entry.place[node.swap]; })
                                  : Part(first, count, node.low + (node.high - node.low) * 0.5,
                                         [&](const Entry& entry) { return node.RestOf(entry); });
      BuildNode(first, half, isAcross);
      BuildNode(first + half, count - half, isAcross);
    }
    nodes_[number].next = nodes_.Size();
  }

  /// Brings entries with a lesser key before the others and returns their number.
  template <class KeyOf>
  Index Part(Index first, Index count, double middle, const KeyOf& keyOf) {
    Entry* const begin = entries_.Data() + first;
    const Entry* const cut = std::partition(
        begin, begin + count, [&](const Entry& entry) { return keyOf(entry) < middle; });
    const auto half = static_cast<Index>(cut - begin);
    if (std::min(half, count - half) >= count / FEWEST) return half;
    std::nth_element(begin, begin + count / 2, begin + count, [&](const Entry& a, const Entry& b) {
      const double aKey = keyOf(a);
      const double bKey = keyOf(b);
      return aKey < bKey || (aKey == bKey && a.index < b.index);
    });
    return count / 2;
  }

  /// Lays a parallelogram around entries.
  Node Fit(Index first, Index count) const {
    const Entry* const begin = entries_.Data() + first;
    Index least[2] = {0, 0};
    Index most[2] = {0, 0};
    for (Index i = 1; i < count; ++i) {
      for (const int axis : {0, 1}) {
        const double value = begin[i].place[axis];
        if (value < begin[least[axis]].place[axis]) least[axis] = i;
        if (value > begin[most[axis]].place[axis]) most[axis] = i;
      }
    }
    const auto lengthOf = [&](Index axis) {
      return begin[most[axis]].place[axis] - begin[least[axis]].place[axis];
    };
    const Index u = lengthOf(1) > lengthOf(0) ? 1 : 0;
    const Index v = 1 - u;
    const Entry& left = begin[least[u]];
    const Entry& right = begin[most[u]];
    Node node{};
    node.swap = u;
    node.first = first;
    node.count = count;
    node.uFirst = left.place[u];
    node.uLow = left.place[u] - MARGIN;
    node.uHigh = right.place[u] + MARGIN;
    node.low = begin[least[v]].place[v];
    node.high = begin[most[v]].place[v];
    if (node.low != node.high) Tilt(node, (right.place[v] - left.place[v]) / lengthOf(u));
    const double margin = MARGIN * (1.0 + std::abs(node.slope));
    node.low -= margin;
    node.high += margin;
    return node;
  }

  /// Gives a node a slope if it is far narrower with it.
  void Tilt(Node& node, double slope) const {
    if (slope == 0.0) return;
    Node tilted = node;
    tilted.slope = slope;
    tilted.low = HUGE_VAL;
    tilted.high = -HUGE_VAL;
    const double most = MUCH_NARROWER * (node.high - node.low);
    for (Index i = node.first; i < node.first + node.count; ++i) {
      const double rest = tilted.RestOf(entries_[i]);
      tilted.low = std::min(tilted.low, rest);
      tilted.high = std::max(tilted.high, rest);
      if (tilted.high - tilted.low > most) return;
    }
    node = tilted;
  }

  static bool MayMeet(const Line& line, const Node& node) {
    const Line::Course& course = line.courses[node.swap];
    const double start = std::max(course.uStart, node.uLow);
    const double end = std::min(course.uEnd, node.uHigh);
    if (start > end) return false;
    const double a =
        course.vStart + course.rise * (start - course.uStart) - node.slope * (start - node.uFirst);
    const double b = course.vStart + course.rise * (end - course.uStart) -
                     node.slope * (end - node.uFirst) + course.jump;
    return std::max(a, b) >= node.low && std::min(a, b) <= node.high;
  }

  template <class Visit>
  void FindInLeaf(const Line& line, const GridEdge& edge, const Node& node,
                  const Visit& visit) const {
    const Entry* const end = entries_.Data() + node.first + node.count;
    for (const Entry* entry = end - node.count; entry != end; ++entry) {
      if (line.IsFar(*entry)) continue;
      const GridPoint point{static_cast<std::int64_t>(entry->place[0]),
                            static_cast<std::int64_t>(entry->place[1])};
      const Passage passage = GetPassage(edge, point);
      if (passage != Passage::Far) visit(entry->index, passage);
    }
  }

  Buffer<Entry> entries_{L"index creation"};
  Buffer<Node> nodes_{L"index creation"};
};

}  // namespace shr::gpc
