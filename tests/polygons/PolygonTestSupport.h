// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Outlines for polygon tests: stars, and the countries of the example data.

#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/MathUtility.h"
#include "shared/polygons/GPolygon2d.h"

namespace shr::test {

using Points = std::vector<Vec2d>;
using Counts = std::vector<unsigned int>;

/// Contours or lines as points and their numbers.
struct FlatLines {
  Points points;
  Counts counts;

  void Add(const Points& line) {
    points.insert(points.end(), line.begin(), line.end());
    counts.push_back(static_cast<unsigned int>(line.size()));
  }
  bool operator==(const FlatLines&) const = default;
};

/// Returns the length of all open lines together.
inline double LengthOf(const FlatLines& lines) {
  double length = 0.0;
  std::size_t first = 0;
  for (const unsigned int count : lines.counts) {
    for (std::size_t i = first + 1; i < first + count; ++i) {
      length += lines.points[i - 1].Distance(lines.points[i]);
    }
    first += count;
  }
  return length;
}

/// Returns a star-shaped contour around `center`, counter-clockwise and not closed.
inline Points MakeStar(const Vec2d& center, double radius, std::size_t size,
                       std::mt19937_64& random) {
  std::uniform_real_distribution<double> spread(0.3, 1.0);
  Points star(size);
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = TWO_PI * static_cast<double>(i) / static_cast<double>(size);
    star[i] = center + Vec2d(std::cos(angle), std::sin(angle)) * (radius * spread(random));
  }
  return star;
}

/// Returns three stars that overlap.
inline FlatLines MakeStars(std::size_t size, std::mt19937_64& random) {
  FlatLines stars;
  for (int i = 0; i < 3; ++i) stars.Add(MakeStar(Vec2d(i, 0.3 * i), 1.5, size, random));
  return stars;
}

/// How `RandomPointMaker` chooses a point.
enum PointKind { ANYWHERE, NEAR_THE_LAST, AT_THE_SIDES, ODD };

/// Returns a maker of points in and around the unit square, of numbers at its sides and of numbers
/// that break arithmetic.
inline auto RandomPointMaker(std::mt19937_64& random) {
  return [&random](int kind, const Vec2d& last) -> Vec2d {
    static constexpr double ODD_NUMBERS[] = {0.0, 1.0,      -0.0,      -1.0,  2.0,   0.5,
                                             NAN, HUGE_VAL, -HUGE_VAL, 1e308, 5e-324};
    constexpr std::size_t NUMBERS_AT_SIDES = 6;
    std::uniform_real_distribution<double> coordinate(-2.0, 3.0);
    std::normal_distribution<double> step(0.0, 0.06);
    if (kind == ANYWHERE) return {coordinate(random), coordinate(random)};
    if (kind == NEAR_THE_LAST) return last + Vec2d(step(random), step(random));
    const std::size_t limit = kind == AT_THE_SIDES ? NUMBERS_AT_SIDES : std::size(ODD_NUMBERS);
    const double x = ODD_NUMBERS[random() % limit];
    return {x, ODD_NUMBERS[random() % limit]};
  };
}

struct Outline {
  std::string name;
  Points points;
};

/// Reads every ring of a map file of the example data.
inline std::vector<Outline> ReadOutlines(const std::string& file) {
  std::ifstream in(std::string(SHARED_EXAMPLE_DATA_DIR "/") + file);
  if (!in) throw std::runtime_error("no map file");
  std::vector<Outline> outlines;
  std::string line;
  while (std::getline(in, line)) {
    const std::size_t tab = line.find('\t');
    if (tab != line.npos) {
      outlines.push_back({line.substr(0, tab), {}});
      continue;
    }
    const char* end = line.data() + line.size();
    Vec2d point;
    const auto [comma, error] = std::from_chars(line.data(), end, point.x);
    std::from_chars(std::min(comma + 2, end), end, point.y);
    outlines.back().points.push_back(point);
  }
  return outlines;
}

/// Returns the integral of the winding number of a contour over a box: the area of the common part
/// of a box and a simple contour, positive when that runs counter-clockwise. By Green's theorem it
/// is the integral of x, limited to the box, over y along the contour inside the box's height. No
/// polygon is built on the way.
inline double AreaInBox(const Points& contour, const Box2d& box) {
  double area = 0.0;
  for (std::size_t i = 0; i < contour.size(); ++i) {
    const Vec2d a = contour[i];
    const Vec2d b = contour[(i + 1) % contour.size()];
    if (a.y == b.y) continue;
    const auto parameterAtY = [&](double y) {
      return std::clamp((y - a.y) / (b.y - a.y), 0.0, 1.0);
    };
    const auto [first, last] = std::minmax({parameterAtY(box.yMin()), parameterAtY(box.yMax())});
    const auto parameterAtX = [&, low = first, high = last](double x) {
      return a.x == b.x ? low : std::clamp((x - a.x) / (b.x - a.x), low, high);
    };
    double cuts[4] = {first, parameterAtX(box.xMin()), parameterAtX(box.xMax()), last};
    std::sort(cuts, cuts + 4);
    const auto limitedX = [&](double t) {
      return std::clamp(a.x * (1.0 - t) + b.x * t, box.xMin(), box.xMax());
    };
    for (int part = 0; part < 3; ++part) {
      const double height = (b.y - a.y) * (cuts[part + 1] - cuts[part]);
      area += height * (limitedX(cuts[part]) + limitedX(cuts[part + 1])) / 2.0;
    }
  }
  return area;
}

}  // namespace shr::test
