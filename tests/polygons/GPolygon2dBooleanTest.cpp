// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations of GPolygon2d: areas against the exact oracle on every family of hard pairs,
// rows on which Boost.Geometry's overlay alone is wrong included; overlapping polygons; in-place
// forms and aliases; polygons without an inside.

#include <gtest/gtest.h>

#include <cmath>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GPolygon2dTestSupport.h"

namespace shr::test {
namespace {

double AreaOf(const GPolygon2d& polygon) {
  const std::vector<Region> regions = {EvenOdd(ResultOf(polygon).contours)};
  return static_cast<double>(CombinedAreas<DoubleDouble>(regions)[1]);
}

class GPolygon2dOracle : public testing::TestWithParam<CaseFamily> {};

TEST_P(GPolygon2dOracle, resultIsTheTrueRegion) {
  for (std::uint64_t seed = 0; seed < 5; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    const BooleanJudge judge(PolygonsOf(pair.subject), PolygonsOf(pair.clip));
    for (const Operation operation : OPERATIONS) {
      const BooleanResult result = OperateByGPolygon2d(operation, pair.subject, pair.clip);
      EXPECT_EQ(judge.Judge(operation, result, Form::Any).fault, "")
          << "seed " << seed << ", " << NameOf(operation);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Families, GPolygon2dOracle, testing::ValuesIn(BooleanCaseFamilies()),
                         [](const auto& row) { return row.param.name; });

// Pairs whose overlay by Boost.Geometry 1.81 has a wrong area, by up to all of it.
TEST(GPolygon2dBoolean, rowsThatTheOverlayAloneGetsWrong) {
  const struct {
    const char* family;
    std::uint64_t seed;
    Operation operation;
  } rows[] = {
      {"combs", 2, Operation::Xor},
      {"shiftedByUlps", 97, Operation::Intersection},
      {"shiftedByUlps", 25, Operation::Union},
      {"slivers", 41, Operation::Intersection},
      {"slivers", 9, Operation::Union},
      {"pointsNearlyOnEdges", 251, Operation::Intersection},
      {"pointsNearlyOnEdges", 38, Operation::Xor},
      {"pointsNearlyOnEdges", 324, Operation::Union},
      {"largeOffsets", 160, Operation::Difference},
      {"largeOffsets", 49, Operation::Intersection},
      {"largeOffsets", 125, Operation::Xor},
      {"largeOffsets", 92, Operation::Union},
      {"integerGrid", 54, Operation::Difference},
      {"needleFans", 0, Operation::Union},
  };
  for (const auto& row : rows) {
    for (const CaseFamily& family : BooleanCaseFamilies()) {
      if (std::string(row.family) != family.name) continue;
      std::mt19937_64 random(row.seed);
      const BooleanCase pair = family.make(random);
      const BooleanJudge judge(PolygonsOf(pair.subject), PolygonsOf(pair.clip));
      const BooleanResult result = OperateByGPolygon2d(row.operation, pair.subject, pair.clip);
      EXPECT_EQ(judge.Judge(row.operation, result, Form::Any).fault, "")
          << row.family << ", seed " << row.seed << ", " << NameOf(row.operation);
    }
  }
}

TEST(GPolygon2dBoolean, overlappingPolygonsOfAnOperandCountAsOne) {
  GPolygon2d cross(0.0, 1.0, 3.0, 2.0);
  cross.AddContours(GPolygon2d(1.0, 0.0, 2.0, 3.0));
  const GPolygon2d square(1.0, 1.0, 4.0, 4.0);
  GPolygon2d result;
  cross.Union(GPolygon2d(), result);
  EXPECT_EQ(result.GetNumContours(), 1u);
  EXPECT_EQ(AreaOf(result), 5.0);
  cross.Union(square, result);
  EXPECT_EQ(AreaOf(result), 11.0);
  cross.Intersection(square, result);
  EXPECT_EQ(AreaOf(result), 3.0);
  cross.Difference(square, result);
  EXPECT_EQ(AreaOf(result), 2.0);
  square.XOR(cross, result);
  EXPECT_EQ(AreaOf(result), 8.0);
}

TEST(GPolygon2dBoolean, differenceWithAnInnerPolygonLeavesAHole) {
  GPolygon2d frame(0.0, 0.0, 4.0, 4.0);
  frame.Difference(GPolygon2d(1.0, 1.0, 3.0, 3.0));
  EXPECT_EQ(frame.GetNumContours(), 1u);
  EXPECT_EQ(frame.GetNumRings(), 2u);
  EXPECT_TRUE(frame.PointInside(Vec2d(0.5, 0.5)));
  EXPECT_FALSE(frame.PointInside(Vec2d(2.0, 2.0)));
  frame.Union(GPolygon2d(0.5, 0.5, 3.5, 3.5));
  EXPECT_EQ(frame.GetNumRings(), 1u);
}

TEST(GPolygon2dBoolean, operandsMayBeTheResult) {
  const GPolygon2d left(0.0, 0.0, 2.0, 2.0);
  const GPolygon2d right(1.0, 0.0, 3.0, 2.0);
  GPolygon2d a = left;
  a.Intersection(a);
  EXPECT_EQ(AreaOf(a), 4.0);
  a.Union(a);
  EXPECT_EQ(AreaOf(a), 4.0);
  a.XOR(right, a);
  EXPECT_EQ(AreaOf(a), 4.0);
  a.Difference(a);
  EXPECT_EQ(a.GetTotalVertexCount(), 0u);
  EXPECT_TRUE(a.GetBBox().IsEmpty());
  GPolygon2d b = right;
  left.Intersection(b, b);
  EXPECT_EQ(AreaOf(b), 2.0);
}

TEST(GPolygon2dBoolean, polygonsOfOtherThanNumbersHaveNoInside) {
  GPolygon2d polygon(0.0, 0.0, 2.0, 2.0);
  const std::vector<Vec2d> broken = {{0.0, 0.0}, {NAN, 5.0}, {5.0, 5.0}};
  polygon.AddContours(GPolygon2d(broken));
  polygon.Union(GPolygon2d(1.0, 1.0, 3.0, 3.0));
  EXPECT_EQ(polygon.GetNumContours(), 1u);
  EXPECT_EQ(AreaOf(polygon), 7.0);
}

// Holes whose contours share their leftmost vertex, or touch the outer contour or each other.
TEST(GPolygon2dBoolean, holesStayHolesWhereContoursTouch) {
  const struct {
    const char* name;
    std::vector<Contours> holes;
    std::size_t polygons;
    double area;
  } rows[] = {
      {"leftmost vertex shared", {{{{3, 3}, {6, 4}, {6, 8}}}, {{{3, 3}, {4, 1}, {5, 2}}}}, 1, 92.5},
      {"corner on a side", {{{{2, 7}, {5, 1}, {10, 4}}}}, 1, 80.5},
      {"ring of holes around an island",
       {{{{2, 5}, {5, 2}, {5, 3}, {3, 5}}},
        {{{5, 2}, {8, 5}, {7, 5}, {5, 3}}},
        {{{8, 5}, {5, 8}, {5, 7}, {7, 5}}},
        {{{5, 8}, {2, 5}, {3, 5}, {5, 7}}}},
       2,
       100.0 - 10.0},
      {"chain of holes from side to side",
       {{{{0, 5}, {3, 3}, {5, 5}, {3, 7}}}, {{{5, 5}, {8, 3}, {10, 5}, {8, 7}}}},
       2,
       80.0},
  };
  for (const auto& row : rows) {
    GPolygon2d polygon(0.0, 0.0, 10.0, 10.0);
    for (const Contours& hole : row.holes) polygon.Difference(GPolygon2d(hole[0]));
    EXPECT_EQ(polygon.GetNumContours(), row.polygons) << row.name;
    EXPECT_DOUBLE_EQ(AreaOf(polygon), row.area) << row.name;
    MultiPolygon2d model;
    polygon.GetMultiPolygon(model);
    double area = 0.0;
    for (const Polygon2d& part : model) {
      area -= PolygonArea(part.outer());
      for (const Ring2d& inner : part.inners()) area -= PolygonArea(inner);
    }
    EXPECT_DOUBLE_EQ(area, row.area) << row.name;
  }
  GPolygon2d square(0.0, 0.0, 10.0, 10.0);
  square.Difference(GPolygon2d(rows[0].holes[0][0]));
  square.Difference(GPolygon2d(rows[0].holes[1][0]));
  EXPECT_FALSE(square.PointInside({5.5, 4.5}));
  EXPECT_TRUE(square.PointInside({8.0, 5.0}));
}

TEST(GPolygon2dBoolean, islandsInHolesAreOwnedByTheirFace) {
  // Nested rings, islands beside holes, under an edge with many pieces.
  std::vector<GPolygon2d> cells;
  GPolygon2d frame(0.0, 0.0, 100.0, 100.0);
  for (int i = 0; i < 100; i += 10) {
    for (int j = 0; j < 100; j += 10) {
      const Vec2d low(i + 1.0, j + 1.0);
      frame.Difference(GPolygon2d(low.x, low.y, low.x + 8.0, low.y + 8.0));
      cells.emplace_back(low.x + 2.0, low.y + 2.0, low.x + 6.0, low.y + 6.0);
    }
  }
  cells.push_back(frame);
  const GPolygon2d all = GPolygon2d::Unite(cells);
  EXPECT_EQ(all.GetNumContours(), 101u);
  EXPECT_EQ(all.GetNumRings(), 201u);
  EXPECT_EQ(AreaOf(all), 10000.0 - 100 * 64.0 + 100 * 16.0);
  GPolygon2d result;
  all.Intersection(GPolygon2d(-1.0, -1.0, 50.0, 101.0), result);
  EXPECT_EQ(result.GetNumContours(), 51u);
}

TEST(GPolygon2dBoolean, manyAreUnitedInOneRunAsOneByOne) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> place(0.0, 100.0);
  std::vector<GPolygon2d> parts;
  std::vector<GPolygon> others;
  GPolygon2d oneByOne;
  for (int i = 0; i < 60; ++i) {
    const Vec2d p(place(random), place(random));
    parts.emplace_back(std::vector<Vec2d>{p, p + Vec2d(20, 3), p + Vec2d(9, 15), p + Vec2d(2, 9)});
    others.emplace_back(parts.back());
    oneByOne.Union(parts.back());
  }
  parts.push_back(parts.front());
  others.push_back(others.front());
  GPolygon2d difference;
  GPolygon2d::Unite(parts).XOR(oneByOne, difference);
  EXPECT_LE(AreaOf(difference), 1e-9);
  EXPECT_NEAR(TriangulatedPolygonArea(GPolygon::Unite(others)), AreaOf(oneByOne), 1e-9);
  EXPECT_EQ(GPolygon2d::Unite({}).GetNumContours(), 0u);
}

}  // namespace
}  // namespace shr::test
