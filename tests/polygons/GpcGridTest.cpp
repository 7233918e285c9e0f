// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The pixel in which two edges of the clipper's grid cross, beside whole numbers of any length:
// edges of all lengths, in bundles of any width, short ones, and pencils through about one point.

#include "shared/polygons/clipper/GpcGrid.h"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <cstdlib>
#include <random>
#include <utility>

namespace shr::gpc {
namespace {

using Whole = boost::multiprecision::cpp_int;

constexpr std::int64_t MOST = std::int64_t{1} << GRID_BITS;

class RandomEdges {
public:
  std::int64_t Within(std::int64_t most) {
    return static_cast<std::int64_t>(random_() % (2 * static_cast<std::uint64_t>(most) + 1)) - most;
  }
  std::int64_t Power(int most) {
    return std::int64_t{1} << random_() % static_cast<unsigned>(most);
  }
  GridPoint Near(const GridPoint& point, std::int64_t most) {
    return {point.x + Within(most), point.y + Within(most)};
  }
  GridPoint Anywhere() { return Near({0, 0}, MOST); }

private:
  std::mt19937_64 random_{7};
};

struct Ends {
  GridPoint a0, a1, b0, b1;

  bool AreOnGrid() const {
    for (const GridPoint& point : {a0, a1, b0, b1}) {
      if (std::abs(point.x) > MOST || std::abs(point.y) > MOST) return false;
    }
    return !(a0 == a1) && !(b0 == b1);
  }
};

Ends Anywhere(RandomEdges& random) {
  return {random.Anywhere(), random.Anywhere(), random.Anywhere(), random.Anywhere()};
}

Ends InABundle(RandomEdges& random) {
  const GridPoint from = random.Anywhere();
  const GridPoint to = random.Anywhere();
  const std::int64_t width = random.Power(50);
  return {from, to, random.Near(from, width), random.Near(to, width)};
}

Ends Short(RandomEdges& random) {
  const GridPoint from = random.Anywhere();
  const GridPoint to = random.Near(from, random.Power(20));
  return {from, to, random.Near(from, 64), random.Near(to, 64)};
}

Ends ThroughAPoint(RandomEdges& random) {
  const GridPoint a = random.Anywhere();
  const GridPoint b = random.Anywhere();
  return {a, random.Near({-a.x, -a.y}, 3), b, random.Near({-b.x, -b.y}, 3)};
}

GridEdge EdgeOf(GridPoint from, GridPoint to) {
  if (to < from) std::swap(from, to);
  return {from, to, 0, 1};
}

Whole Product(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
  return Whole(a) * b - Whole(c) * d;
}

bool Parts(const GridEdge& edge, const GridPoint& one, const GridPoint& two) {
  const auto side = [&edge](const GridPoint& point) {
    return Product(edge.dx, point.y - edge.y, edge.dy, point.x - edge.x).sign();
  };
  return side(one) * side(two) < 0;
}

/// Returns the whole number at or below start + 1/2 + way * part / whole.
Whole Rounded(std::int64_t start, std::int64_t way, const Whole& part, const Whole& whole) {
  const int sign = whole.sign();
  const Whole numerator = sign * (2 * (Whole(start) * whole + way * part) + whole);
  const Whole denominator = sign * 2 * whole;
  Whole quotient = numerator / denominator;
  if (numerator < 0 && numerator % denominator != 0) --quotient;
  return quotient;
}

TEST(GpcGrid, crossingsLieInTheirPixels) {
  const std::pair<const char*, Ends (*)(RandomEdges&)> kinds[] = {
      {"anywhere", Anywhere}, {"bundle", InABundle}, {"short", Short}, {"pencil", ThroughAPoint}};
  RandomEdges random;
  for (const auto& [name, make] : kinds) {
    int tested = 0;
    for (int i = 0; i < 20000; ++i) {
      const Ends ends = make(random);
      if (!ends.AreOnGrid()) continue;
      const GridEdge a = EdgeOf(ends.a0, ends.a1);
      const GridEdge b = EdgeOf(ends.b0, ends.b1);
      if (!Parts(a, ends.b0, ends.b1) || !Parts(b, ends.a0, ends.a1)) continue;
      ++tested;
      const Whole whole = Product(a.dx, b.dy, a.dy, b.dx);
      const Whole part = Product(b.x - a.x, b.dy, b.y - a.y, b.dx);
      const GridPoint pixel = GetCrossingPixel(a, b);
      EXPECT_EQ(Whole(pixel.x), Rounded(a.x, a.dx, part, whole)) << name << ' ' << i;
      EXPECT_EQ(Whole(pixel.y), Rounded(a.y, a.dy, part, whole)) << name << ' ' << i;
    }
    EXPECT_GT(tested, 1000) << name;
  }
}

}  // namespace
}  // namespace shr::gpc
