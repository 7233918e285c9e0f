// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Simplification of coverages: small ones whose outcome is known; laws on tilings with ragged
// borders, on lattices where lines and equal areas are the rule, and on the countries of the map:
// a point stays in all of its rings or in none, borders meet in points only (all pairs of edges,
// decided exactly), the area of a gapless tiling does not change.

#include "shared/polygons/CoverageSimplifier.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr::test {
namespace {

using Cells = std::vector<GPolygon2d>;
using Key = std::pair<double, double>;
using Edge = std::pair<Key, Key>;

Key KeyOf(const Vec2d& point) {
  return {point.x + 0.0, point.y + 0.0};
}

std::vector<Points> RingsOf(const Cells& cells) {
  std::vector<Points> rings;
  for (const GPolygon2d& cell : cells) {
    Points points;
    Counts counts;
    cell.GetPolyPolygon(points, counts, true);
    std::size_t first = 0;
    for (const unsigned int count : counts) {
      rings.emplace_back(&points[first], &points[first] + count);
      first += count;
    }
  }
  return rings;
}

std::set<Key> KeysOf(const Points& ring) {
  std::set<Key> keys;
  for (const Vec2d& point : ring) keys.insert(KeyOf(point));
  return keys;
}

std::size_t CountPoints(const Cells& cells) {
  std::size_t count = 0;
  for (const GPolygon2d& cell : cells) count += cell.GetTotalVertexCount();
  return count;
}

/// In order, each once.
std::vector<Edge> EdgesOf(const Cells& cells) {
  std::vector<Edge> edges;
  for (const Points& ring : RingsOf(cells)) {
    for (std::size_t i = 1; i < ring.size(); ++i) {
      const auto [low, high] = std::minmax({KeyOf(ring[i - 1]), KeyOf(ring[i])});
      if (low != high) edges.emplace_back(low, high);
    }
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  return edges;
}

/// True when two different edges have a point in common that is no end of both.
bool Cross(const Edge& e, const Edge& f) {
  const auto at = [](const Key& key) { return Vec2d(key.first, key.second); };
  const auto turn = [&](const Key& a, const Key& b, const Key& c) {
    return OrientationSign(at(a), at(b), at(c));
  };
  const auto holds = [&](const Edge& edge, const Key& p) {
    if (p == edge.first || p == edge.second || turn(edge.first, edge.second, p) != 0) return false;
    const auto [yLow, yHigh] = std::minmax(edge.first.second, edge.second.second);
    return edge.first.first <= p.first && p.first <= edge.second.first && yLow <= p.second &&
           p.second <= yHigh;
  };
  if (holds(e, f.first) || holds(e, f.second) || holds(f, e.first) || holds(f, e.second)) {
    return true;
  }
  return turn(e.first, e.second, f.first) * turn(e.first, e.second, f.second) < 0 &&
         turn(f.first, f.second, e.first) * turn(f.first, f.second, e.second) < 0;
}

/// All pairs whose ranges of x meet.
std::size_t CountCrossings(const Cells& cells) {
  const std::vector<Edge> edges = EdgesOf(cells);
  std::size_t count = 0;
  for (auto e = edges.begin(); e != edges.end(); ++e) {
    for (auto f = std::next(e); f != edges.end() && f->first.first <= e->second.first; ++f) {
      const auto [eLow, eHigh] = std::minmax(e->first.second, e->second.second);
      const auto [fLow, fHigh] = std::minmax(f->first.second, f->second.second);
      count += eLow <= fHigh && fLow <= eHigh && Cross(*e, *f);
    }
  }
  return count;
}

/// Rings correspond, each a part of its original in the same order and of the same turn; a point is
/// in all of its rings or in none; points that three edges meet in stay.
void CheckIsPart(const Cells& before, const Cells& after) {
  const std::vector<Points> from = RingsOf(before);
  const std::vector<Points> to = RingsOf(after);
  ASSERT_EQ(before.size(), after.size());
  ASSERT_EQ(from.size(), to.size());
  std::map<Key, std::set<Key>> neighbors;
  for (const auto& [a, b] : EdgesOf(before)) {
    neighbors[a].insert(b);
    neighbors[b].insert(a);
  }
  std::set<Key> kept;
  for (const Points& ring : to) kept.merge(KeysOf(ring));
  for (const auto& [point, around] : neighbors) {
    EXPECT_TRUE(around.size() <= 2 || kept.contains(point)) << point.first << ' ' << point.second;
  }
  for (std::size_t i = 0; i < from.size(); ++i) {
    Points expected;
    for (const Vec2d& point : from[i]) {
      if (kept.contains(KeyOf(point))) expected.push_back(point);
    }
    if (expected.front() != expected.back()) expected.push_back(expected.front());
    ASSERT_EQ(expected, to[i]) << "ring " << i;
    EXPECT_GE(to[i].size(), 4u) << "ring " << i;
    EXPECT_GT(PolygonArea(from[i]) * PolygonArea(to[i]), 0.0) << "ring " << i;
  }
}

/// Points along an edge that wind about it within 45 degrees; the same both ways.
void AddRagged(const Vec2d& a, const Vec2d& b, int depth, std::mt19937_64& random, Points& line) {
  if (depth == 0) return;
  std::uniform_real_distribution<double> spread(-0.12, 0.12);
  const double offset = spread(random);
  const Vec2d middle = (a + b) * 0.5 + Vec2d(a.y - b.y, b.x - a.x) * offset;
  AddRagged(a, middle, depth - 1, random, line);
  line.push_back(middle);
  AddRagged(middle, b, depth - 1, random, line);
}

Points BorderBetween(const Vec2d& a, const Vec2d& b, int depth, bool isInner) {
  const bool isTurned = KeyOf(b) < KeyOf(a);
  const Vec2d low = isTurned ? b : a;
  const Vec2d high = isTurned ? a : b;
  std::mt19937_64 random(static_cast<std::uint64_t>(low.x * 64 + low.y * 4096 + high.x));
  Points line;
  if (isInner) AddRagged(low, high, depth, random, line);
  if (isTurned) std::reverse(line.begin(), line.end());
  line.insert(line.begin(), a);
  return line;
}

/// A square of size x size squares with ragged borders inside, dealt out to `owners` cells.
Cells MakeTiles(int size, int depth, std::size_t owners) {
  Cells cells(owners);
  for (int i = 0; i < size * size; ++i) {
    const double x = i % size;
    const double y = i / size;
    const Vec2d corners[] = {{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}};
    Points ring;
    for (int side = 0; side < 4; ++side) {
      const Vec2d a = corners[side];
      const Vec2d b = corners[(side + 1) % 4];
      const bool isOuter =
          (a.x == b.x && (a.x == 0 || a.x == size)) || (a.y == b.y && (a.y == 0 || a.y == size));
      const Points border = BorderBetween(a, b, depth, !isOuter);
      ring.insert(ring.end(), border.begin(), border.end());
    }
    cells[static_cast<std::size_t>(i) % owners].AddContours(GPolygon2d(ring));
  }
  return cells;
}

/// Simple polygons on a small lattice, one a cell of a grid, and each once more as the hole of a
/// neighbour's frame: touching, collinear and of equal areas throughout.
Cells MakeLatticeCells(std::mt19937_64& random) {
  MultiPolygon2d frame(1);
  Cells cells(1);
  const int SIZE = 6;
  frame[0].outer() = {{-1, -1}, {-1, 20}, {20, 20}, {20, -1}, {-1, -1}};
  for (int k = 0; k < 9; ++k) {
    const Vec2d origin(k % 3 * 6.0, k / 3 * 6.0);
    // Columns of different heights above and below a line.
    Points top, bottom;
    for (int i = 0; i < SIZE; ++i) {
      top.push_back(origin + Vec2d(i, 3.0 + static_cast<double>(random() % 3)));
      bottom.push_back(origin + Vec2d(i, 2.0 - static_cast<double>(random() % 3)));
    }
    Points ring(bottom);
    ring.insert(ring.end(), top.rbegin(), top.rend());
    cells.push_back(GPolygon2d(ring));
    ring.push_back(ring.front());
    frame[0].inners().emplace_back(ring.begin(), ring.end());
  }
  cells[0] = GPolygon2d(frame);
  return cells;
}

Cells ReadCountries(const char* file) {
  Cells cells;
  std::string name;
  for (const Outline& outline : ReadOutlines(file)) {
    if (cells.empty() || outline.name != name) cells.emplace_back();
    name = outline.name;
    cells.back().AddContours(GPolygon2d(outline.points));
  }
  return cells;
}

TEST(CoverageSimplifier, knownOutcomes) {
  const Points square = {{0, 0}, {0, 2}, {2, 2}, {2, 0}};
  const Points middles = {{0, 0}, {0, 1}, {0, 2}, {1, 2}, {2, 2}, {2, 1}, {2, 0}, {1, 0}};
  const Points bump = {{0, 0}, {0, 2}, {1, 2.1}, {2, 2}, {2, 0}};
  const Points nearly = {{0, 0}, {0, 2}, {1, std::nextafter(2.0, 3.0)}, {2, 2}, {2, 0}};
  const Points repeated = {{0, 0}, {0, 0}, {0, 2}, {2, 2}, {2, 2}, {2, 2}, {2, 0}};
  const struct {
    const char* name;
    Points ring;
    double tolerance;
    std::size_t points;  // stored
  } rows[] = {
      {"a square stays", square, 0.0, 5},
      {"collinear points go at 0", middles, 0.0, 5},
      {"a bump of 0.1 stays below its area", bump, 0.0999, 6},
      {"and goes at it", bump, 0.1000001, 5},
      {"one ulp off the line stays at 0", nearly, 0.0, 6},
      {"one ulp off the line goes", nearly, 1e-12, 5},
      {"repeated points go", repeated, 0.0, 5},
      {"three points stay whatever is asked", middles, HUGE_VAL, 4},
      {"smallest numbers", {{0, 0}, {0, 5e-324}, {5e-324, 5e-324}, {5e-324, 0}}, 0.0, 5},
      {"largest numbers",
       {{-1e308, -1e308}, {-1e308, 1e308}, {1e308, 1e308}, {1e308, -1e308}},
       0.0,
       5},
  };
  for (const auto& row : rows) {
    const Cells out = SimplifyCoverage(Cells{GPolygon2d(row.ring)}, row.tolerance);
    ASSERT_EQ(1u, out.size());
    EXPECT_EQ(row.points, out[0].GetTotalVertexCount()) << row.name;
  }
}

TEST(CoverageSimplifier, aBorderOfTwoIsSimplifiedOnce) {
  const Points left = {{0, 0}, {0, 4}, {4, 4}, {4.1, 3}, {3.9, 2}, {4.2, 1}, {4, 0}};
  const Points right = {{4, 4}, {8, 4}, {8, 0}, {4, 0}, {4.2, 1}, {3.9, 2}, {4.1, 3}};
  const Cells cells = {GPolygon2d(left), GPolygon2d(right)};
  const Cells out = SimplifyCoverage(cells, 1.0);
  CheckIsPart(cells, out);
  const std::vector<Points> rings = RingsOf(out);
  // Only the corners, of which two are nodes.
  EXPECT_EQ(5u, rings[0].size());
  EXPECT_EQ(5u, rings[1].size());
  // The corners that are no nodes go, too, but no cell becomes flat: two borders of the same two
  // nodes do not fall into one.
  const Cells least = SimplifyCoverage(cells, HUGE_VAL);
  CheckIsPart(cells, least);
  EXPECT_EQ(0u, CountCrossings(least));
  EXPECT_EQ(8u, CountPoints(least));
}

TEST(CoverageSimplifier, aPointInTheTriangleKeepsIt) {
  const Points bay = {{0, 0}, {0, 10}, {4, 10}, {5, 8}, {6, 10}, {10, 10}, {10, 0}};
  const Points island = {{4.9, 9.0}, {4.9, 9.5}, {5.1, 9.5}};
  const Cells cells = {GPolygon2d(bay), GPolygon2d(island)};
  Cells out = SimplifyCoverage(cells, 2.5);
  EXPECT_TRUE(KeysOf(RingsOf(out)[0]).contains(Key(5, 8)));
  out[0].Intersection(out[1]);
  EXPECT_EQ(0u, out[0].GetNumContours());
  EXPECT_EQ(5u, SimplifyCoverage(Cells{cells[0]}, 2.5)[0].GetTotalVertexCount());
  // The largest polygon of a cell is no island to be left out, a second one is.
  EXPECT_EQ(1u, SimplifyCoverage(cells, 2.5, 1.0)[1].GetNumContours());
  Cells one = {cells[0]};
  one[0].AddContours(cells[1]);
  EXPECT_EQ(2u, SimplifyCoverage(one, 2.5, 0.0499)[0].GetNumContours());
  EXPECT_EQ(5u, SimplifyCoverage(one, 2.5, 0.0501)[0].GetTotalVertexCount());
}

TEST(CoverageSimplifier, tilesStayGapless) {
  for (const auto& [size, depth, owners] :
       {std::tuple(2, 6, 4u), std::tuple(5, 5, 7u), std::tuple(8, 4, 64u), std::tuple(7, 0, 5u)}) {
    const Cells cells = MakeTiles(size, depth, owners);
    ASSERT_EQ(0u, CountCrossings(cells));
    for (const double tolerance : {0.0, 1e-4, 1e-3, 0.01, 0.1, HUGE_VAL}) {
      SCOPED_TRACE(testing::Message() << size << ' ' << depth << ' ' << tolerance);
      const Cells out = SimplifyCoverage(cells, tolerance);
      CheckIsPart(cells, out);
      EXPECT_EQ(0u, CountCrossings(out));
      if (tolerance == HUGE_VAL) continue;  // corners of the whole go, too
      double sum = 0.0;
      for (const GPolygon2d& cell : out) sum += cell.GetArea();
      EXPECT_NEAR(size * size, sum, 1e-9);
      EXPECT_NEAR(size * size, GPolygon2d::Unite(out).GetArea(), 1e-9);
    }
  }
}

TEST(CoverageSimplifier, latticesStayInOrder) {
  std::mt19937_64 random(20);
  for (int round = 0; round < 60; ++round) {
    const Cells cells = MakeLatticeCells(random);
    if (CountCrossings(cells) != 0) continue;
    for (const double tolerance : {0.0, 0.5, 1.0, 3.0, HUGE_VAL}) {
      SCOPED_TRACE(testing::Message() << round << ' ' << tolerance);
      const Cells out = SimplifyCoverage(cells, tolerance);
      CheckIsPart(cells, out);
      EXPECT_EQ(0u, CountCrossings(out));
      if (tolerance == HUGE_VAL) continue;  // corners of the whole go, too
      double sum = 0.0;
      for (const GPolygon2d& cell : out) sum += cell.GetArea();
      EXPECT_EQ(21.0 * 21.0, sum);
    }
  }
}

TEST(CoverageSimplifier, countriesKeepTheirBorders) {
  const Cells countries = ReadCountries("countries-50m.txt");
  for (const double tolerance : {0.0, 0.02, HUGE_VAL}) {
    SCOPED_TRACE(tolerance);
    const Cells out = SimplifyCoverage(countries, tolerance);
    CheckIsPart(countries, out);
    EXPECT_EQ(0u, CountCrossings(out));
    if (tolerance != 0.0) continue;
    const std::vector<Points> from = RingsOf(countries);
    const std::vector<Points> to = RingsOf(out);
    for (std::size_t i = 0; i < from.size(); ++i) {
      const double area = PolygonArea(from[i]);
      EXPECT_NEAR(area, PolygonArea(to[i]), 1e-12 * std::abs(area)) << i;
    }
  }
}

TEST(CoverageSimplifier, reachesANumberOfPoints) {
  const Cells countries = ReadCountries("countries-110m.txt");
  const std::size_t least = CountPoints(SimplifyCoverage(countries, HUGE_VAL));
  Cells larger = countries;
  for (const std::size_t most :
       {CountPoints(countries), std::size_t{9000}, std::size_t{4321}, least, std::size_t{0}}) {
    const Cells out = SimplifyCoverageToCount(countries, most);
    EXPECT_LE(CountPoints(out), std::max(most, least));
    // A point of a common border counts on both sides.
    EXPECT_GE(CountPoints(out) + 1, std::min(most, CountPoints(countries)));
    CheckIsPart(larger, out);
    larger = out;
  }
}

TEST(CoverageSimplifier, theOrderOfTheCellsMakesNoDifference) {
  Cells cells = ReadCountries("countries-110m.txt");
  const Cells expected = SimplifyCoverage(cells, 0.05);
  std::reverse(cells.begin(), cells.end());
  Cells out = SimplifyCoverage(cells, 0.05);
  std::reverse(out.begin(), out.end());
  EXPECT_EQ(RingsOf(expected), RingsOf(out));
}

TEST(CoverageSimplifier, degenerateCellsStay) {
  EXPECT_TRUE(SimplifyCoverage({}, 1.0).empty());
  const double nan = std::nan("");
  const Points square = {{0, 0}, {0, 2}, {1, 2}, {2, 2}, {2, 0}};
  const Points around = {{1, 2}, {nan, 5}, {2, 2}, {7, HUGE_VAL}, {0, 2}};
  const Points spike = {{0, 0}, {0, 4}, {0, 6}, {0, 4}, {4, 4}, {4, 0}};
  const Points line = {{10, 0}, {11, 0}, {12, 0}};
  const Points point = {{5, 5}};
  const Points pair = {{5, 5}, {6, 6}, {5, 5}, {6, 6}};
  Cells cells = {GPolygon2d(), GPolygon2d(square), GPolygon2d(around), GPolygon2d(point),
                 GPolygon2d(pair)};
  Cells out = SimplifyCoverage(cells, HUGE_VAL);
  ASSERT_EQ(cells.size(), out.size());
  EXPECT_EQ(0u, out[0].GetNumContours());
  // The points that the ring of odd numbers shares stay.
  const std::set<Key> kept = KeysOf(RingsOf({out[1]})[0]);
  for (const Key& key : {Key(1, 2), Key(2, 2), Key(0, 2)}) EXPECT_TRUE(kept.contains(key));
  for (std::size_t i = 2; i < cells.size(); ++i) {
    EXPECT_EQ(cells[i].GetTotalVertexCount(), out[i].GetTotalVertexCount()) << i;
  }
  out = SimplifyCoverage(Cells{GPolygon2d(spike)}, 1.0);
  EXPECT_EQ(GPolygon2d(spike).GetTotalVertexCount(), out[0].GetTotalVertexCount());
  EXPECT_GE(SimplifyCoverage(Cells{GPolygon2d(line)}, HUGE_VAL)[0].GetTotalVertexCount(), 3u);
  // The same ring twice: all of it is shared, and no point is a node.
  const Cells twice = SimplifyCoverage(Cells{GPolygon2d(square), GPolygon2d(square)}, 0.0);
  EXPECT_EQ(5u, twice[0].GetTotalVertexCount());
  EXPECT_EQ(RingsOf({twice[0]}), RingsOf({twice[1]}));
  // A ring that another one holds one after the other: every point lies between the same two.
  EXPECT_EQ(4u, SimplifyCoverage(twice, HUGE_VAL)[1].GetTotalVertexCount());
  for (const double bad : {-1.0, nan, -HUGE_VAL}) {
    const auto simplify = [&] { SimplifyCoverage(cells, bad); };
    const auto drop = [&] { SimplifyCoverage(cells, 1.0, bad); };
    EXPECT_THROW(simplify(), Exception);
    EXPECT_THROW(drop(), Exception);
  }
}

}  // namespace
}  // namespace shr::test
