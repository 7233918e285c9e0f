// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The nodes of every edge are put in order along it, and those that nearly coincide become one.
// Where that would move something by more than rounding, the contours are written anew with what
// coincides but for the last bits joined.

#include <algorithm>
#include <cmath>

#include "shared/polygons/clipper/GpcCrossings.h"

namespace shr::gpc {
namespace {

bool IsNear(const Vec2d& a, const Vec2d& b, double tolerance) {
  return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance;
}

/// Brings the occurrences of each edge together, edges in order.
void GroupByEdge(const Input& input, Crossings& crossings) {
  Buffer<Occurrence>& occurrences = crossings.occurrences;
  if (occurrences.Size() < input.points.Size() / 16) {
    std::sort(occurrences.begin(), occurrences.end(), [](const Occurrence& a, const Occurrence& b) {
      return a.edge < b.edge || (a.edge == b.edge && a.point < b.point);
    });
    return;
  }
  Buffer<Index>& starts = crossings.starts;
  starts.Fill(input.points.Size() + 1, 0);
  for (const Occurrence& occurrence : occurrences) ++starts[occurrence.edge];
  Index sum = 0;
  for (Index& start : starts) {
    const Index count = start;
    start = sum;
    sum += count;
  }
  crossings.unordered.Swap(occurrences);
  occurrences.Resize(crossings.unordered.Size());
  for (const Occurrence& occurrence : crossings.unordered) {
    occurrences[starts[occurrence.edge]++] = occurrence;
  }
}

bool IsBefore(const PlacedPoint& a, const PlacedPoint& b) {
  return a.place < b.place || (a.place == b.place && a.point < b.point);
}

/// Up to so many are sorted by insertion.
constexpr Index FEW = 24;

void SortRange(PlacedPoint* first, Index count) {
  if (count > FEW) {
    std::sort(first, first + count, IsBefore);
    return;
  }
  for (Index i = 1; i < count; ++i) {
    const PlacedPoint point = first[i];
    Index j = i;
    for (; j > 0 && IsBefore(point, first[j - 1]); --j) first[j] = first[j - 1];
    first[j] = point;
  }
}

/// Sorts places that are spread evenly, as crossings with a pattern are, in linear time.
void SortPlaces(Crossings& crossings) {
  Buffer<PlacedPoint>& placed = crossings.placed;
  const Index count = placed.Size();
  if (std::is_sorted(placed.begin(), placed.end(), IsBefore)) return;
  if (count > FEW) {
    // The first may be the start of the edge, at minus infinity.
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (const PlacedPoint& point : placed) {
      if (point.place != -HUGE_VAL) low = std::min(low, point.place);
      high = std::max(high, point.place);
    }
    const double scale = (count - 1) / (high - low);
    if (std::isfinite(scale)) {
      const auto bucketOf = [&](double place) {
        return place < low ? Index{0} : static_cast<Index>((place - low) * scale);
      };
      Buffer<Index>& starts = crossings.starts;
      starts.Fill(count + 1, 0);
      for (const PlacedPoint& point : placed) ++starts[bucketOf(point.place)];
      Index sum = 0;
      for (Index& start : starts) {
        const Index size = start;
        start = sum;
        sum += size;
      }
      crossings.placedAside.Resize(count);
      for (const PlacedPoint& point : placed) {
        crossings.placedAside[starts[bucketOf(point.place)]++] = point;
      }
      placed.Swap(crossings.placedAside);
      Index first = 0;
      for (Index bucket = 0; bucket < count; ++bucket) {  // starts are ends by now
        if (starts[bucket] - first > 1) SortRange(placed.Data() + first, starts[bucket] - first);
        first = starts[bucket];
      }
      return;
    }
  }
  SortRange(placed.Data(), count);
}

/// Merges two points unless they are one already.
void Merge(const Input& input, Crossings& crossings, Index a, Index b) {
  const Index aRoot = crossings.Root(a);
  const Index bRoot = crossings.Root(b);
  if (aRoot == bRoot) return;
  if (!IsSame(crossings.PointOf(input, aRoot), crossings.PointOf(input, bRoot)))
    crossings.isMoved = true;
  crossings.parents[std::max(aRoot, bRoot)] = std::min(aRoot, bRoot);
  crossings.hasMerged = true;
}

/// Orders the occurrences of one edge and merges neighbours. The last vertex of a line has no edge,
/// but an occurrence as if it had.
void OrderEdge(const Input& input, Crossings& crossings, Index first, Index count,
               Index endVertex) {
  Occurrence* occurrences = crossings.occurrences.Data() + first;
  const Index edge = occurrences[0].edge;
  if (count > 1) {
    const Vec2d along = input.points[edge + 1] - input.points[edge];
    const bool byX = std::abs(along.x) >= std::abs(along.y);
    const bool isForward = (byX ? along.x : along.y) > 0.0;
    crossings.placed.Resize(count);
    for (Index i = 0; i < count; ++i) {
      const Index number = occurrences[i].point;
      const Vec2d point = crossings.PointOf(input, number);
      const double place = byX ? point.x : point.y;
      crossings.placed[i] = {number == edge ? -HUGE_VAL : isForward ? place : -place, number};
    }
    SortPlaces(crossings);
    for (Index i = 0; i < count; ++i) occurrences[i].point = crossings.placed[i].point;
  }
  Index last = occurrences[0].point;
  Vec2d lastPoint = crossings.PointOf(input, last);
  const auto mergeWith = [&](Index next, const Vec2d& point) {
    if (IsNear(lastPoint, point, input.tolerance)) Merge(input, crossings, last, next);
    last = next;
    lastPoint = point;
  };
  for (Index i = 1; i < count; ++i) {
    mergeWith(occurrences[i].point, crossings.PointOf(input, occurrences[i].point));
  }
  if (endVertex != NONE && crossings.isNode[endVertex])
    mergeWith(endVertex, input.points[endVertex]);
}

/// Appends a point to the contour in work unless it repeats the last.
void AppendNext(Buffer<Vec2d>& points, Index first, const Vec2d& point) {
  if (points.Size() > first && IsSame(points.Back(), point)) return;
  points.Append(point);
}

bool IsNearEdge(const Input& input, const Occurrence& occurrence) {
  const Vec2d& start = input.points[occurrence.edge];
  const Vec2d along = input.points[occurrence.edge + 1] - start;
  const double limit = JOIN_DISTANCE * input.tolerance * Length1(along);
  return std::abs(along.Cross(input.points[occurrence.point] - start)) <= limit;
}

/// Ends the contour in work at the end of the points.
void AppendContour(ContourTable& joined, Index first, const Contour& source) {
  Buffer<Vec2d>& points = joined.points;
  if (!source.IsLine()) {
    while (points.Size() > first + 1 && IsSame(points.Back(), points[first])) {
      points.Truncate(points.Size() - 1);
    }
    if (points.Size() < first + 3) return points.Truncate(first);
    points.Append(points[first]);
  }
  const Index count = points.Size() - first - 1;
  if (count == 0) return points.Truncate(first);
  joined.contours.Append({first, count, first, source.polygon, source.operand});
}

}  // namespace

void OrderNodes(const Input& input, Crossings& crossings) {
  for (const Index vertex : crossings.nodeVertices) crossings.occurrences.Append({vertex, vertex});
  GroupByEdge(input, crossings);
  Index contourIndex = 0;
  const Index size = crossings.occurrences.Size();
  for (Index first = 0; first < size;) {
    const Index edge = crossings.occurrences[first].edge;
    Index end = first + 1;
    while (end < size && crossings.occurrences[end].edge == edge) ++end;
    while (edge > input.contours[contourIndex].End()) ++contourIndex;
    const Contour& contour = input.contours[contourIndex];
    const Index endVertex = edge == contour.End() ? NONE : contour.VertexAt(edge + 1);
    OrderEdge(input, crossings, first, end - first, endVertex);
    first = end;
  }
  if (!crossings.hasMerged) return;
  for (const Index vertex : crossings.nodeVertices)
    crossings.parents[vertex] = crossings.Root(vertex);
  const Index vertices = input.points.Size();
  for (Index i = 0; i < crossings.points.Size(); ++i) {
    crossings.parents[vertices + i] = crossings.Root(vertices + i);
  }
}

void JoinVertices(const Input& input, Crossings& crossings, ContourTable& joined) {
  // Crossings come from the grid.
  Index kept = 0;
  for (const Occurrence& occurrence : crossings.occurrences) {
    if (occurrence.point >= input.points.Size() || occurrence.point == occurrence.edge) continue;
    if (!IsNearEdge(input, occurrence)) continue;
    crossings.occurrences[kept++] = occurrence;
  }
  crossings.occurrences.Truncate(kept);
  GroupByEdge(input, crossings);
  joined.Clear();
  const Occurrence* next = crossings.occurrences.begin();
  const Occurrence* const last = crossings.occurrences.end();
  for (const Contour& contour : input.contours) {
    const Index first = joined.points.Size();
    for (Index edge = contour.first; edge < contour.End(); ++edge) {
      const Index vertex = crossings.isNode[edge] ? crossings.Root(edge) : edge;
      AppendNext(joined.points, first, input.points[vertex]);
      crossings.placed.Clear();
      const Vec2d along = input.points[edge + 1] - input.points[edge];
      for (; next != last && next->edge == edge; ++next) {
        crossings.placed.Append(
            {along.Dot(input.points[next->point] - input.points[edge]), next->point});
      }
      if (crossings.placed.Size() > 1) SortPlaces(crossings);
      for (const PlacedPoint& placed : crossings.placed) {
        AppendNext(joined.points, first, input.points[crossings.Root(placed.point)]);
      }
    }
    if (contour.IsLine()) {
      AppendNext(joined.points, first, input.points[crossings.Root(contour.End())]);
    }
    AppendContour(joined, first, contour);
  }
}

}  // namespace shr::gpc
