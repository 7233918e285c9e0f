// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/WarpDesign.h"

#include <cstdint>
#include <initializer_list>

#include "shared/numerics/linear/LeastSquares.h"
#include "shared/numerics/registration/ControlPoints.h"

namespace shr {
namespace {

void FillRow(RMatrix& matrix, std::uint64_t row, std::initializer_list<double> values) {
  std::copy(values.begin(), values.end(), matrix.Base(row, 0));
}

template <class Numbers>
bool Fit(RMatrix& design, Numbers& x, Numbers& targets) {
  if (MGSLeastSquares(design, x, targets) && AreFinite(x)) return true;
  x.Clear();
  return false;
}

}  // namespace

RMatrix QuadraticDesign(const RVector& u, const RVector& v) {
  RMatrix design(u.size(), 6);
  for (std::uint64_t i = 0; i < u.size(); ++i) {
    FillRow(design, i, {1.0, u(i), v(i), u(i) * v(i), u(i) * u(i), v(i) * v(i)});
  }
  return design;
}

RMatrix LinearDesign(const RVector& u, const RVector& v) {
  RMatrix design(u.size(), 3);
  for (std::uint64_t i = 0; i < u.size(); ++i) FillRow(design, i, {1.0, u(i), v(i)});
  return design;
}

RMatrix ConformalDesign(const RVector& u, const RVector& v) {
  RMatrix design(2 * u.size(), 4);
  for (std::uint64_t i = 0; i < u.size(); ++i) {
    FillRow(design, 2 * i, {1.0, 0.0, u(i), v(i)});
    FillRow(design, 2 * i + 1, {0.0, 1.0, v(i), -u(i)});
  }
  return design;
}

RMatrix AxisDesign(const RVector& coordinate) {
  RMatrix design(coordinate.size(), 2);
  for (std::uint64_t i = 0; i < coordinate.size(); ++i) FillRow(design, i, {1.0, coordinate(i)});
  return design;
}

RMatrix UniformDesign(const RVector& u, const RVector& v) {
  RMatrix design(2 * u.size(), 3);
  for (std::uint64_t i = 0; i < u.size(); ++i) {
    FillRow(design, 2 * i, {1.0, 0.0, u(i)});
    FillRow(design, 2 * i + 1, {0.0, 1.0, v(i)});
  }
  return design;
}

RMatrix TargetColumns(const RPoints& to) {
  RMatrix targets(to.size(), 2);
  for (std::uint64_t i = 0; i < to.size(); ++i) FillRow(targets, i, {to[i].x, to[i].y});
  return targets;
}

RVector TargetRows(const RPoints& to) {
  RVector targets(2 * to.size());
  for (std::uint64_t i = 0; i < to.size(); ++i) {
    targets(2 * i) = to[i].x;
    targets(2 * i + 1) = to[i].y;
  }
  return targets;
}

RVector TargetColumn(const RPoints& to, double RPoint::*coordinate) {
  RVector targets(to.size());
  for (std::uint64_t i = 0; i < to.size(); ++i) targets(i) = to[i].*coordinate;
  return targets;
}

bool FitLeastSquares(RMatrix& design, RMatrix& x, RMatrix& targets) {
  x.Resize(design.Columns(), targets.Columns());
  return Fit(design, x, targets);
}

bool FitLeastSquares(RMatrix& design, RVector& x, RVector& targets) {
  x.Resize(design.Columns());
  return Fit(design, x, targets);
}

}  // namespace shr
