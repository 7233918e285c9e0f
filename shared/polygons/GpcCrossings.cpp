// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Second stage: where do edges meet? The plane is halved again and again until a tile holds only
// few sections, whose pairs are then compared; a long edge goes, clipped, to every tile that it
// touches. Bundles of nearly parallel needles cannot be parted by upright tiles, whatever their
// size. They are ordered by the interval that each covers across the direction of the bundle, and
// only overlapping intervals are compared. All boxes and intervals are rounded outward, so what is
// compared is a superset of what meets, and no rounding on the way can lose a crossing.
//
// Two edges meet in a proper crossing, whose point is computed and becomes a node of both, or one's
// end is nearer to the other than the tolerance: then that end becomes a node of both. The
// tolerance is larger than the rounding errors of the orientation tests, so these need no exact
// arithmetic. Nodes of both kinds that moved something by more than rounding are remembered, since
// edges between them have to be looked at again.
//
// Sources: J. D. Hobby, "Practical Segment Intersection with Finite Precision Output", 1999 (ends
// near an edge become nodes of it); J. T. Klosowski et al., "Efficient Collision Detection Using
// Bounding Volume Hierarchies of k-DOPs", 1998 (intervals across fixed directions).

#include <algorithm>
#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/GpcWorkspace.h"

namespace shr::gpc {
namespace {

constexpr Index SMALL_TILE = 12;
constexpr int MAX_DEPTH = 200;
/// A bundle is compared by intervals when an element overlaps no more others than this on average.
constexpr double MAX_OVERLAPS = 6.0;

bool Overlap(const Box& a, const Box& b) {
  return a.xMin <= b.xMax && b.xMin <= a.xMax && a.yMin <= b.yMax && b.yMin <= a.yMax;
}

void Extend(Box& box, const Box& other) {
  box.xMin = std::min(box.xMin, other.xMin);
  box.yMin = std::min(box.yMin, other.yMin);
  box.xMax = std::max(box.xMax, other.xMax);
  box.yMax = std::max(box.yMax, other.yMax);
}

constexpr Box EMPTY_BOX{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};

/// An edge in the hand: its number, contour, first point and vector.
struct Edge {
  Index number;
  Index contour;
  Vec2d start;
  Vec2d end;
};

class CrossingFinder {
public:
  explicit CrossingFinder(Workspace& work) : work_(work), tolerance_(work.tolerance) {}

  void Run() {
    work_.elements.Resize(work_.sections.Size());
    Box all = EMPTY_BOX;
    for (Index i = 0; i < work_.sections.Size(); ++i) {
      const Box& box = work_.sections[i].box;
      work_.elements[i] = {{box.xMin - tolerance_, box.yMin - tolerance_, box.xMax + tolerance_,
                            box.yMax + tolerance_},
                           i};
      Extend(all, work_.elements[i].box);
    }
    FindInTile(0, work_.sections.Size(), all, 0);
  }

private:
  struct Cut {
    bool isUpright;
    double at;
    Index total;  ///< elements of both sides
  };

  // Tiles. A tile's elements are the last ones in the buffer.

  void FindInTile(Index first, Index count, const Box& box, int depth) {
    if (count <= SMALL_TILE) return CompareAll(first, count);
    const double width = box.xMax - box.xMin;
    const double height = box.yMax - box.yMin;
    Cut cut = CountCut(first, count, box, width >= height);
    if (cut.total > count + count / 4) {
      if (CompareBundle(first, count, MAX_OVERLAPS)) return;
      const Cut other = CountCut(first, count, box, width < height);
      if (other.total < cut.total) cut = other;
      if (cut.total >= 2 * count - count / 8 || depth == MAX_DEPTH) {
        CompareBundle(first, count, HUGE_VAL);
        return;
      }
    }
    Halve(first, count, cut, depth);
  }

