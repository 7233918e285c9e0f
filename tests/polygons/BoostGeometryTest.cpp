// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every type as a model of its concept, in both directions where algorithms write; the model
// of a polygon with a hole; a copy into a model of Boost.

#include "shared/polygons/BoostGeometry.h"

#include <gtest/gtest.h>

#include <boost/geometry/algorithms/area.hpp>
#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/algorithms/distance.hpp>
#include <boost/geometry/algorithms/envelope.hpp>
#include <boost/geometry/algorithms/length.hpp>
#include <boost/geometry/algorithms/num_points.hpp>
#include <boost/geometry/algorithms/perimeter.hpp>
#include <boost/geometry/algorithms/within.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/strategies/strategies.hpp>

#include "shared/polygons/GPolygon2d.h"

namespace shr {
namespace {

namespace bg = boost::geometry;

TEST(BoostGeometry, measuresPointsLinesAndBoxes) {
  EXPECT_EQ(bg::distance(Vec2d(0, 0), Vec2d(3, 4)), 5.0);
  EXPECT_EQ(bg::distance(Vec3d(0, 0, 0), Vec3d(2, 3, 6)), 7.0);
  EXPECT_EQ(bg::distance(Vec2d(0, 5), GLine2(Vec2d(-1, 0), Vec2d(1, 0))), 5.0);
  const GPolyline river{{0, 0}, {3, 4}, {3, 10}};
  EXPECT_EQ(bg::length(river), river.GetLength());
  Box2d box;
  bg::envelope(river, box);
  EXPECT_EQ(box, river.GetBounds());
  EXPECT_EQ(bg::area(Box2d(0, 1, 2, 4)), 6.0);
  EXPECT_TRUE(bg::within(Vec2f(1, 2), Box2f(0, 1, 2, 4)));
}

TEST(BoostGeometry, takesPolygonsAsTheyAreStored) {
  Polygon2d frame;
  frame.outer() = {{0, 0}, {8, 0}, {8, 8}, {0, 8}, {0, 0}};
  frame.inners().push_back({{2, 2}, {2, 4}, {4, 4}, {4, 2}, {2, 2}});
  bg::correct(frame);
  EXPECT_EQ(frame.outer()[1], Vec2d(0, 8)) << "turned clockwise";
  MultiPolygon2d frames;
  frames.push_back(frame);
  const GPolygon2d polygon(frames);
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  EXPECT_EQ(bg::area(model), 60.0);
  EXPECT_EQ(bg::area(model), polygon.GetArea());
  EXPECT_EQ(bg::perimeter(model), polygon.GetPerimeter());
  EXPECT_EQ(bg::num_points(model), 10u);
  for (const Vec2d& point : {Vec2d(1, 1), Vec2d(3, 3), Vec2d(9, 1), Vec2d(0, 4)}) {
    EXPECT_EQ(bg::within(point, model), polygon.PointInside(point)) << point;
  }
  bg::model::multi_polygon<bg::model::polygon<Vec2d>> copy;
  CopyMultiPolygon(model, copy);
  EXPECT_EQ(bg::area(copy), 60.0);
}

}  // namespace
}  // namespace shr
