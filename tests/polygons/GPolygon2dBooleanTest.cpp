// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations of GPolygon2d: areas against the exact oracle on every family of hard pairs,
// rows on which Boost.Geometry's overlay alone is wrong included; overlapping polygons; in-place
// forms and aliases; polygons without an inside.

#include <gtest/gtest.h>

#include <cmath>

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

}  // namespace
}  // namespace shr::test