  Cut CountCut(Index first, Index count, const Box& box, bool isUpright) const {
    Cut cut{isUpright, 0.0, 0};
    const Element* elements = work_.elements.Data() + first;
    Index total = 0;
    if (isUpright) {
      cut.at = box.xMin + (box.xMax - box.xMin) * 0.5;
      for (Index i = 0; i < count; ++i) {
        total += static_cast<Index>(elements[i].box.xMin <= cut.at) +
                 static_cast<Index>(elements[i].box.xMax >= cut.at);
      }
    } else {
      cut.at = box.yMin + (box.yMax - box.yMin) * 0.5;
      for (Index i = 0; i < count; ++i) {
        total += static_cast<Index>(elements[i].box.yMin <= cut.at) +
                 static_cast<Index>(elements[i].box.yMax >= cut.at);
      }
    }
    cut.total = total;
    return cut;
  }

  void Halve(Index first, Index count, const Cut& cut, int depth) {
    const Index lowFirst = first + count;
    work_.elements.Reserve(lowFirst + count);
    Element* const elements = work_.elements.Data();
    Element* low = elements + lowFirst;
    Element* high = elements + first;
    Box lowBox = EMPTY_BOX;
    Box highBox = EMPTY_BOX;
    for (Index i = first; i < first + count; ++i) {
      const Element element = elements[i];
      const bool isLow = cut.isUpright ? element.box.xMin <= cut.at : element.box.yMin <= cut.at;
      const bool isHigh = cut.isUpright ? element.box.xMax >= cut.at : element.box.yMax >= cut.at;
      if (isLow && isHigh) {
        *low = *high = element;
        ClipBoth(low++->box, high++->box, element.section, cut);
        Extend(lowBox, low[-1].box);
        Extend(highBox, high[-1].box);
      } else if (isLow) {
        *low++ = element;
        Extend(lowBox, element.box);
      } else {
        *high++ = element;
        Extend(highBox, element.box);
      }
    }
    const auto lowCount = static_cast<Index>(low - elements) - lowFirst;
    const auto highCount = static_cast<Index>(high - elements) - first;
    work_.elements.Resize(lowFirst + lowCount);
    FindInTile(lowFirst, lowCount, lowBox, depth + 1);
    work_.elements.Resize(first + highCount);
    FindInTile(first, highCount, highBox, depth + 1);
  }

  /// A range of coordinates along a cut.
  struct Range {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;

    void Add(double value) {
      low = std::min(low, value);
      high = std::max(high, value);
    }
  };

  /// Limits the two parts of an element on both sides of a cut.
  void ClipBoth(Box& low, Box& high, Index sectionIndex, const Cut& cut) const {
    Range lowRange;
    Range highRange;
    GetRanges(work_.sections[sectionIndex], cut, lowRange, highRange);
    if (cut.isUpright) {
      low.xMax = high.xMin = cut.at;
      LimitRange(low.yMin, low.yMax, lowRange);
      LimitRange(high.yMin, high.yMax, highRange);
    } else {
      low.yMax = high.yMin = cut.at;
      LimitRange(low.xMin, low.xMax, lowRange);
      LimitRange(high.xMin, high.xMax, highRange);
    }
  }

  /// Collects what a section covers along a cut on either side of it.
  void GetRanges(const Section& section, const Cut& cut, Range& low, Range& high) const {
    const Vec2d* points = work_.points.Data() + section.firstEdge;
    const auto across = [&](const Vec2d& point) { return cut.isUpright ? point.x : point.y; };
    const auto along = [&](const Vec2d& point) { return cut.isUpright ? point.y : point.x; };
    // Points nearer to the cut than the tolerance belong to both sides.
    for (Index i = 0; i <= section.edgeCount; ++i) {
      const double place = across(points[i]) - cut.at;
      if (place <= 2.0 * tolerance_) low.Add(along(points[i]));
      if (place >= -2.0 * tolerance_) high.Add(along(points[i]));
      if (i == section.edgeCount) break;
      const double nextPlace = across(points[i + 1]) - cut.at;
      if ((place < 0.0) == (nextPlace < 0.0)) continue;
      const double t = place / (place - nextPlace);
      const double value = along(points[i]) + t * (along(points[i + 1]) - along(points[i]));
      low.Add(value);
      high.Add(value);
    }
  }

