// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The form of the clipper's results: order and direction of contours, what touches in points, what
// is left out; operands that are refused; failing memory; triangle strips. Areas of hard pairs are
// judged in GpcOracleTest.cpp.

#include "shared/geometry/Orientation.h"
#include "shared/polygons/Gpc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <thread>

#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GpcTestSupport.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr::test {
namespace {

Points Rectangle(double xMin, double yMin, double xMax, double yMax) {
  return {{xMin, yMin}, {xMax, yMin}, {xMax, yMax}, {xMin, yMax}};
}

struct FormRow {
  const char* name;
  Operation operation;
  Contours subject;
  Contours clip;
  Contours result;
  std::vector<int> holeFlags;
};

TEST(GpcForm, contoursBeginAtTheTopAndHolesRunTheOtherWay) {
  const Points square = Rectangle(0, 0, 4, 4);
  const Points clockwise = {{0, 4}, {4, 4}, {4, 0}, {0, 0}};
  const FormRow rows[] = {
      {"alone", Operation::Union, {square}, {}, {clockwise}, {0}},
      {"hole",
       Operation::Difference,
       {square},
       {Rectangle(1, 1, 2, 2)},
       {clockwise, {{1, 2}, {1, 1}, {2, 1}, {2, 2}}},
       {0, 1}},
      {"shared side vanishes",
       Operation::Union,
       {square},
       {Rectangle(4, 0, 6, 4)},
       {{{0, 4}, {6, 4}, {6, 0}, {0, 0}}},
       {0}},
      {"vertex on a straight way vanishes",
       Operation::Union,
       {square},
       {{{4, 2}, {3, 3}, {3, 1}}},
       {clockwise},
       {0}},
      {"corners that touch stay apart",
       Operation::Xor,
       {square},
       {Rectangle(4, 4, 5, 5)},
       {clockwise, {{4, 5}, {5, 5}, {5, 4}, {4, 4}}},
       {0, 0}},
      {"hole that touches its outer contour stays a hole",
       Operation::Difference,
       {square},
       {{{0, 2}, {1, 1}, {1, 3}}},
       {clockwise, {{1, 3}, {0, 2}, {1, 1}}},
       {0, 1}},
      {"spike and repeated points vanish",
       Operation::Union,
       {{{0, 0}, {4, 0}, {4, 0}, {4, 4}, {4, 9}, {4, 4}, {0, 4}, {0, 4}, {0, 0}}},
       {},
       {clockwise},
       {0}},
      {"equal contours cancel", Operation::Union, {square, square}, {}, {}, {}},
      {"no area", Operation::Union, {{{0, 0}, {4, 4}, {2, 2}}}, {{{1, 1}, {2, 2}}}, {}, {}},
  };
  for (const FormRow& row : rows) {
    const BooleanResult result = OperateByGpc(row.operation, row.subject, row.clip);
    // A vertex where contours touch may be left out of the one that goes straight on.
    EXPECT_EQ(ToText(row.result), ToText(result.contours)) << row.name;
    EXPECT_EQ(row.holeFlags, result.holeFlags) << row.name;
  }
}

// A union regards all of both operands, an intersection only what lies near both.
TEST(GpcForm, waysFarOutsideTheOtherOperandCountAsTheyWind) {
  std::mt19937 random(20);
  const auto draw = [&random](double scale) {
    return scale * (static_cast<double>(random() >> 4) / double{1 << 28} - 0.5);
  };
  const auto wander = [&](int size, double scale, double x, double y) {
    Points points;
    for (int i = 0; i < size; ++i) {
      points.emplace_back(x + draw(scale), y + draw(scale));
      // Stays beyond one side of the middle for a while, and repeats a vertex there.
      if (i % 3 == 0) points.emplace_back(points.back().x + draw(scale * 0.1), points.back().y);
      if (i % 7 == 0) points.push_back(points.back());
    }
    return points;
  };
  for (int i = 0; i < 60; ++i) {
    const Contours large = {wander(5 + i, 20.0, 0.0, 0.0), Rectangle(-5, -5, 5, 5),
                            wander(20, 2.0, 30.0, 0.0)};
    const Contours small = {wander(5, 1.0, draw(15.0), draw(15.0))};
    const auto area = [&](Operation operation, const Contours& subject, const Contours& clip) {
      const BooleanResult result = OperateByGpc(operation, subject, clip);
      double sum = 0.0;
      for (std::size_t j = 0; j < result.contours.size(); ++j) {
        const double part = std::abs(PolygonArea(result.contours[j]));
        sum += result.holeFlags[j] != 0 ? -part : part;
      }
      return sum;
    };
    const double outside = area(Operation::Union, large, small) - area(Operation::Union, large, {});
    const double all = area(Operation::Union, small, {});
    EXPECT_NEAR(area(Operation::Intersection, large, small), all - outside, 1e-11) << i;
    EXPECT_NEAR(area(Operation::Intersection, small, large), all - outside, 1e-11) << i;
    EXPECT_NEAR(area(Operation::Difference, small, large), outside, 1e-11) << i;
  }
}

TEST(GpcForm, everyContourIsFoundAmongManyIslands) {
  // Rings in rings in a row of squares: each part lies in the others' gaps.
  Contours rings;
  for (int i = 0; i < 40; ++i) {
    const double x = 20.0 * (i % 8);
    const double y = 20.0 * (i / 8);
    for (int depth = 0; depth < 4; ++depth) {
      rings.push_back(Rectangle(x + depth, y + depth, x + 16 - depth, y + 16 - depth));
    }
  }
  const BooleanResult result = OperateByGpc(Operation::Union, rings, {});
  double area = 0.0;
  int holes = 0;
  for (std::size_t i = 0; i < result.contours.size(); ++i) {
    area -= PolygonArea(result.contours[i]);  // outer contours run clockwise
    holes += result.holeFlags[i];
  }
  EXPECT_EQ(rings.size(), result.contours.size());
  EXPECT_EQ(80, holes);
  EXPECT_EQ(40.0 * (256 - 196 + 144 - 100), area);
}

TEST(GpcForm, verticesThatNothingCameNearKeepTheirBits) {
  // A bundle that has to be rounded, with an edge from it to a far vertex, beside a plain triangle.
  std::mt19937_64 random(5);
  const auto draw = [&random](double middle) {
    return middle + 1e-14 * static_cast<double>(static_cast<int>(random() % 9) - 4);
  };
  const Points plain = {{0.1, 0.3}, {0.7, 0.1}, {0.3, 1.0 / 3.0}};
  const Vec2d far(5.1, -3.7);
  Contours contours = {plain};
  for (int i = 0; i < 9; ++i) {
    contours.push_back({{draw(3.3), draw(4.7)}, {draw(1.1), draw(2.3)}, {draw(1.2), draw(2.1)}});
  }
  contours.push_back({{3.3, 4.7}, {1.1, 2.3}, far});
  const BooleanResult result = OperateByGpc(Operation::Union, contours, {});
  const auto holds = [&result](const Vec2d& vertex) {
    for (const Points& contour : result.contours) {
      if (std::find(contour.begin(), contour.end(), vertex) != contour.end()) return true;
    }
    return false;
  };
  for (const Vec2d& vertex : plain) EXPECT_TRUE(holds(vertex)) << vertex.x << ' ' << vertex.y;
  EXPECT_TRUE(holds(far));
}

TEST(GpcForm, trianglesAroundAPointStayApart) {
  constexpr int COUNT = 1000;
  const Vec2d hub(0.3, 0.7);
  Contours triangles;
  double area = 0.0;
  for (int i = 0; i < COUNT; ++i) {
    const auto at = [&](double turn) { return hub + Vec2d(std::cos(turn), std::sin(turn)); };
    const double turn = 6.283 * i / COUNT;
    triangles.push_back({hub, at(turn), at(turn + 0.003)});
    area += std::abs(PolygonArea(triangles.back()));
  }
  const BooleanResult result = OperateByGpc(Operation::Union, triangles, {});
  EXPECT_EQ(triangles.size(), result.contours.size());
  double sum = 0.0;
  for (const Points& contour : result.contours) sum -= PolygonArea(contour);
  EXPECT_NEAR(area, sum, 1e-12);
}

TEST(GpcErrors, badOperandsAreRefusedAndTheResultIsLeftAlone) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const GpcOperand good({Rectangle(0, 0, 1, 1)});
  for (const double bad : {infinity, -infinity, nan}) {
    const GpcOperand operand({{{0, 0}, {1, bad}, {1, 1}}});
    GpcPolygon result{7, nullptr, nullptr};
    EXPECT_EQ(L"A polygon with infinite or undefined coordinates cannot be clipped.",
              Failure([&] { gpc_polygon_clip(GPC_XOR, good.Record(), operand.Record(), result); }));
    EXPECT_EQ(7, result.contourCount);
  }
  GpcPolygon result{7, nullptr, nullptr};
  EXPECT_THROW(gpc_polygon_clip(static_cast<gpc_op>(4), good.Record(), good.Record(), result),
               GPCException);
  EXPECT_EQ(7, result.contourCount);
}

