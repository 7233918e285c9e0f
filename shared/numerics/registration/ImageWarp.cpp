// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/ImageWarp.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "shared/numerics/registration/InverseDistanceSquared.h"
#include "shared/numerics/registration/RadialBasisFunction.h"

namespace shr {
namespace {

/// Extents below count as none.
constexpr double LEAST_SCALE = 1.1754943508222875e-38;

/// The values of one coordinate. Halves are taken before sums and differences, which could
/// overflow.
struct Range {
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();

  void Add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  double Center() const { return low / 2 + high / 2; }
  double HalfExtent() const { return high / 2 - low / 2; }
};

}  // namespace

CImageWarp::~CImageWarp() = default;

void CImageWarp::Transform(std::span<const RPoint> points, std::span<RPoint> results) const {
  const std::size_t count = std::min(points.size(), results.size());
  if (const auto* spline = dynamic_cast<const CRadialBasisFunction*>(this)) {
    spline->TransformAll(points.data(), results.data(), count);
  } else if (const auto* inverse = dynamic_cast<const CInverseDistanceSquared*>(this)) {
    inverse->TransformAll(points.data(), results.data(), count);
  } else {
    for (std::size_t i = 0; i < count; ++i) results[i] = Transform(points[i]);
  }
}

void CImageWarp::ScaleControlPoints(const RPoints& from) {
  Range x, y;
  for (const RPoint& point : from) {
    x.Add(point.x);
    y.Add(point.y);
  }
  centerX_ = from.empty() ? 0.0 : x.Center();
  centerY_ = from.empty() ? 0.0 : y.Center();
  scale_ = from.empty() ? 1.0 : std::max(x.HalfExtent(), y.HalfExtent());
  if (scale_ < LEAST_SCALE) scale_ = 1.0;
  u_.Resize(from.size());
  v_.Resize(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) {
    u_(i) = NormalizeX(from[i].x);
    v_(i) = NormalizeY(from[i].y);
  }
}

}  // namespace shr