  void LimitRange(double& low, double& high, const Range& range) const {
    low = std::max(low, range.low - 4.0 * tolerance_);
    high = std::min(high, range.high + 4.0 * tolerance_);
  }

  void CompareAll(Index first, Index count) {
    const Element* elements = work_.elements.Data() + first;
    for (Index i = 0; i < count; ++i) {
      const Box box = elements[i].box;
      for (Index j = i + 1; j < count; ++j) {
        if (Overlap(box, elements[j].box)) CompareSections(elements[i], elements[j]);
      }
    }
  }

  /// Compares the elements of a tile by their intervals across the main direction, unless the
  /// average number of overlaps seems to exceed the limit.
  bool CompareBundle(Index first, Index count, double maxOverlaps) {
    const Element* elements = work_.elements.Data() + first;
    const Vec2d across = GetAcross(first, count);
    const double margin = 8.0 * tolerance_ * Length1(across);
    work_.intervals.Resize(count);
    double sum = 0.0;
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (Index i = 0; i < count; ++i) {
      const Interval interval = GetInterval(elements[i], across, margin, i);
      work_.intervals[i] = interval;
      sum += interval.high - interval.low;
      low = std::min(low, interval.low);
      high = std::max(high, interval.high);
    }
    if (sum > maxOverlaps * (high - low)) return false;
    std::sort(work_.intervals.begin(), work_.intervals.end(),
              [](const Interval& a, const Interval& b) {
                return a.low < b.low || (a.low == b.low && a.element < b.element);
              });
    for (Index i = 0; i < count; ++i) {
      const Element& element = elements[work_.intervals[i].element];
      for (Index j = i + 1; j < count && work_.intervals[j].low <= work_.intervals[i].high; ++j) {
        const Element& other = elements[work_.intervals[j].element];
        if (Overlap(element.box, other.box)) CompareSections(element, other);
      }
    }
    return true;
  }

  /// Returns a vector at a right angle to the sum of all directions, each turned into one half
  /// plane.
  Vec2d GetAcross(Index first, Index count) const {
    double x = 0.0;
    double y = 0.0;
    for (Index i = first; i < first + count; ++i) {
      const Section& section = work_.sections[work_.elements[i].section];
      const Vec2d a = work_.points[section.firstEdge];
      const Vec2d b = work_.points[section.firstEdge + section.edgeCount];
      const double dx = b.x - a.x;
      const double dy = b.y - a.y;
      const double sign = dx * x + dy * y < 0.0 ? -1.0 : 1.0;
      x += sign * dx;
      y += sign * dy;
    }
    if (x == 0.0 && y == 0.0) x = 1.0;
    const double length = Length1({x, y});
    return {-y / length, x / length};
  }

  Interval GetInterval(const Element& element, const Vec2d& across, double margin,
                       Index number) const {
    const Section& section = work_.sections[element.section];
    const Box& box = element.box;
    double low = std::min(across.x * box.xMin, across.x * box.xMax);
    double high = std::max(across.x * box.xMin, across.x * box.xMax);
    if (section.edgeCount == 1) {
      const Vec2d a = work_.points[section.firstEdge];
      const Vec2d b = work_.points[section.firstEdge + 1];
      const bool rises = (b.y > a.y) == (b.x > a.x);
      const double one = across.x * box.xMin + across.y * (rises ? box.yMin : box.yMax);
      const double two = across.x * box.xMax + across.y * (rises ? box.yMax : box.yMin);
      low = std::min(one, two);
      high = std::max(one, two);
    } else {
      low += std::min(across.y * box.yMin, across.y * box.yMax);
      high += std::max(across.y * box.yMin, across.y * box.yMax);
    }
    return {low - margin, high + margin, number};
  }

  // Pairs of sections.

