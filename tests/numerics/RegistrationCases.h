// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Control points for the tests of registration.
///
///     const Pairs pairs = RandomPairs(20, 7);

#pragma once

#include <cstddef>
#include <random>
#include <vector>

#include "shared/geometry/Points.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

struct Pairs {
  RPoints from;
  RPoints to;

  void Add(const RPoint& source, const RPoint& target) {
    from.push_back(source);
    to.push_back(target);
  }
};

inline WarpingMethod MethodOf(int index) {
  return static_cast<WarpingMethod>(index);
}

/// An affine map with noise, far from 0 as map coordinates are.
inline Pairs RandomPairs(std::size_t count, unsigned int seed, double offset = 4e6,
                         double noise = 30.0) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  Pairs pairs;
  for (std::size_t i = 0; i < count; ++i) {
    const RPoint p(2500 + 2500 * unit(random), 1500 + 1500 * unit(random));
    pairs.Add(p, RPoint(offset + 3 * p.x - 0.5 * p.y + noise * unit(random),
                        offset / 2 + 0.4 * p.x - 2.5 * p.y + noise * unit(random)));
  }
  return pairs;
}

inline bool IsSpline(int method) {
  return method <= WarpRationalQuadraticSpline;
}

}  // namespace shr
