// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the ways to make a polyline; its conversion to a span; length and bounds down to nothing.

#include "shared/polygons/GPolyline.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace shr {
namespace {

TEST(GPolyline, isMadeFromPointsOfAnyKind) {
  const std::vector<Vec2d> points{{0.0, 0.0}, {3.0, 4.0}, {3.0, 10.0}};
  GPolyline line{{0.0, 0.0}, {3.0, 4.0}};
  line.push_back({3.0, 10.0});
  EXPECT_EQ(line, GPolyline(points));
  EXPECT_EQ(line, GPolyline(points.data(), points.size()));
  EXPECT_EQ(line, GPolyline(std::span(points)));
  EXPECT_NE(line, GPolyline(points.data(), 2));
  const std::span<const Vec2d> span = line;
  EXPECT_EQ(span.data(), line.data());
  EXPECT_EQ(span.size(), 3u);
}

TEST(GPolyline, isAVectorOfPoints) {
  GPolyline line(2, Vec2d(1.0, 1.0));
  line.emplace_back(2.0, 3.0);
  line.insert(line.begin() + 1, {{5.0, 5.0}, {6.0, 6.0}});
  line.erase(line.begin());
  EXPECT_EQ(line, (GPolyline{{5.0, 5.0}, {6.0, 6.0}, {1.0, 1.0}, {2.0, 3.0}}));
  line.pop_back();
  line.resize(4, Vec2d(9.0, 9.0));
  EXPECT_EQ(line.front(), Vec2d(5.0, 5.0));
  EXPECT_EQ(line.back(), Vec2d(9.0, 9.0));
  EXPECT_EQ(*line.rbegin(), line.at(3));
  EXPECT_THROW(line.at(4), std::out_of_range);
  GPolyline other;
  other.assign(line.cbegin(), line.cend() - 1);
  other.swap(line);
  EXPECT_EQ(line.size(), 3u);
  EXPECT_GE(other.capacity(), 4u);
  const std::vector<Vec2d>& points = other;
  EXPECT_EQ(points.size(), 4u);
}

TEST(GPolyline, knowsItsLengthAndBounds) {
  GPolyline line{{0.0, 0.0}, {3.0, 4.0}, {3.0, 4.0}, {3.0, 10.0}};
  EXPECT_EQ(line.GetLength(), 11.0);
  EXPECT_EQ(line.GetBounds(), Box2d(0.0, 0.0, 3.0, 10.0));
  line.clear();
  EXPECT_TRUE(line.empty() && line == GPolyline(nullptr, 0));
  EXPECT_EQ(line.GetLength(), 0.0);
  EXPECT_TRUE(line.GetBounds().IsDegenerate());
}

}  // namespace
}  // namespace shr
