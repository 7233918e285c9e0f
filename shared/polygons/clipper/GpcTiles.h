// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Which parts of the polygon clipper's contours come near each other? For the library's own use.
///
/// Many short sections are dealt out to the cells of a raster at first. Then each cell, or all of
/// the plane, is halved again and again until a tile holds only few sections, whose pairs are then
/// compared; a long edge goes, clipped, to every tile that it touches. Bundles of nearly parallel
/// needles cannot be parted by upright tiles, whatever their size. They are cut along their
/// direction, or ordered by the interval that each covers across it, and only overlapping intervals
/// are compared. All boxes and intervals are rounded outward, so what is compared is a superset of
/// what meets, and no rounding on the way can lose a crossing.
///
/// Some crowds gain nothing by being parted, which a sample of their pairs tells: where most cross
/// each other, all are compared at once, as the crossings pay for it; where most meet in one point,
/// only the grid (GpcSnap.cpp) keeps from comparing all with all.
///
/// Source: J. T. Klosowski et al., "Efficient Collision Detection Using Bounding Volume Hierarchies
/// of k-DOPs", 1998 (intervals across fixed directions).
///
/// Threads: a memory serves one search at a time.

#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

#include "shared/polygons/clipper/GpcInput.h"
#include "shared/polygons/clipper/GpcRaster.h"
#include "shared/polygons/clipper/GpcTuning.h"

namespace shr::gpc {

/// A section, or the part of it inside a tile, by its box.
struct Element {
  Box box;
  Index section;
  Index firstEdge;
  Index edgeCount;
};

/// What an element covers across a direction.
struct Interval {
  double low;
  double high;
  Index element;
};

/// What the search needs to keep, so that its memory can serve again.
struct TileMemory {
  Buffer<Element> elements{L"tile creation"};
  Buffer<Index> cellStarts{L"tile creation"};
  Buffer<Index> cellSections{L"tile creation"};
  Buffer<Interval> intervals{L"tile creation"};
};

inline bool Overlap(const Box& a, const Box& b) {
  // All at once: which of them fails cannot be foretold.
  return static_cast<bool>(static_cast<int>(a.xMin <= b.xMax) & static_cast<int>(b.xMin <= a.xMax) &
                           static_cast<int>(a.yMin <= b.yMax) & static_cast<int>(b.yMin <= a.yMax));
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

  double Place(const Vec2d& point) const { return across.Dot(point) - at; }
};

/// Calls, with an object `pairs`, `pairs.CompareAll(elements)` for the elements of a small tile,
/// `pairs.Compare(a, b)` for elements whose boxes, widened by the tolerance, overlap, and
/// `pairs.GiveUp(elements)` for crowds that it leaves uncompared; `pairs.Found()` is the number of
/// crossings so far.
template <class Pairs>
class TileSearch {
public:
  TileSearch(const Input& input, double tolerance, TileMemory& memory, Pairs& pairs)
      : input_(input), tolerance_(tolerance), memory_(memory), pairs_(pairs) {}

  void Run() {
    const Index count = input_.sections.Size();
    deepest_ = Tuning::MORE_HALVINGS + static_cast<int>(std::bit_width(count));
    Box all = EMPTY_BOX;
    for (const Section& section : input_.sections) Extend(all, section.box);
    all = Widen(all);
    if (count >= Tuning::MANY_SECTIONS) {
      const Raster raster(all, count);
      if (IsFit(raster)) return FindInRaster(raster);
    }
    memory_.elements.Resize(count);
    for (Index i = 0; i < count; ++i) memory_.elements[i] = GetElement(i);
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
    const Section& section = input_.sections[index];
    return {Widen(section.box), index, section.firstEdge, section.edgeCount};
  }

  /// Returns false when sections are so long that they would fill a raster.
  bool IsFit(const Raster& raster) const {
    const double limit = Tuning::MAX_COPIES * input_.sections.Size();
    double sum = 0.0;
    for (const Section& section : input_.sections) {
      sum += raster.CountCells(Widen(section.box));
      if (sum > limit) return false;
    }
    return true;
  }

  /// Parts the plane into the cells of a raster at first.
  void FindInRaster(const Raster& raster) {
    Buffer<Index>& starts = memory_.cellStarts;
    starts.Fill(raster.CellCount() + 1, 0);
    for (const Section& section : input_.sections) {
      raster.ForEachCell(Widen(section.box), [&](Index cell) { ++starts[cell]; });
    }
    Index sum = 0;
    for (Index& start : starts) {
      sum += start;
      start = sum;
    }
    memory_.cellSections.Resize(sum);
    for (Index i = input_.sections.Size(); i-- > 0;) {
      raster.ForEachCell(Widen(input_.sections[i].box),
                         [&](Index cell) { memory_.cellSections[--starts[cell]] = i; });
    }
    for (Index cell = 0; cell < raster.CellCount(); ++cell) FindInCell(raster, cell);
  }

