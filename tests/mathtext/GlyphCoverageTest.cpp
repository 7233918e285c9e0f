// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: exact areas of rectangles and triangles in parts of pixels; holes, overlaps and outlines
// that are not closed; what lies outside of the rectangle or is not finite; strokes; curves of
// every size beside samples.

#include "shared/mathtext/GlyphCoverage.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/MathUtility.h"
#include "tests/support/Failures.h"
#include "tests/support/InkMap.h"

namespace shr {
namespace {

using test::InkMap;

GlyphOutline Polygon(const std::vector<Vec2d>& points, bool closes = true) {
  GlyphOutline outline;
  outline.Move(points[0].x, points[0].y);
  for (std::size_t i = 1; i < points.size(); ++i) outline.Line(points[i].x, points[i].y);
  if (closes) outline.Close();
  return outline;
}

GlyphOutline Rectangle(double left, double top, double right, double bottom) {
  return Polygon({{left, top}, {right, top}, {right, bottom}, {left, bottom}});
}

std::vector<int> Pixels(const GlyphCoverage& coverage) {
  const std::vector<unsigned char> pixels = coverage.Get();
  return std::vector<int>(pixels.begin(), pixels.end());
}

TEST(GlyphCoverage, coversPixelsByArea) {
  const GlyphOutline hole = [] {
    GlyphOutline outline = Rectangle(0, 0, 4, 2);
    const GlyphOutline inner = Polygon({{1, 0}, {1, 2}, {3, 2}, {3, 0}});
    outline.verbs.insert(outline.verbs.end(), inner.verbs.begin(), inner.verbs.end());
    outline.points.insert(outline.points.end(), inner.points.begin(), inner.points.end());
    return outline;
  }();
  const struct {
    const char* name;
    std::vector<GlyphOutline> outlines;
    std::vector<int> pixels;  // of 4 by 2, the corner at (10, 20) taken off
  } rows[] = {
      {"nothing", {GlyphOutline()}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {"parts", {Rectangle(0.5, 0, 2.2, 1.6)}, {128, 255, 51, 0, 77, 153, 31, 0}},
      {"within a pixel", {Rectangle(1.25, 0.5, 1.75, 1)}, {0, 64, 0, 0, 0, 0, 0, 0}},
      {"triangle", {Polygon({{0, 0}, {4, 0}, {0, 2}})}, {255, 255, 191, 64, 191, 64, 0, 0}},
      {"not closed",
       {Polygon({{0, 0}, {2, 0}, {2, 1}, {0, 1}}, false)},
       {255, 255, 0, 0, 0, 0, 0, 0}},
      {"hole", {hole}, {255, 0, 0, 255, 255, 0, 0, 255}},
      {"overlap", {Rectangle(0, 0, 2, 1), Rectangle(1, 0, 3, 1)}, {255, 255, 255, 0, 0, 0, 0, 0}},
      {"larger", {Rectangle(-5, -1e9, 1e9, 1)}, {255, 255, 255, 255, 0, 0, 0, 0}},
      {"to the left", {Rectangle(-9, 0, -1, 1)}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {"to the right", {Rectangle(4, 0, 1e300, 1)}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {"not finite",
       {Rectangle(0, 0, NAN, 1), Rectangle(HUGE_VAL, 0, 2, HUGE_VAL)},
       {0, 0, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& row : rows) {
    GlyphCoverage coverage(10, 20, 4, 2);
    for (GlyphOutline outline : row.outlines) {
      for (OutlinePoint& point : outline.points) point = {point.x + 10, point.y + 20};
      coverage.Fill(outline);
    }
    const std::vector<int> pixels = Pixels(coverage);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      EXPECT_NEAR(row.pixels[i], pixels[i], 1) << row.name << ", pixel " << i;
    }
  }
  for (const int size : {0, -1}) {
    EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { GlyphCoverage(0, 0, size, 5); }));
    EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { GlyphCoverage(0, 0, 5, size); }));
  }
}

TEST(GlyphCoverage, strokesWithARoundPen) {
  GlyphCoverage coverage(0, 0, 40, 20);
  coverage.Stroke(Polygon({{10, 10}, {30, 10}}, false), 4);
  const std::vector<int> pixels = Pixels(coverage);
  const double area = std::accumulate(pixels.begin(), pixels.end(), 0.0) / 255;
  EXPECT_NEAR(20 * 4 + PI * 4, area, 2);
  EXPECT_EQ(255, pixels[10 * 40 + 20]);
  EXPECT_EQ(0, pixels[10 * 40 + 5]);
  GlyphCoverage thin(0, 0, 40, 20);
  thin.Stroke(Polygon({{10, 10.5}, {30, 10.5}}, false), 0.25);
  EXPECT_NEAR(0.25 * 255, Pixels(thin)[10 * 40 + 20], 1);
}

/// A ring: a circle of cubic curves, its hole an ellipse of quadratic ones, in em.
GlyphOutline Ring() {
  constexpr double R = 0.45, K = 0.5523 * R;
  const auto at = [](double x, double y) { return OutlinePoint{0.5 + x, 0.5 + y}; };
  GlyphOutline ring;
  ring.Move(0.5 + R, 0.5);
  ring.Cubic(at(R, K), at(K, R), at(0, R));
  ring.Cubic(at(-K, R), at(-R, K), at(-R, 0));
  ring.Cubic(at(-R, -K), at(-K, -R), at(0, -R));
  ring.Cubic(at(K, -R), at(R, -K), at(R, 0));
  ring.Close();
  ring.Move(0.5, 0.85);
  ring.Quadratic(at(0.25, 0.35), at(0.25, 0));
  ring.Quadratic(at(0.25, -0.35), at(0, -0.35));
  ring.Quadratic(at(-0.25, -0.35), at(-0.25, 0));
  ring.Quadratic(at(-0.25, 0.35), at(0, 0.35));
  ring.Close();
  return ring;
}

TEST(GlyphCoverage, agreesWithSamplesOfCurves) {
  for (const double height : {8.0, 16.5, 40.0, 130.0, 400.0}) {
    const int size = static_cast<int>(height * 1.5);
    InkMap expected(size, size), drawn(size, size);
    GlyphCoverage coverage(0, 0, size, size);
    GlyphOutline outline = Ring();
    for (OutlinePoint& point : outline.points) {
      // leaning and upside down
      point = {height * (0.1 + point.x + 0.2 * point.y), height * (1.2 - point.y)};
    }
    coverage.Fill(outline);
    expected.Fill(outline, [](const OutlinePoint& point) { return Vec2d(point.x, point.y); });
    const std::vector<unsigned char> pixels = coverage.Get();
    for (int y = 0; y < size; ++y) {
      for (int x = 0; x < size; ++x) {
        drawn.At(x, y) = pixels[static_cast<std::size_t>(y * size + x)] / 255.0;
      }
    }
    ASSERT_GT(expected.Sum(), height * height / 5);
    EXPECT_GT(expected.Overlap(drawn), height < 10 ? 0.97 : 0.985) << height;
  }
}

}  // namespace
}  // namespace shr
