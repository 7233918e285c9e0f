// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: where dashes begin and end, around corners and at vertices; patterns with zeros, of odd
// length, of nothing; the phase between calls; interruptions by points that are no numbers; refused
// patterns and lines; the law that any cut of a line into calls draws the same length.

#include "shared/polygons/lines/GDashLineGenerator.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

using Points = std::vector<Vec2d>;
using Pieces = std::vector<GLine2>;

/// Pieces of a line along the x axis, from pairs of numbers.
Pieces OnAxis(std::initializer_list<std::pair<double, double>> ends) {
  Pieces pieces;
  for (const auto& [begin, end] : ends) pieces.emplace_back(Vec2d(begin, 0.0), Vec2d(end, 0.0));
  return pieces;
}

Points Axis(std::initializer_list<double> xs) {
  Points points;
  for (const double x : xs) points.emplace_back(x, 0.0);
  return points;
}

double TotalLength(const Pieces& pieces) {
  double length = 0.0;
  for (const GLine2& piece : pieces) length += piece.GetBegin().Distance(piece.GetEnd());
  return length;
}

TEST(GDashLineGenerator, entriesAreDrawnAndLeftOutInTurn) {
  const double nan = NAN;
  const struct {
    const char* name;
    std::vector<double> pattern;
    Points points;
    Pieces pieces;
  } rows[] = {
      {"dash and gap", {10, 5}, Axis({0, 30}), OnAxis({{0, 10}, {15, 25}})},
      {"a dash is cut by the end", {10, 5}, Axis({0, 18}), OnAxis({{0, 10}, {15, 18}})},
      {"around a corner", {10, 5}, {{0, 0}, {6, 0}, {6, 9}}, {{{0, 0}, {6, 0}}, {{6, 0}, {6, 4}}}},
      {"an entry ends at a vertex",
       {10, 5},
       Axis({0, 10, 20, 30}),
       OnAxis({{0, 10}, {15, 20}, {20, 25}})},
      {"an odd pattern turns the pen at its end", {2}, Axis({0, 7}), OnAxis({{0, 2}, {4, 6}})},
      {"three entries", {1, 2, 3}, Axis({0, 12}), OnAxis({{0, 1}, {3, 6}, {7, 9}})},
      {"a zero gap joins dashes", {2, 0}, Axis({0, 5}), OnAxis({{0, 2}, {2, 4}, {4, 5}})},
      {"a zero dash draws nothing", {0, 2}, Axis({0, 5}), {}},
      {"zeros turn the pen", {0, 0, 0, 1}, Axis({0, 5}), {}},
      {"a leading zero begins with a gap", {0, 1, 2}, Axis({0, 5}), OnAxis({{1, 3}, {3, 4}})},
      {"zeros alone", {0, 0, 0}, Axis({0, 5}), {}},
      {"no entry", {}, Axis({0, 5}), {}},
      {"one point", {10, 5}, Axis({0}), {}},
      {"no length", {10, 5}, Axis({3, 3, 3}), {}},
      {"repeated points", {2, 1}, Axis({0, 0, 1, 1, 4}), OnAxis({{0, 1}, {1, 2}, {3, 4}})},
      {"no number interrupts",
       {2, 1},
       Axis({0, 4, nan, 10, 12, 14}),
       OnAxis({{0, 2}, {3, 4}, {10, 12}, {13, 14}})},
      {"so does an infinity", {2, 1}, Axis({INFINITY, 0, 2, -INFINITY}), OnAxis({{0, 2}})},
      {"lengths whose squares overflow",
       {1e300, 1e300},
       Axis({0, 3e300}),
       OnAxis({{0, 1e300}, {2e300, 3e300}})},
      {"lengths whose squares vanish",
       {1e-300, 1e-300},
       Axis({0, 3e-300}),
       OnAxis({{0, 1e-300}, {2e-300, 3e-300}})},
  };
  for (const auto& row : rows) {
    GDashLineGenerator generator(row.pattern);
    Pieces pieces;
    generator.Decompose(row.points, pieces);
    ASSERT_EQ(pieces.size(), row.pieces.size()) << row.name;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      const double scale = 1e-14 * row.pieces[i].GetEnd().Length();
      EXPECT_LE(pieces[i].GetBegin().Distance(row.pieces[i].GetBegin()), scale) << row.name << i;
      EXPECT_LE(pieces[i].GetEnd().Distance(row.pieces[i].GetEnd()), scale) << row.name << i;
    }
  }
}