  void FindInCell(const Raster& raster, Index cell) {
    const Index first = memory_.cellStarts[cell];
    const Index end = memory_.cellStarts[cell + 1];
    if (end - first < 2) return;
    const Box bounds = raster.GetBounds(cell, 4.0 * tolerance_);
    memory_.elements.Resize(end - first);
    Element* element = memory_.elements.Data();
    Box all = EMPTY_BOX;
    for (Index i = first; i < end; ++i, ++element) {
      *element = GetElement(memory_.cellSections[i]);
      element->box = GetCommon(element->box, bounds);
      Extend(all, element->box);
    }
    FindInTile(0, end - first, all, 0);
  }

  // Tiles. A tile's elements are the last ones in the buffer.

  void FindInTile(Index first, Index count, const Box& box, int depth) {
    if (isAbandoned_) return;
    if (count <= Tuning::SMALL_TILE) return CompareAll(first, count);
    if (depth == Tuning::MAX_DEPTH) return CompareByIntervals(first, count);
    const double size = std::max(box.xMax - box.xMin, box.yMax - box.yMin);
    if (size <= Tuning::SMALLEST_TILE * tolerance_) return GiveUp(first, count, 0);
    const bool isWide = box.xMax - box.xMin >= box.yMax - box.yMin;
    if (isWide ? HalveUpright(first, count, box, depth, count / 4)
               : HalveLevel(first, count, box, depth, count / 4)) {
      return;
    }
    if (depth > deepest_ && IsHub(first, count, size)) return GiveUp(first, count, 0);
    switch (GetCrowd(first, count)) {
      case Crowd::Crossing:
        return CompareAll(first, count);
      case Crowd::Hub:
        return GiveUp(first, count, 0);
      default:
        break;
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
    const Element* elements = memory_.elements.Data() + first;
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
    memory_.elements.Reserve(lowFirst + count);
    Element* const elements = memory_.elements.Data();
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
    memory_.elements.Resize(lowFirst + lowCount);
    FindInTile(lowFirst, lowCount, lowBox, depth + 1);
    memory_.elements.Resize(first + highCount);
    FindInTile(first, highCount, highBox, depth + 1);
  }

  /// Limits a box to the part of its element on one side of a cut, and a margin of the tolerance.
  /// Returns false when nothing of it is there.
  bool Limit(Box& box, const Element& element, const Cut& cut, double side) const {
    const Vec2d* points = input_.points.Data() + element.firstEdge;
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
    const Element* elements = memory_.elements.Data() + first;
    pairs_.CompareAll({elements, elements + count});
  }

  // Crowds. What may be one is judged by some elements.

  /// Returns true when nearly all elements of a tile only pass through, from far away to far away.
  bool IsHub(Index first, Index count, double size) const {
    const Index step = count / Tuning::SAMPLES + 1;
    Index samples = 0;
    Index through = 0;
    for (Index i = 0; i < count; i += step) {
      const Box& box = input_.sections[memory_.elements[first + i].section].box;
      const double length = std::max(box.xMax - box.xMin, box.yMax - box.yMin);
      ++samples;
      through += length > Tuning::FAR_AWAY * size;
    }
    return through >= samples - samples / 4;
  }

  enum class Crowd { None, Crossing, Hub };

  /// Tells whether so many pairs cross inside a tile that it is best to compare all at once, while
  /// smaller tiles would find each crossing many times, or whether most meet in one point.
  Crowd GetCrowd(Index first, Index count) const {
    const Element* elements = memory_.elements.Data() + first;
    const double reach = Tuning::SMALLEST_TILE * tolerance_;
    Index meetings = 0;
    Index together = 0;
    Vec2d last(HUGE_VAL, HUGE_VAL);
    for (Index i = 0; i < 2 * Tuning::SAMPLES; ++i) {
      // Spread evenly (the golden ratio and the square root of 2, as shares of 2^32).
      const Index a = static_cast<Index>(std::uint64_t{i * 2654435769u} * count >> 32);
      const Index b = static_cast<Index>(std::uint64_t{i * 1779033703u + 7u} * count >> 32);
      Vec2d point;
      if (a == b || !Meet(elements[a], elements[b], point)) continue;
      ++meetings;
      together += std::abs(point.x - last.x) <= reach && std::abs(point.y - last.y) <= reach;
      last = point;
    }
    if (together >= Tuning::MANY_MEET) return Crowd::Hub;
    return meetings >= Tuning::MANY_MEET ? Crowd::Crossing : Crowd::None;
  }

  /// Finds the point where the chords of two elements cross or end together, inside both boxes.
  bool Meet(const Element& one, const Element& two, Vec2d& point) const {
    const Box box = GetCommon(one.box, two.box);
    if (box.xMin > box.xMax || box.yMin > box.yMax) return false;
    const Vec2d& a = input_.points[one.firstEdge];
    const Vec2d& b = input_.points[two.firstEdge];
    const Vec2d& aEnd = input_.points[one.firstEdge + one.edgeCount];
    const Vec2d& bEnd = input_.points[two.firstEdge + two.edgeCount];
    if (IsSame(a, b) || IsSame(a, bEnd)) {
      point = a;
    } else if (IsSame(aEnd, b) || IsSame(aEnd, bEnd)) {
      point = aEnd;
    } else {
      const Vec2d aWay = aEnd - a;
      const Vec2d bWay = bEnd - b;
      const double scale = aWay.Cross(bWay);
      const double aPlace = (b - a).Cross(bWay) / scale;
      const double bPlace = (b - a).Cross(aWay) / scale;
      if (!(aPlace > 0.0 && aPlace < 1.0 && bPlace > 0.0 && bPlace < 1.0)) return false;
      point = a + aWay * aPlace;
    }
    return point.x >= box.xMin && point.x <= box.xMax && point.y >= box.yMin && point.y <= box.yMax;
  }

  // Bundles.

  /// Compares a tile's elements by their intervals across the main direction or cuts the tile along
  /// that direction. Returns false when it is not a bundle.
  bool HandleBundle(Index first, Index count, int depth) {
    const Vec2d across = GetAcross(first, count);
    if (!SeemsBundle(first, count, across)) return false;
    const Spread spread = MeasureIntervals(first, count, across);
    if (spread.sum <= Tuning::MAX_OVERLAPS * (spread.high - spread.low)) {
      SweepIntervals(first, count);
      return true;
    }
    const double at = spread.center;
    Index low = 0;
    Index high = 0;
    for (const Interval& interval : memory_.intervals) {
      low += interval.low <= at;
      high += interval.high >= at;
    }
    if (low + high > count + count * 3 / 8 || std::max(low, high) > count - count / 8) return false;
    Halve(first, count, {across, at}, depth, [this, at](const Element&, Index i) {
      const Interval& interval = memory_.intervals[i];
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
      const Range range = GetCovered(memory_.elements[first + i], across);
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
    memory_.intervals.Resize(count);
    Spread spread;
    for (Index i = 0; i < count; ++i) {
      const Range range = GetCovered(memory_.elements[first + i], across);
      memory_.intervals[i] = {range.low - margin, range.high + margin, i};
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
    const Element* elements = memory_.elements.Data() + first;
    std::sort(memory_.intervals.begin(), memory_.intervals.end(),
              [](const Interval& a, const Interval& b) {
                return a.low < b.low || (a.low == b.low && a.element < b.element);
              });
    const Index foundBefore = pairs_.Found();
    Index compared = 0;
    for (Index i = 0; i < count; ++i) {
      const Element& element = elements[memory_.intervals[i].element];
      const double high = memory_.intervals[i].high;
      for (Index j = i + 1; j < count && memory_.intervals[j].low <= high; ++j) {
        const Element& other = elements[memory_.intervals[j].element];
        if (!Overlap(element.box, other.box)) continue;
        ++compared;
        pairs_.Compare(element, other);
      }
      if (compared > Tuning::MOST_IN_VAIN * (count + pairs_.Found() - foundBefore))
        return GiveUp(first, count, compared);
    }
  }

  /// Leaves a crowd of edges that do not cross, such as many that end in one point, to the grid.
  void GiveUp(Index first, Index count, Index compared) {
    vain_ += compared;
    left_ += count;
    isAbandoned_ = vain_ > Tuning::MOST_IN_VAIN * input_.sections.Size() ||
                   left_ > input_.sections.Size() / Tuning::MOST_LEFT;
    const Element* elements = memory_.elements.Data() + first;
    pairs_.GiveUp({elements, elements + count});
  }

  /// Returns a vector at a right angle to the sum of all directions, each turned into one half
  /// plane.
  Vec2d GetAcross(Index first, Index count) const {
    double x = 0.0;
    double y = 0.0;
    for (Index i = first; i < first + count; ++i) {
      const Element& element = memory_.elements[i];
      const Vec2d a = input_.points[element.firstEdge];
      const Vec2d b = input_.points[element.firstEdge + element.edgeCount];
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
    const Vec2d* points = input_.points.Data() + element.firstEdge;
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
    const double place = across.Dot(a);
    const double change = across.Dot(b) - place;
    range.Add(place + t0 * change);
    range.Add(place + t1 * change);
  }

  const Input& input_;
  const double tolerance_;
  TileMemory& memory_;
  Pairs& pairs_;
  std::uint64_t vain_ = 0;  ///< comparisons in crowds
  std::uint64_t left_ = 0;  ///< elements of crowds that were left uncompared
  int deepest_ = 0;         ///< most halvings that parts well apart need
  bool isAbandoned_ = false;
};

}  // namespace shr::gpc
