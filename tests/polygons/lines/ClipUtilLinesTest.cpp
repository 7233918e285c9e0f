// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: polylines clipped to a box, to a polygon that is one, to any polygon in both classes;
// dashes clipped the same ways, with the length that is drawn inside, against every dash on its
// own, and of very long lines; arguments that are not there.

#include "shared/polygons/ClipUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/lines/GDashLineGenerator.h"
#include "shared/polygons/lines/LineClipPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

const Points LINES = {{-1, 1}, {1, 1}, {1, 9}, {3, 9}, {3, 3}, {-5, 3}, {9, 3}, {9, 9}, {5, 5}};
const Counts LINE_SIZES = {5, 2, 2};

using Pieces = test::FlatLines;

template <class Clip>
Pieces ClipLines(const Clip& clip) {
  Pieces pieces;
  GClipPolylinesToPolygon(LINES.data(), LINE_SIZES.data(), 3, clip, pieces.points, pieces.counts);
  return pieces;
}

template <class Clip>
Pieces ClipDashes(const Clip& clip) {
  const double pattern[] = {0.25, 0.5};
  GDashLineGenerator dashes(pattern);
  Pieces pieces;
  GClipDashedPolylinesToPolygon(LINES.data(), LINE_SIZES.data(), 3, dashes, clip, pieces.points,
                                pieces.counts);
  return pieces;
}

TEST(ClipUtilLines, clipsToABoxInAnyOrderOfItsCorners) {
  const Pieces expected = {{{0, 1}, {1, 1}, {1, 4}, {3, 4}, {3, 3}, {0, 3}, {4, 3}}, {3, 2, 2}};
  Pieces pieces;
  GClipPolylinesToRect(LINES.data(), LINE_SIZES.data(), 3, Box2d(4, 4, 0, 0), pieces.points,
                       pieces.counts);
  EXPECT_EQ(pieces, expected);
  const GPolygon square(0, 0, 4, 4);
  EXPECT_EQ(ClipLines(square), expected);
  EXPECT_EQ(ClipLines(GLineClipPolygon(square)), expected);
}

TEST(ClipUtilLines, clipsToAnyPolygon) {
  // A square around a square hole.
  const Points points = {{0, 0}, {0, 4}, {4, 4}, {4, 0}, {2, 2}, {3.5, 2}, {3.5, 3.5}, {2, 3.5}};
  const Counts counts = {4, 4};
  const GPolygon frame(points, counts);
  const Pieces expected = {
      {{0, 1}, {1, 1}, {1, 4}, {3, 4}, {3, 3.5}, {0, 3}, {2, 3}, {3.5, 3}, {4, 3}}, {3, 2, 2, 2}};
  EXPECT_EQ(ClipLines(frame), expected);
  EXPECT_EQ(ClipLines(GLineClipPolygon(points, counts)), expected);
}

TEST(ClipUtilLines, drawsTheDashesInside) {
  const GPolygon square(0, 0, 4, 4);
  const GPolygon diamond(Points{{2, 0}, {4, 2}, {2, 4}, {0, 2}});
  for (const GPolygon* clip : {&square, &diamond}) {
    const Pieces pieces = ClipDashes(*clip);
    EXPECT_EQ(pieces, ClipDashes(GLineClipPolygon(*clip)));
    EXPECT_GT(pieces.counts.size(), 5u);
    EXPECT_EQ(std::count(pieces.counts.begin(), pieces.counts.end(), 2u),
              static_cast<std::ptrdiff_t>(pieces.counts.size()));
    // One third of the line is drawn, up to one dash or gap where it is cut.
    EXPECT_NEAR(LengthOf(pieces), LengthOf(ClipLines(*clip)) / 3.0, 4 * 0.5);
    for (const Vec2d& point : pieces.points) EXPECT_TRUE(clip->GetBBox().Contains(point));
  }
  // The dash from 2.25 to 2.5 of the first polyline runs from (1, 1.25) to (1, 1.5).
  const Pieces pieces = ClipDashes(square);
  EXPECT_NE(std::find(pieces.points.begin(), pieces.points.end(), Vec2d(1, 1.25)),
            pieces.points.end());
}

/// Dashes every polyline whole and clips every dash on its own.
template <class Clip>
Pieces ClipEveryDash(const Pieces& lines, GDashLineGenerator dashes, const Clip& clip) {
  Pieces all;
  const Vec2d* points = lines.points.data();
  for (const unsigned int count : lines.counts) {
    std::vector<GLine2> drawn;
    dashes.Decompose(points, count, drawn);
    for (const GLine2& dash : drawn) all.Add({dash.GetBegin(), dash.GetEnd()});
    points += count;
  }
  Pieces pieces;
  if (all.counts.empty()) return pieces;
  GClipPolylinesToPolygon(all.points.data(), all.counts.data(), all.counts.size(), clip,
                          pieces.points, pieces.counts);
  return pieces;
}

