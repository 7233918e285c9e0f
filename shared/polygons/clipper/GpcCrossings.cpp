// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Second stage: where do edges meet? Many short sections are dealt out to the cells of a raster at
// first. Then each cell, or all of the plane, is halved again and again until a tile holds only few
// sections, whose pairs are then compared; a long edge goes, clipped, to every tile that it
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
#include "shared/polygons/clipper/GpcRaster.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {
namespace {

constexpr Index SMALL_TILE = 20;
constexpr int MAX_DEPTH = 120;
/// In tolerances; smaller crowded tiles belong to the grid.
constexpr double SMALLEST_TILE = 64.0;
/// A raster comes first for so many sections, if they meet no more cells than this on average.
constexpr Index MANY_SECTIONS = 256;
constexpr double MAX_COPIES = 2.0;
/// A bundle is compared by intervals when an element overlaps no more others than this on average.
constexpr double MAX_OVERLAPS = 3.0;
/// A bundle is left to the grid when there are so many more comparisons than elements and
/// crossings. Of the crowds that the benchmarks know, those that cross need up to 6, those that
/// meet in a point hundreds.
constexpr Index MOST_IN_VAIN = 8;

bool Overlap(const Box& a, const Box& b) {
  return a.xMin <= b.xMax && b.xMin <= a.xMax && a.yMin <= b.yMax && b.yMin <= a.yMax;
}

inline void Extend(Box& box, const Box& other) {
  box.xMin = other.xMin < box.xMin ? other.xMin : box.xMin;
  box.yMin = other.yMin < box.yMin ? other.yMin : box.yMin;
  box.xMax = other.xMax > box.xMax ? other.xMax : box.xMax;
  box.yMax = other.yMax > box.yMax ? other.yMax : box.yMax;
}

inline Box GetCommon(const Box& a, const Box& b) {
  return {std::max(a.xMin, b.xMin), std::max(a.yMin, b.yMin), std::min(a.xMax, b.xMax),
          std::min(a.yMax, b.yMax)};
}

constexpr Box EMPTY_BOX{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};

/// An edge at hand.
struct Edge {
  Index number;
  Index section;
  Vec2d start;
  Vec2d end;
};

/// A range of coordinates.
struct Range {
  double low = HUGE_VAL;
  double high = -HUGE_VAL;

  void Add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

/// A line that parts a tile: the points whose product with `across` is `at`.
struct Cut {
  Vec2d across;
  double at;

  double Place(const Vec2d& point) const { return Dot(across, point) - at; }
};

/// What is done with edges that come near each other.
enum class Purpose { Join, Activate };

class CrossingFinder {
public:
  CrossingFinder(Workspace& work, Purpose purpose, double tolerance)
      : work_(work), isActivating_(purpose == Purpose::Activate), tolerance_(tolerance) {}

  void Run() {
    const Index count = work_.sections.Size();
    Box all = EMPTY_BOX;
    for (const Section& section : work_.sections) Extend(all, section.box);
    all = Widen(all);
    if (count >= MANY_SECTIONS) {
      const Raster raster(all, count);
      if (IsFit(raster)) return FindInRaster(raster);
    }
    work_.elements.Resize(count);
    for (Index i = 0; i < count; ++i) work_.elements[i] = GetElement(i);
    FindInTile(0, count, all, 0);
  }

  /// Returns true when there were so many crowds that the search was broken off.
  bool IsAbandoned() const { return isAbandoned_; }

private:
  struct Sides {
    bool isLow;
    bool isHigh;
  };

  Box Widen(const Box& box) const {
    return {box.xMin - tolerance_, box.yMin - tolerance_, box.xMax + tolerance_,
            box.yMax + tolerance_};
  }

  Element GetElement(Index index) const {
    const Section& section = work_.sections[index];
    return {Widen(section.box), index, section.firstEdge, section.edgeCount};
  }

  /// Returns false when sections are so long that they would fill a raster.
  bool IsFit(const Raster& raster) const {
    const double limit = MAX_COPIES * work_.sections.Size();
    double sum = 0.0;
    for (const Section& section : work_.sections) {
      sum += raster.CountCells(Widen(section.box));
      if (sum > limit) return false;
    }
    return true;
  }

