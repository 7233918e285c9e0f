// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: states of the rectangle; told segments from every side, along the boundary and past the
// corners; told polylines; both forms of polylines against a walk segment by segment, to the bit,
// for walks, lattices and numbers that are none; pieces inside and of the right length.

#include "shared/polygons/lines/LineClip.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <tuple>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

using Pieces = test::FlatLines;

/// Clips every segment on its own and joins those that meet.
Pieces ClipSegmentBySegment(const CLineClip& clip, const Points& line) {
  Pieces pieces;
  std::size_t first = 0;
  const auto flush = [&] {
    if (pieces.points.size() > first) {
      pieces.counts.push_back(static_cast<unsigned int>(pieces.points.size() - first));
    }
    first = pieces.points.size();
  };
  for (std::size_t i = 1; i < line.size(); ++i) {
    Vec2d a = line[i - 1];
    Vec2d b = line[i];
    if (!clip.ClipLine(a, b)) {
      flush();
      continue;
    }
    if (pieces.points.size() == first || !(pieces.points.back() == a)) {
      flush();
      pieces.points.push_back(a);
    }
    pieces.points.push_back(b);
  }
  flush();
  return pieces;
}

Pieces ClipWhole(const CLineClip& clip, const Points& line) {
  Pieces pieces;
  clip.ClipPolyline(line, pieces.points, pieces.counts);
  return pieces;
}

Pieces ClipByCallback(const CLineClip& clip, const Points& line) {
  Pieces pieces;
  clip.ClipPolyline(line, [&](const Vec2d* points, std::size_t count) {
    pieces.points.insert(pieces.points.end(), points, points + count);
    pieces.counts.push_back(static_cast<unsigned int>(count));
  });
  return pieces;
}

std::vector<std::uint64_t> BitsOf(const Pieces& pieces) {
  std::vector<std::uint64_t> bits(pieces.counts.begin(), pieces.counts.end());
  for (const Vec2d& point : pieces.points) {
    for (const double value : {point.x, point.y}) {
      bits.push_back(std::isnan(value) ? 0x7FF8u : std::bit_cast<std::uint64_t>(value));
    }
  }
  return bits;
}

TEST(LineClip, isOnExactlyWhileTheRectangleHasAnArea) {
  CLineClip clip;
  EXPECT_FALSE(clip.IsClipEnabled());
  EXPECT_EQ(clip.GetClipRect(), Box2d());
  clip.SetClipRect(Box2d(0, 0, 0, 5));
  EXPECT_FALSE(clip.IsClipEnabled());
  Vec2d a(-9, 1), b(9, 1);
  EXPECT_TRUE(clip.ClipLine(a, b));
  EXPECT_EQ(a, Vec2d(-9, 1));
  clip.IntersectClipRect(Box2d(0, 0, 4, 4));
  EXPECT_TRUE(clip.IsClipEnabled());
  clip.IntersectClipRect(Box2d(2, -5, 9, 3));
  EXPECT_EQ(clip.GetClipRect(), Box2d(2, 0, 4, 3));
  const CLineClip copy = clip;
  clip.IntersectClipRect(Box2d(7, 7, 8, 8));
  EXPECT_FALSE(clip.IsClipEnabled());
  EXPECT_EQ(ClipByCallback(clip, {{50, 50}}), (Pieces{{{50, 50}}, {1}}));
  EXPECT_EQ(copy.GetClipRect(), Box2d(2, 0, 4, 3));
  clip.Clear();
  EXPECT_EQ(clip.GetClipRect(), Box2d());
}

TEST(LineClip, aRectangleWithANanClipsNothing) {
  for (int side = 0; side < 4; ++side) {
    double sides[] = {0, 0, 4, 4};
    sides[side] = NAN;
    const Box2d box(sides[0], sides[1], sides[2], sides[3]);
    CLineClip clip;
    clip.SetClipRect(box);
    EXPECT_FALSE(clip.IsClipEnabled()) << side;
    Vec2d a(-9, -9), b(9, 8);
    EXPECT_TRUE(clip.ClipLine(a, b)) << side;
    EXPECT_EQ(a, Vec2d(-9, -9));
    EXPECT_EQ(b, Vec2d(9, 8));
    clip.SetClipRect(Box2d(0, 0, 4, 4));
    clip.IntersectClipRect(box);
    EXPECT_EQ(clip.GetClipRect(), Box2d(0, 0, 4, 4)) << "a side that is no number is no limit";
  }
}

