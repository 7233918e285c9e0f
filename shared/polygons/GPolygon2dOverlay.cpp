// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clipping and boolean operations of `GPolygon2d` through Boost.Geometry's overlay. This is the one
// source that compiles it. Who judges the outcome of the boolean operations is
// GPolygon2dBoolean.cpp; clipping to a box is judged here.
//
// The overlay expects rings that neither cross nor touch themselves; outlines of real maps do both,
// and then it may raise an error or return wrong parts. Every result is therefore measured: the
// area of the parts must equal the area that half-plane clipping leaves of the rings (I. E.
// Sutherland and G. W. Hodgman, "Reentrant Polygon Clipping", 1974), which keeps the winding number
// of every point of the box whatever the ring is like. Where the two disagree the half-plane clip
// itself is the result. It is right as well, but connects separate parts by edges of no width along
// the border of the box.
//
// Polygons strictly inside the box are kept, those outside dropped without either.

#include <algorithm>
#include <array>
#include <boost/geometry/algorithms/area.hpp>
#include <boost/geometry/algorithms/difference.hpp>
#include <boost/geometry/algorithms/intersection.hpp>
#include <boost/geometry/algorithms/union.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/geometries/register/point.hpp>
#include <boost/geometry/strategies/cartesian.hpp>
#include <cfloat>
#include <cmath>
#include <optional>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon2dModel.h"

BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2d, double, boost::geometry::cs::cartesian, x, y)

namespace shr {
namespace {

namespace bg = boost::geometry;
using BoostPolygon = bg::model::polygon<Vec2d>;
using BoostMultiPolygon = bg::model::multi_polygon<BoostPolygon>;
using BoostBox = bg::model::box<Vec2d>;
using Points = std::vector<Vec2d>;

constexpr std::size_t MIN_RING_SIZE = 4;
/// How far the area of a clipped polygon may be off, relative to the area it may fill at most.
constexpr double AREA_TOLERANCE = 1e-10;
/// How far from the border a crossing point may lie, relative to the size of its coordinates.
constexpr double SNAP_TOLERANCE = 8.0 * DBL_EPSILON;

/// A side of the box: the coordinate that is bounded, the bound, and the direction that is kept.
struct Side {
  double Vec2d::*bounded;
  double Vec2d::*other;
  double bound;
  bool keepsAbove;

  bool Keeps(const Vec2d& point) const {
    return keepsAbove ? point.*bounded >= bound : point.*bounded <= bound;
  }

