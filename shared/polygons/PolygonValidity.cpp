// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A sweep over all rings (RingSweep.h) finds rings that meet in more than single points. Where
// there are none it has told what lies around each ring and where rings touch. Nesting then follows
// from the ring next around each one. The inside of a polygon is in one piece when its rings and
// the points in which they touch make a graph without cycles: every cycle closes off a part.

#include "shared/polygons/PolygonValidity.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <span>
#include <vector>

#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/RingSweep.h"

namespace shr {
namespace {

using Kind = PolygonFault::Kind;
using Fault = std::optional<PolygonFault>;

constexpr std::size_t MIN_RING_SIZE = 3;
constexpr std::size_t NO_RING = RingSweep::NO_RING;
/// How often `MakeValid` cleans what it has cleaned.
constexpr int MAX_RUNS = 8;

/// Sets that grow together.
class Sets {
public:
  explicit Sets(std::size_t size) : parents_(size) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }

  std::size_t Add() {
    parents_.push_back(parents_.size());
    return parents_.size() - 1;
  }
  /// Returns false when both were in one set before.
  bool Unite(std::size_t a, std::size_t b) {
    const std::size_t first = Find(a);
    const std::size_t second = Find(b);
    parents_[second] = first;
    return first != second;
  }

private:
  std::size_t Find(std::size_t i) {
    while (parents_[i] != i) i = parents_[i] = parents_[parents_[i]];
    return i;
  }

  std::vector<std::size_t> parents_;
};

/// The search for a fault: rings are added, then it is run.
class FaultSearch {
public:
  Fault AddRing(std::span<const Vec2d> ring, std::size_t polygon, std::size_t number);
  /// The search over rings that say which polygon they belong to, 0 being the outer one.
  Fault FindInPolygons();
  /// The search over contours of which those at odd depths are holes.
  Fault FindInContours();

private:
  struct Name {
    std::size_t polygon;
    std::size_t ring;
  };

  Fault FindMeeting();
  Fault NestingOf(std::size_t ring, std::span<const std::size_t> outerRings) const;
  Kind KindOfStrayHole(std::size_t ring, std::size_t outer) const;
  Fault FindCut(std::span<const std::size_t> polygonOf) const;
  PolygonFault FaultOf(Kind kind, std::size_t ring) const {
    return {kind, sweep_.Places()[ring].leftmost, names_[ring].polygon, names_[ring].ring};
  }

  RingSweep sweep_;
  std::vector<Name> names_;
  std::vector<Vec2d> points_;
};

/// Takes a ring, closed or open, and returns what is wrong with it alone.
Fault FaultSearch::AddRing(std::span<const Vec2d> ring, std::size_t polygon, std::size_t number) {
  if (ring.empty()) return std::nullopt;
  const auto bad = std::find_if_not(ring.begin(), ring.end(),
                                    [](const Vec2d& point) { return point.IsFinite(); });
  if (bad != ring.end()) return PolygonFault{Kind::NotFinite, *bad, polygon, number};
  points_.clear();
  std::unique_copy(ring.begin(), ring.end(), std::back_inserter(points_));
  while (points_.size() > 1 && points_.back() == points_.front()) points_.pop_back();
  if (points_.size() < MIN_RING_SIZE) {
    return PolygonFault{Kind::TooFewPoints, points_.front(), polygon, number};
  }
  sweep_.Add(points_);
  names_.push_back({polygon, number});
  return std::nullopt;
}

Fault FaultSearch::FindMeeting() {
  const std::optional<RingMeeting> meeting = sweep_.Run();
  if (!meeting) return std::nullopt;
  const Name& name = names_[meeting->ring];
  return PolygonFault{meeting->kind, meeting->place, name.polygon, name.ring};
}

Fault FaultSearch::FindInPolygons() {
  if (const Fault fault = FindMeeting()) return fault;
  const std::size_t size = names_.empty() ? 0 : names_.back().polygon + 1;
  std::vector<std::size_t> outerRings(size, NO_RING);
  std::vector<std::size_t> polygonOf;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (names_[i].ring == 0) outerRings[names_[i].polygon] = i;
    polygonOf.push_back(names_[i].polygon);
  }
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (const Fault fault = NestingOf(i, outerRings)) return fault;
  }
  if (const Fault fault = FindCut(polygonOf)) return fault;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const bool isHole = names_[i].ring != 0;
    if (sweep_.Places()[i].isCounterClockwise != isHole) return FaultOf(Kind::WrongTurn, i);
  }
  return std::nullopt;
}

Fault FaultSearch::FindInContours() {
  if (const Fault fault = FindMeeting()) return fault;
  std::vector<std::size_t> polygonOf;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const RingPlace& place = sweep_.Places()[i];
    polygonOf.push_back(place.depth % 2 == 0 ? i : place.parent);
  }
  return FindCut(polygonOf);
}

/// Returns what is wrong with the place of a ring. Where all rings pass, an outer ring has nothing
/// or the hole of another polygon next around it, and a hole its own outer ring.
Fault FaultSearch::NestingOf(std::size_t ring, std::span<const std::size_t> outerRings) const {
  const Name& name = names_[ring];
  const std::size_t parent = sweep_.Places()[ring].parent;
  if (name.ring == 0) {
    if (parent == NO_RING || names_[parent].ring != 0) return std::nullopt;
    return FaultOf(Kind::PolygonsOverlap, ring);
  }
  const std::size_t outer = outerRings[name.polygon];
  if (parent == outer && parent != NO_RING) return std::nullopt;
  return FaultOf(KindOfStrayHole(ring, outer), ring);
}

