// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/InverseDistanceSquared.h"

#include <algorithm>
#include <cstddef>

#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/WarpDesign.h"
#include "shared/numerics/registration/WarpKernels.h"

namespace shr {
namespace {

constexpr std::size_t FEWEST_POINTS = 4;

}  // namespace

RPoint CInverseDistanceSquared::Transform(const RPoint& point) const {
  RPoint result;
  CInverseDistanceSquared::TransformAll(&point, &result, 1);
  return result;
}

void CInverseDistanceSquared::TransformAll(const RPoint* points, RPoint* results,
                                           std::size_t count) const {
  static_assert(sizeof(RPoint) == 2 * sizeof(double));
  if (trend_.empty()) {
    std::fill_n(results, count, NO_POINT);
    return;
  }
  const DistanceTerms terms{ControlU().data(), ControlV().data(), residualX_.data(),
                            residualY_.data(), ControlU().size(), trend_.data(),
                            CenterX(),         CenterY(),         Scale()};
  MapByDistance(terms, reinterpret_cast<const double*>(points), reinterpret_cast<double*>(results),
                count);
}

bool CInverseDistanceSquared::Calibrate(const RPoints& from, const RPoints& to) {
  trend_.Clear();
  residualX_.Clear();
  residualY_.Clear();
  if (!AreUsable(from, to, FEWEST_POINTS)) return false;
  ScaleControlPoints(from);
  RMatrix design = LinearDesign(ControlU(), ControlV());
  RMatrix targets = TargetColumns(to);
  if (!FitLeastSquares(design, trend_, targets)) return false;
  residualX_.Resize(from.size());
  residualY_.Resize(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) {
    const double u = ControlU()(i);
    const double v = ControlV()(i);
    residualX_(i) = to[i].x - (trend_(0, 0) + (trend_(1, 0) * u + trend_(2, 0) * v));
    residualY_(i) = to[i].y - (trend_(0, 1) + (trend_(1, 1) * u + trend_(2, 1) * v));
  }
  return true;
}

CInverseDistanceSquared* CInverseDistanceSquared::Clone() const {
  return new CInverseDistanceSquared(*this);
}

}  // namespace shr
