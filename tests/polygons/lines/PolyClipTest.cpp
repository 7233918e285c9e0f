// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: told contours with their points in order (inside, outside, across one side, around a
// corner, on the boundary, upside down, degenerate); against four stages that take one point at a
// time, to the bit, for walks, stars, lattices and numbers that are none; the area that is left.

#include "shared/polygons/lines/PolyClip.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Points;

/// The clipper without blocks: every stage takes every point on its own.
class PlainClip {
public:
  explicit PlainClip(const Box2d& box)
      : stages_{{true, false, box.xMax()},
                {false, true, box.yMin()},
                {true, true, box.xMin()},
                {false, false, box.yMax()}} {}

  Points Clip(const Points& points) {
    for (const Vec2d& point : points) Feed(0, point);
    for (std::size_t i = 0; i < 4; ++i) {
      if (stages_[i].hasFirst) Feed(i, stages_[i].first);
    }
    return out_;
  }

private:
  struct Stage {
    bool isVertical;
    bool keepsGreater;
    double boundary;
    bool hasFirst = false;
    Vec2d first = {};
    Vec2d previous = {};

    bool Keeps(const Vec2d& p) const {
      const double value = isVertical ? p.x : p.y;
      return keepsGreater ? value >= boundary : value <= boundary;
    }
    Vec2d Cross(const Vec2d& p) const {
      const Vec2d a = previous;
      if (isVertical) return {boundary, a.y + (p.y - a.y) * (boundary - a.x) / (p.x - a.x)};
      return {a.x + (p.x - a.x) * (boundary - a.y) / (p.y - a.y), boundary};
    }
  };

  void Feed(std::size_t index, const Vec2d& point) {
    if (index == 4) return out_.push_back(point);
    Stage& stage = stages_[index];
    if (!stage.hasFirst) {
      stage.first = stage.previous = point;
      stage.hasFirst = true;
      return;
    }
    if (stage.Keeps(stage.previous) != stage.Keeps(point)) Feed(index + 1, stage.Cross(point));
    stage.previous = point;
    if (stage.Keeps(point)) Feed(index + 1, point);
  }

  Stage stages_[4];
  Points out_;
};

Points ClipTo(const Box2d& box, const Points& points) {
  CPolyClip clip(box);
  CPolyClip::Output out;
  out.push_back(Vec2d(-7.0, -7.0));  // what is there stays
  const std::size_t added = clip.Clip(points, out);
  EXPECT_EQ(out.size(), added + 1);
  EXPECT_EQ(out.front(), Vec2d(-7.0, -7.0));
  return {out.begin() + 1, out.end()};
}

/// The bits of all coordinates, so that zeros of both signs and NaN are told apart.
std::vector<std::uint64_t> BitsOf(const Points& points) {
  std::vector<std::uint64_t> bits;
  for (const Vec2d& point : points) {
    for (const double value : {point.x, point.y}) {
      bits.push_back(std::isnan(value) ? 0x7FF8u : std::bit_cast<std::uint64_t>(value));
    }
  }
  return bits;
}

TEST(PolyClip, givesTheToldContours) {
  const Box2d box(0.0, 0.0, 10.0, 10.0);
  const struct {
    const char* name;
    Points contour;
    Points expected;
  } rows[] = {
      {"inside",
       {{1, 1}, {2, 1}, {3, 2}, {3, 3}, {2, 4}, {1, 3}},
       {{2, 4}, {1, 3}, {1, 1}, {2, 1}, {3, 2}, {3, 3}}},
      {"outside", {{11, 1}, {12, 1}, {12, 2}}, {}},
      {"around without touching", {{-9, 15}, {5, 30}, {-30, 5}}, {}},
      {"across the right side",
       {{5, 2}, {15, 2}, {15, 4}, {5, 4}},
       {{5, 2}, {10, 2}, {10, 4}, {5, 4}}},
      {"the box itself",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}}},
      {"shares a side from inside",
       {{6, 2}, {10, 2}, {10, 4}, {6, 4}},
       {{6, 2}, {10, 2}, {10, 4}, {6, 4}}},
      {"shares a side from outside",
       {{10, 2}, {12, 2}, {12, 4}, {10, 4}},
       {{10, 2}, {10, 2}, {10, 4}, {10, 4}}},
      {"one point inside", {{3, 3}}, {{3, 3}}},
      {"one point outside", {{-3, 3}}, {}},
      {"nothing", {}, {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ClipTo(box, row.contour), row.expected) << row.name;
  }
}