Kind FaultSearch::KindOfStrayHole(std::size_t ring, std::size_t outer) const {
  for (std::size_t i = sweep_.Places()[ring].parent; i != NO_RING; i = sweep_.Places()[i].parent) {
    if (i == outer) return Kind::PolygonsOverlap;
    if (names_[i].polygon == names_[ring].polygon) return Kind::HolesNested;
  }
  return Kind::HoleOutside;
}

/// Finds a point in which the touching rings of a polygon close a cycle.
Fault FaultSearch::FindCut(std::span<const std::size_t> polygonOf) const {
  const std::span<const RingTouch> sorted = sweep_.Touches();
  std::vector<RingTouch> touches(sorted.begin(), sorted.end());
  std::sort(touches.begin(), touches.end(), [&](const RingTouch& a, const RingTouch& b) {
    if (a.point != b.point) return a.point < b.point;
    const std::size_t polygonOfA = polygonOf[a.ring];
    const std::size_t polygonOfB = polygonOf[b.ring];
    return polygonOfA != polygonOfB ? polygonOfA < polygonOfB : a.ring < b.ring;
  });
  Sets sets(names_.size());
  for (std::size_t i = 1; i < touches.size(); ++i) {
    const RingTouch& first = touches[i - 1];
    std::size_t point = NO_RING;
    for (; i < touches.size() && touches[i].point == first.point &&
           polygonOf[touches[i].ring] == polygonOf[first.ring];
         ++i) {
      if (point == NO_RING) {
        point = sets.Add();
        sets.Unite(point, first.ring);
      }
      if (sets.Unite(point, touches[i].ring)) continue;
      const Name& name = names_[touches[i].ring];
      return PolygonFault{Kind::InteriorDisconnected, first.place, name.polygon, name.ring};
    }
  }
  return std::nullopt;
}

enum class Closing { Asked, Implied };

Fault FindFaultOf(const MultiPolygon2d& polygons, Closing closing) {
  FaultSearch search;
  const auto add = [&](const Ring2d& ring, std::size_t polygon, std::size_t number) {
    const Fault fault = search.AddRing(ring, polygon, number);
    const bool isOpen = !ring.empty() && ring.front() != ring.back();
    if (closing == Closing::Implied || !isOpen) return fault;
    if (fault && fault->kind == Kind::NotFinite) return fault;
    return Fault(PolygonFault{Kind::NotClosed, ring.back(), polygon, number});
  };
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    if (const Fault fault = add(polygons[i].outer(), i, 0)) return fault;
    const std::vector<Ring2d>& inners = polygons[i].inners();
    for (std::size_t j = 0; j < inners.size(); ++j) {
      if (const Fault fault = add(inners[j], i, j + 1)) return fault;
    }
  }
  return search.FindInPolygons();
}

}  // namespace

const wchar_t* PolygonFaultText(PolygonFault::Kind kind) {
  static constexpr const wchar_t* TEXTS[] = {
      L"Coordinate is not finite",  L"Ring is not closed",
      L"Ring has too few points",   L"Ring has a spike",
      L"Ring crosses itself",       L"Ring runs twice along a line",
      L"Ring touches itself",       L"Rings cross",
      L"Rings share a line",        L"Hole lies outside its outer ring",
      L"Hole lies in another hole", L"Polygon lies in another polygon",
      L"Inside is not connected",   L"Ring turns the wrong way",
  };
  static_assert(std::size(TEXTS) == static_cast<std::size_t>(Kind::WrongTurn) + 1);
  return TEXTS[static_cast<std::size_t>(kind)];
}

std::optional<PolygonFault> FindFault(const MultiPolygon2d& polygons) {
  return FindFaultOf(polygons, Closing::Asked);
}

std::optional<PolygonFault> FindFault(const GPolygon2d& polygons) {
  MultiPolygon2d model;
  polygons.GetMultiPolygon(model);
  // Its rings are closed, to a few units in the last place if not exactly.
  return FindFaultOf(model, Closing::Implied);
}

std::optional<PolygonFault> FindFault(const GPolygon& polygon) {
  FaultSearch search;
  for (std::size_t i = 0; i < polygon.GetNumContours(); ++i) {
    if (const Fault fault = search.AddRing(polygon.GetContour(i), 0, i)) return fault;
  }
  return search.FindInContours();
}

bool IsValid(const MultiPolygon2d& polygons) {
  return !FindFault(polygons);
}

bool IsValid(const GPolygon2d& polygons) {
  return !FindFault(polygons);
}

bool IsValid(const GPolygon& polygon) {
  return !FindFault(polygon);
}

MultiPolygon2d MakeValid(const MultiPolygon2d& polygons) {
  MultiPolygon2d result;
  MakeValid(GPolygon2d(polygons)).GetMultiPolygon(result);
  return result;
}

GPolygon2d MakeValid(const GPolygon2d& polygons) {
  GPolygon2d result = GPolygon2d::Unite({&polygons, 1});
  for (int run = 1; run < MAX_RUNS && !IsValid(result); ++run) {
    result = GPolygon2d::Unite({&result, 1});
  }
  return result;
}

GPolygon MakeValid(const GPolygon& polygon) {
  GPolygon result;
  polygon.Union(GPolygon(), result);
  for (int run = 1; run < MAX_RUNS && !IsValid(result); ++run) result.Union(GPolygon());
  return result;
}

}  // namespace shr
