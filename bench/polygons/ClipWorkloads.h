// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Lines, contours and points for the benchmarks of clipping, in a map of 1000 x 1000, and the
/// measures by which the answers of contenders are compared.

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <span>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/MathUtility.h"
#include "shared/geometry/Vec2.h"

namespace shr::bench {

using Points = std::vector<Vec2d>;
using Counts = std::vector<unsigned int>;

inline const Box2d CLIP_BOX(250.0, 250.0, 750.0, 900.0);

template <class Radius>
Points MakeRing(std::size_t size, Radius radius) {
  Points ring;
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = TWO_PI * static_cast<double>(i) / static_cast<double>(size);
    ring.push_back(Vec2d(500.0, 500.0) + Vec2d(std::cos(angle), std::sin(angle)) * radius(angle));
  }
  return ring;
}

/// A coast line with bays and a jitter of half an edge length.
inline Points MakeCoast(std::size_t size) {
  std::mt19937_64 random(size);
  const double edge = TWO_PI * 350.0 / static_cast<double>(size);
  std::uniform_real_distribution<double> jitter(-0.25 * edge, 0.25 * edge);
  return MakeRing(size, [&](double angle) {
    return 350.0 * (1.0 + 0.15 * std::sin(5.0 * angle) + 0.05 * std::sin(17.0 * angle)) +
           jitter(random);
  });
}

/// A star of needles, every vertex at a random radius.
inline Points MakeNeedles(std::size_t size) {
  std::mt19937_64 random(size);
  std::uniform_real_distribution<double> radius(100.0, 500.0);
  return MakeRing(size, [&](double) { return radius(random); });
}

/// A random walk that is reflected at the border of the map.
inline Points MakeWalk(std::size_t size) {
  std::mt19937_64 random(size);
  std::normal_distribution<double> step(0.0, 5.0);
  const auto move = [&](double at) {
    const double to = std::abs(at + step(random));
    return to > 1000.0 ? 2000.0 - to : to;
  };
  Points walk(1, Vec2d(500.0, 500.0));
  while (walk.size() < size) walk.emplace_back(move(walk.back().x), move(walk.back().y));
  return walk;
}

inline Points MakeCloud(std::size_t size) {
  std::mt19937_64 random(size + 1);
  std::uniform_real_distribution<double> coordinate(0.0, 1000.0);
  Points cloud(size);
  for (Vec2d& point : cloud) point = Vec2d(coordinate(random), coordinate(random));
  return cloud;
}

inline double LengthOf(const Points& points, const Counts& counts) {
  double length = 0.0;
  std::size_t first = 0;
  for (const unsigned int count : counts) {
    for (std::size_t i = first + 1; i < first + count; ++i) {
      length += points[i - 1].Distance(points[i]);
    }
    first += count;
  }
  return length;
}

/// Ends the program when two contenders differ by more than rounding.
inline void DemandSame(double ours, double theirs, const char* what) {
  if (std::abs(ours - theirs) <= 1e-9 * (std::abs(ours) + std::abs(theirs))) return;
  std::fprintf(stderr, "contenders disagree on %s: %.17g, %.17g\n", what, ours, theirs);
  std::abort();
}

}  // namespace shr::bench