TEST(LineClip, endsNeverLieOutside) {
  std::mt19937_64 random(48);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  for (const double scale : {1.0, 1e-3, 1e6, 1e15, 1e154, 1e300, 1.7e308}) {
    int visible = 0;
    for (int i = 0; i < 20000; ++i) {
      Box2d box(Vec2d(unit(random), unit(random)), Vec2d(unit(random), unit(random)));
      box.Normalize();
      const CLineClip clip(box);
      Vec2d a = Vec2d(unit(random), unit(random)) * scale;
      Vec2d b = Vec2d(unit(random), unit(random)) * scale;
      if (i % 4 == 1) b = box.Max() + (box.Max() - a);       // all but through a corner
      if (i % 4 == 2) b = Vec2d(unit(random) * scale, a.y);  // along an axis
      if (i % 4 == 3) a = Vec2d(box.xMin(), unit(random) * scale);
      if (!clip.ClipLine(a, b)) continue;
      ++visible;
      ASSERT_TRUE(box.Contains(a) && box.Contains(b)) << scale << ' ' << box << a << b;
    }
    EXPECT_GT(visible, 10) << scale;
  }
  const CLineClip clip(Box2d(-1, -1, 1, 1));
  for (const Vec2d& far : {Vec2d(-HUGE_VAL, 0.5), Vec2d(0.25, HUGE_VAL), Vec2d(HUGE_VAL, -3)}) {
    Vec2d a = far;
    Vec2d b(0.25, 0.5);
    ASSERT_TRUE(clip.ClipLine(b, a)) << far;
    EXPECT_TRUE(clip.GetClipRect().Contains(a)) << far << a;
  }
}

TEST(LineClip, clipsSegmentsFromEverySide) {
  const CLineClip clip(Box2d(0.0, 0.0, 8.0, 4.0));
  const struct {
    const char* name;
    Vec2d a, b;
    bool isVisible;
    Vec2d clippedA, clippedB;
  } rows[] = {
      {"inside", {1, 1}, {7, 3}, true, {1, 1}, {7, 3}},
      {"left to right", {-4, 0}, {12, 4}, true, {0, 1}, {8, 3}},
      {"right to inside", {16, 2}, {4, 2}, true, {8, 2}, {4, 2}},
      {"below to above", {2, -4}, {6, 8}, true, {3.3333333333333335, 0}, {4.666666666666667, 4}},
      {"inside to above", {4, 2}, {4, 9}, true, {4, 2}, {4, 4}},
      {"corner to corner", {-4, -2}, {12, 6}, true, {0, 0}, {8, 4}},
      {"past the upper left corner", {-3, 2}, {3, 8}, false, {}, {}},
      {"past the lower right corner", {5, -4}, {12, 3}, false, {}, {}},
      {"along the lower side", {-1, 0}, {5, 0}, true, {0, 0}, {5, 0}},
      {"along the right side", {8, 1}, {8, 9}, true, {8, 1}, {8, 4}},
      {"touches a corner", {-4, 4}, {4, -4}, true, {0, 0}, {0, 0}},
      {"both left", {-2, 1}, {-1, 3}, false, {}, {}},
      {"both above", {1, 5}, {7, 9}, false, {}, {}},
      {"a point inside", {3, 3}, {3, 3}, true, {3, 3}, {3, 3}},
      {"a point outside", {3, 5}, {3, 5}, false, {}, {}},
  };
  for (const auto& row : rows) {
    for (const bool isTurned : {false, true}) {
      Vec2d a = isTurned ? row.b : row.a;
      Vec2d b = isTurned ? row.a : row.b;
      ASSERT_EQ(clip.ClipLine(a, b), row.isVisible) << row.name;
      if (!row.isVisible) continue;
      EXPECT_LT((isTurned ? b : a).Distance(row.clippedA), 1e-14) << row.name;
      EXPECT_LT((isTurned ? a : b).Distance(row.clippedB), 1e-14) << row.name;
    }
  }
}