TEST(GpcErrors, hugeAndTinyCoordinatesAreScaled) {
  for (const double size : {1e300, 1e-300, 0x1p1023}) {
    const BooleanResult result =
        OperateByGpc(Operation::Intersection, {Rectangle(-size, -size, size / 2, size / 2)},
                     {Rectangle(0, 0, size, size)});
    EXPECT_EQ(ToText({{{0, size / 2}, {size / 2, size / 2}, {size / 2, 0}, {0, 0}}}),
              ToText(result.contours));
  }
}

// The source of memory fails at this allocation; each test runs in threads of its own, whose
// workspaces are empty.
int allocationsLeft = 0;

void* FailLater(std::size_t size) {
  return allocationsLeft-- > 0 ? std::malloc(size) : nullptr;
}

TEST(GpcErrors, failingMemoryLeavesTheResultAlone) {
  std::mt19937_64 random(11);
  const GpcOperand subject({MakeStar({0, 0}, 10, 40, random)});
  const GpcOperand clip({MakeStar({1, 0}, 10, 40, random)});
  int failures = 0;
  for (int allowed = 0;; ++allowed) {
    GString failure;
    GpcTristrip strips{7, nullptr};
    std::thread([&] {
      GpcSetMemorySource(FailLater);
      allocationsLeft = allowed;
      failure =
          Failure([&] { gpc_tristrip_clip(GPC_XOR, subject.Record(), clip.Record(), strips); });
      GpcSetMemorySource(nullptr);
    }).join();
    if (failure == L"(nothing)") {
      gpc_free_tristrip(strips);
      break;
    }
    ++failures;
    EXPECT_EQ(0u, failure.String().find(L"GPCAlloc failure: ")) << allowed;
    EXPECT_EQ(7, strips.stripCount);
  }
  EXPECT_GT(failures, 50);
}

