// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Offsets: exact areas of known shapes for each kind of join; the law that a point is in the grown
// or shrunk polygon exactly when it is near enough to the polygon, or deep enough inside of it, on
// hard shapes and on the map; both classes alike; what is no distance.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr::test {
namespace {

double AreaOf(const GPolygon2d& polygon) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, true);
  return -PolygonArea(points, counts);
}

TEST(PolygonOffset, knownShapes) {
  const GPolygon2d square(0.0, 0.0, 10.0, 10.0);
  GPolygon2d frame = square;
  frame.Difference(GPolygon2d(4.0, 4.0, 6.0, 6.0));
  GPolygon2d two = square;
  two.AddContours(GPolygon2d(12.0, 0.0, 22.0, 10.0));
  GPolygon2d dumbbell = two;
  dumbbell.AddContours(GPolygon2d(9.0, 4.0, 13.0, 6.0));
  const OffsetOptions miter = {JoinType::Miter};
  const OffsetOptions bevelled = {JoinType::Miter, 1.0};
  const OffsetOptions square_ = {JoinType::Square};
  const double corner = 1.0 - 2.0 * (1.0 - std::sqrt(0.5)) * (1.0 - std::sqrt(0.5));
  const struct {
    const char* name;
    const GPolygon2d& polygon;
    double distance;
    OffsetOptions options;
    double area;
    std::size_t polygons;
  } rows[] = {
      {"square grown, mitered", square, 1.0, miter, 144.0, 1},
      {"square shrunk", square, -2.0, miter, 36.0, 1},
      {"square shrunk, round changes nothing", square, -2.0, {}, 36.0, 1},
      {"square shrunk away", square, -5.0, miter, 0.0, 0},
      {"square shrunk beyond", square, -7.0, {}, 0.0, 0},
      {"square grown, square joins", square, 1.0, square_, 140.0 + 4.0 * corner, 1},
      {"miter beyond its limit is square", square, 1.0, bevelled, 140.0 + 4.0 * corner, 1},
      {"hole closes", frame, 1.0, miter, 144.0, 1},
      {"hole opens", frame, -1.0, miter, 64.0 - 16.0, 1},
      {"two become one", two, 1.0, miter, 24.0 * 12.0, 1},
      {"neck breaks", dumbbell, -1.0, miter, 64.0 + 64.0, 2},
      {"nothing moves", frame, 0.0, {}, 96.0, 1},
  };
  for (const auto& row : rows) {
    GPolygon2d result;
    row.polygon.Offset(row.distance, row.options, result);
    EXPECT_NEAR(AreaOf(result), row.area, 1e-12 * (1.0 + row.area)) << row.name;
    EXPECT_EQ(result.GetNumContours(), row.polygons) << row.name;
  }
  GPolygon2d circle;
  square.Offset(1.0, {JoinType::Round, 2.0, 1e-6}, circle);
  EXPECT_NEAR(AreaOf(circle), 140.0 + std::acos(-1.0), 1e-5);
}

double DistanceTo(const Contours& contours, const Vec2d& point) {
  double nearest = HUGE_VAL;
  for (const Points& contour : contours) {
    for (std::size_t i = 0; i < contour.size(); ++i) {
      const Vec2d a = contour[i];
      const Vec2d along = contour[i + 1 == contour.size() ? 0 : i + 1] - a;
      const double length = along.Dot(along);
      const double t = length > 0.0 ? std::clamp((point - a).Dot(along) / length, 0.0, 1.0) : 0.0;
      const Vec2d away = point - a - along * t;
      nearest = std::min(nearest, std::sqrt(away.Dot(away)));
    }
  }
  return nearest;
}

Contours ContoursIn(const GPolygon& polygon) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, false);
  Contours contours;
  std::size_t first = 0;
  for (const unsigned int count : counts) {
    contours.emplace_back(points.begin() + static_cast<std::ptrdiff_t>(first),
                          points.begin() + static_cast<std::ptrdiff_t>(first + count));
    first += count;
  }
  return contours;
}

/// Expects points to be inside the offset polygon as their distance says, in doubt but for the
/// tolerance of arcs.
void ExpectDistances(const GPolygon& polygon, double distance, const std::string& name,
                     std::mt19937_64& random) {
  GPolygon clean;
  polygon.Union(GPolygon(), clean);
  const Contours contours = ContoursIn(clean);
  if (contours.empty()) return;
  GPolygon result;
  polygon.Offset(distance, {}, result);
  Points points;
  Counts counts;
  result.GetPolyPolygon(points, counts, false);
  Points cleanPoints;
  Counts cleanCounts;
  clean.GetPolyPolygon(cleanPoints, cleanCounts, false);
  const double margin = 1.5 * std::abs(distance);
  const Box2d bounds(clean.GetBBox().Min() - margin, clean.GetBBox().Max() + margin);
  std::uniform_real_distribution<double> x(bounds.xMin(), bounds.xMax());
  std::uniform_real_distribution<double> y(bounds.yMin(), bounds.yMax());
  const double doubt = 0.003 * std::abs(distance) +
                       1e-9 * std::max(std::abs(bounds.xMax()), std::abs(bounds.yMax()));
  for (int i = 0; i < 100; ++i) {
    const Vec2d point(x(random), y(random));
    const bool isInside = PointInPolygon(point, cleanPoints, cleanCounts);
    const double depth = isInside ? -DistanceTo(contours, point) : DistanceTo(contours, point);
    if (std::abs(depth - distance) < doubt) continue;
    ASSERT_EQ(PointInPolygon(point, points, counts), depth < distance)
        << name << ", distance " << distance << ", " << point;
  }
}

class PolygonOffsetFamilies : public testing::TestWithParam<CaseFamily> {};

TEST_P(PolygonOffsetFamilies, pointsAreInsideAsTheirDistanceSays) {
  for (std::uint64_t seed = 0; seed < 6; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    GPolygon polygon;
    for (const Points& contour : pair.subject) polygon.AddContours(GPolygon(contour));
    const Vec2d extent = polygon.GetBBox().Max() - polygon.GetBBox().Min();
    const double size = std::max(extent.x, extent.y);
    for (const double share : {0.3, 0.02, -0.02, -0.1}) {
      ExpectDistances(polygon, share * size, GetParam().name, random);
      if (HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Families, PolygonOffsetFamilies, testing::ValuesIn(BooleanCaseFamilies()),
                         [](const auto& row) { return row.param.name; });

TEST(PolygonOffset, whatIsNoDistanceIsRefused) {
  const GPolygon polygon(0.0, 0.0, 1.0, 1.0);
  GPolygon result;
  const std::wstring invalid = L"Invalid parameter passed to subroutine or function";
  EXPECT_EQ(invalid, Failure([&] { polygon.Offset(NAN, {}, result); }));
  EXPECT_EQ(invalid, Failure([&] { polygon.Offset(1.0, {JoinType::Miter, 0.5}, result); }));
  EXPECT_EQ(invalid, Failure([&] { polygon.Offset(1.0, {JoinType::Round, 2, HUGE_VAL}, result); }));
  GPolygon().Offset(3.0, {}, result);
  EXPECT_EQ(0u, result.GetNumContours());
}

}  // namespace
}  // namespace shr::test