TEST(GDashLineGenerator, thePhaseIsKeptWhereALineGoesOn) {
  const double pattern[] = {10.0, 5.0};
  GDashLineGenerator generator(pattern, 2);
  EXPECT_EQ(generator.GetDashes(), std::vector<double>({10.0, 5.0}));
  const auto pieces = [&generator](const Points& points) {
    Pieces result;
    generator.Decompose(points, result);
    return result;
  };
  EXPECT_EQ(pieces(Axis({0, 7})), OnAxis({{0, 7}}));
  EXPECT_EQ(pieces(Axis({7, 30})), OnAxis({{7, 10}, {15, 25}}));
  GDashLineGenerator copy = generator;
  EXPECT_EQ(pieces(Axis({30, 42})), OnAxis({{30, 40}}));
  EXPECT_EQ(pieces(Axis({50, 62})), OnAxis({{50, 60}})) << "another beginning starts over";
  EXPECT_EQ(pieces(Axis({62})), Pieces()) << "so does a line without segments";
  EXPECT_EQ(pieces(Axis({62, 75})), OnAxis({{62, 72}}));
  generator.SetDashes(pattern, 1);
  EXPECT_EQ(pieces(Axis({75, 95})), OnAxis({{75, 85}})) << "so does a new pattern";
  Pieces copied;
  copy.Decompose(GPolyline{{30.0, 0.0}, {42.0, 0.0}}, copied);
  EXPECT_EQ(copied, OnAxis({{30, 40}}));
}

TEST(GDashLineGenerator, piecesAreHandedToFunctionsAndInSpace) {
  const double pattern[] = {2.0, 1.0};
  GDashLine3Generator generator(pattern);
  const Vec3d points[] = {{0.0, 0.0, 0.0}, {0.0, 0.0, 3.0}, {0.0, 4.0, 3.0}};
  std::vector<GLine3> called;
  generator.Decompose(
      points, 3,
      [](Vec3d begin, Vec3d end, void* user) {
        static_cast<std::vector<GLine3>*>(user)->emplace_back(begin, end);
      },
      &called);
  const std::vector<GLine3> expected{
      {{0, 0, 0}, {0, 0, 2}}, {{0, 0, 3}, {0, 2, 3}}, {{0, 3, 3}, {0, 4, 3}}};
  EXPECT_EQ(called, expected);
  std::vector<GLine3> appended = expected;
  generator.Decompose(points, 3, appended);
  EXPECT_EQ(appended.size(), 6u);
  const auto refuse = [](const Vec3d&, const Vec3d&) { throw std::runtime_error("full"); };
  EXPECT_THROW(generator.Decompose(std::span(points), refuse), std::runtime_error);
  appended.clear();
  generator.Decompose(std::span(&points[2], 1), appended);
  generator.Decompose(points, 3, appended);
  EXPECT_EQ(appended, expected);
}