TEST(ClipUtilLines, passesOverTheDashesOutsideWithoutATrace) {
  std::mt19937_64 random(47);
  std::uniform_real_distribution<double> anywhere(-60.0, 60.0);
  const GPolygon view(-5.0, -4.0, 5.0, 4.0);
  const GPolygon star(test::MakeStar(Vec2d(1, 2), 6.0, 30, random));
  for (int round = 0; round < 60; ++round) {
    std::vector<double> pattern(1 + random() % 4);
    for (double& entry : pattern) entry = 0.25 + static_cast<double>(random() % 4) * 0.75;
    if (round % 5 == 0) pattern.back() = 0.0;
    if (round % 7 == 0) pattern[0] = 70.0;
    Pieces lines;
    for (int i = 0; i < 4; ++i) {
      Points line(2 + random() % 9);
      for (Vec2d& point : line) point = Vec2d(anywhere(random), anywhere(random));
      if (i == 2) line.front() = lines.points.back();  // goes on with the phase
      if (i == 3) line[1].y = line[0].y = 1.0;         // along an axis
      lines.Add(line);
    }
    const GDashLineGenerator dashes(pattern);
    for (const GPolygon* clip : {&view, &star}) {
      const Pieces expected = ClipEveryDash(lines, dashes, *clip);
      GDashLineGenerator used = dashes;
      Pieces pieces;
      GClipDashedPolylinesToPolygon(lines.points.data(), lines.counts.data(), lines.counts.size(),
                                    used, *clip, pieces.points, pieces.counts);
      ASSERT_EQ(pieces.counts, expected.counts) << round;
      for (std::size_t i = 0; i < pieces.points.size(); ++i) {
        ASSERT_LT(pieces.points[i].Distance(expected.points[i]), 1e-12) << round << ' ' << i;
      }
    }
  }
}

TEST(ClipUtilLines, dashesOfALongLineKeepTheirPhase) {
  const GPolygon view(0, 0, 1000, 800);
  const double ulp = std::ldexp(1.0, 29 - 52);  // of 1e9
  const double pattern[] = {6, 3};
  for (const Vec2d& end : {Vec2d(5e8, 400), Vec2d(3e8 + 500, 4e8 + 400), Vec2d(500, 5e8)}) {
    const Vec2d begin = Vec2d(500, 400) * 2.0 - end;  // through the middle of the view
    GDashLineGenerator dashes(pattern);
    Pieces pieces;
    const unsigned int count = 2;
    const Vec2d line[] = {begin, end};
    GClipDashedPolylinesToPolygon(line, &count, 1, dashes, view, pieces.points, pieces.counts);
    EXPECT_GE(pieces.counts.size(), 88u) << end;
    EXPECT_LE(pieces.counts.size(), 113u) << end;
    const Vec2d along = (end - begin) / static_cast<double>((end - begin).Length());
    for (std::size_t i = 2; i + 2 < pieces.points.size(); ++i) {
      const double distance = along.Dot(pieces.points[i] - begin);
      const double phase = std::remainder(distance - (i % 2 == 0 ? 0.0 : 6.0), 9.0);
      EXPECT_NEAR(phase, 0.0, 4.0 * ulp) << end << i;
    }
    // What follows goes on in phase: the line is 1e9 or so long.
    std::vector<GLine2> next;
    dashes.Decompose(std::vector<Vec2d>{end, end + along * 30.0}, next);
    ASSERT_FALSE(next.empty());
    const double length = (end - begin).Length();
    const double first = std::fmod(length, 9.0);
    const double left = first < 6.0 ? 6.0 - first : 6.0;
    EXPECT_NEAR(next[0].GetBegin().Distance(next[0].GetEnd()), left, 4.0 * ulp) << end;
  }
  // Far from the view a line may have any number of entries, in it there is a limit.
  const double fine[] = {1e-9};
  GDashLineGenerator dashes(fine);
  Pieces pieces;
  const unsigned int count = 2;
  const Vec2d beside[] = {{-5e8, -1}, {5e8, -1}};
  GClipDashedPolylinesToPolygon(beside, &count, 1, dashes, view, pieces.points, pieces.counts);
  EXPECT_TRUE(pieces.counts.empty());
  const Vec2d across[] = {{-5e8, 1}, {5e8, 1}};
  EXPECT_THROW(
      GClipDashedPolylinesToPolygon(across, &count, 1, dashes, view, pieces.points, pieces.counts),
      Exception);
}

TEST(ClipUtilLines, refusesWhatIsNotThere) {
  const GPolygon square(0, 0, 4, 4);
  Pieces out;
  const auto toRect = [&](const Vec2d* points, const unsigned int* counts, std::size_t size) {
    GClipPolylinesToRect(points, counts, size, Box2d(0, 0, 1, 1), out.points, out.counts);
  };
  EXPECT_THROW(toRect(nullptr, LINE_SIZES.data(), 1), InternalErrorException);
  EXPECT_THROW(toRect(LINES.data(), nullptr, 1), InternalErrorException);
  EXPECT_THROW(toRect(LINES.data(), LINE_SIZES.data(), 0), InternalErrorException);
  EXPECT_THROW(
      GClipPolylinesToPolygon(nullptr, nullptr, 0, GLineClipPolygon(), out.points, out.counts),
      InternalErrorException);
  EXPECT_EQ(out, Pieces());
}

}  // namespace
}  // namespace shr
