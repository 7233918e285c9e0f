// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what boxes in space add to those of the plane (Box2Test.cpp): the third axis in every
// operation, volume, flat boxes, eight corners.

#include "shared/geometry/Box3.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace shr {
namespace {

constexpr Box3d BOX(0.0, 1.0, 2.0, 3.0, 5.0, 8.0);

static_assert(Box3d().IsEmpty() && Box3d().IsDegenerate() && Box3d().zMin() == DBL_MAX);
static_assert(Box3f::UNIVERSE.zMax() == FLT_MAX && Box3d::UNIVERSE.Center() == Vec3d::ZERO);
static_assert(BOX.GetVolume() == 72.0 && BOX.HasVolume() && BOX.zMid() == 5.0);
static_assert(Box3d(Box2d(0.0, 1.0, 2.0, 3.0)) == Box3d(0.0, 1.0, 0.0, 2.0, 3.0, 0.0));
static_assert(Box3d(Box3f(0.0f, 1.0f, 2.0f, 3.0f, 5.0f, 8.0f)) == BOX);
static_assert(get<2>(BOX) == 2.0 && get<3>(BOX) == 3.0 && get<5>(BOX) == 8.0);

TEST(Box3, moveByTheirOwnCorners) {
  Box3d box = BOX;
  box.Offset(box.Min());
  EXPECT_EQ(box, Box3d(0.0, 2.0, 4.0, 3.0, 6.0, 10.0));
  box = BOX;
  box -= box.Min();
  EXPECT_EQ(box, Box3d(0.0, 0.0, 0.0, 3.0, 4.0, 6.0));
}

TEST(Box3, everyAxisCounts) {
  const struct {
    const char* name;
    Box3d other;
    bool intersects;
    bool contained;
  } rows[] = {
      {"itself", BOX, true, true},
      {"inside", {1.0, 2.0, 3.0, 2.0, 3.0, 4.0}, true, true},
      {"touching in x", {3.0, 1.0, 2.0, 9.0, 5.0, 8.0}, true, false},
      {"beside in x", {3.5, 1.0, 2.0, 9.0, 5.0, 8.0}, false, false},
      {"beside in y", {0.0, 5.5, 2.0, 3.0, 9.0, 8.0}, false, false},
      {"beside in z", {0.0, 1.0, 8.5, 3.0, 5.0, 9.0}, false, false},
      {"beyond in z", {0.0, 1.0, 2.0, 3.0, 5.0, 8.5}, true, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(BOX.Intersects(row.other), row.intersects) << row.name;
    EXPECT_EQ(row.other.Intersects(BOX), row.intersects) << row.name;
    EXPECT_EQ(BOX.Contains(row.other), row.contained) << row.name;
    Box3d common = BOX;
    common.Intersect(row.other);
    EXPECT_EQ(common.IsDegenerate(), !row.intersects) << row.name;
    Box3d hull = BOX;
    hull.ExtendBy(row.other);
    EXPECT_TRUE(hull.Contains(BOX) && hull.Contains(row.other)) << row.name;
  }
  EXPECT_FALSE(BOX.Contains(Vec3d(1.0, 2.0, 1.9)));
  EXPECT_TRUE(Box3d(0.0, 0.0, 1.0, 1.0, 1.0, 1.0).IsEmpty());
  EXPECT_FALSE(Box3d(0.0, 0.0, 1.0, 1.0, 1.0, 1.0).IsDegenerate());
}

TEST(Box3, measuresMovesAndCornersFit) {
  Box3d box = BOX;
  box.Offset(Vec3d(1.0, 1.0, -1.0));
  box.Inflate(1.0, 0.0, 0.5);
  EXPECT_EQ(box, Box3d(0.0, 2.0, 0.5, 5.0, 6.0, 7.5));
  double width = 0.0;
  double height = 0.0;
  double depth = 0.0;
  box.Size(width, height, depth);
  EXPECT_EQ(Vec3d(width, height, depth), Vec3d(5.0, 4.0, 7.0));
  EXPECT_DOUBLE_EQ(box.Diagonal(), std::sqrt(90.0));
  Vec3d corners[8];
  box.GetCorners(corners);
  Box3d bounds;
  bounds.BoundPoints(corners);
  EXPECT_EQ(bounds, box);
  std::vector<Vec3d> distinct;
  for (const Vec3d& corner : corners) {
    for (const Vec3d& other : distinct) EXPECT_NE(corner, other);
    distinct.push_back(corner);
  }
  Box3d inverted(5.0, 6.0, 7.5, 0.0, 2.0, 0.5);
  inverted.Normalize();
  EXPECT_EQ(inverted, box);
  EXPECT_EQ(BOX.MapSubBoxToDestSubBox(BOX, box), box);
  const auto [xMin, yMin, zMin, xMax, yMax, zMax] = box;
  EXPECT_EQ(Box3d(xMin, yMin, zMin, xMax, yMax, zMax), box);
  std::ostringstream text;
  text << BOX - 1.0;
  EXPECT_EQ(text.str(), "[(-1, 0, 1), (2, 4, 7)]");
}

}  // namespace
}  // namespace shr