  /// Parts the plane into the cells of a raster at first.
  void FindInRaster(const Raster& raster) {
    Buffer<Index>& starts = work_.cellStarts;
    starts.Fill(raster.CellCount() + 1, 0);
    for (const Section& section : work_.sections) {
      raster.ForEachCell(Widen(section.box), [&](Index cell) { ++starts[cell]; });
    }
    Index sum = 0;
    for (Index& start : starts) {
      sum += start;
      start = sum;
    }
    work_.cellSections.Resize(sum);
    for (Index i = work_.sections.Size(); i-- > 0;) {
      raster.ForEachCell(Widen(work_.sections[i].box),
                         [&](Index cell) { work_.cellSections[--starts[cell]] = i; });
    }
    for (Index cell = 0; cell < raster.CellCount(); ++cell) FindInCell(raster, cell);
  }

  void FindInCell(const Raster& raster, Index cell) {
    const Index first = work_.cellStarts[cell];
    const Index end = work_.cellStarts[cell + 1];
    if (end - first < 2) return;
    const Box bounds = raster.GetBounds(cell, 4.0 * tolerance_);
    work_.elements.Resize(end - first);
    Element* element = work_.elements.Data();
    Box all = EMPTY_BOX;
    for (Index i = first; i < end; ++i, ++element) {
      *element = GetElement(work_.cellSections[i]);
      element->box = GetCommon(element->box, bounds);
      Extend(all, element->box);
    }
    FindInTile(0, end - first, all, 0);
  }

  // Tiles. A tile's elements are the last ones in the buffer.

  void FindInTile(Index first, Index count, const Box& box, int depth) {
    if (isAbandoned_) return;
    if (count <= SMALL_TILE) return CompareAll(first, count);
    if (depth == MAX_DEPTH) return CompareByIntervals(first, count);
    const double size = std::max(box.xMax - box.xMin, box.yMax - box.yMin);
    if (size <= SMALLEST_TILE * tolerance_) return GiveUp(first, count, 0);
    const bool isWide = box.xMax - box.xMin >= box.yMax - box.yMin;
    if (isWide ? HalveUpright(first, count, box, depth, count / 4)
               : HalveLevel(first, count, box, depth, count / 4)) {
      return;
    }
    if (HandleBundle(first, count, depth)) return;
    if (isWide ? HalveLevel(first, count, box, depth, count / 4)
               : HalveUpright(first, count, box, depth, count / 4)) {
      return;
    }
    const Index limit = count - count / 8;
    if (isWide ? HalveUpright(first, count, box, depth, limit)
               : HalveLevel(first, count, box, depth, limit)) {
      return;
    }
    CompareByIntervals(first, count);
  }

  /// Halves a tile by an upright cut unless more elements than the limit would go to both sides.
  bool HalveUpright(Index first, Index count, const Box& box, int depth, Index limit) {
    const double at = box.xMin + (box.xMax - box.xMin) * 0.5;
    const auto getSides = [at](const Element& element, Index) {
      return Sides{element.box.xMin <= at, element.box.xMax >= at};
    };
    if (ExceedsLimit(first, count, limit, getSides)) return false;
    Halve(first, count, {{1.0, 0.0}, at}, depth, getSides);
    return true;
  }

  bool HalveLevel(Index first, Index count, const Box& box, int depth, Index limit) {
    const double at = box.yMin + (box.yMax - box.yMin) * 0.5;
    const auto getSides = [at](const Element& element, Index) {
      return Sides{element.box.yMin <= at, element.box.yMax >= at};
    };
    if (ExceedsLimit(first, count, limit, getSides)) return false;
    Halve(first, count, {{0.0, 1.0}, at}, depth, getSides);
    return true;
  }

  /// Returns true when more elements than the limit belong to both sides. A few elements that are
  /// well below the limit stand for all.
  template <class GetSides>
  bool ExceedsLimit(Index first, Index count, Index limit, const GetSides& getSides) const {
    constexpr Index SAMPLES = 32;
    const Element* elements = work_.elements.Data() + first;
    const auto countBoth = [&](Index step) {
      Index both = 0;
      for (Index i = 0; i < count; i += step) {
        const Sides sides = getSides(elements[i], i);
        both += static_cast<Index>(sides.isLow) & static_cast<Index>(sides.isHigh);
      }
      return both;
    };
    if (count >= 2 * SAMPLES && limit >= count / 4 && countBoth(count / SAMPLES) < SAMPLES / 8) {
      return false;
    }
    return countBoth(1) > limit;
  }

