// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Validity: a table of named faults; small polygons on lattices, where everything touches, against
// a search that compares all with all; what is made valid is valid and keeps its area, over all
// hard families; many rings in one point and many edges in one bundle.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <ostream>
#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/PolygonValidity.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/GPolygon2dTestSupport.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/polygons/ValidityOracle.h"

namespace shr {

void PrintTo(PolygonFault::Kind kind, std::ostream* stream) {
  for (const wchar_t* c = PolygonFaultText(kind); *c != 0; ++c) *stream << static_cast<char>(*c);
}

void PrintTo(const PolygonFault& fault, std::ostream* stream) {
  PrintTo(fault.kind, stream);
  *stream << " at " << fault.place << ", ring " << fault.ring << " of " << fault.polygon;
}

namespace test {
namespace {

using Kind = PolygonFault::Kind;

Ring2d BoxRing(double x0, double y0, double x1, double y1) {
  return {{x0, y0}, {x0, y1}, {x1, y1}, {x1, y0}, {x0, y0}};
}

Ring2d Hole(double x0, double y0, double x1, double y1) {
  Ring2d ring = BoxRing(x0, y0, x1, y1);
  std::reverse(ring.begin(), ring.end());
  return ring;
}

TEST(PolygonValidity, namedFaults) {
  const Ring2d box = BoxRing(0, 0, 10, 10);
  const double nan = std::nan("");
  const struct {
    const char* name;
    MultiPolygon2d model;
    std::optional<PolygonFault> fault;
  } rows[] = {
      {"nothing", {}, {}},
      {"empty polygon", {{{}, {}}}, {}},
      {"box", {{box, {}}}, {}},
      {"repeated points", {{{{0, 0}, {0, 0}, {0, 1}, {1, 1}, {1, 1}, {0, 0}}, {}}}, {}},
      {"hole touches in a vertex", {{box, {{{0, 5}, {5, 4}, {5, 6}, {0, 5}}}}}, {}},
      {"holes touch in a vertex", {{box, {Hole(1, 1, 3, 3), Hole(3, 3, 5, 5)}}}, {}},
      {"boxes touch in a vertex", {{box, {}}, {BoxRing(10, 10, 12, 12), {}}}, {}},
      {"island fills a hole but for slits",
       {{box, {Hole(2, 2, 8, 8)}}, {{{2, 5}, {5, 8}, {8, 5}, {5, 2}, {2, 5}}, {}}},
       {}},
      {"not finite",
       {{{{0, 0}, {0, nan}, {1, 1}, {0, 0}}, {}}},
       {{Kind::NotFinite, {0, nan}, 0, 0}}},
      {"open", {{box, {}}, {{{20, 0}, {20, 1}, {21, 1}}, {}}}, {{Kind::NotClosed, {21, 1}, 1, 0}}},
      {"two points", {{{{0, 0}, {1, 1}, {0, 0}}, {}}}, {{Kind::TooFewPoints, {0, 0}, 0, 0}}},
      {"one point", {{{{2, 3}, {2, 3}}, {}}}, {{Kind::TooFewPoints, {2, 3}, 0, 0}}},
      {"no area", {{{{0, 0}, {2, 2}, {1, 1}, {0, 0}}, {}}}, {{Kind::Spike, {0, 0}, 0, 0}}},
      {"spike",
       {{{{0, 0}, {0, 9}, {9, 9}, {9, 4}, {15, 4}, {9, 4}, {9, 0}, {0, 0}}, {}}},
       {{Kind::Spike, {15, 4}, 0, 0}}},
      {"figure of eight",
       {{{{0, 0}, {2, 2}, {2, 0}, {0, 2}, {0, 0}}, {}}},
       {{Kind::SelfCrossing, {1, 1}, 0, 0}}},
      {"figure of eight, crossing in a vertex",
       {{{{0, 0}, {1, 1}, {2, 2}, {2, 0}, {1, 1}, {0, 2}, {0, 0}}, {}}},
       {{Kind::SelfCrossing, {1, 1}, 0, 0}}},
      {"bow tie that only touches",
       {{{{0, 0}, {0, 2}, {1, 1}, {2, 2}, {2, 0}, {1, 1}, {0, 0}}, {}}},
       {{Kind::SelfTouch, {1, 1}, 0, 0}}},
      {"box that touches its own edge",
       {{{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {3, 0}, {2, 4}, {1, 0}, {0, 0}}, {}}},
       {{Kind::SelfTouch, {2, 4}, 0, 0}}},
      {"twice along a line",
       {{{{0, 0}, {0, 4}, {4, 4}, {4, 2}, {2, 2}, {2, 4}, {1, 4}, {1, 0}, {0, 0}}, {}}},
       {{Kind::SelfOverlap, {1, 4}, 0, 0}}},
      {"boxes cross",
       {{box, {}}, {BoxRing(5, 5, 15, 15), {}}},
       {{Kind::RingsCross, {5, 10}, 1, 0}}},
      {"hole crosses in vertices",
       {{box, {{{0, 5}, {5, 4}, {10, 5}, {12, 8}, {0, 5}}}}},
       {{Kind::RingsCross, {10, 5}, 0, 1}}},
      {"boxes side by side",
       {{box, {}}, {BoxRing(10, 2, 15, 8), {}}},
       {{Kind::RingsOverlap, {10, 2}, 1, 0}}},
      {"hole at the border", {{box, {Hole(0, 2, 5, 5)}}}, {{Kind::RingsOverlap, {0, 2}, 0, 1}}},
      {"one box twice", {{box, {}}, {box, {}}}, {{Kind::RingsOverlap, {0, 0}, 1, 0}}},
      {"hole outside", {{box, {Hole(20, 0, 21, 1)}}}, {{Kind::HoleOutside, {20, 0}, 0, 1}}},
      {"hole without a ring", {{{}, {Hole(1, 1, 2, 2)}}}, {{Kind::HoleOutside, {1, 1}, 0, 1}}},
      {"hole in a hole",
       {{box, {Hole(4, 4, 5, 5), Hole(2, 2, 8, 8)}}},
       {{Kind::HolesNested, {4, 4}, 0, 1}}},
      {"polygon in a polygon",
       {{BoxRing(2, 2, 8, 8), {}}, {box, {}}},
       {{Kind::PolygonsOverlap, {2, 2}, 0, 0}}},
      {"polygon in a hole in a hole of another",
       {{box, {Hole(1, 1, 9, 9)}}, {BoxRing(2, 2, 8, 8), {}}, {BoxRing(3, 3, 4, 4), {}}},
       {{Kind::PolygonsOverlap, {3, 3}, 2, 0}}},
      {"hole from side to side",
       {{box, {{{0, 5}, {5, 4}, {10, 5}, {5, 6}, {0, 5}}}}},
       {{Kind::InteriorDisconnected, {10, 5}, 0, 1}}},
      {"ring of holes",
       {{box,
         {Hole(2, 4, 4, 6),
          Hole(4, 6, 6, 8),
          {{6, 4}, {8, 4}, {8, 6}, {6, 6}, {6, 4}},
          Hole(4, 2, 6, 4)}}},
       {{Kind::InteriorDisconnected, {6, 6}, 0, 3}}},
      {"outer ring turns wrong", {{Hole(0, 0, 1, 1), {}}}, {{Kind::WrongTurn, {0, 0}, 0, 0}}},
      {"hole turns wrong", {{box, {BoxRing(1, 1, 2, 2)}}}, {{Kind::WrongTurn, {1, 1}, 0, 1}}},
  };
  for (const auto& row : rows) {
    const std::optional<PolygonFault> fault = FindFault(row.model);
    ASSERT_EQ(fault.has_value(), row.fault.has_value()) << row.name;
    EXPECT_EQ(IsValid(row.model), !fault.has_value()) << row.name;
    EXPECT_FALSE(FindFault(MakeValid(row.model))) << row.name;
    if (!fault) continue;
    EXPECT_EQ(fault->kind, row.fault->kind) << row.name;
    EXPECT_EQ(fault->polygon, row.fault->polygon) << row.name;
    EXPECT_EQ(fault->ring, row.fault->ring) << row.name;
    if (fault->kind == Kind::NotFinite) continue;
    EXPECT_EQ(fault->place, row.fault->place) << row.name;
  }
}

TEST(PolygonValidity, classesTakeTheirOwnIdeaOfHoles) {
  GPolygon contours(0.0, 0.0, 10.0, 10.0);
  contours.AddContours(GPolygon(2.0, 2.0, 8.0, 8.0));
  contours.AddContours(GPolygon(4.0, 4.0, 6.0, 6.0));
  EXPECT_TRUE(IsValid(contours));
  const PolygonFault overlap = {Kind::PolygonsOverlap, {2.0, 2.0}, 1, 0};
  EXPECT_EQ(FindFault(GPolygon2d(contours)), overlap);
  EXPECT_DOUBLE_EQ(MakeValid(contours).GetArea(), 68.0);
  EXPECT_DOUBLE_EQ(MakeValid(GPolygon2d(contours)).GetArea(), 100.0);
  EXPECT_EQ(MakeValid(GPolygon2d(contours)).GetNumRings(), 1u);

  const Points diamond = {{0.0, 5.0}, {5.0, 4.0}, {10.0, 5.0}, {5.0, 6.0}};
  GPolygon cut(0.0, 0.0, 10.0, 10.0);
  cut.AddContours(GPolygon(diamond));
  EXPECT_EQ(FindFault(cut), (PolygonFault{Kind::InteriorDisconnected, {10.0, 5.0}, 0, 1}));
  EXPECT_EQ(MakeValid(cut).GetNumContours(), 2u);
}

/// Returns rings on a lattice of the given size, simple more often than not.
Ring2d RandomRing(std::mt19937_64& random, int size) {
  const auto number = [&] { return static_cast<double>(random() % static_cast<unsigned>(size)); };
  const auto point = [&] { return Vec2d(number(), number()); };
  Ring2d ring;
  const auto kind = random() % 8;
  if (kind < 3) {
    ring = {point(), point(), point()};
  } else if (kind < 5) {
    const Vec2d a = point();
    const Vec2d b = point();
    ring = {a, {a.x, b.y}, b, {b.x, a.y}};
  } else if (kind < 6) {
    const Vec2d center = point();
    const double radius = 1.0 + number() / 3.0;
    ring = {center - Vec2d(std::floor(radius), 0.0), center + Vec2d(0.0, std::floor(radius)),
            center + Vec2d(std::floor(radius), 0.0), center - Vec2d(0.0, std::floor(radius))};
  } else {
    const auto count = 4 + random() % 3;
    for (std::size_t i = 0; i < count; ++i) ring.push_back(point());
  }
  ring.push_back(ring.front());
  return ring;
}

void Turn(Ring2d& ring, bool isHole) {
  double area = 0.0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    area += ring[i - 1].x * ring[i].y - ring[i].x * ring[i - 1].y;
  }
  if ((area > 0.0) != isHole) std::reverse(ring.begin(), ring.end());
}

MultiPolygon2d RandomModel(std::mt19937_64& random, int size) {
  MultiPolygon2d model(1 + random() % 3);
  for (Polygon2d& polygon : model) {
    const bool isAllOver = random() % 3 == 0;
    polygon.outer() = isAllOver ? BoxRing(0, 0, size - 1, size - 1) : RandomRing(random, size);
    Turn(polygon.outer(), false);
    const std::size_t holes = isAllOver ? random() % 4 : random() % 2;
    for (std::size_t i = 0; i < holes; ++i) {
      polygon.inners().push_back(RandomRing(random, size));
      if (random() % 12 != 0) Turn(polygon.inners().back(), true);
    }
  }
  return model;
}

void Scale(MultiPolygon2d& model, double factor) {
  const auto scale = [factor](Ring2d& ring) {
    for (Vec2d& point : ring) point = point * factor;
  };
  for (Polygon2d& polygon : model) {
    scale(polygon.outer());
    for (Ring2d& hole : polygon.inners()) scale(hole);
  }
}

TEST(PolygonValidity, agreesWithAComparisonOfAllWithAllOnLattices) {
  std::mt19937_64 random(1);
  int valid = 0;
  std::array<int, 14> kinds{};
  for (int i = 0; i < 20000; ++i) {
    const MultiPolygon2d model = RandomModel(random, 4 + i % 13);
    const std::optional<PolygonFault> fault = FindFault(model);
    ASSERT_EQ(!fault, IsValidByBruteForce(model)) << i;
    valid += fault ? 0 : 1;
    MultiPolygon2d scaled = model;
    const double factor = std::ldexp(1.0, i % 2 == 0 ? 1000 : -1000);
    Scale(scaled, factor);
    const std::optional<PolygonFault> same = FindFault(scaled);
    ASSERT_EQ(fault.has_value(), same.has_value()) << i;
    if (!fault) continue;
    ++kinds[static_cast<std::size_t>(fault->kind)];
    EXPECT_EQ(fault->kind, same->kind) << i;
    EXPECT_EQ(fault->place * factor, same->place) << i;
    const Polygon2d& polygon = model[fault->polygon];
    const Ring2d& ring = fault->ring == 0 ? polygon.outer() : polygon.inners()[fault->ring - 1];
    EXPECT_LT(DistanceToRing(ring, fault->place), 1e-14 * 16) << i;
  }
  EXPECT_GT(valid, 300);
  for (const Kind kind :
       {Kind::TooFewPoints, Kind::Spike, Kind::SelfCrossing, Kind::SelfOverlap, Kind::SelfTouch,
        Kind::RingsCross, Kind::RingsOverlap, Kind::HoleOutside, Kind::HolesNested,
        Kind::PolygonsOverlap, Kind::InteriorDisconnected, Kind::WrongTurn}) {
    EXPECT_GT(kinds[static_cast<std::size_t>(kind)], 0) << PolygonFaultText(kind);
  }
}

TEST(PolygonValidity, contoursAgreeWithAComparisonOfAllWithAllOnLattices) {
  std::mt19937_64 random(2);
  int valid = 0;
  for (int i = 0; i < 4000; ++i) {
    const MultiPolygon2d model = RandomModel(random, 4 + i % 13);
    const GPolygon contours(model);
    const bool isValid = IsValid(contours);
    ASSERT_EQ(isValid, AreContoursValidByBruteForce(model)) << i;
    valid += isValid ? 1 : 0;
    const GPolygon made = MakeValid(contours);
    EXPECT_EQ(FindFault(made), std::nullopt) << i;
    EXPECT_NEAR(made.GetArea(), contours.GetArea(), 1e-12) << i;
    EXPECT_EQ(FindFault(MakeValid(model)), std::nullopt) << i;
  }
  EXPECT_GT(valid, 300);
}

/// Returns by how much two areas may differ that the clipper has found for a polygon.
double AreaTolerance(const GPolygon2d& polygon) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, false);
  double largest = 0.0;
  for (const Vec2d& point : points) {
    largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
  }
  return 2.0 * 4.0 * GPC_SNAP * largest * PolygonPerimeter(points, counts) +
         1e-9 * polygon.GetArea();
}

