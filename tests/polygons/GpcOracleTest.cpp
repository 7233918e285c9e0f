// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The clipper against the exact oracle: for each family of hard pairs all four operations, whose
// results must cover the true region and nothing else, cross themselves nowhere, mark their holes
// and come out the same again. bench/polygons/BooleanOpinions.cpp runs more cases of the same
// families.

#include <gtest/gtest.h>

#include <cmath>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GpcTestSupport.h"

namespace shr::test {
namespace {

constexpr std::uint64_t CASES = 30;
constexpr std::uint64_t FEW_CASES = 10;

class GpcOracle : public testing::TestWithParam<CaseFamily> {};

TEST_P(GpcOracle, resultIsTheTrueRegion) {
  for (std::uint64_t seed = 0; seed < CASES; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    const BooleanJudge judge(EvenOdd(pair.subject), EvenOdd(pair.clip));
    for (const Operation operation : OPERATIONS) {
      const BooleanResult result = OperateByGpc(operation, pair.subject, pair.clip);
      EXPECT_EQ(judge.Judge(operation, result).fault, "")
          << "seed " << seed << ", " << NameOf(operation) << "\nsubject " << ToText(pair.subject)
          << "\nclip " << ToText(pair.clip);
      if (HasFailure()) return;
    }
  }
}

TEST_P(GpcOracle, sameInputGivesSameBits) {
  for (std::uint64_t seed = 0; seed < FEW_CASES; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    for (const Operation operation : OPERATIONS) {
      const BooleanResult once = OperateByGpc(operation, pair.subject, pair.clip);
      const BooleanResult again = OperateByGpc(operation, pair.subject, pair.clip);
      EXPECT_EQ(once.contours, again.contours) << "seed " << seed << ", " << NameOf(operation);
      EXPECT_EQ(once.holeFlags, again.holeFlags) << "seed " << seed << ", " << NameOf(operation);
    }
  }
}

TEST_P(GpcOracle, areasKeepTheIdentities) {
  for (std::uint64_t seed = 0; seed < FEW_CASES; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    const auto areaOf = [](const BooleanResult& result) {
      double area = 0.0;
      for (std::size_t i = 0; i < result.contours.size(); ++i) {
        const double part = std::abs(PolygonArea(result.contours[i]));
        area += result.holeFlags[i] != 0 ? -part : part;
      }
      return area;
    };
    const auto area = [&](Operation operation, const Contours& a, const Contours& b) {
      return areaOf(OperateByGpc(operation, a, b));
    };
    const double subject = area(Operation::Union, pair.subject, {});
    const double clip = area(Operation::Union, {}, pair.clip);
    const double united = area(Operation::Union, pair.subject, pair.clip);
    const double common = area(Operation::Intersection, pair.subject, pair.clip);
    const double onlySubject = area(Operation::Difference, pair.subject, pair.clip);
    const double onlyClip = area(Operation::Difference, pair.clip, pair.subject);
    const double either = area(Operation::Xor, pair.subject, pair.clip);
    const BooleanJudge judge(EvenOdd(pair.subject), EvenOdd(pair.clip));
    const double tolerance = 3.0 * judge.LargestMisplaced();
    EXPECT_NEAR(subject + clip, united + common, tolerance) << "seed " << seed;
    EXPECT_NEAR(either, united - common, tolerance) << "seed " << seed;
    EXPECT_NEAR(onlySubject + common, subject, tolerance) << "seed " << seed;
    EXPECT_NEAR(either, onlySubject + onlyClip, tolerance) << "seed " << seed;
  }
}

TEST_P(GpcOracle, stripsAndPiecesCoverTheAreaOnce) {
  for (std::uint64_t seed = 0; seed < FEW_CASES; ++seed) {
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    const BooleanJudge judge(EvenOdd(pair.subject), EvenOdd(pair.clip));
    const double tolerance =
        BooleanJudge::AREA_TOLERANCE * judge.InputArea() + judge.LargestMisplaced();
    for (const Operation operation : OPERATIONS) {
      const BooleanResult polygon = OperateByGpc(operation, pair.subject, pair.clip);
      double area = 0.0;
      for (const auto& contour : polygon.contours) area -= PolygonArea(contour);
      GpcTristripHolder strips;
      gpc_tristrip_clip(static_cast<gpc_op>(operation), GpcOperand(pair.subject).Record(),
                        GpcOperand(pair.clip).Record(), strips.record);
      EXPECT_NEAR(area, AreaOfStrips(strips.record), tolerance)
          << "seed " << seed << ", " << NameOf(operation);
      GPolygon result;
      for (const auto& contour : polygon.contours) result.AddContours(GPolygon(contour));
      double sum = 0.0;
      const auto add = [](const Vec2d* points, std::size_t count, void* user) {
        *static_cast<double*>(user) += std::abs(PolygonArea(points, count));
        return true;
      };
      EXPECT_TRUE(result.Decompose(add, &sum));
      EXPECT_NEAR(area, sum, tolerance) << "seed " << seed << ", " << NameOf(operation);
      EXPECT_NEAR(area, TriangulatedPolygonArea(result), tolerance)
          << "seed " << seed << ", " << NameOf(operation);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Families, GpcOracle, testing::ValuesIn(BooleanCaseFamilies()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace shr::test
