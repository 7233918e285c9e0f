// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what the object tells of its contours; told segments and polylines (through holes, along
// edges, past and through vertices, from vertex to vertex); every piece against the same steps over
// all edges without the index, to the bit, for stars, combs, tiles, lattices and extreme numbers;
// the length inside against cuts by a formula of its own; points.

#include "shared/polygons/lines/LineClipPolygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/PlainLineClip.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

using Contours = test::FlatLines;

/// A frame of 9 x 9 with a square hole and a triangle in that.
Contours MakeNested() {
  return {{{0, 0},
           {9, 0},
           {9, 9},
           {0, 9},
           {0, 0},
           {3, 3},
           {3, 6},
           {6, 6},
           {6, 3},
           {4, 4},
           {5, 4},
           {4, 5}},
          {5, 4, 3}};
}

Contours MakeLattice(std::mt19937_64& random) {
  Contours contours;
  for (int i = 0; i < 4; ++i) {
    const auto size = static_cast<unsigned int>(3 + random() % 6);
    for (unsigned int k = 0; k < size; ++k) {
      contours.points.emplace_back(static_cast<double>(random() % 5),
                                   static_cast<double>(random() % 5));
    }
    contours.counts.push_back(size);
  }
  return contours;
}

double LengthOf(const std::vector<GLine2>& pieces) {
  double length = 0.0;
  for (const GLine2& piece : pieces) length += piece.GetBegin().Distance(piece.GetEnd());
  return length;
}

TEST(LineClipPolygon, tellsOfItsContours) {
  const Contours nested = MakeNested();
  const GLineClipPolygon polygon(nested.points.data(), nested.counts.data(), 3);
  const GLineClipPolygon copy = polygon;
  EXPECT_EQ(copy.GetNumContours(), 3u);
  EXPECT_EQ(copy.GetContourVertexCount(0), 4u);
  EXPECT_EQ(copy.GetTotalVertexCount(), 11u);
  EXPECT_EQ(copy.GetBBox(), Box2d(0, 0, 9, 9));
  Points points;
  copy.GetPolygon(points);
  EXPECT_EQ(points.size(), 11u);
  EXPECT_EQ(points[4], Vec2d(3, 3));
  Box2d box;
  EXPECT_FALSE(copy.IsRectangle(&box));
  EXPECT_TRUE(GLineClipPolygon(nested.points, Counts{5}).IsRectangle(&box));
  EXPECT_EQ(box, Box2d(0, 0, 9, 9));
  EXPECT_EQ(GLineClipPolygon().GetBBox(), Box2d());
  EXPECT_FALSE(GLineClipPolygon().PointInside(Vec2d()));
  EXPECT_THROW(copy.GetContourVertexCount(3), InternalErrorException);
  EXPECT_THROW(GLineClipPolygon(nested.points, Counts{13}), InternalErrorException);
  EXPECT_THROW(GLineClipPolygon(nullptr, nested.counts.data(), 1), InternalErrorException);
  std::vector<GLine2> pieces;
  EXPECT_THROW(copy.Clip(nullptr, 2, pieces), InternalErrorException);
}

