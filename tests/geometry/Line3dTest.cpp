// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: closest points against small steps beside them; boxes against points sampled along the
// line; tolerance of points and segments; triangles by weights of their corners, from both sides;
// parallel and degenerate input.

#include "shared/geometry/Line3d.h"

#include <gtest/gtest.h>

#include <random>

namespace shr {
namespace {

Vec3d RandomPoint(std::mt19937& random) {
  std::uniform_real_distribution<double> number(-5.0, 5.0);
  return Vec3d(number(random), number(random), number(random));
}

Vec3d At(const Line3d& line, double along) {
  return line.GetPosition() + line.GetDirection() * along;
}

TEST(Line3d, noPointsNearbyAreCloserThanTheClosest) {
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    const Line3d a(RandomPoint(random), RandomPoint(random));
    const Line3d b(RandomPoint(random), RandomPoint(random));
    Vec3d onA;
    Vec3d onB;
    ASSERT_TRUE(a.GetClosestPoints(b, onA, onB));
    const double tolerance = 1e-12 * (1.0 + onA.Length() + onB.Length());
    ASSERT_LT(a.GetClosestPoint(onB).Distance(onA), tolerance * 1e3);
    ASSERT_LT(b.GetClosestPoint(onA).Distance(onB), tolerance * 1e3);
    const Vec3d p = RandomPoint(random);
    const Vec3d foot = a.GetClosestPoint(p);
    ASSERT_NEAR((p - foot).Dot(a.GetDirection()), 0.0, 1e-13);
    ASSERT_LT((foot - a.GetPosition()).Cross(a.GetDirection()).Length(), 1e-13);
  }
  const Line3d a(Vec3d::ZERO, Vec3d(1.0, 2.0, 3.0));
  const Line3d parallel(Vec3d::ONE, Vec3d::ONE + a.GetDirection() * -7.0);
  Vec3d onA(9.0, 9.0, 9.0);
  Vec3d onB;
  EXPECT_FALSE(a.GetClosestPoints(parallel, onA, onB));
  EXPECT_EQ(onA, Vec3d(9.0, 9.0, 9.0));
  EXPECT_TRUE(std::isnan(Line3d(Vec3d::ONE, Vec3d::ONE).GetDirection().x));
}

TEST(Line3d, partInsideABoxLiesBetweenEntryAndExit) {
  std::mt19937 random(2);
  int hits = 0;
  for (int i = 0; i < 300; ++i) {
    Box3d box(RandomPoint(random), RandomPoint(random));
    box.Normalize();
    Vec3d target = RandomPoint(random);
    Line3d line(RandomPoint(random), target);
    if (i % 3 == 0) line.SetValue(target, target + (i % 2 == 0 ? Vec3d::UNIT_Y : -Vec3d::UNIT_Z));
    Vec3d entry;
    Vec3d exit;
    const bool isHit = line.Intersect(box, entry, exit);
    hits += isHit;
    const double from = (entry - line.GetPosition()).Dot(line.GetDirection());
    const double to = (exit - line.GetPosition()).Dot(line.GetDirection());
    for (double along = -20.0; along < 20.0; along += 0.037) {
      const bool isBetween = isHit && from <= along && along <= to;
      ASSERT_EQ(box.Contains(At(line, along)), isBetween) << box << line.GetPosition() << along;
    }
    ASSERT_EQ(line.Intersect(box, 0.0), isHit);
    ASSERT_TRUE(!isHit || line.Intersect(box, 0.5));
  }
  EXPECT_GT(hits, 50);
  EXPECT_LT(hits, 250);
  Vec3d entry;
  Vec3d exit;
  const Box3d unit(0.0, 0.0, 0.0, 1.0, 1.0, 1.0);
  const Line3d edge(Vec3d(1.0, 1.0, -5.0), Vec3d(1.0, 1.0, 5.0));
  EXPECT_TRUE(edge.Intersect(unit, entry, exit));
  EXPECT_EQ(entry, Vec3d(1.0, 1.0, 0.0));
  EXPECT_EQ(exit, Vec3d::ONE);
  EXPECT_FALSE(edge.Intersect(Box3d(), entry, exit));
  EXPECT_FALSE(Line3d(Vec3d(1.5, 0.0, 0.0), Vec3d(1.5, 1.0, 0.0)).Intersect(unit, 0.25));
  EXPECT_TRUE(Line3d(Vec3d(1.5, 0.0, 0.0), Vec3d(1.5, 1.0, 0.0)).Intersect(unit, 0.5));
}

TEST(Line3d, toleranceIsTheDistanceFromTheLine) {
  const Line3d line(Vec3d::ZERO, Vec3d::UNIT_X);
  EXPECT_TRUE(line.Intersect(5.0, Vec3d(-100.0, 3.0, 4.0)));
  EXPECT_FALSE(line.Intersect(4.99, Vec3d(-100.0, 3.0, 4.0)));
  const struct {
    const char* name;
    Vec3d begin;
    Vec3d end;
    double tolerance;
    bool isHit;
    Vec3d closest;
  } rows[] = {
      {"inside", {2.0, -1.0, 1.0}, {2.0, 3.0, 1.0}, 1.0, true, {2.0, 0.0, 1.0}},
      {"too far", {2.0, -1.0, 1.0}, {2.0, 3.0, 1.0}, 0.9, false, {}},
      {"end", {2.0, 3.0, 0.0}, {4.0, 1.0, 0.0}, 1.0, true, {4.0, 1.0, 0.0}},
      {"parallel", {2.0, 1.0, 0.0}, {4.0, 1.0, 0.0}, 1.0, true, {2.0, 1.0, 0.0}},
      {"one point", {2.0, 1.0, 0.0}, {2.0, 1.0, 0.0}, 1.0, true, {2.0, 1.0, 0.0}},
  };
  for (const auto& row : rows) {
    Vec3d closest;
    EXPECT_EQ(line.Intersect(row.tolerance, row.begin, row.end, closest), row.isHit) << row.name;
    EXPECT_LT(closest.Distance(row.closest), 1e-15) << row.name;
  }
}

TEST(Line3d, triangleIsMetWhereTheWeightsOfItsCornersSay) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> weight(-0.5, 1.5);
  for (int i = 0; i < 500; ++i) {
    const Vec3d a = RandomPoint(random);
    const Vec3d b = RandomPoint(random);
    const Vec3d c = RandomPoint(random);
    const double weightB = weight(random);
    const double weightC = weight(random);
    const Vec3d target = a + (b - a) * weightB + (c - a) * weightC;
    const Vec3d eye = RandomPoint(random);
    Vec3d hit;
    bool isFront = false;
    const bool isInside = weightB >= 0.0 && weightC >= 0.0 && weightB + weightC <= 1.0;
    ASSERT_EQ(Line3d(eye, target).Intersect(a, b, c, hit, isFront), isInside);
    if (!isInside) continue;
    ASSERT_LT(hit.Distance(target), 1e-11);
    ASSERT_EQ(isFront, (b - a).Cross(c - a).Dot(target - eye) < 0.0);
  }
  Vec3d hit;
  bool isFront = false;
  const Line3d line(Vec3d(0.0, 0.0, 1.0), Vec3d::ZERO);
  EXPECT_TRUE(line.Intersect(Vec3d::ZERO, Vec3d::UNIT_X, Vec3d::UNIT_Y, hit, isFront));
  EXPECT_TRUE(isFront);
  EXPECT_FALSE(line.Intersect(Vec3d::ZERO, Vec3d::UNIT_X, Vec3d::UNIT_X * 2.0, hit, isFront));
  EXPECT_FALSE(line.Intersect(Vec3d::ZERO, Vec3d::UNIT_X, Vec3d::UNIT_Z, hit, isFront));
}

}  // namespace
}  // namespace shr