  /// Returns where the segment meets the bound; weights instead of a difference keep huge numbers
  /// finite.
  Vec2d Crossing(const Vec2d& a, const Vec2d& b) const {
    const double range = b.*bounded / 2.0 - a.*bounded / 2.0;
    const double t = std::clamp((bound / 2.0 - a.*bounded / 2.0) / range, 0.0, 1.0);
    Vec2d point;
    point.*bounded = bound;
    point.*other = a.*other * (1.0 - t) + b.*other * t;
    return point;
  }
};

std::array<Side, 4> SidesOf(const Box2d& box) {
  return {
      Side{&Vec2d::x, &Vec2d::y, box.xMin(), true}, Side{&Vec2d::y, &Vec2d::x, box.yMin(), true},
      Side{&Vec2d::x, &Vec2d::y, box.xMax(), false}, Side{&Vec2d::y, &Vec2d::x, box.yMax(), false}};
}

void ClipToSide(const Points& ring, const Side& side, Points& result) {
  result.clear();
  if (ring.empty()) return;
  Vec2d from = ring.back();
  bool fromIsKept = side.Keeps(from);
  for (const Vec2d& to : ring) {
    const bool toIsKept = side.Keeps(to);
    if (toIsKept != fromIsKept) result.push_back(side.Crossing(from, to));
    if (toIsKept) result.push_back(to);
    from = to;
    fromIsKept = toIsKept;
  }
}

Points ClipRing(std::span<const Vec2d> ring, const Box2d& box) {
  Points clipped(ring.begin(), ring.end());
  Points next;
  for (const Side& side : SidesOf(box)) {
    ClipToSide(clipped, side, next);
    clipped.swap(next);
  }
  return clipped;
}

/// The rings of a polygon clipped by half-planes, and their joint area.
struct HalfPlaneClip {
  std::vector<Points> rings;
  double area = 0.0;  ///< clockwise rings count positive
};

HalfPlaneClip ClipByHalfPlanes(const GPolygon2dModel& model, std::size_t polygon,
                               const Box2d& box) {
  HalfPlaneClip clip;
  for (std::size_t ring = model.FirstRing(polygon); ring < model.polygons[polygon].endRing;
       ++ring) {
    clip.rings.push_back(ClipRing(model.Ring(ring), box));
    clip.area -= PolygonArea(clip.rings.back());
  }
  return clip;
}

/// Copies a ring for the overlay, whose rings close exactly.
template <class Ring>
void CopyRing(std::span<const Vec2d> source, Ring& ring) {
  ring.assign(source.begin(), source.end());
  if (!ring.empty()) ring.back() = ring.front();
}

BoostPolygon ToBoost(const GPolygon2dModel& model, std::size_t polygon) {
  BoostPolygon result;
  const std::size_t outer = model.FirstRing(polygon);
  const std::size_t end = model.polygons[polygon].endRing;
  CopyRing(model.Ring(outer), result.outer());
  result.inners().resize(end - outer - 1);
  for (std::size_t ring = outer + 1; ring < end; ++ring) {
    CopyRing(model.Ring(ring), result.inners()[ring - outer - 1]);
  }
  return result;
}

std::optional<BoostMultiPolygon> Overlay(const BoostPolygon& polygon, const Box2d& box) {
  BoostMultiPolygon result;
  try {
    bg::intersection(polygon, BoostBox(box.Min(), box.Max()), result);
  } catch (const bg::exception&) {
    return std::nullopt;
  }
  return result;
}

double SnapCoordinate(double value, double low, double high, double distance) {
  if (value - low <= distance) return low;
  return high - value <= distance ? high : value;
}

/// Moves what lies outside the box, or inside by no more than rounding, onto its border: the
/// overlay's crossing points are off by some units in the last place.
void SnapToBox(BoostPolygon::ring_type& ring, const Box2d& box, const Vec2d& distance) {
  for (Vec2d& point : ring) {
    point.x = SnapCoordinate(point.x, box.xMin(), box.xMax(), distance.x);
    point.y = SnapCoordinate(point.y, box.yMin(), box.yMax(), distance.y);
  }
}

void AddOverlay(BoostMultiPolygon& parts, const Box2d& box, const Box2d& common,
                GPolygon2dModel& result) {
  const auto largest = [](double a, double b) { return std::max(std::abs(a), std::abs(b)); };
  const Vec2d distance =
      Vec2d(largest(common.xMin(), common.xMax()), largest(common.yMin(), common.yMax())) *
      SNAP_TOLERANCE;
  for (BoostPolygon& part : parts) {
    SnapToBox(part.outer(), box, distance);
    result.AddOuterRing(part.outer());
    for (auto& hole : part.inners()) {
      SnapToBox(hole, box, distance);
      result.AddInnerRing(hole);
    }
  }
}

void AddHalfPlaneClip(const HalfPlaneClip& clip, GPolygon2dModel& result) {
  if (clip.area == 0.0) return;
  const Points outer = WithoutSpikes(clip.rings.front());
  if (outer.empty()) return;
  result.AddOuterRing(outer);
  for (std::size_t i = 1; i < clip.rings.size(); ++i) {
    const Points inner = WithoutSpikes(clip.rings[i]);
    if (!inner.empty()) result.AddInnerRing(inner);
  }
}

void ClipPolygon(const GPolygon2dModel& model, std::size_t polygon, const Box2d& box,
                 GPolygon2dModel& result) {
  Box2d common = model.polygons[polygon].box;
  common.Intersect(box);
  const HalfPlaneClip expected = ClipByHalfPlanes(model, polygon, box);
  std::optional<BoostMultiPolygon> parts = Overlay(ToBoost(model, polygon), box);
  if (parts.has_value() &&
      std::abs(bg::area(*parts) - expected.area) <= AREA_TOLERANCE * common.GetArea()) {
    AddOverlay(*parts, box, common, result);
  } else {
    AddHalfPlaneClip(expected, result);
  }
}

BoostMultiPolygon ToBoost(const GPolygon2dModel& model) {
  BoostMultiPolygon result;
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    result.push_back(ToBoost(model, polygon));
  }
  return result;
}

bool IsStrictlyInside(const Box2d& inner, const Box2d& outer) {
  return outer.xMin() < inner.xMin() && inner.xMax() < outer.xMax() &&
         outer.yMin() < inner.yMin() && inner.yMax() < outer.yMax();
}

}  // namespace

GPolygon2dModel ClipToBox(const GPolygon2dModel& model, const Box2d& box) {
  GPolygon2dModel result;
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    const GPolygon2dModel::Polygon& source = model.polygons[polygon];
    Box2d common = source.box;
    common.Intersect(box);
    const bool canHaveArea = model.Ring(model.FirstRing(polygon)).size() >= MIN_RING_SIZE;
    if (!source.isFinite || !canHaveArea || common.IsEmpty()) continue;
    if (IsStrictlyInside(source.box, box)) {
      result.AddPolygon(model, polygon);
    } else {
      ClipPolygon(model, polygon, box, result);
    }
  }
  return result;
}

std::optional<GPolygon2dModel> OverlayModels(const GPolygon2dModel& a, const GPolygon2dModel& b,
                                             PolygonOperation operation) {
  const BoostMultiPolygon first = ToBoost(a);
  const BoostMultiPolygon second = ToBoost(b);
  BoostMultiPolygon parts;
  try {
    switch (operation) {
      case PolygonOperation::Intersection:
        bg::intersection(first, second, parts);
        break;
      case PolygonOperation::Union:
        bg::union_(first, second, parts);
        break;
      case PolygonOperation::Difference:
        bg::difference(first, second, parts);
        break;
      default:
        return std::nullopt;
    }
  } catch (const bg::exception&) {
    return std::nullopt;
  }
  GPolygon2dModel result;
  for (const BoostPolygon& part : parts) {
    result.AddOuterRing(part.outer());
    for (const auto& hole : part.inners()) result.AddInnerRing(hole);
  }
  return result;
}

}  // namespace shr
