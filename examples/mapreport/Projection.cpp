// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Projection.h"

#include <algorithm>
#include <cmath>

#include "shared/geometry/MathUtility.h"

namespace mapreport {

using namespace shr;

namespace {

/// Nearer to a pole the map would become a thread.
constexpr double HIGHEST_PARALLEL = 80;

double RoundedCosine(double degrees) {
  return std::round(std::cos(degrees * DEG_TO_RAD) * 1000) / 1000;
}

}  // namespace

double MeanParallel(double south, double north) {
  if (south >= 0 || north <= 0) return std::abs(south + north) / 2;
  return (south * south + north * north) / (2 * (north - south));
}

Projection::Projection(const Box2d& window, double left, double top, double maxWidth,
                       double maxHeight)
    : window_(window),
      parallel_(std::min(MeanParallel(window.yMin(), window.yMax()), HIGHEST_PARALLEL)),
      left_(left),
      top_(top) {
  const double shrink = RoundedCosine(parallel_);
  scaleY_ = std::min(maxWidth / (window.xRange() * shrink), maxHeight / window.yRange());
  scaleX_ = scaleY_ * shrink;
  frame_ = Box2d(left, top, left + window.xRange() * scaleX_, top + window.yRange() * scaleY_);
}

double GraticuleStep(double range) {
  constexpr double STEPS[] = {30,  20,  15,   10,   5,    2,     1,    0.5,
                              0.2, 0.1, 0.05, 0.02, 0.01, 0.005, 0.002};
  for (const double step : STEPS) {
    if (range / step >= 5) return step;
  }
  return 0.001;
}

}  // namespace mapreport