  void CompareSections(const Element& one, const Element& two) {
    const bool isOrdered = one.section < two.section;
    const Index aIndex = isOrdered ? one.section : two.section;
    const Index bIndex = isOrdered ? two.section : one.section;
    const Section& a = work_.sections[aIndex];
    const Section& b = work_.sections[bIndex];
    if (a.contour == b.contour && AreSimpleNeighbours(aIndex, bIndex)) return;
    const Box common{std::max(one.box.xMin, two.box.xMin), std::max(one.box.yMin, two.box.yMin),
                     std::min(one.box.xMax, two.box.xMax), std::min(one.box.yMax, two.box.yMax)};
    for (Index i = a.firstEdge; i < a.firstEdge + a.edgeCount; ++i) {
      const Edge edge = GetEdge(i, a.contour);
      if (a.edgeCount > 1 && !Overlap(GetBox(edge), common)) continue;
      for (Index j = b.firstEdge; j < b.firstEdge + b.edgeCount; ++j) {
        const Edge other = GetEdge(j, b.contour);
        if (b.edgeCount > 1 && !Overlap(GetBox(other), common)) continue;
        CompareEdges(edge, other);
      }
    }
  }

  /// Returns true for sections that follow each other and go the same way.
  bool AreSimpleNeighbours(Index aIndex, Index bIndex) const {
    const Section& a = work_.sections[aIndex];
    const Section& b = work_.sections[bIndex];
    if ((a.directions & b.directions) == 0) return false;
    if (bIndex == aIndex + 1) return a.turnsSmoothly != 0;
    const Contour& contour = work_.contours[a.contour];
    return a.firstEdge == contour.first &&
           b.firstEdge + b.edgeCount == contour.first + contour.count && b.turnsSmoothly != 0;
  }

  Edge GetEdge(Index number, Index contour) const {
    return {number, contour, work_.points[number], work_.points[number + 1]};
  }

  Box GetBox(const Edge& edge) const {
    return {std::min(edge.start.x, edge.end.x) - tolerance_,
            std::min(edge.start.y, edge.end.y) - tolerance_,
            std::max(edge.start.x, edge.end.x) + tolerance_,
            std::max(edge.start.y, edge.end.y) + tolerance_};
  }

  // Pairs of edges. The first has the smaller number.

  void CompareEdges(const Edge& a, const Edge& b) {
    if (a.contour == b.contour) {
      if (b.number == a.number + 1) return CompareNeighbours(a, b);
      const Contour& contour = work_.contours[a.contour];
      if (a.number == contour.first && b.number == contour.first + contour.count - 1) {
        return CompareNeighbours(b, a);
      }
    }
    const Vec2d along = a.end - a.start;
    const double limitA = tolerance_ * Length1(along);
    const double startB = Cross(along, b.start - a.start);
    const double endB = Cross(along, b.end - a.start);
    if ((startB > limitA && endB > limitA) || (startB < -limitA && endB < -limitA)) return;
    const Vec2d alongB = b.end - b.start;
    const double limitB = tolerance_ * Length1(alongB);
    const double startA = Cross(alongB, a.start - b.start);
    const double endA = Cross(alongB, a.end - b.start);
    if ((startA > limitB && endA > limitB) || (startA < -limitB && endA < -limitB)) return;
    const auto isFar = [](double value, double limit) { return value > limit || value < -limit; };
    if (isFar(startB, limitA) && isFar(endB, limitA) && isFar(startA, limitB) &&
        isFar(endA, limitB)) {
      return AddCrossing(a, b, startB / (startB - endB));
    }
    bool touches = false;
    if (!isFar(startB, limitA)) touches |= JoinIfNear(b, 0, a);
    if (!isFar(endB, limitA)) touches |= JoinIfNear(b, 1, a);
    if (!isFar(startA, limitB)) touches |= JoinIfNear(a, 0, b);
    if (!isFar(endA, limitB)) touches |= JoinIfNear(a, 1, b);
    if (!touches && CrossProperly(a, b)) AddCrossing(a, b, startB / (startB - endB));
  }

  static bool CrossProperly(const Edge& a, const Edge& b) {
    return OrientationSign(a.start, a.end, b.start) * OrientationSign(a.start, a.end, b.end) < 0 &&
           OrientationSign(b.start, b.end, a.start) * OrientationSign(b.start, b.end, a.end) < 0;
  }

