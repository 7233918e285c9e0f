// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/PolynomialWarps.h"

#include <cstddef>

#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/WarpDesign.h"

namespace shr {
namespace {

constexpr std::size_t FEWEST_FOR_QUADRATIC = 6;
constexpr std::size_t FEWEST_FOR_LINEAR = 4;
constexpr std::size_t FEWEST_FOR_SCALES = 2;

}  // namespace

RPoint CQuadraticPolynomial::Transform(const RPoint& point) const {
  if (coefficients_.empty()) return NO_POINT;
  const double u = NormalizeX(point.x);
  const double v = NormalizeY(point.y);
  const auto value = [&](std::size_t j) {
    const RMatrix& k = coefficients_;
    return k(0, j) + (k(1, j) * u + k(2, j) * v +
                      (k(3, j) * (u * v) + k(4, j) * (u * u) + k(5, j) * (v * v)));
  };
  return RPoint(value(0), value(1));
}

bool CQuadraticPolynomial::Calibrate(const RPoints& from, const RPoints& to) {
  coefficients_.Clear();
  if (!AreUsable(from, to, FEWEST_FOR_QUADRATIC)) return false;
  ScaleControlPoints(from);
  RMatrix design = QuadraticDesign(ControlU(), ControlV());
  RMatrix targets = TargetColumns(to);
  return FitLeastSquares(design, coefficients_, targets);
}

CQuadraticPolynomial* CQuadraticPolynomial::Clone() const {
  return new CQuadraticPolynomial(*this);
}

RPoint CGeneralLinear::Transform(const RPoint& point) const {
  if (coefficients_.empty()) return NO_POINT;
  const double u = NormalizeX(point.x);
  const double v = NormalizeY(point.y);
  const auto value = [&](std::size_t j) {
    const RMatrix& k = coefficients_;
    return k(0, j) + (k(1, j) * u + k(2, j) * v);
  };
  return RPoint(value(0), value(1));
}

bool CGeneralLinear::Calibrate(const RPoints& from, const RPoints& to) {
  coefficients_.Clear();
  if (!AreUsable(from, to, FEWEST_FOR_LINEAR)) return false;
  ScaleControlPoints(from);
  RMatrix design = LinearDesign(ControlU(), ControlV());
  RMatrix targets = TargetColumns(to);
  return FitLeastSquares(design, coefficients_, targets);
}

CGeneralLinear* CGeneralLinear::Clone() const {
  return new CGeneralLinear(*this);
}

RPoint CLinearConformal::Transform(const RPoint& point) const {
  if (coefficients_.empty()) return NO_POINT;
  const double u = NormalizeX(point.x);
  const double v = NormalizeY(point.y);
  const RVector& k = coefficients_;
  return RPoint(k(0) + (k(2) * u + k(3) * v), k(1) + (k(2) * v - k(3) * u));
}

bool CLinearConformal::Calibrate(const RPoints& from, const RPoints& to) {
  coefficients_.Clear();
  if (!AreUsable(from, to, FEWEST_FOR_SCALES)) return false;
  ScaleControlPoints(from);
  RMatrix design = ConformalDesign(ControlU(), ControlV());
  RVector targets = TargetRows(to);
  return FitLeastSquares(design, coefficients_, targets);
}

CLinearConformal* CLinearConformal::Clone() const {
  return new CLinearConformal(*this);
}

RPoint CMixedScale::Transform(const RPoint& point) const {
  if (coefficients_.empty()) return NO_POINT;
  const RMatrix& k = coefficients_;
  return RPoint(k(0, 0) + k(1, 0) * NormalizeX(point.x), k(0, 1) + k(1, 1) * NormalizeY(point.y));
}

bool CMixedScale::Calibrate(const RPoints& from, const RPoints& to) {
  coefficients_.Clear();
  if (!AreUsable(from, to, FEWEST_FOR_SCALES)) return false;
  ScaleControlPoints(from);
  RMatrix designX = AxisDesign(ControlU()), designY = AxisDesign(ControlV());
  RVector targetsX = TargetColumn(to, &RPoint::x), targetsY = TargetColumn(to, &RPoint::y);
  RVector x, y;
  if (!FitLeastSquares(designX, x, targetsX) || !FitLeastSquares(designY, y, targetsY))
    return false;
  coefficients_ = RMatrix{{x(0), y(0)}, {x(1), y(1)}};
  return true;
}

CMixedScale* CMixedScale::Clone() const {
  return new CMixedScale(*this);
}

RPoint CUniformScale::Transform(const RPoint& point) const {
  if (coefficients_.empty()) return NO_POINT;
  const RVector& k = coefficients_;
  return RPoint(k(0) + k(2) * NormalizeX(point.x), k(1) + k(2) * NormalizeY(point.y));
}

bool CUniformScale::Calibrate(const RPoints& from, const RPoints& to) {
  coefficients_.Clear();
  if (!AreUsable(from, to, FEWEST_FOR_SCALES)) return false;
  ScaleControlPoints(from);
  RMatrix design = UniformDesign(ControlU(), ControlV());
  RVector targets = TargetRows(to);
  return FitLeastSquares(design, coefficients_, targets);
}

CUniformScale* CUniformScale::Clone() const {
  return new CUniformScale(*this);
}

}  // namespace shr
