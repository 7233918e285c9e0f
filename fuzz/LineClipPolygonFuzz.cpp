// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clips a polyline to contours by the index and by the same steps over all edges, and locates its
// points by the index and without it.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "fuzz/PointInput.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/LineClipPolygon.h"
#include "shared/polygons/PointLocator.h"

namespace {

using namespace shr;
using Points = std::vector<Vec2d>;

class PlainClip : public GLineClipPolygon {
public:
  using GLineClipPolygon::GLineClipPolygon;

  /// Returns the length inside by the crossings with all edges.
  double LengthInside(const Vec2d& a, const Vec2d& b) const {
    const SEGMENT segment(a, b);
    if (disjunct(segment.box, GetBBox())) return 0.0;
    CROSSINGS crossings;
    for (const CONTOUR& contour : contours()) {
      for (const VERTEX& v : contour.vertices) {
        const VERTEX& next = contour.vertices[v.next];
        const SEGMENT edge(Vec2d(v.x, v.y), Vec2d(next.x, next.y));
        if (disjunct(edge.box, segment.box)) continue;
        cross_calc(segment, edge.begin, edge.end, crossings);
      }
    }
    std::vector<double> cuts = {0.0, 1.0};
    for (const CLIST& crossing : crossings) cuts.push_back(crossing.parameter);
    std::sort(cuts.begin(), cuts.end());
    double inside = 0.0;
    for (std::size_t i = 1; i < cuts.size(); ++i) {
      const Vec2d middle = a + (b - a) * ((cuts[i - 1] + cuts[i]) / 2.0);
      if (cuts[i] > cuts[i - 1] && p_inside(middle)) inside += cuts[i] - cuts[i - 1];
    }
    return inside * a.Distance(b);
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::PointInput input(data, size);
  const unsigned int counts[] = {input.Byte() % 64u, input.Byte() % 8u};
  Points contours = input.Points(counts[0] + counts[1]);
  contours.resize(counts[0] + counts[1]);
  const PlainClip polygon(contours, counts);
  const PointLocator locator(contours, counts);
  const Points line = input.Points(40);
  const bool isFinite = std::all_of(contours.begin(), contours.end(), [](const Vec2d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
  });
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (locator.Contains(line[i]) != PointInPolygon(line[i], contours, counts)) std::abort();
    if (i == 0) continue;
    std::vector<GLine2> pieces;
    polygon.Clip(&line[i - 1], 2, pieces);
    double length = 0.0;
    for (const GLine2& piece : pieces) length += piece.GetBegin().Distance(piece.GetEnd());
    const double whole = line[i - 1].Distance(line[i]);
    if (!isFinite || !(whole < 1e100)) continue;
    const double expected = polygon.LengthInside(line[i - 1], line[i]);
    // The points of crossings are rounded to doubles.
    const double rounding = 1e-14 * (line[i].Length() + line[i - 1].Length());
    if (!(std::abs(length - expected) <= 1e-9 * whole + rounding)) std::abort();
  }
  return 0;
}