TEST(LineClip, cutsPolylinesIntoVisiblePieces) {
  const CLineClip clip(Box2d(0.0, 0.0, 8.0, 4.0));
  const Points inside = {{1, 1}, {2, 2}, {3, 1}, {3, 1}, {8, 4}};
  const struct {
    const char* name;
    Points line;
    Pieces expected;
  } rows[] = {
      {"inside", inside, {inside, {5}}},
      {"out and back in",
       {{2, 2}, {10, 2}, {10, 3}, {4, 3}},
       {{{2, 2}, {8, 2}, {8, 3}, {4, 3}}, {2, 2}}},
      {"turns on the boundary",
       {{2, 2}, {8, 2}, {2, 3}, {2, 9}, {-9, 9}},
       {{{2, 2}, {8, 2}, {2, 3}, {2, 4}}, {4}}},
      {"outside", {{-5, 1}, {-5, 9}, {20, 9}, {20, -9}}, {}},
      {"a point inside", {{8, 4}}, {{{8, 4}}, {1}}},
      {"a point outside", {{9, 4}}, {}},
      {"nothing", {}, {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ClipWhole(clip, row.line), row.expected) << row.name;
    EXPECT_EQ(ClipByCallback(clip, row.line), row.expected) << row.name;
  }
  EXPECT_THROW(clip.ClipPolyline(nullptr, 2, [](const Vec2d*, std::size_t) {}),
               InternalErrorException);
}

TEST(LineClip, equalsClippingSegmentBySegment) {
  std::mt19937_64 random(43);
  const auto makePoint = test::RandomPointMaker(random);
  const Box2d box(0.0, 0.0, 1.0, 1.0);
  const CLineClip clip(box);
  for (int round = 0; round < 400; ++round) {
    Points line(2 + random() % (round % 10 == 0 ? 500 : 12));
    Vec2d last(0.5, 0.5);
    for (Vec2d& point : line) point = last = makePoint(round % 4, last);
    const Pieces pieces = ClipWhole(clip, line);
    ASSERT_EQ(BitsOf(pieces), BitsOf(ClipSegmentBySegment(clip, line))) << round;
    ASSERT_EQ(BitsOf(pieces), BitsOf(ClipByCallback(clip, line))) << round;
  }
}

TEST(LineClip, keepsTheLengthInside) {
  std::mt19937_64 random(44);
  const Box2d box(-1.0, -1.5, 2.0, 1.0);
  Box2d slightlyLarger = box;
  slightlyLarger.Inflate(1e-13, 1e-13);
  for (int round = 0; round < 50; ++round) {
    const Points star = test::MakeStar(Vec2d(round % 5, 0.0), 4.0, 3 + random() % 300, random);
    double expected = 0.0;
    for (std::size_t i = 1; i < star.size(); ++i) {
      // The visible part by the parameters at which the segment enters and leaves (Liang-Barsky).
      const Vec2d a = star[i - 1];
      const Vec2d d = star[i] - a;
      double enter = 0.0;
      double leave = 1.0;
      for (const auto& [from, by, low, high] : {std::tuple{a.x, d.x, box.xMin(), box.xMax()},
                                                std::tuple{a.y, d.y, box.yMin(), box.yMax()}}) {
        enter = std::max(enter, std::min((low - from) / by, (high - from) / by));
        leave = std::min(leave, std::max((low - from) / by, (high - from) / by));
      }
      expected += std::max(0.0, leave - enter) * d.Length();
    }
    const Pieces pieces = ClipWhole(CLineClip(box), star);
    EXPECT_NEAR(LengthOf(pieces), expected, 1e-11) << round;
    for (const Vec2d& point : pieces.points) EXPECT_TRUE(slightlyLarger.Contains(point)) << round;
  }
}

}  // namespace
}  // namespace shr