TEST(GDashLineGenerator, badPatternsAndLinesAreRefused) {
  const double good[] = {2.0, 1.0};
  GDashLineGenerator generator(good);
  EXPECT_THROW(generator.SetDashes(nullptr, 1), InternalErrorException);
  EXPECT_THROW(GDashLineGenerator(nullptr, 2), InternalErrorException);
  for (const double bad :
       {-1.0, -DBL_MIN, static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
    const double pattern[] = {1.0, bad};
    EXPECT_THROW(generator.SetDashes(pattern), Exception) << bad;
  }
  EXPECT_EQ(generator.GetDashes(), std::vector<double>({2.0, 1.0}));
  Pieces pieces;
  EXPECT_THROW(generator.Decompose(nullptr, 2, pieces), InternalErrorException);
  EXPECT_THROW(generator.Decompose(Axis({0, 1, 1.1e8}), pieces), Exception);
  EXPECT_THROW(generator.Decompose(Axis({-1.5e308, 1.5e308}), pieces), Exception);
  const double tiny[] = {DBL_TRUE_MIN, 0.0};
  EXPECT_THROW(GDashLineGenerator(tiny).Decompose(Axis({0, 1}), pieces), Exception);
  EXPECT_TRUE(pieces.empty());
  generator.SetDashes(nullptr, 0);
  EXPECT_EQ(generator.GetDashes(), std::vector<double>({0.0}));
}

TEST(GDashLineGenerator, cutsIntoCallsDrawTheSameLength) {
  std::mt19937 random(12);
  std::uniform_real_distribution<double> anywhere(-100.0, 100.0);
  for (int round = 0; round < 60; ++round) {
    std::vector<double> pattern(1 + random() % 5);
    for (double& entry : pattern) entry = static_cast<double>(random() % 4) * 0.75;
    Points points(2 + random() % 20);
    for (Vec2d& point : points) point = Vec2d(anywhere(random), anywhere(random));
    Pieces whole, parts;
    GDashLineGenerator(pattern).Decompose(points, whole);
    GDashLineGenerator generator(pattern);
    const std::span<const Vec2d> line(points);
    for (std::size_t first = 0; first + 1 < line.size();) {
      const std::size_t count = std::min<std::size_t>(2 + random() % 4, line.size() - first);
      generator.Decompose(line.subspan(first, count), parts);
      first += count - 1;
    }
    ASSERT_EQ(whole, parts) << round;
    ASSERT_LE(TotalLength(whole), GPolyline(points).GetLength() * (1.0 + 1e-12)) << round;
  }
}

TEST(GDashLineGenerator, millionsOfSegmentsDoNotDrift) {
  const double pattern[] = {0.1, 0.2, 0.3, 0.4};
  GDashLineGenerator generator(pattern);
  Points line(1000001);
  for (std::size_t i = 0; i < line.size(); ++i) line[i].x = static_cast<double>(i) * 0x1p-10;
  double last = 0.0;
  generator.Decompose(line, Box2d(976.0, -1.0, 1000.0, 1.0),
                      [&](const Vec2d& begin, const Vec2d&) { last = begin.x; });
  std::vector<GLine2> next;
  generator.Decompose(Points{line.back(), line.back() + Vec2d(2.0, 0.0)}, next);
  EXPECT_NEAR(line.back().x, 976.5625, 0.0);
  // From 976.5625 on, 0.3 is drawn from 976.3 to 976.6, then 0.1 from 977.
  ASSERT_GE(next.size(), 2u);
  EXPECT_NEAR(next[0].GetEnd().x, 976.6, 2e-13);
  EXPECT_NEAR(next[1].GetBegin().x, 977.0, 2e-13);
  EXPECT_NEAR(last, 976.5625, 0.001) << "the last segment of the view";
}

TEST(GDashLineGenerator, thousandsOfDashesDoNotDrift) {
  const double pattern[] = {0.1, 0.2};
  GDashLineGenerator generator(pattern);
  double worst = 0.0;
  double count = 0.0;
  const Points line = Axis({0.0, 3e4});
  generator.Decompose(line, [&](const Vec2d& begin, const Vec2d&) {
    worst = std::max(worst, std::abs(begin.x - count * (0.1 + 0.2)));
    ++count;
  });
  EXPECT_NEAR(count, 1e5, 1.0);
  EXPECT_LE(worst, 1e-10);
}

}  // namespace
}  // namespace shr
