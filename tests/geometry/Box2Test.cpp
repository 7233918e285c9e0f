// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the empty and the universal box; what counts as empty and inverted; membership on the
// boundary; boxes together, as properties over a small grid of boxes; mapping a part of one box
// into another.

#include "shared/geometry/Box2.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

static_assert(Box2d().xMin() == DBL_MAX && Box2d().yMax() == -DBL_MAX);
static_assert(Box2d().IsEmpty() && Box2d().IsDegenerate() && !Box2d().HasArea());
static_assert(Box2d::UNIVERSE.Contains(Vec2d(-DBL_MAX, DBL_MAX)) &&
              Box2f::UNIVERSE.xMin() == -FLT_MAX);
static_assert(Box2d::UNIVERSE.Center() == Vec2d::ZERO);
static_assert(Box2d(Box2f(0.0f, 1.0f, 2.0f, 3.0f)) == Box2d(0.0, 1.0, 2.0, 3.0));
static_assert((Box2d(0.0, 1.0, 2.0, 3.0) + Vec2d(1.0, -1.0)) * 2.0 == Box2d(2.0, 0.0, 6.0, 4.0));

TEST(Box2, emptyAndInvertedAreToldApart) {
  const struct {
    const char* name;
    Box2d box;
    bool empty;
    bool degenerate;
  } rows[] = {
      {"ordinary", {0.0, 0.0, 2.0, 1.0}, false, false},
      {"no width", {1.0, 0.0, 1.0, 1.0}, true, false},
      {"one point", {1.0, 1.0, 1.0, 1.0}, true, false},
      {"inverted in x", {2.0, 0.0, 1.0, 1.0}, true, true},
      {"inverted in y", {0.0, 2.0, 1.0, 1.0}, true, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.box.IsEmpty(), row.empty) << row.name;
    EXPECT_EQ(row.box.IsDegenerate(), row.degenerate) << row.name;
    EXPECT_EQ(row.box.HasArea(), !row.empty) << row.name;
    EXPECT_EQ(row.box.Contains(row.box.Min()), !row.degenerate) << row.name;
    EXPECT_EQ(row.box.GetArea() > 0.0, !row.empty) << row.name;
  }
}

TEST(Box2, operandsMayBeCornersOfTheBoxItself) {
  const Box2d start(2.0, 3.0, 6.0, 12.0);
  Box2d box = start;
  EXPECT_EQ(box -= box.Min(), Box2d(0.0, 0.0, 4.0, 9.0));
  box = start;
  EXPECT_EQ(box += box.Min(), Box2d(4.0, 6.0, 8.0, 15.0));
  box = start;
  EXPECT_EQ(box *= box.Min(), Box2d(4.0, 9.0, 12.0, 36.0));
  box = start;
  EXPECT_EQ(box /= box.Min(), Box2d(1.0, 1.0, 3.0, 4.0));
  box = start;
  EXPECT_EQ(box -= box.Max(), Box2d(-4.0, -9.0, 0.0, 0.0));
  box = start;
  EXPECT_EQ(box -= box.xMin(), Box2d(0.0, 1.0, 4.0, 10.0));
  box = Box2d(6.0, 12.0, 2.0, 3.0);
  box.Set(box.Max(), box.Min());
  EXPECT_EQ(box, start);
}

TEST(Box2, extendingTheEmptyBoxGivesWhatItIsExtendedBy) {
  Box2d box;
  box.ExtendBy(Vec2d(3.0, -4.0));
  EXPECT_EQ(box, Box2d(3.0, -4.0, 3.0, -4.0));
  box.ExtendBy(Box2d());
  EXPECT_EQ(box, Box2d(3.0, -4.0, 3.0, -4.0));
  box.ExtendBy(Vec2d(NAN, 1.0));
  EXPECT_EQ(box, Box2d(3.0, -4.0, 3.0, 1.0));
  const std::vector<Vec2d> points = {{1.0, 5.0}, {-1.0, 2.0}, {0.0, 9.0}};
  box.BoundPoints(points);
  EXPECT_EQ(box, Box2d(-1.0, 2.0, 1.0, 9.0));
  box.BoundPoints(nullptr, 0);
  EXPECT_EQ(box, Box2d());
}

