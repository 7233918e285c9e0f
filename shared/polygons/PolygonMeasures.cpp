// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Area, perimeter and centroid are those of the region, whose contours the clipper makes: there the
// signed areas of outer contours and holes just add up, and a border inside of the region counts
// for nothing. The centroid is the sum of the triangles from a base point over the edges (P.
// Bourke, "Calculating the Area and Centroid of a Polygon", 1988); the base is a vertex, so that a
// small polygon far from the origin loses nothing.

#include "shared/polygons/PolygonMeasures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/MultiPolygon.h"

namespace shr {
namespace {

template <class Function>
void ForEachContour(const GPolygon& polygon, Function function) {
  for (std::size_t i = 0; i < polygon.GetNumContours(); ++i) function(polygon.GetContour(i));
}

double AreaOf(const GPolygon& region) {
  double sum = 0.0;
  ForEachContour(region, [&](std::span<const Vec2d> contour) { sum -= PolygonArea(contour); });
  return sum;
}

double PerimeterOf(const GPolygon& region) {
  double sum = 0.0;
  ForEachContour(region, [&](std::span<const Vec2d> contour) { sum += PolygonPerimeter(contour); });
  return sum;
}

/// Points with weights, relative to a base.
struct Balance {
  Vec2d base;
  Vec2d moment;
  double weight = 0.0;

  void Add(const Vec2d& offset, double share) {
    moment += offset * share;
    weight += share;
  }
  bool IsFound() const { return weight > 0.0 && (moment / weight).IsFinite(); }
  Vec2d Center() const { return base + moment / weight; }
};

Balance BalanceTriangles(const GPolygon& region) {
  Balance balance{region.GetContour(0).front(), {}, 0.0};
  ForEachContour(region, [&](std::span<const Vec2d> contour) {
    Vec2d from = contour.back() - balance.base;
    for (const Vec2d& point : contour) {
      const Vec2d to = point - balance.base;
      balance.Add((from + to) / 3.0, to.Cross(from));  // outer contours run clockwise
      from = to;
    }
  });
  return balance;
}

/// What has no area balances on its edges, and what has no length on its points.
Vec2d CenterOfBorders(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  if (points.empty()) {
    constexpr double NONE = std::numeric_limits<double>::quiet_NaN();
    return Vec2d(NONE, NONE);
  }
  Balance ofEdges{points.front(), {}, 0.0};
  Balance ofPoints = ofEdges;
  for (const unsigned int count : counts) {
    for (std::size_t i = 0; i < count; ++i) {
      const Vec2d from = points[i == 0 ? count - 1 : i - 1] - ofEdges.base;
      const Vec2d to = points[i] - ofEdges.base;
      ofEdges.Add((from + to) / 2.0, from.Distance(to));
      ofPoints.Add(to, 1.0);
    }
    points = points.subspan(count);
  }
  return ofEdges.IsFound() ? ofEdges.Center() : ofPoints.Center();
}

template <class Polygon>
Vec2d CentroidOf(const Polygon& polygon) {
  const GPolygon region = RegionOf(polygon);
  if (region.GetNumContours() > 0) {
    const Balance balance = BalanceTriangles(region);
    if (balance.IsFound()) return balance.Center();
  }
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  polygon.GetPolyPolygon(points, counts, false);
  return CenterOfBorders(points, counts);
}

}  // namespace

bool IsFinite(const GPolygon& polygon) {
  bool isFinite = true;
  ForEachContour(polygon, [&](std::span<const Vec2d> contour) {
    for (const Vec2d& point : contour) isFinite &= point.IsFinite();
  });
  return isFinite;
}

bool HasOnlySlivers(const MultiPolygon2d& difference, const Box2d& a, const Box2d& b) {
  double largest = 0.0;
  for (const Box2d& box : {a, b}) {
    if (box.IsEmpty()) continue;
    for (const double side : {box.xMin(), box.yMin(), box.xMax(), box.yMax()}) {
      largest = std::max(largest, std::abs(side));
    }
  }
  // A strip has about half its width times its perimeter as area.
  const double mostPerLength = 2.0 * GPC_MOST_DRIFT * GPC_SNAP * largest;
  return std::all_of(difference.begin(), difference.end(), [&](const Polygon2d& polygon) {
    double area = std::abs(PolygonArea(polygon.outer()));
    double perimeter = PolygonPerimeter(polygon.outer());
    for (const Ring2d& hole : polygon.inners()) {
      area -= std::abs(PolygonArea(hole));
      perimeter += PolygonPerimeter(hole);
    }
    return area <= mostPerLength * perimeter;
  });
}

GPolygon RegionOf(const GPolygon& polygon) {
  GPolygon region;
  if (IsFinite(polygon)) polygon.Union(GPolygon(), region);
  return region;
}

GPolygon RegionOf(const GPolygon2d& polygons) {
  GPolygon2d united;
  polygons.Union(GPolygon2d(), united);
  return GPolygon(united);
}

double GPolygon::GetArea() const {
  return AreaOf(RegionOf(*this));
}

double GPolygon::GetPerimeter() const {
  return PerimeterOf(RegionOf(*this));
}

Vec2d GPolygon::GetCentroid() const {
  return CentroidOf(*this);
}

double GPolygon2d::GetArea() const {
  return AreaOf(RegionOf(*this));
}

double GPolygon2d::GetPerimeter() const {
  return PerimeterOf(RegionOf(*this));
}

Vec2d GPolygon2d::GetCentroid() const {
  return CentroidOf(*this);
}

}  // namespace shr
