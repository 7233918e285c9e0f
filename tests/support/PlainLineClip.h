// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GLineClipPolygon` without its index: the same steps over all edges, one after another.

#pragma once

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/lines/LineClipPolygon.h"

namespace shr::test {

class PlainLineClip : public GLineClipPolygon {
public:
  PlainLineClip(std::vector<Vec2d> points, std::vector<unsigned int> counts)
      : GLineClipPolygon(points, counts), points_(std::move(points)), counts_(std::move(counts)) {
    for (const CONTOUR& contour : contours()) {
      for (const VERTEX& from : contour.vertices) {
        const VERTEX& to = contour.vertices[from.next];
        edges_.emplace_back(Vec2d(from.x, from.y), Vec2d(to.x, to.y));
      }
    }
  }

  std::vector<GLine2> ClipPlain(const Vec2d& a, const Vec2d& b) const {
    const SEGMENT segment(a, b);
    std::vector<GLine2> pieces;
    if (disjunct(segment.box, GetBBox())) return pieces;
    const std::vector<CLIST> crossings = FindCrossings(segment);
    double lastParameter = -1.0;
    for (std::size_t i = 1; i < crossings.size(); ++i) {
      const CLIST& from = crossings[i - 1];
      const CLIST& to = crossings[i];
      if (from.parameter == to.parameter) continue;
      const Vec2d middle = a + (b - a) * ((from.parameter + to.parameter) / 2.0);
      if (!IsInsidePlain(middle)) continue;
      const Vec2d end = to.parameter == 1.0 ? b : to.point;
      const bool meets = !pieces.empty() &&
                         (pieces.back().GetEnd() == from.point || lastParameter == from.parameter);
      if (meets) pieces.back().Set(pieces.back().GetBegin(), end);
      if (!meets) pieces.emplace_back(from.point, end);
      lastParameter = to.parameter;
    }
    return pieces;
  }

private:
  /// Returns the crossings with all edges and the ends, sorted.
  std::vector<CLIST> FindCrossings(const SEGMENT& segment) const {
    CROSSINGS crossings;
    for (const SEGMENT& edge : edges_) {
      if (disjunct(segment.box, edge.box)) continue;
      cross_calc(segment, edge.begin, edge.end, crossings);
    }
    crossings.push_back({0.0, segment.begin, KIND::TOUCH});
    crossings.push_back({1.0, segment.end, KIND::TOUCH});
    std::vector<CLIST> sorted(crossings.begin(), crossings.end());
    std::sort(sorted.begin(), sorted.end(), [](const CLIST& c, const CLIST& d) {
      return std::tie(c.parameter, c.point.x, c.point.y) <
             std::tie(d.parameter, d.point.x, d.point.y);
    });
    return sorted;
  }

  bool IsInsidePlain(const Vec2d& point) const {
    for (const SEGMENT& edge : edges_) {
      const Vec2d d = edge.end - edge.begin;
      const Vec2d p = point - edge.begin;
      if (d.x * p.y - d.y * p.x == 0.0 && !disjunct(edge.box, Box2d(point, point))) return false;
    }
    return PointInPolygon(point, points_, counts_);
  }

  std::vector<Vec2d> points_;
  std::vector<unsigned int> counts_;
  std::vector<SEGMENT> edges_;
};

}  // namespace shr::test