TEST(LineClipPolygon, keepsTheInsideOfSegments) {
  const Contours nested = MakeNested();
  const GLineClipPolygon polygon(nested.points, nested.counts);
  const struct {
    const char* name;
    Vec2d a, b;
    std::vector<GLine2> expected;
  } rows[] = {
      {"inside", {1, 1}, {2, 2}, {{{1, 1}, {2, 2}}}},
      {"outside", {10, 1}, {12, 2}, {}},
      {"across the hole", {-1, 3.5}, {10, 3.5}, {{{0, 3.5}, {3, 3.5}}, {{6, 3.5}, {9, 3.5}}}},
      {"in the hole", {3.5, 3.5}, {3.5, 5.5}, {}},
      {"through the island", {3.5, 4.25}, {5.5, 4.25}, {{{4, 4.25}, {4.75, 4.25}}}},
      {"along an outer edge", {0, 2}, {0, 7}, {}},
      {"along an edge of the hole and on", {3, 1}, {3, 8}, {{{3, 1}, {3, 3}}, {{3, 6}, {3, 8}}}},
      {"past a corner of the hole", {1, 5}, {5, 1}, {{{1, 5}, {5, 1}}}},
      {"from corner to corner of the hole", {3, 3}, {6, 6}, {{{4, 4}, {4.5, 4.5}}}},
      {"touches a corner from outside", {-1, 1}, {1, -1}, {}},
      {"a point inside", {1, 1}, {1, 1}, {{{1, 1}, {1, 1}}}},
      {"a point on an edge", {0, 1}, {0, 1}, {}},
      {"ends a rounding error beyond an edge", {1.1, 1}, {-1e-17, 1}, {{{1.1, 1}, {-1e-17, 1}}}},
      {"ends on an edge", {0.1, 1}, {0.1, 0}, {{{0.1, 1}, {0.1, 0}}}},
      {"not a number", {1, 1}, {NAN, 2}, {}},
      {"endless", {1, 1}, {HUGE_VAL, 1}, {}},
  };
  for (const auto& row : rows) {
    std::vector<GLine2> pieces;
    EXPECT_EQ(polygon.Clip(GLine2(row.a, row.b), pieces), row.expected.size()) << row.name;
    EXPECT_EQ(pieces, row.expected) << row.name;
  }
}

TEST(LineClipPolygon, joinsThePiecesOfAPolyline) {
  const Contours nested = MakeNested();
  const GLineClipPolygon polygon(nested.points, nested.counts);
  const Points line = {{1, 1}, {2, 1}, {2, 2}, {2, 5}, {7, 5}, {8, 5}, {8, -2}, {1, -2}};
  Points points;
  Counts counts;
  EXPECT_EQ(polygon.Clip(line, points, counts), 2u);
  EXPECT_EQ(counts, (Counts{5, 4}));
  EXPECT_EQ(points,
            (Points{{1, 1}, {2, 1}, {2, 2}, {2, 5}, {3, 5}, {6, 5}, {7, 5}, {8, 5}, {8, 0}}));
  EXPECT_EQ(polygon.Clip(line.data(), 1, points, counts), 1u);
  EXPECT_EQ(counts, (Counts{5, 4, 1}));
  std::vector<GLine2> pieces;
  EXPECT_EQ(polygon.Clip(GPolyline(line), pieces), 7u);
  EXPECT_EQ(pieces.back(), GLine2(Vec2d(8, 5), Vec2d(8, 0)));
}

TEST(LineClipPolygon, equalsTheStepsOverAllEdges) {
  std::mt19937_64 random(47);
  Contours withNan = test::MakeStars(20, random);
  withNan.points[5].y = NAN;
  Contours far = test::MakeStars(60, random);
  for (Vec2d& point : far.points) point = point * 1e-5 + Vec2d(1e6, -1e6);
  Contours tiny = test::MakeStars(40, random);
  for (Vec2d& point : tiny.points) point *= 1e-200;
  const struct {
    const char* name;
    Contours contours;
    int segments;
  } rows[] = {
      {"stars of 5", test::MakeStars(5, random), 150},
      {"stars of 400", test::MakeStars(400, random), 20},
      {"nested", MakeNested(), 150},
      {"lattice", MakeLattice(random), 150},
      {"other lattice", MakeLattice(random), 150},
      {"far away", far, 80},
      {"no number", withNan, 50},
      {"beyond tiny", tiny, 50},
      {"nothing", {}, 5},
  };
  for (const auto& row : rows) {
    const test::PlainLineClip polygon(row.contours.points, row.contours.counts);
    Box2d box = row.contours.points.empty() ? Box2d(0, 0, 1, 1) : polygon.GetBBox();
    box.Inflate(0.1 * box.xRange(), 0.1 * box.yRange());
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const auto anyPoint = [&] {
      return box.Min() + Vec2d(box.xRange() * unit(random), box.yRange() * unit(random));
    };
    const auto anyVertex = [&] {
      return row.contours.points[random() % row.contours.points.size()];
    };
    for (int i = 0; i < row.segments; ++i) {
      const bool fromVertex = i % 3 == 1 && !row.contours.points.empty();
      const Vec2d a = fromVertex ? anyVertex() : anyPoint();
      const Vec2d b = fromVertex && i % 2 == 0 ? anyVertex()
                      : i % 5 == 0             ? a.Lerp(anyPoint(), 1e4)
                                               : a.Lerp(anyPoint(), unit(random));
      std::vector<GLine2> pieces;
      polygon.Clip(GLine2(a, b), pieces);
      const bool isFinite = std::isfinite(a.x + a.y + b.x + b.y);
      ASSERT_EQ(pieces, isFinite ? polygon.ClipPlain(a, b) : std::vector<GLine2>())
          << row.name << ' ' << GLine2(a, b);
    }
  }
}

