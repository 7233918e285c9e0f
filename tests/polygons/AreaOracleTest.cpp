// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The oracle on trial before it judges others: areas known beforehand, both rules for what is
// inside, and on every family of cases the fast numbers against exact rational ones.

#include "tests/polygons/AreaOracle.h"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>

#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/DoubleDouble.h"

namespace shr::test {
namespace {

using boost::multiprecision::cpp_rational;

cpp_rational ToRational(const DoubleDouble& value) {
  const auto high = static_cast<double>(value);
  return cpp_rational(high) + cpp_rational(static_cast<double>(value - DoubleDouble(high)));
}

double BoxArea(const BooleanCase& pair) {
  Box2d box;
  for (const Contours* contours : {&pair.subject, &pair.clip}) {
    for (const auto& contour : *contours) {
      for (const Vec2d& point : contour) box.ExtendBy(point);
    }
  }
  return box.GetArea();
}

TEST(AreaOracle, simpleShapesHaveTheirAreas) {
  const Contours square = {{{0, 0}, {4, 0}, {4, 4}, {0, 4}}};
  const Contours ring = {{{1, 1}, {1, 7}, {7, 7}, {7, 1}}, {{2, 2}, {6, 2}, {6, 6}, {2, 6}}};
  const Contours bowTie = {{{0, 0}, {3, 3}, {3, 0}, {0, 3}}};
  const Contours pentagram = {{{0, 0}, {4, 3}, {-1, 3}, {3, 0}, {1.5, 5}}};
  const Contours twice = {square[0], square[0]};
  const struct {
    const char* name;
    Region a, b;
    cpp_rational onlyA, onlyB, both;
  } rows[] = {
      {"square and ring", EvenOdd(square), EvenOdd(ring), 11, 15, 5},
      {"bow tie in a square", EvenOdd(square), EvenOdd(bowTie), cpp_rational(23, 2), 0,
       cpp_rational(9, 2)},
      {"twice, even-odd", EvenOdd(twice), EvenOdd(square), 0, 16, 0},
      {"twice, non-zero", Region{{twice}, Region::Rule::NonZero}, EvenOdd(square), 0, 0, 16},
      {"two polygons in one place", Region{{square, square}}, EvenOdd(square), 0, 0, 16},
      {"nothing", EvenOdd({}), EvenOdd({{}, {{1, 1}}, {{1, 1}, {2, 5}}}), 0, 0, 0},
  };
  for (const auto& row : rows) {
    const std::vector<Region> regions = {row.a, row.b};
    const auto areas = CombinedAreas<cpp_rational>(regions);
    EXPECT_EQ(areas[1], row.onlyA) << row.name;
    EXPECT_EQ(areas[2], row.onlyB) << row.name;
    EXPECT_EQ(areas[3], row.both) << row.name;
  }
  const std::vector<Region> rules = {EvenOdd(pentagram),
                                     Region{{pentagram}, Region::Rule::NonZero}};
  const auto areas = CombinedAreas<cpp_rational>(rules);
  EXPECT_EQ(areas[1], 0);
  EXPECT_GT(areas[2], 0) << "the heart of a pentagram, wound around twice";
}

TEST(AreaOracle, fastNumbersAgreeWithRationalOnes) {
  for (const CaseFamily& family : BooleanCaseFamilies()) {
    for (std::uint64_t seed = 0; seed < 2; ++seed) {
      std::mt19937_64 random(seed);
      const BooleanCase pair = family.make(random);
      const std::vector<Region> regions = {EvenOdd(pair.subject), EvenOdd(pair.clip)};
      const auto exact = CombinedAreas<cpp_rational>(regions);
      const auto fast = CombinedAreas<DoubleDouble>(regions);
      for (std::size_t mask = 1; mask < exact.size(); ++mask) {
        const cpp_rational error = exact[mask] - ToRational(fast[mask]);
        EXPECT_LE(std::abs(error.convert_to<double>()), 1e-27 * BoxArea(pair))
            << family.name << ", seed " << seed << ", mask " << mask;
      }
    }
  }
}

}  // namespace
}  // namespace shr::test
