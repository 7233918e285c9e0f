// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pieces without holes and the area by triangles: {rectangle, hole, islands, crossing contour,
// random stars} by the laws that the pieces' areas sum to the area and their union is the polygon.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/formats/PolygonText.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

bool AddPiece(const Vec2d* points, std::size_t count, void* user) {
  static_cast<std::vector<Points>*>(user)->push_back(Points(points, points + count));
  return true;
}

template <class Polygon>
std::vector<Points> PiecesOf(const Polygon& polygon) {
  std::vector<Points> pieces;
  EXPECT_TRUE(polygon.Decompose(AddPiece, &pieces));
  return pieces;
}

double SumOfAreas(const std::vector<Points>& pieces) {
  double sum = 0.0;
  for (const Points& piece : pieces) sum += std::abs(PolygonArea(piece));
  return sum;
}

TEST(GPolygonPieces, areasAreThoseOfTheEvenOddRule) {
  struct Row {
    const char* name;
    const char* text;
    double area;
  };
  const Row rows[] = {
      {"square", "POLYGON ((0 0, 4 0, 4 4, 0 4))", 16.0},
      {"the other way round", "POLYGON ((0 4, 4 4, 4 0, 0 0))", 16.0},
      {"hole", "POLYGON ((0 0, 4 0, 4 4, 0 4), (1 1, 2 1, 2 2, 1 2))", 15.0},
      {"island", "MULTIPOLYGON (((0 0, 9 0, 9 9, 0 9), (1 1, 8 1, 8 8, 1 8)), ((2 2, 3 2, 3 3)))",
       81.0 - 49.0 + 0.5},
      {"bow tie", "POLYGON ((0 0, 4 4, 4 0, 0 4))", 8.0},
      {"twice around", "POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0, 4 0, 4 4, 0 4))", 0.0},
      {"spike", "POLYGON ((0 0, 4 0, 4 2, 9 2, 4 2, 4 4, 0 4))", 16.0},
      {"touching in a point", "MULTIPOLYGON (((0 0, 2 0, 1 1)), ((1 1, 0 3, 2 2)))", 2.5},
      {"hole with a corner on a side", "POLYGON ((0 0, 10 0, 10 10, 0 10), (2 7, 5 1, 10 4))",
       80.5},
      {"hole with a corner on the left side",
       "POLYGON ((0 0, 8 0, 8 8, 0 8), (2 2, 0 4, 2 6, 4 4))", 56.0},
      {"crossing in one point only", "POLYGON ((0 0, 2 0, 0 2, 2 2))", 2.0},
      {"steps", "POLYGON ((0 0, 9 0, 9 2, 6 2, 6 4, 3 4, 3 6, 0 6))", 18.0 + 12.0 + 6.0},
      {"comb", "POLYGON ((0 0, 7 0, 7 3, 6 3, 6 1, 5 1, 5 3, 4 3, 4 1, 3 1, 3 3, 0 3))", 17.0},
      {"holes side by side",
       "POLYGON ((0 0, 9 0, 9 9, 0 9), (1 1, 3 1, 3 3, 1 3), (3 3, 5 3, 5 5, 3 5))", 73.0},
      {"nothing", "POLYGON EMPTY", 0.0},
  };
  for (const Row& row : rows) {
    GPolygon polygon;
    ParseWkt(row.text, polygon);
    Points points;
    Counts counts;
    polygon.GetPolyPolygon(points, counts, true);
    EXPECT_DOUBLE_EQ(row.area, TriangulatedPolygonArea(polygon)) << row.name;
    EXPECT_DOUBLE_EQ(row.area, TriangulatedPolygonArea(points, counts)) << row.name;
    EXPECT_DOUBLE_EQ(row.area, SumOfAreas(PiecesOf(polygon))) << row.name;
  }
}

TEST(GPolygonPieces, coverThePolygonAndDoNotOverlap) {
  std::mt19937_64 random(17);
  for (int round = 0; round < 10; ++round) {
    GPolygon polygon(test::MakeStar({1e5, -1e5}, 10.0, 60, random));
    polygon.Difference(GPolygon(test::MakeStar({1e5, -1e5}, 3.0, 20, random)));
    const std::vector<Points> pieces = PiecesOf(polygon);
    const double area = TriangulatedPolygonArea(polygon);
    GPolygon all;
    for (const Points& piece : pieces) all.Union(GPolygon(piece));
    EXPECT_NEAR(area, SumOfAreas(pieces), 1e-8 * area);
    EXPECT_NEAR(area, TriangulatedPolygonArea(all), 1e-8 * area);
    GPolygon difference;
    all.XOR(polygon, difference);
    EXPECT_NEAR(0.0, TriangulatedPolygonArea(difference), 1e-8 * area);
  }
}

TEST(GPolygonPieces, theCallbackEndsTheWalk) {
  int calls = 0;
  const auto stop = [](const Vec2d*, std::size_t, void* user) {
    ++*static_cast<int*>(user);
    return false;
  };
  const GPolygon2d polygon(Points{{0, 0}, {1, 0}, {1, 1}, {5, 5}, {6, 5}, {6, 6}}, Counts{3, 3});
  EXPECT_FALSE(polygon.Decompose(stop, &calls));
  EXPECT_EQ(1, calls);
  EXPECT_EQ(2u, PiecesOf(polygon).size());
  EXPECT_TRUE(GPolygon().Decompose(stop, &calls));
  EXPECT_EQ(L"[GPolygon]", test::Failure([&] { polygon.Decompose(nullptr, nullptr); }));
}

TEST(FlatPolygon, perimetersAddUp) {
  const Points points = {{0, 0}, {3, 0}, {3, 4}, {1, 1}, {1, 1}};
  EXPECT_EQ(12.0, PolygonPerimeter(points, Counts{3, 2}));
  EXPECT_EQ(12.0, PolygonPerimeter(points.data(), 3));
  EXPECT_EQ(0.0, PolygonPerimeter(std::span(points).first(1)));
}

}  // namespace
}  // namespace shr