TEST(PolyClip, takesABoxWhoseAxisRunsDownward) {
  CPolyClip clip;
  CPolyClip::Output out;
  const Points contour = {{1, -5}, {2, -5}, {2, 15}, {1, 15}};
  EXPECT_EQ(clip.Clip(contour, out), 0u);  // no rectangle yet
  clip.SetClipRectBLT(Box2d(0.0, 10.0, 5.0, 0.0));
  EXPECT_EQ(clip.Clip(contour.data(), contour.size(), out), 4u);
  Box2d bounds;
  bounds.BoundPoints(std::span<const Vec2d>(out));
  EXPECT_EQ(bounds, Box2d(1.0, 0.0, 2.0, 10.0));
  EXPECT_EQ(clip.Clip(nullptr, 0, out), 0u);
  EXPECT_THROW(clip.Clip(nullptr, 1, out), InternalErrorException);
}

TEST(PolyClip, aBoxWithANanClipsNothing) {
  const Points contour = {{-5, -5}, {5, -5}, {5, 5}, {-5, 5}, {-7, 0}, {-6, -1}};
  for (int side = 0; side < 4; ++side) {
    double sides[] = {0, 0, 1, 1};
    sides[side] = std::numeric_limits<double>::quiet_NaN();
    CPolyClip clip(Box2d(sides[0], sides[1], sides[2], sides[3]));
    CPolyClip::Output out;
    EXPECT_EQ(clip.Clip(contour, out), contour.size()) << side;
  }
  const double infinity = std::numeric_limits<double>::infinity();
  CPolyClip strip(Box2d(-infinity, 0, infinity, 1));
  CPolyClip::Output out;
  strip.Clip(contour, out);
  for (const Vec2d& point : out) EXPECT_TRUE(point.y >= 0 && point.y <= 1) << point;
  EXPECT_GE(out.size(), 4u);
}

TEST(PolyClip, equalsStagesThatTakeOnePointAtATime) {
  std::mt19937_64 random(41);
  const auto makePoint = test::RandomPointMaker(random);
  for (int round = 0; round < 400; ++round) {
    Points contour(random() % (round % 10 == 0 ? 500 : 12));
    Vec2d last(0.5, 0.5);
    for (Vec2d& point : contour) point = last = makePoint(round % 4, last);
    const Box2d box = round % 7 == 0 ? Box2d(0.5, 0.0, 0.5, 1.0) : Box2d(0.0, 0.0, 1.0, 1.0);
    EXPECT_EQ(BitsOf(ClipTo(box, contour)), BitsOf(PlainClip(box).Clip(contour))) << round;
  }
}

TEST(PolyClip, leavesTheAreaInsideTheBox) {
  std::mt19937_64 random(42);
  for (int round = 0; round < 100; ++round) {
    const Points star = test::MakeStar(Vec2d(round % 5, 0.0), 4.0, 3 + random() % 300, random);
    const Box2d box(-1.0, -1.5, 2.0, 1.0 + 0.1 * (round % 7));
    const Points clipped = ClipTo(box, star);
    EXPECT_NEAR(PolygonArea(clipped), test::AreaInBox(star, box), 1e-12) << round;
    for (const Vec2d& point : clipped) EXPECT_TRUE(box.Contains(point)) << round;
  }
}

}  // namespace
}  // namespace shr