TEST(LineClipPolygon, keepsTheLengthInside) {
  std::mt19937_64 random(48);
  std::uniform_real_distribution<double> coordinate(-2.0, 4.0);
  const Contours stars = test::MakeStars(200, random);
  const GLineClipPolygon polygon(stars.points, stars.counts);
  for (int i = 0; i < 100; ++i) {
    const Vec2d a(coordinate(random), coordinate(random));
    const Vec2d d = Vec2d(coordinate(random), coordinate(random)) - a;
    std::vector<double> cuts = {0.0, 1.0};
    for (std::size_t k = 0; k < stars.points.size(); ++k) {
      const Vec2d from = stars.points[k];
      const Vec2d edge = stars.points[k % 200 == 199 ? k - 199 : k + 1] - from;
      const double determinant = d.x * edge.y - d.y * edge.x;
      const double t = ((from.x - a.x) * edge.y - (from.y - a.y) * edge.x) / determinant;
      if (t > 0.0 && t < 1.0) cuts.push_back(t);
    }
    std::sort(cuts.begin(), cuts.end());
    double expected = 0.0;
    for (std::size_t k = 1; k < cuts.size(); ++k) {
      const Vec2d middle = a + d * ((cuts[k - 1] + cuts[k]) / 2.0);
      if (PointInPolygon(middle, stars.points, stars.counts)) {
        expected += (cuts[k] - cuts[k - 1]) * d.Length();
      }
    }
    std::vector<GLine2> pieces;
    polygon.Clip(GLine2(a, a + d), pieces);
    EXPECT_NEAR(LengthOf(pieces), expected, 1e-12) << i;
  }
}

TEST(LineClipPolygon, findsPointsInsideAndWhereTheInsideEnds) {
  const Contours nested = MakeNested();
  const GLineClipPolygon polygon(nested.points, nested.counts);
  const struct {
    const char* name;
    Vec2d point;
    bool isInside;
  } rows[] = {{"inside", {1, 1}, true},
              {"in the hole", {3.5, 3.5}, false},
              {"on the island", {4.25, 4.25}, true},
              {"on a left side", {0, 1}, false},
              {"on a right side", {9, 1}, true},
              {"on a left side of the hole", {3, 5}, true},
              {"outside", {10, 1}, false},
              {"on the lower side", {5, 0}, false},
              {"nowhere", {NAN, 1}, false},
              {"at no height", {1, NAN}, false}};
  for (const auto& row : rows) EXPECT_EQ(polygon.PointInside(row.point), row.isInside) << row.name;
  Contours broken = nested;
  broken.points[1].x = NAN;
  EXPECT_NO_THROW(GLineClipPolygon(broken.points, broken.counts).PointInside(Vec2d(1, 1)));
}

}  // namespace
}  // namespace shr
