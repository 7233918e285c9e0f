// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: polylines clipped to a box, to a polygon that is one, to any polygon in both classes;
// dashes clipped the same ways, with the length that is drawn inside; arguments that are not there.

#include "shared/polygons/ClipUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
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
