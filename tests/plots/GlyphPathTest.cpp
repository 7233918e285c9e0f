// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What each verb becomes, rounding over a long outline, outlines that are none.

#include "shared/plots/GlyphPath.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

using namespace shr;

namespace {

GlyphOutline MakeOutline(std::vector<OutlineVerb> verbs, std::vector<OutlinePoint> points) {
  GlyphOutline outline;
  outline.verbs = std::move(verbs);
  outline.points = std::move(points);
  return outline;
}

std::string PathOf(const GlyphOutline& outline, double x, double y, double scale) {
  std::string data;
  AppendGlyphPath(data, outline, x, y, scale);
  return data;
}

using V = OutlineVerb;

TEST(GlyphPath, writesEachVerb) {
  struct Row {
    const char* name;
    GlyphOutline outline;
    const char* expected;
  };
  const Row rows[] = {
      {"nothing", {}, ""},
      {"lines turn upside down",
       MakeOutline({V::Move, V::Line, V::Line, V::Close}, {{0, 0}, {1, 0}, {1, 1}}),
       "M5 7l10 0 0-10z"},
      {"hundredths without needless digits",
       MakeOutline({V::Move, V::Line}, {{0.0525, 0.05}, {0.002, 0.0499}}), "M5.53 6.5l-.51 0"},
      {"curves",
       MakeOutline({V::Move, V::Quadratic, V::Cubic},
                   {{0, 0}, {.1, 0}, {.1, .1}, {.2, .1}, {.2, .2}, {.3, .2}}),
       "M5 7q1 0 1-1c1 0 1-1 2-1"},
      {"contours go back to their beginning",
       MakeOutline({V::Move, V::Line, V::Close, V::Line, V::Move, V::Move},
                   {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 2}}),
       "M5 7l10 0zl0-10M15-3M25-13"},
      {"verbs without points are left out", MakeOutline({V::Move, V::Cubic}, {{0, 0}, {1, 1}}),
       "M5 7"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, PathOf(row.outline, 5, 7, 10)) << row.name;
}

TEST(GlyphPath, placesThatAreNoneAreDrawnSomewhere) {
  const double inf = std::numeric_limits<double>::infinity();
  const GlyphOutline outline = MakeOutline({V::Move, V::Line}, {{0, std::nan("")}, {inf, 0}});
  EXPECT_EQ("M0 0l1000000000 0", PathOf(outline, 0, 0, 1));
}

TEST(GlyphPath, roundingErrorsDoNotAddUp) {
  GlyphOutline outline;
  for (int i = 0; i < 1000; ++i) {
    outline.verbs.push_back(i == 0 ? V::Move : V::Line);
    outline.points.push_back({i * 0.00137, i * -0.00291});
  }
  std::string data = PathOf(outline, 0.123, 0.456, 1);
  for (std::size_t i = 1; i < data.size(); ++i) {
    if (data[i] == '-') data.insert(i++, " ");
    if (data[i] == 'l') data[i] = ' ';
  }
  std::istringstream in(data.substr(1));
  double x = 0, y = 0, dx = 0, dy = 0;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(in >> dx >> dy) << i;
    x += dx;
    y += dy;
    ASSERT_NEAR(0.123 + i * 0.00137, x, 0.005001) << i;
    ASSERT_NEAR(0.456 + i * 0.00291, y, 0.005001) << i;
  }
}

}  // namespace