/// Calls `check` with every pair of boxes on a grid of four by four lines.
template <class Check>
void ForEachPairOfBoxes(Check check) {
  std::vector<Box2d> boxes;
  for (int code = 0; code < 256; ++code) {
    const Box2d box(code & 3, code >> 2 & 3, code >> 4 & 3, code >> 6);
    if (!box.IsDegenerate()) boxes.push_back(box);
  }
  for (const Box2d& a : boxes) {
    for (const Box2d& b : boxes) check(a, b);
  }
}

TEST(Box2, commonPartAndHullFollowTheirLaws) {
  ForEachPairOfBoxes([](const Box2d& a, const Box2d& b) {
    Box2d common = a;
    common.Intersect(b);
    Box2d hull = a;
    hull.ExtendBy(b);
    ASSERT_EQ(a.Intersects(b), !common.IsDegenerate()) << a << b;
    ASSERT_EQ(a.Contains(b), common == b) << a << b;
    ASSERT_EQ(a.Contains(b), hull == a) << a << b;
    ASSERT_TRUE(hull.Contains(a) && hull.Contains(b)) << a << b;
    for (const Vec2d& p : {Vec2d(1.0, 2.0), Vec2d(0.0, 3.0), Vec2d(2.0, 1.5)}) {
      ASSERT_EQ(common.Contains(p), a.Contains(p) && b.Contains(p)) << a << b << p;
    }
  });
}

TEST(Box2, measuresAndCornersFit) {
  Box2d box(4.0, 6.0, 1.0, 2.0);
  box.Normalize();
  EXPECT_EQ(box, Box2d(1.0, 2.0, 4.0, 6.0));
  double width = 0.0;
  double height = 0.0;
  box.Size(width, height);
  EXPECT_EQ(width, 3.0);
  EXPECT_EQ(height, 4.0);
  EXPECT_EQ(box.Diagonal(), 5.0);
  EXPECT_EQ(box.Center(), Vec2d(2.5, 4.0));
  Vec2d corners[4];
  box.GetCorners(corners);
  Box2d bounds;
  bounds.BoundPoints(corners);
  EXPECT_EQ(bounds, box);
  box.Inflate(1.0, -0.5);
  EXPECT_EQ(box, Box2d(0.0, 2.5, 5.0, 5.5));
  box.xMax() = 7.0;
  const auto [xMin, yMin, xMax, yMax] = box;
  EXPECT_EQ(Box2d(xMin, yMin, xMax, yMax), box);
  std::ostringstream text;
  text << box;
  EXPECT_EQ(text.str(), "[(0, 2.5), (7, 5.5)]");
}

TEST(Box2, partIsMappedAsItLiesInItsSource) {
  const Box2d source(0.0, 0.0, 10.0, 20.0);
  const Box2d destination(100.0, 100.0, 200.0, 0.0);  // y runs down
  const struct {
    const char* name;
    Box2d part;
    Box2d expected;
  } rows[] = {
      {"whole", source, destination},
      {"quarter", {0.0, 0.0, 5.0, 10.0}, {100.0, 100.0, 150.0, 50.0}},
      {"outside", {-10.0, 20.0, 0.0, 40.0}, {0.0, 0.0, 100.0, -100.0}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.part.MapSubBoxToDestSubBox(source, destination), row.expected) << row.name;
  }
  const Box2d flat(0.0, 0.0, 10.0, 0.0);
  EXPECT_EQ(Box2d(0.0, 0.0, 5.0, 0.0).MapSubBoxToDestSubBox(flat, destination),
            Box2d(100.0, 100.0, 150.0, 0.0));
}

}  // namespace
}  // namespace shr