int WindingOf(const Contours& contours, const Vec2d& point) {
  int winding = 0;
  for (const Points& contour : contours) {
    for (std::size_t i = 0; i < contour.size(); ++i) {
      const Vec2d& a = contour[i];
      const Vec2d& b = contour[i + 1 == contour.size() ? 0 : i + 1];
      if ((a.y <= point.y) == (b.y <= point.y)) continue;
      const int side = OrientationSign(a, b, point);
      if (a.y < b.y && side > 0) ++winding;
      if (a.y > b.y && side < 0) --winding;
    }
  }
  return winding;
}

TEST(GpcFillRules, decideWhatIsInside) {
  const struct {
    FillRule rule;
    bool (*isInside)(int winding);
  } rows[] = {
      {FillRule::EvenOdd, [](int winding) { return winding % 2 != 0; }},
      {FillRule::NonZero, [](int winding) { return winding != 0; }},
      {FillRule::Positive, [](int winding) { return winding > 0; }},
      {FillRule::Negative, [](int winding) { return winding < 0; }},
  };
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> place(-0.05, 8.05);
  // On a lattice, where edges of one operand coincide with each other and with those of the other.
  const auto makeContours = [&random] {
    Contours contours(1 + random() % 4);
    for (Points& contour : contours) {
      contour.resize(3 + random() % 6);
      for (Vec2d& point : contour) {
        point.Set(static_cast<double>(random() % 9), static_cast<double>(random() % 9));
      }
    }
    if (random() % 2 == 0) contours.push_back(contours.front());
    return contours;
  };
  for (int round = 0; round < 300; ++round) {
    const Contours subject = makeContours();
    const Contours clip = makeContours();
    for (const auto& row : rows) {
      for (const Operation operation : OPERATIONS) {
        GpcResult result;
        gpc_polygon_clip(static_cast<gpc_op>(operation), GpcOperand(subject).Record(),
                         GpcOperand(clip).Record(), result.record, row.rule);
        const Contours contours = result.Copy().contours;
        for (int i = 0; i < 20; ++i) {
          const Vec2d point(place(random), place(random));
          const bool inSubject = row.isInside(WindingOf(subject, point));
          const bool inClip = row.isInside(WindingOf(clip, point));
          const bool expected = operation == Operation::Difference     ? inSubject && !inClip
                                : operation == Operation::Intersection ? inSubject && inClip
                                : operation == Operation::Xor          ? inSubject != inClip
                                                                       : inSubject || inClip;
          ASSERT_EQ(expected, WindingOf(contours, point) != 0)
              << "round " << round << ", rule " << static_cast<int>(row.rule) << ", "
              << NameOf(operation) << ", " << point << "\nsubject " << ToText(subject) << "\nclip "
              << ToText(clip);
        }
      }
    }
  }
  const GpcPolygon none;
  GpcPolygon result;
  EXPECT_THROW(gpc_polygon_clip(GPC_UNION, none, none, result, static_cast<FillRule>(4)),
               GPCException);
}