  /// Adds the crossing at the given fraction of b.
  void AddCrossing(const Edge& a, const Edge& b, double fraction) {
    Vec2d point;
    if (fraction <= 0.5) {
      point = b.start + (b.end - b.start) * fraction;
    } else {
      point = b.end + (b.start - b.end) * (1.0 - fraction);
    }
    point.x = Limit(point.x, a.start.x, a.end.x, b.start.x, b.end.x);
    point.y = Limit(point.y, a.start.y, a.end.y, b.start.y, b.end.y);
    const Index number = work_.points.Size();
    work_.points.Append(point);
    work_.parents.Append(number);
    work_.occurrences.Append({a.number, number});
    work_.occurrences.Append({b.number, number});
  }

  /// Limits a coordinate to the ranges of both edges.
  static double Limit(double value, double a0, double a1, double b0, double b1) {
    const double low = std::max(std::min(a0, a1), std::min(b0, b1));
    const double high = std::min(std::max(a0, a1), std::max(b0, b1));
    return value < low ? low : value > high ? high : value;
  }

  /// Joins an end of `from`, near the line of `to`, with `to` unless it lies beyond its ends.
  bool JoinIfNear(const Edge& from, Index which, const Edge& to) {
    const Vec2d point = which == 0 ? from.start : from.end;
    const Box box = GetBox(to);
    if (point.x < box.xMin || point.x > box.xMax || point.y < box.yMin || point.y > box.yMax) {
      return false;
    }
    const Index vertex = GetVertex(from, which);
    if (IsNear(point, to.start)) {
      Merge(vertex, point, GetVertex(to, 0), to.start);
    } else if (IsNear(point, to.end)) {
      Merge(vertex, point, GetVertex(to, 1), to.end);
    } else {
      MakeNode(vertex);
      work_.occurrences.Append({to.number, vertex});
      if (OrientationSign(to.start, to.end, point) != 0) work_.isMoved = true;
    }
    return true;
  }

  /// Two edges that follow each other can meet only by turning back.
  void CompareNeighbours(const Edge& a, const Edge& b) {
    const Vec2d back = a.start - a.end;
    const Vec2d forth = b.end - b.start;
    if (!(Dot(back, forth) > 0.0)) return;
    const double limit = tolerance_ * std::max(Length1(back), Length1(forth));
    if (std::abs(Cross(back, forth)) > limit) return;
    MakeNode(GetVertex(a, 1));
    if (Length1(back) <= Length1(forth)) {
      JoinIfNear(a, 0, b);
    } else {
      JoinIfNear(b, 1, a);
    }
  }

  bool IsNear(const Vec2d& a, const Vec2d& b) const {
    return std::abs(a.x - b.x) <= tolerance_ && std::abs(a.y - b.y) <= tolerance_;
  }

  /// Returns the number of an end of an edge.
  Index GetVertex(const Edge& edge, Index which) const {
    const Index vertex = edge.number + which;
    const Contour& contour = work_.contours[edge.contour];
    return vertex == contour.first + contour.count ? contour.first : vertex;
  }

  void MakeNode(Index vertex) {
    if (work_.isNode[vertex]) return;
    work_.isNode[vertex] = 1;
    work_.parents[vertex] = vertex;
    work_.nodeVertices.Append(vertex);
  }

  void Merge(Index a, const Vec2d& aPoint, Index b, const Vec2d& bPoint) {
    MakeNode(a);
    MakeNode(b);
    const Index aRoot = work_.Root(a);
    const Index bRoot = work_.Root(b);
    if (!IsSame(aPoint, bPoint)) work_.isMoved = true;
    if (aRoot != bRoot) work_.parents[std::max(aRoot, bRoot)] = std::min(aRoot, bRoot);
  }

  Workspace& work_;
  const double tolerance_;
};

}  // namespace

void FindCrossings(Workspace& work) {
  work.occurrences.Clear();
  work.nodeVertices.Clear();
  work.isMoved = false;
  work.isNode.Fill(work.vertexCount, 0);
  work.parents.Resize(work.vertexCount);
  if (work.sections.IsEmpty()) return;
  CrossingFinder(work).Run();
}

}  // namespace shr::gpc
