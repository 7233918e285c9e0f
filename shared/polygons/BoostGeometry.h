// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Opt-in: makes the types of this library models of Boost.Geometry's concepts, so that its
/// algorithms take them as they are. Needs the headers of Boost 1.81 or later where it is included;
/// the library itself does not, and no other header of it includes this one.
///
///     #include "shared/polygons/BoostGeometry.h"
///     #include <boost/geometry.hpp>
///
///     MultiPolygon2d model;
///     country.GetMultiPolygon(model);
///     double area = boost::geometry::area(model);
///     bool inside = boost::geometry::within(Vec2d(2.35, 48.86), model);
///
/// | type | concept |
/// | --- | --- |
/// | `Vec2d`, `Vec2f`, `Vec2i`, `Vec3d`, `Vec3f` | point, cartesian |
/// | `GLine2` | segment, read only |
/// | `Box2d`, `Box2f` | box |
/// | `GPolyline` | linestring |
/// | `Ring2d` | ring, clockwise and closed |
/// | `Polygon2d` | polygon |
/// | `MultiPolygon2d` | multi-polygon |
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <vector>

#include <boost/geometry/core/access.hpp>
#include <boost/geometry/core/coordinate_dimension.hpp>
#include <boost/geometry/core/coordinate_system.hpp>
#include <boost/geometry/core/coordinate_type.hpp>
#include <boost/geometry/core/cs.hpp>
#include <boost/geometry/core/exterior_ring.hpp>
#include <boost/geometry/core/interior_rings.hpp>
#include <boost/geometry/core/point_type.hpp>
#include <boost/geometry/core/ring_type.hpp>
#include <boost/geometry/core/tag.hpp>
#include <boost/geometry/core/tags.hpp>
#include <boost/geometry/geometries/register/linestring.hpp>
#include <boost/geometry/geometries/register/multi_polygon.hpp>
#include <boost/geometry/geometries/register/point.hpp>
#include <boost/geometry/geometries/register/ring.hpp>

#include "shared/geometry/Box2.h"
#include "shared/geometry/GLine.h"
#include "shared/geometry/Vec3.h"
#include "shared/polygons/GPolyline.h"
#include "shared/polygons/MultiPolygon.h"

/// @cond
BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2d, double, boost::geometry::cs::cartesian, x, y)
BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2f, float, boost::geometry::cs::cartesian, x, y)
BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2i, int, boost::geometry::cs::cartesian, x, y)
BOOST_GEOMETRY_REGISTER_POINT_3D(shr::Vec3d, double, boost::geometry::cs::cartesian, x, y, z)
BOOST_GEOMETRY_REGISTER_POINT_3D(shr::Vec3f, float, boost::geometry::cs::cartesian, x, y, z)
BOOST_GEOMETRY_REGISTER_LINESTRING(shr::GPolyline)
BOOST_GEOMETRY_REGISTER_RING(shr::Ring2d)
BOOST_GEOMETRY_REGISTER_MULTI_POLYGON(shr::MultiPolygon2d)

namespace boost::geometry::traits {

template <>
struct tag<shr::GLine2> {
  using type = segment_tag;
};
template <>
struct point_type<shr::GLine2> {
  using type = shr::Vec2d;
};
template <std::size_t AXIS>
struct indexed_access<shr::GLine2, 0, AXIS> {
  static double get(const shr::GLine2& line) { return geometry::get<AXIS>(line.GetBegin()); }
};
template <std::size_t AXIS>
struct indexed_access<shr::GLine2, 1, AXIS> {
  static double get(const shr::GLine2& line) { return geometry::get<AXIS>(line.GetEnd()); }
};

template <class T>
struct tag<shr::Box2<T>> {
  using type = box_tag;
};
template <class T>
struct point_type<shr::Box2<T>> {
  using type = shr::Vec2<T>;
};
template <class T, std::size_t AXIS>
struct indexed_access<shr::Box2<T>, min_corner, AXIS> {
  static T get(const shr::Box2<T>& box) { return geometry::get<AXIS>(box.Min()); }
  static void set(shr::Box2<T>& box, const T& value) {
    (AXIS == 0 ? box.xMin() : box.yMin()) = value;
  }
};
template <class T, std::size_t AXIS>
struct indexed_access<shr::Box2<T>, max_corner, AXIS> {
  static T get(const shr::Box2<T>& box) { return geometry::get<AXIS>(box.Max()); }
  static void set(shr::Box2<T>& box, const T& value) {
    (AXIS == 0 ? box.xMax() : box.yMax()) = value;
  }
};

template <>
struct tag<shr::Polygon2d> {
  using type = polygon_tag;
};
template <>
struct ring_const_type<shr::Polygon2d> {
  using type = const shr::Ring2d&;
};
template <>
struct ring_mutable_type<shr::Polygon2d> {
  using type = shr::Ring2d&;
};
template <>
struct interior_const_type<shr::Polygon2d> {
  using type = const std::vector<shr::Ring2d>&;
};
template <>
struct interior_mutable_type<shr::Polygon2d> {
  using type = std::vector<shr::Ring2d>&;
};
template <>
struct exterior_ring<shr::Polygon2d> {
  static shr::Ring2d& get(shr::Polygon2d& polygon) { return polygon.outer(); }
  static const shr::Ring2d& get(const shr::Polygon2d& polygon) { return polygon.outer(); }
};
template <>
struct interior_rings<shr::Polygon2d> {
  static std::vector<shr::Ring2d>& get(shr::Polygon2d& polygon) { return polygon.inners(); }
  static const std::vector<shr::Ring2d>& get(const shr::Polygon2d& polygon) {
    return polygon.inners();
  }
};

}  // namespace boost::geometry::traits
/// @endcond
