// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Third stage: the contours become a graph. The nodes of every edge are put in order along it. What
// lies between two nodes is a chain,
// and most chains of a real border hold many points, which are not looked at again before the
// result is written. Around each node its half edges are put in order by exact orientation. Chains
// that coincide become one that is a border of an operand when an odd number of them was. One that
// is no longer a border of any stays in the graph and connects its nodes.
//
// The graph is drawn without further crossings when no two neighbours around a node come within the
// tolerance of each other at their ends: edges that have no node in common were farther apart than
// the tolerance, which exceeds twice the rounding of a node, and edges that have one diverge
// from it. Where that test fails, or where something would have to be moved by more than rounding,
// the contours go to the grid; behind it nothing is left to test.

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {
namespace {

bool IsNear(const Vec2d& a, const Vec2d& b, double tolerance) {
  return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance;
}

// Order of the nodes along edges.

/// Brings the occurrences of each edge together, edges in order.
void GroupByEdge(Workspace& work) {
  Buffer<Occurrence>& occurrences = work.occurrences;
  if (occurrences.Size() < work.vertexCount / 16) {
    std::sort(occurrences.begin(), occurrences.end(), [](const Occurrence& a, const Occurrence& b) {
      return a.edge < b.edge || (a.edge == b.edge && a.point < b.point);
    });
    return;
  }
  Buffer<Index>& starts = work.edgeStarts;
  starts.Fill(work.vertexCount + 1, 0);
  for (const Occurrence& occurrence : occurrences) ++starts[occurrence.edge];
  Index sum = 0;
  for (Index& start : starts) {
    const Index count = start;
    start = sum;
    sum += count;
  }
  work.unordered.Swap(occurrences);
  occurrences.Resize(work.unordered.Size());
  for (const Occurrence& occurrence : work.unordered) {
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
void SortPlaces(Workspace& work) {
  Buffer<PlacedPoint>& placed = work.placed;
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
      Buffer<Index>& starts = work.stack;
      starts.Fill(count + 1, 0);
      for (const PlacedPoint& point : placed) ++starts[bucketOf(point.place)];
      Index sum = 0;
      for (Index& start : starts) {
        const Index size = start;
        start = sum;
        sum += size;
      }
      work.placedAside.Resize(count);
      for (const PlacedPoint& point : placed) {
        work.placedAside[starts[bucketOf(point.place)]++] = point;
      }
      placed.Swap(work.placedAside);
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
void Merge(Workspace& work, Index a, Index b) {
  const Index aRoot = work.Root(a);
  const Index bRoot = work.Root(b);
  if (aRoot == bRoot) return;
  if (!IsSame(work.points[aRoot], work.points[bRoot])) work.isMoved = true;
  work.parents[std::max(aRoot, bRoot)] = std::min(aRoot, bRoot);
}

/// Orders the occurrences of one edge and merges neighbours.
void OrderEdge(Workspace& work, Index first, Index count, Index endVertex) {
  Occurrence* occurrences = work.occurrences.Data() + first;
  const Index edge = occurrences[0].edge;
  const Vec2d start = work.points[edge];
  const Vec2d along = work.points[edge + 1] - start;
  if (count > 1) {
    const bool byX = std::abs(along.x) >= std::abs(along.y);
    const bool isForward = (byX ? along.x : along.y) > 0.0;
    work.placed.Resize(count);
    for (Index i = 0; i < count; ++i) {
      const Index number = occurrences[i].point;
      const Vec2d point = work.points[number];
      const double place = byX ? point.x : point.y;
      work.placed[i] = {number == edge ? -HUGE_VAL : isForward ? place : -place, number};
    }
    SortPlaces(work);
    for (Index i = 0; i < count; ++i) occurrences[i].point = work.placed[i].point;
  }
  for (Index i = 0; i + 1 < count; ++i) {
    const Index a = occurrences[i].point;
    const Index b = occurrences[i + 1].point;
    if (IsNear(work.points[a], work.points[b], work.tolerance)) Merge(work, a, b);
  }
  const Index last = occurrences[count - 1].point;
  if (work.isNode[endVertex] && IsNear(work.points[last], work.points[endVertex], work.tolerance)) {
    Merge(work, last, endVertex);
  }
}

void OrderOccurrences(Workspace& work) {
  for (const Index vertex : work.nodeVertices) work.occurrences.Append({vertex, vertex});
  GroupByEdge(work);
  Index contourIndex = 0;
  const Index size = work.occurrences.Size();
  for (Index first = 0; first < size;) {
    const Index edge = work.occurrences[first].edge;
    Index end = first + 1;
    while (end < size && work.occurrences[end].edge == edge) ++end;
    while (edge >= work.contours[contourIndex].first + work.contours[contourIndex].count) {
      ++contourIndex;
    }
    const Contour& contour = work.contours[contourIndex];
    const Index endVertex = edge + 1 == contour.first + contour.count ? contour.first : edge + 1;
    OrderEdge(work, first, end - first, endVertex);
    first = end;
  }
}

// Chains.

void NumberNodes(Workspace& work) {
  work.nodeOfPoint.Resize(work.points.Size());
  work.nodePoints.Clear();
  const auto forEachPoint = [&work](const auto& handle) {
    for (const Index vertex : work.nodeVertices) handle(vertex);
    for (Index point = work.vertexCount; point < work.points.Size(); ++point) handle(point);
  };
  bool hasMerged = false;
  forEachPoint([&](Index point) {
    hasMerged |= work.parents[point] != point;
    if (work.parents[point] != point) return;
    work.nodeOfPoint[point] = work.nodePoints.Size();
    work.nodePoints.Append(work.points[point]);
  });
  if (!hasMerged) return;
  forEachPoint(
      [&work](Index point) { work.nodeOfPoint[point] = work.nodeOfPoint[work.Root(point)]; });
}

/// Returns the end of the interior points that precede an occurrence.
Index EndOfInterior(const Occurrence& occurrence) {
  return occurrence.point == occurrence.edge ? occurrence.edge : occurrence.edge + 1;
}

void AppendChains(Workspace& work, Index contourIndex, Index first, Index end) {
  const Contour& contour = work.contours[contourIndex];
  Index from = work.nodeOfPoint[work.occurrences[first].point];
  for (Index i = first; i < end; ++i) {
    const Occurrence& occurrence = work.occurrences[i];
    const bool wraps = i + 1 == end;
    const Occurrence& next = work.occurrences[wraps ? first : i + 1];
    const Index to = work.nodeOfPoint[next.point];
    const Index start = occurrence.edge + 1;
    const Index interior = EndOfInterior(next) + (wraps ? contour.count : 0) - start;
    if (from != to || interior != 0) {
      work.chains.Append({from, to, start == contour.first + contour.count ? contour.first : start,
                          interior, contourIndex});
      work.parities.Append(contour.operand);
    }
    from = to;
  }
}

void BuildChains(Workspace& work) {
  work.chains.Clear();
  work.parities.Clear();
  work.chainStarts.Resize(work.contours.Size() + 1);
  work.hasNodes.Resize(work.contours.Size());
  Index next = 0;
  for (Index i = 0; i < work.contours.Size(); ++i) {
    work.chainStarts[i] = work.chains.Size();
    const Index contourEnd = work.contours[i].first + work.contours[i].count;
    const Index first = next;
    while (next < work.occurrences.Size() && work.occurrences[next].edge < contourEnd) ++next;
    work.hasNodes[i] = next != first;
    if (next != first) AppendChains(work, i, first, next);
  }
  work.chainStarts[work.contours.Size()] = work.chains.Size();
}

// Nodes.

/// A half edge at the node at hand: the vector to its first point beyond.
struct Spoke {
  Vec2d vector;
  Half half;
  Index quadrant;
};

/// Returns the number of the quarter turn from the direction of x on that holds a vector.
Index GetQuadrant(const Vec2d& vector) {
  if (vector.y >= 0.0 && vector.x > 0.0) return 0;
  if (vector.x <= 0.0 && vector.y > 0.0) return 1;
  return vector.x < 0.0 ? 2 : 3;
}

class NodeBuilder {
public:
  explicit NodeBuilder(Workspace& work) : work_(work) {}

  /// Returns false when half edges nearly coincide.
  bool Run() {
    CollectSlots();
    work_.mergers.Clear();
    work_.slotOfHalf.Resize(2 * work_.chains.Size());
    for (Index node = 0; node < work_.nodePoints.Size(); ++node) {
      if (!OrderNode(node)) return false;
    }
    if (hasJoined_) DropMerged();
    return true;
  }

private:
  void CollectSlots() {
    const Index nodes = work_.nodePoints.Size();
    const Index chains = work_.chains.Size();
    work_.nodeStarts.Fill(nodes + 1, 0);
    work_.nodeEnds.Resize(nodes);
    for (const Chain& chain : work_.chains) {
      ++work_.nodeStarts[chain.from];
      ++work_.nodeStarts[chain.to];
    }
    Index sum = 0;
    for (Index i = 0; i < nodes; ++i) {
      const Index count = work_.nodeStarts[i];
      work_.nodeStarts[i] = work_.nodeEnds[i] = sum;
      sum += count;
    }
    work_.nodeStarts[nodes] = sum;
    work_.slots.Resize(sum);
    for (Index i = 0; i < chains; ++i) {
      const Chain& chain = work_.chains[i];
      work_.slots[work_.nodeEnds[chain.from]++] = 2 * i;
      work_.slots[work_.nodeEnds[chain.to]++] = 2 * i + 1;
    }
  }

  bool OrderNode(Index node) {
    const Vec2d center = work_.nodePoints[node];
    const Index start = work_.nodeStarts[node];
    if (work_.nodeEnds[node] - start == 4 && OrderPlainCrossing(center, start)) return true;
    Index count = 0;
    spokes_.Resize(work_.nodeEnds[node] - start);
    for (Index slot = start; slot < work_.nodeEnds[node]; ++slot) {
      const Half half = work_.slots[slot];
      if (work_.parities[half / 2] == MERGED) continue;
      const Vec2d vector = work_.GetFarPoint(half) - center;
      spokes_[count++] = {vector, half, GetQuadrant(vector)};
    }
    Sort(center, count);
    if (!JoinCoincident(count)) return false;
    for (Index i = 0; i < count; ++i) SetSlot(start + i, spokes_[i].half);
    work_.nodeEnds[node] = start + count;
    return true;
  }

  /// Orders the four half edges of two ways that cross and are far from each other, given each way
  /// after the other. Returns false, with nothing done, for any other four.
  bool OrderPlainCrossing(const Vec2d& center, Index start) {
    Half halves[4];
    Vec2d vectors[4];
    double longest = 0.0;
    for (Index i = 0; i < 4; ++i) {
      halves[i] = work_.slots[start + i];
      if (work_.parities[halves[i] / 2] == MERGED) return false;
      vectors[i] = work_.GetFarPoint(halves[i]) - center;
      longest = std::max(longest, Length1(vectors[i]));
    }
    const double limit = 2.0 * work_.tolerance * longest;
    double turns[4] = {Cross(vectors[0], vectors[2]), Cross(vectors[2], vectors[1]),
                       Cross(vectors[1], vectors[3]), Cross(vectors[3], vectors[0])};
    const bool isClockwise = turns[0] < 0.0;
    const double sign = isClockwise ? -1.0 : 1.0;
    for (const double turn : turns) {
      if (!(sign * turn > limit)) return false;
    }
    const Index order[4] = {0, isClockwise ? 3u : 2u, 1, isClockwise ? 2u : 3u};
    // The first is the one behind the direction of x, counter-clockwise.
    const auto isUpper = [&](Index i) {
      const Vec2d& vector = vectors[order[i]];
      return vector.y > 0.0 || (vector.y == 0.0 && vector.x > 0.0);
    };
    Index first = 0;
    while (!isUpper(first) || isUpper((first + 3) % 4)) ++first;
    for (Index i = 0; i < 4; ++i) SetSlot(start + i, halves[order[(first + i) % 4]]);
    return true;
  }

  void Sort(const Vec2d& center, Index count) {
    const auto isBefore = [&](const Spoke& a, const Spoke& b) {
      if (a.quadrant != b.quadrant) return a.quadrant < b.quadrant;
      if (IsSame(a.vector, b.vector) && Coincide(a.half, b.half)) return a.half < b.half;
      const int turn = Turn(center, a, b);
      return turn != 0 ? turn > 0 : a.half < b.half;
    };
    if (count > FEW) {
      std::sort(spokes_.begin(), spokes_.begin() + count, isBefore);
      return;
    }
    for (Index i = 1; i < count; ++i) {
      const Spoke spoke = spokes_[i];
      Index j = i;
      for (; j > 0 && isBefore(spoke, spokes_[j - 1]); --j) spokes_[j] = spokes_[j - 1];
      spokes_[j] = spoke;
    }
  }

  int Turn(const Vec2d& center, const Spoke& a, const Spoke& b) const {
    const double left = a.vector.x * b.vector.y;
    const double right = a.vector.y * b.vector.x;
    const double limit = 4.0 * DBL_EPSILON * (std::abs(left) + std::abs(right));
    if (left - right > limit) return 1;
    if (right - left > limit) return -1;
    return OrientationSign(center, work_.GetFarPoint(a.half), work_.GetFarPoint(b.half));
  }

  /// Makes one of half edges that coincide. Returns false when neighbours nearly do.
  bool JoinCoincident(Index& count) {
    bool joined = false;
    for (Index i = 0; i < count; ++i) {
      const Index next = i + 1 == count ? 0 : i + 1;
      if (next == i) break;
      Spoke& a = spokes_[i];
      Spoke& b = spokes_[next];
      if (!(Dot(a.vector, b.vector) > 0.0)) continue;
      const double limit = work_.tolerance * std::max(Length1(a.vector), Length1(b.vector));
      if (std::abs(Cross(a.vector, b.vector)) > limit) continue;
      if (!Coincide(a.half, b.half)) {
        if (work_.isExact) continue;
        return false;
      }
      if (next < i) continue;
      // The parity wanders to the last of the group.
      work_.mergers.Append({a.half, b.half});
      work_.parities[b.half / 2] ^= work_.parities[a.half / 2];
      work_.parities[a.half / 2] = MERGED;
      joined = true;
    }
    if (!joined) return true;
    hasJoined_ = true;
    Index kept = 0;
    for (Index i = 0; i < count; ++i) {
      if (work_.parities[spokes_[i].half / 2] != MERGED) spokes_[kept++] = spokes_[i];
    }
    count = kept;
    return true;
  }

  bool Coincide(Half a, Half b) const {
    const Chain& one = work_.chains[a / 2];
    const Chain& two = work_.chains[b / 2];
    return one.interiorCount == 0 && two.interiorCount == 0 &&
           (a % 2 == 0 ? one.to : one.from) == (b % 2 == 0 ? two.to : two.from);
  }

  void SetSlot(Index slot, Half half) {
    work_.slots[slot] = half;
    work_.slotOfHalf[half] = slot;
  }

  /// Leaves out chains that were merged after their other end was done.
  void DropMerged() {
    for (Index node = 0; node < work_.nodePoints.Size(); ++node) {
      Index end = work_.nodeStarts[node];
      for (Index slot = end; slot < work_.nodeEnds[node]; ++slot) {
        const Half half = work_.slots[slot];
        if (work_.parities[half / 2] == MERGED) continue;
        SetSlot(end++, half);
      }
      work_.nodeEnds[node] = end;
    }
  }

  Workspace& work_;
  Buffer<Spoke> spokes_{L"node creation"};
  bool hasJoined_ = false;
};

}  // namespace

bool BuildGraph(Workspace& work) {
  if (!work.isExact) OrderOccurrences(work);
  if (work.isMoved) return false;
  NumberNodes(work);
  BuildChains(work);
  return NodeBuilder(work).Run();
}

namespace {

/// Appends a point to the contour in work unless it repeats the last.
void AppendNext(Workspace& work, Index first, const Vec2d& point) {
  if (work.nextPoints.Size() > first && IsSame(work.nextPoints.Back(), point)) return;
  work.nextPoints.Append(point);
}

bool IsNearEdge(const Workspace& work, const Occurrence& occurrence) {
  const Vec2d& start = work.points[occurrence.edge];
  const Vec2d along = work.points[occurrence.edge + 1] - start;
  const double limit = JOIN_DISTANCE * work.tolerance * Length1(along);
  return std::abs(Cross(along, work.points[occurrence.point] - start)) <= limit;
}

/// Ends the contour in work at the end of the points.
void AppendContour(Workspace& work, Index first, const Contour& source) {
  while (work.nextPoints.Size() > first + 1 &&
         IsSame(work.nextPoints.Back(), work.nextPoints[first])) {
    work.nextPoints.Truncate(work.nextPoints.Size() - 1);
  }
  const Index count = work.nextPoints.Size() - first;
  if (count < 3) return work.nextPoints.Truncate(first);
  work.nextPoints.Append(work.nextPoints[first]);
  work.nextContours.Append({first, count, first, source.polygon, source.operand});
}

}  // namespace

void JoinVertices(Workspace& work) {
  // Crossings come from the grid.
  Index kept = 0;
  for (const Occurrence& occurrence : work.occurrences) {
    if (occurrence.point >= work.vertexCount || !IsNearEdge(work, occurrence)) continue;
    work.occurrences[kept++] = occurrence;
  }
  work.occurrences.Truncate(kept);
  GroupByEdge(work);
  work.nextPoints.Clear();
  work.nextContours.Clear();
  const Occurrence* next = work.occurrences.begin();
  const Occurrence* const last = work.occurrences.end();
  for (const Contour& contour : work.contours) {
    const Index first = work.nextPoints.Size();
    for (Index edge = contour.first; edge < contour.first + contour.count; ++edge) {
      const Index vertex = work.isNode[edge] ? work.Root(edge) : edge;
      AppendNext(work, first, work.points[vertex]);
      work.placed.Clear();
      const Vec2d along = work.points[edge + 1] - work.points[edge];
      for (; next != last && next->edge == edge; ++next) {
        work.placed.Append({Dot(along, work.points[next->point] - work.points[edge]), next->point});
      }
      if (work.placed.Size() > 1) SortPlaces(work);
      for (const PlacedPoint& placed : work.placed) {
        AppendNext(work, first, work.points[work.Root(placed.point)]);
      }
    }
    AppendContour(work, first, contour);
  }
  work.points.Swap(work.nextPoints);
  work.contours.Swap(work.nextContours);
}

}  // namespace shr::gpc