class PolygonValidityFamilies : public testing::TestWithParam<CaseFamily> {};

TEST_P(PolygonValidityFamilies, whatIsMadeValidIs) {
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    std::mt19937_64 random(seed);
    BooleanCase pair = GetParam().make(random);
    pair.subject.insert(pair.subject.end(), pair.clip.begin(), pair.clip.end());
    GPolygon contours;
    for (const Points& contour : pair.subject) contours.AddContours(GPolygon(contour));
    EXPECT_EQ(FindFault(MakeValid(contours)), std::nullopt) << "seed " << seed;
    const GPolygon2d polygons = MakeGPolygon2d(pair.subject);
    const GPolygon2d made = MakeValid(polygons);
    EXPECT_EQ(FindFault(made), std::nullopt) << "seed " << seed;
    MultiPolygon2d model;
    made.GetMultiPolygon(model);
    EXPECT_EQ(FindFault(model), std::nullopt) << "seed " << seed;
    EXPECT_NEAR(made.GetArea(), polygons.GetArea(), AreaTolerance(polygons)) << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Families, PolygonValidityFamilies,
                         testing::ValuesIn(BooleanCaseFamilies()),
                         [](const auto& row) { return row.param.name; });

TEST(PolygonValidity, manyRingsInOnePointAndManyEdgesInABundle) {
  // Triangles round a point touch in it alone; a needle among them crosses.
  MultiPolygon2d spokes;
  constexpr int COUNT = 10000;
  for (int i = 0; i < COUNT; ++i) {
    const double y = 4.0 * i - 2.0 * COUNT;
    spokes.push_back({{{0, 0}, {1e6, y + 2.0}, {1e6, y}, {0, 0}}, {}});
  }
  EXPECT_EQ(FindFault(spokes), std::nullopt);
  spokes.push_back({{{-5, 0}, {0, 1}, {5, 0}, {0, -1}, {-5, 0}}, {}});
  ASSERT_TRUE(FindFault(spokes));
  EXPECT_EQ(FindFault(spokes)->kind, Kind::RingsCross);

  // Slivers one above the other, a few units in the last place apart.
  MultiPolygon2d bundle;
  double y = 1.0;
  for (int i = 0; i < COUNT; ++i) {
    const double top = std::nextafter(y, 2.0);
    bundle.push_back({{{-1e3, y}, {1e3, top}, {1e3, y}, {-1e3, y}}, {}});
    y = std::nextafter(top, 2.0);
  }
  EXPECT_EQ(FindFault(bundle), std::nullopt);
}

}  // namespace
}  // namespace test
}  // namespace shr