TEST(GpcTristrips, trianglesCoverTheAreaOnce) {
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    std::mt19937_64 random(seed);
    Contours subject = {MakeStar({0, 0}, 10, 3 + seed, random), Rectangle(-4, -4, 4, 4)};
    const Contours clip = {MakeStar({3, 1}, 10, 30, random), Rectangle(2, -4, 9, 4)};
    for (const Operation operation : OPERATIONS) {
      const BooleanResult polygon = OperateByGpc(operation, subject, clip);
      double area = 0.0;
      for (const Points& contour : polygon.contours) area -= PolygonArea(contour);
      GpcTristrip strips;
      gpc_tristrip_clip(static_cast<gpc_op>(operation), GpcOperand(subject).Record(),
                        GpcOperand(clip).Record(), strips);
      EXPECT_NEAR(area, AreaOfStrips(strips), 1e-11 * area) << seed << ' ' << NameOf(operation);
      gpc_free_tristrip(strips);
    }
  }
}

TEST(GpcTristrips, rectangleIsOneStripOfFour) {
  GpcTristrip strips;
  gpc_polygon_to_tristrip(GpcOperand({Rectangle(0, 0, 2, 1)}).Record(), strips);
  ASSERT_EQ(1, strips.stripCount);
  EXPECT_EQ(4, strips.strips[0].vertexCount);
  gpc_free_tristrip(strips);
  gpc_polygon_to_tristrip(GpcPolygon(), strips);
  EXPECT_EQ(0, strips.stripCount);
}

}  // namespace
}  // namespace shr::test