  /// Handles the two halves of a tile one after the other. `getSides` says where an element
  /// belongs, given the element and its number in the tile.
  template <class GetSides>
  void Halve(Index first, Index count, const Cut& cut, int depth, const GetSides& getSides) {
    const Index lowFirst = first + count;
    work_.elements.Reserve(lowFirst + count);
    Element* const elements = work_.elements.Data();
    Element* low = elements + lowFirst;
    Element* high = elements + first;
    Box lowBox = EMPTY_BOX;
    Box highBox = EMPTY_BOX;
    for (Index i = 0; i < count; ++i) {
      const Element element = elements[first + i];
      const Sides sides = getSides(element, i);
      if (sides.isLow && sides.isHigh) {
        *low = *high = element;
        if (Limit(low->box, element, cut, 1.0)) Extend(lowBox, low++->box);
        if (Limit(high->box, element, cut, -1.0)) Extend(highBox, high++->box);
      } else if (sides.isLow) {
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

  /// Limits a box to the part of its element on one side of a cut, and a margin of the tolerance.
  /// Returns false when nothing of it is there.
  bool Limit(Box& box, const Element& element, const Cut& cut, double side) const {
    const Vec2d* points = work_.points.Data() + element.firstEdge;
    const double margin = 2.0 * tolerance_ * Length1(cut.across);
    Range x;
    Range y;
    const auto add = [&](const Vec2d& point) {
      x.Add(point.x);
      y.Add(point.y);
    };
    double place = side * cut.Place(points[0]) - margin;
    for (Index i = 0; i < element.edgeCount; ++i) {
      const Vec2d& a = points[i];
      const Vec2d& b = points[i + 1];
      const double nextPlace = side * cut.Place(b) - margin;
      if (place <= 0.0) add(a);
      if (nextPlace <= 0.0) add(b);
      if ((place <= 0.0) != (nextPlace <= 0.0)) add(a + (b - a) * (place / (place - nextPlace)));
      place = nextPlace;
    }
    const double pad = 4.0 * tolerance_;
    box.xMin = std::max(box.xMin, x.low - pad);
    box.xMax = std::min(box.xMax, x.high + pad);
    box.yMin = std::max(box.yMin, y.low - pad);
    box.yMax = std::min(box.yMax, y.high + pad);
    return box.xMin <= box.xMax && box.yMin <= box.yMax;
  }

  void CompareAll(Index first, Index count) {
    const Element* elements = work_.elements.Data() + first;
    for (Index i = 0; i < count; ++i) {
      const Box box = elements[i].box;
      for (Index j = i + 1; j < count; ++j) {
        if (Overlap(box, elements[j].box)) CompareElements(elements[i], elements[j]);
      }
    }
  }

  // Bundles.

  /// Compares a tile's elements by their intervals across the main direction or cuts the tile along
  /// that direction. Returns false when it is not a bundle.
  bool HandleBundle(Index first, Index count, int depth) {
    const Vec2d across = GetAcross(first, count);
    if (!SeemsBundle(first, count, across)) return false;
    const Spread spread = MeasureIntervals(first, count, across);
    if (spread.sum <= MAX_OVERLAPS * (spread.high - spread.low)) {
      SweepIntervals(first, count);
      return true;
    }
    const double at = spread.center;
    Index low = 0;
    Index high = 0;
    for (const Interval& interval : work_.intervals) {
      low += interval.low <= at;
      high += interval.high >= at;
    }
    if (low + high > count + count * 3 / 8 || std::max(low, high) > count - count / 8) return false;
    Halve(first, count, {across, at}, depth, [this, at](const Element&, Index i) {
      const Interval& interval = work_.intervals[i];
      return Sides{interval.low <= at, interval.high >= at};
    });
    return true;
  }

  /// Looks at some elements only.
  bool SeemsBundle(Index first, Index count, const Vec2d& across) const {
    const Index step = count / 16 + 1;
    Range all;
    double sum = 0.0;
    double samples = 0.0;
    for (Index i = 0; i < count; i += step) {
      const Range range = GetCovered(work_.elements[first + i], across);
      if (range.low > range.high) continue;
      all.Add(range.low);
      all.Add(range.high);
      sum += range.high - range.low;
      samples += 1.0;
    }
    return sum <= 0.375 * samples * (all.high - all.low);
  }

  struct Spread {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    double sum = 0.0;     ///< of the widths
    double center = 0.0;  ///< mean of the middles
  };

  Spread MeasureIntervals(Index first, Index count, const Vec2d& across) {
    const double margin = 2.0 * tolerance_ * Length1(across);
    work_.intervals.Resize(count);
    Spread spread;
    for (Index i = 0; i < count; ++i) {
      const Range range = GetCovered(work_.elements[first + i], across);
      work_.intervals[i] = {range.low - margin, range.high + margin, i};
      if (range.low > range.high) continue;
      spread.sum += range.high - range.low;
      spread.center += (range.low + range.high) * (0.5 / count);
      spread.low = std::min(spread.low, range.low);
      spread.high = std::max(spread.high, range.high);
    }
    return spread;
  }

  void CompareByIntervals(Index first, Index count) {
    MeasureIntervals(first, count, GetAcross(first, count));
    SweepIntervals(first, count);
  }

  void SweepIntervals(Index first, Index count) {
    const Element* elements = work_.elements.Data() + first;
    std::sort(work_.intervals.begin(), work_.intervals.end(),
              [](const Interval& a, const Interval& b) {
                return a.low < b.low || (a.low == b.low && a.element < b.element);
              });
    const Index foundBefore = found_;
    Index compared = 0;
    for (Index i = 0; i < count; ++i) {
      const Element& element = elements[work_.intervals[i].element];
      const double high = work_.intervals[i].high;
      for (Index j = i + 1; j < count && work_.intervals[j].low <= high; ++j) {
        const Element& other = elements[work_.intervals[j].element];
        if (!Overlap(element.box, other.box)) continue;
        ++compared;
        CompareElements(element, other);
      }
      if (compared > MOST_IN_VAIN * (count + found_ - foundBefore))
        return GiveUp(first, count, compared);
    }
  }

  /// Leaves a crowd of edges that do not cross, such as many that end in one point, to the grid.
  void GiveUp(Index first, Index count, Index compared) {
    vain_ += compared;
    isAbandoned_ = vain_ > MOST_IN_VAIN * work_.sections.Size();
    if (!isActivating_) {
      work_.isMoved = true;
      return;
    }
    for (Index i = first; i < first + count; ++i) {
      const Element& element = work_.elements[i];
      std::fill_n(work_.isActive.begin() + element.firstEdge, element.edgeCount, std::uint8_t{1});
    }
  }

  /// Returns a vector at a right angle to the sum of all directions, each turned into one half
  /// plane.
  Vec2d GetAcross(Index first, Index count) const {
    double x = 0.0;
    double y = 0.0;
    for (Index i = first; i < first + count; ++i) {
      const Element& element = work_.elements[i];
      const Vec2d a = work_.points[element.firstEdge];
      const Vec2d b = work_.points[element.firstEdge + element.edgeCount];
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

  /// Returns what the part of an element inside its box covers in a direction.
  Range GetCovered(const Element& element, const Vec2d& across) const {
    const Vec2d* points = work_.points.Data() + element.firstEdge;
    Range range;
    for (Index i = 0; i < element.edgeCount; ++i) {
      AddCovered(points[i], points[i + 1], element.box, across, range);
    }
    return range;
  }

  /// Adds what the part of an edge inside a box covers.
  void AddCovered(const Vec2d& a, const Vec2d& b, const Box& box, const Vec2d& across,
                  Range& range) const {
    const bool byX = std::abs(b.x - a.x) >= std::abs(b.y - a.y);
    const double start = byX ? a.x : a.y;
    const double length = byX ? b.x - a.x : b.y - a.y;
    const double low = (byX ? box.xMin : box.yMin) - start;
    const double high = (byX ? box.xMax : box.yMax) - start;
    double t0 = (length > 0.0 ? low : high) / length;
    double t1 = (length > 0.0 ? high : low) / length;
    t0 = std::max(t0, 0.0);
    t1 = std::min(t1, 1.0);
    if (t0 > t1) return;
    const double place = Dot(across, a);
    const double change = Dot(across, b) - place;
    range.Add(place + t0 * change);
    range.Add(place + t1 * change);
  }

  // Pairs of sections.

  void CompareElements(const Element& one, const Element& two) {
    const bool isOrdered = one.section < two.section;
    const Element& a = isOrdered ? one : two;
    const Element& b = isOrdered ? two : one;
    common_ = GetCommon(a.box, b.box);
    if (a.edgeCount == 1 && b.edgeCount == 1) {
      return CompareEdges(GetEdge(a.firstEdge, a.section), GetEdge(b.firstEdge, b.section));
    }
    if (AreSimpleNeighbours(a.section, b.section)) return;
    for (Index i = a.firstEdge; i < a.firstEdge + a.edgeCount; ++i) {
      const Edge edge = GetEdge(i, a.section);
      if (!Overlap(GetBox(edge), common_)) continue;
      for (Index j = b.firstEdge; j < b.firstEdge + b.edgeCount; ++j) {
        const Edge other = GetEdge(j, b.section);
        if (Overlap(GetBox(other), common_)) CompareEdges(edge, other);
      }
    }
  }

  /// Returns true for sections that follow each other and go the same way.
  bool AreSimpleNeighbours(Index aIndex, Index bIndex) const {
    const Section& a = work_.sections[aIndex];
    const Section& b = work_.sections[bIndex];
    if (a.contour != b.contour || (a.directions & b.directions) == 0) return false;
    if (bIndex == aIndex + 1) return a.turnsSmoothly != 0;
    const Contour& contour = work_.contours[a.contour];
    return a.firstEdge == contour.first &&
           b.firstEdge + b.edgeCount == contour.first + contour.count && b.turnsSmoothly != 0;
  }

  Edge GetEdge(Index number, Index section) const {
    return {number, section, work_.points[number], work_.points[number + 1]};
  }

  Box GetBox(const Edge& edge) const {
    return {std::min(edge.start.x, edge.end.x) - tolerance_,
            std::min(edge.start.y, edge.end.y) - tolerance_,
            std::max(edge.start.x, edge.end.x) + tolerance_,
            std::max(edge.start.y, edge.end.y) + tolerance_};
  }

  // Pairs of edges. The first has the smaller number.

  void CompareEdges(const Edge& a, const Edge& b) {
    if (isActivating_ && work_.isActive[a.number] && work_.isActive[b.number]) return;
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
    if (AreNeighbours(a, b)) return CompareNeighbours(a, b);
    if (AreNeighbours(b, a)) return CompareNeighbours(b, a);
    if (isActivating_) return Activate(a, b);
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

  /// Returns true when b follows a on a contour.
  bool AreNeighbours(const Edge& a, const Edge& b) const {
    if (!IsSame(a.end, b.start)) return false;
    const Index contour = work_.sections[a.section].contour;
    return contour == work_.sections[b.section].contour && GetVertex(a, 1) == b.number;
  }

  static bool CrossProperly(const Edge& a, const Edge& b) {
    return OrientationSign(a.start, a.end, b.start) * OrientationSign(a.start, a.end, b.end) < 0 &&
           OrientationSign(b.start, b.end, a.start) * OrientationSign(b.start, b.end, a.end) < 0;
  }

  /// Adds the crossing at the given fraction of b.
  void AddCrossing(const Edge& a, const Edge& b, double fraction) {
    ++found_;
    if (work_.isMoved) return;  // the grid finds it
    Vec2d point;
    if (fraction <= 0.5) {
      point = b.start + (b.end - b.start) * fraction;
    } else {
      point = b.end + (b.start - b.end) * (1.0 - fraction);
    }
    point.x = Limit(point.x, a.start.x, a.end.x, b.start.x, b.end.x);
    point.y = Limit(point.y, a.start.y, a.end.y, b.start.y, b.end.y);
    // Tiles that share a part of both edges find the crossing more than once.
    if (point.x < common_.xMin || point.x > common_.xMax || point.y < common_.yMin ||
        point.y > common_.yMax) {
      return;
    }
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
    if (isActivating_) return Activate(a, b);
    MakeNode(GetVertex(a, 1));
    if (Length1(back) <= Length1(forth)) {
      JoinIfNear(a, 0, b);
    } else {
      JoinIfNear(b, 1, a);
    }
  }

  void Activate(const Edge& a, const Edge& b) {
    work_.isActive[a.number] = work_.isActive[b.number] = 1;
  }

  bool IsNear(const Vec2d& a, const Vec2d& b) const {
    return std::abs(a.x - b.x) <= tolerance_ && std::abs(a.y - b.y) <= tolerance_;
  }

  /// Returns the number of an end of an edge.
  Index GetVertex(const Edge& edge, Index which) const {
    const Index vertex = edge.number + which;
    const Contour& contour = work_.contours[work_.sections[edge.section].contour];
    return vertex == contour.first + contour.count ? contour.first : vertex;
  }

  void MakeNode(Index vertex) {
    if (work_.isNode[vertex]) return;
    work_.isNode[vertex] = 1;
    work_.parents[vertex] = vertex;
    work_.reaches[vertex] = 0.0;
    work_.nodeVertices.Append(vertex);
  }

  /// Makes one of two vertices unless that would move something too far.
  void Merge(Index a, const Vec2d& aPoint, Index b, const Vec2d& bPoint) {
    MakeNode(a);
    MakeNode(b);
    const Index aRoot = work_.Root(a);
    const Index bRoot = work_.Root(b);
    if (!IsSame(aPoint, bPoint)) work_.isMoved = true;
    if (aRoot == bRoot) return;
    const Index root = std::min(aRoot, bRoot);
    const Index other = std::max(aRoot, bRoot);
    const Vec2d way = work_.points[root] - work_.points[other];
    const double reach = std::max(std::abs(way.x), std::abs(way.y)) + work_.reaches[other];
    if (reach > JOIN_DISTANCE * tolerance_) return;
    work_.parents[other] = root;
    work_.reaches[root] = std::max(work_.reaches[root], reach);
  }

  Workspace& work_;
  const bool isActivating_;
  const double tolerance_;
  Box common_{};            ///< of the elements at hand
  Index found_ = 0;         ///< crossings
  std::uint64_t vain_ = 0;  ///< comparisons in crowds
  bool isAbandoned_ = false;
};

/// Edges within this many snap distances of each other go to the grid. More than what rounding may
/// move both by, and more than the pixels that an edge is compared with.
constexpr double ACTIVE_DISTANCE = 8.0;

/// Makes short edges active, and those beside them.
void ActivateShortEdges(Workspace& work, const Contour& contour, double length) {
  const Index last = contour.first + contour.count - 1;
  for (Index edge = contour.first; edge <= last; ++edge) {
    if (Length1(work.points[edge + 1] - work.points[edge]) > length) continue;
    work.isActive[edge] = 1;
    work.isActive[edge == contour.first ? last : edge - 1] = 1;
    work.isActive[edge == last ? contour.first : edge + 1] = 1;
  }
}

}  // namespace

void FindCrossings(Workspace& work) {
  work.occurrences.Clear();
  work.nodeVertices.Clear();
  work.isMoved = false;
  work.isNode.Fill(work.vertexCount, 0);
  work.parents.Resize(work.vertexCount);
  work.reaches.Resize(work.vertexCount);
  if (work.sections.IsEmpty()) return;
  CrossingFinder(work, Purpose::Join, work.tolerance).Run();
}

void FindActiveEdges(Workspace& work) {
  work.isMoved = false;
  work.points.Truncate(work.vertexCount);
  work.isActive.Fill(work.vertexCount, 0);
  const double tolerance = ACTIVE_DISTANCE * work.tolerance;
  CrossingFinder finder(work, Purpose::Activate, tolerance);
  finder.Run();
  if (finder.IsAbandoned()) return work.isActive.Fill(work.vertexCount, 1);
  for (const Contour& contour : work.contours) ActivateShortEdges(work, contour, 2.0 * tolerance);
}

}  // namespace shr::gpc
