// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/RadialBasisFunction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <typeinfo>

#include "shared/numerics/linear/ConstrainedSolve.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/RadialKernelOf.h"
#include "shared/numerics/registration/SplineSystem.h"
#include "shared/numerics/registration/WarpDesign.h"
#include "shared/numerics/registration/WarpKernels.h"

namespace shr {
namespace {

constexpr std::size_t FEWEST_POINTS = 4;
constexpr std::size_t CONSTRAINTS = 3;

/// The linear trend of one column of targets and what it leaves, divided by the largest magnitude.
/// The system is linear in the targets, so both can be put back into its solution; without them the
/// solver's limits, which are absolute or in terms of all of the targets, would drown the detail of
/// coordinates that are small or far from 0.
struct Remainder {
  double trend[CONSTRAINTS] = {};
  double scale = 1.0;
  RVector values;
};

Remainder TakeTrend(const RVector& u, const RVector& v, const RVector& targets) {
  Remainder result;
  const double offset = targets(0);
  result.values = targets;
  for (double& value : result.values) value -= offset;
  RMatrix design = LinearDesign(u, v);
  RVector trend, rest = result.values;
  if (FitLeastSquares(design, trend, rest)) {
    std::copy(trend.begin(), trend.end(), result.trend);
    result.values = rest;
  }
  result.trend[0] += offset;
  double largest = 0.0;
  for (const double value : result.values) largest = std::max(largest, std::abs(value));
  if (largest > 0.0) result.scale = largest;
  for (double& value : result.values) value /= result.scale;
  return result;
}

/// The constraints of the polynomial: 1, u and v.
RMatrix Constraints(const RVector& u, const RVector& v) {
  RMatrix rows(CONSTRAINTS, u.size());
  for (std::size_t i = 0; i < u.size(); ++i) {
    rows(0, i) = 1.0;
    rows(1, i) = u(i);
    rows(2, i) = v(i);
  }
  return rows;
}

/// Makes a solution for what was left one for the targets.
void PutBack(const Remainder (&rest)[2], RMatrix& weights, RMatrix& polynomial) {
  for (std::uint64_t k = 0; k < 2; ++k) {
    for (std::uint64_t i = 0; i < weights.Rows(); ++i) weights(i, k) *= rest[k].scale;
    for (std::uint64_t i = 0; i < CONSTRAINTS; ++i) {
      polynomial(i, k) = polynomial(i, k) * rest[k].scale + rest[k].trend[i];
    }
  }
}

/// A pseudo-inverse would map all of the plane to the mean of the targets.
bool AreAllEqual(const RPoints& points) {
  return std::adjacent_find(points.begin(), points.end(), std::not_equal_to<>()) == points.end();
}

double Square(double x) {
  return x * x;
}

}  // namespace

std::optional<RadialKernel> RadialKernelOf(const CRadialBasisFunction& spline) {
  const std::type_info& type = typeid(spline);
  if (type == typeid(CThinPlateSpline)) return RadialKernel::ThinPlate;
  if (type == typeid(CNaturalCubicSpline)) return RadialKernel::NaturalCubic;
  if (type == typeid(CMarcovSpline)) return RadialKernel::Marcov;
  if (type == typeid(CExponentialSpline)) return RadialKernel::Exponential;
  if (type == typeid(CRationalQuadraticSpline)) return RadialKernel::RationalQuadratic;
  return std::nullopt;
}

RPoint CRadialBasisFunction::Transform(const RPoint& point) const {
  if (polynomial_.empty()) return NO_POINT;
  if (RadialKernelOf(*this)) {
    RPoint result;
    CRadialBasisFunction::TransformAll(&point, &result, 1);
    return result;
  }
  const double u = NormalizeX(point.x);
  const double v = NormalizeY(point.y);
  double x = 0.0, y = 0.0;
  for (std::size_t i = 0; i < weights_.Rows(); ++i) {
    const double phi = Phi(u - ControlU()(i), v - ControlV()(i));
    x += phi * weights_(i, 0);
    y += phi * weights_(i, 1);
  }
  const RMatrix& c = polynomial_;
  return RPoint(c(0, 0) + (c(1, 0) * u + c(2, 0) * v + x),
                c(0, 1) + (c(1, 1) * u + c(2, 1) * v + y));
}

void CRadialBasisFunction::TransformAll(const RPoint* points, RPoint* results,
                                        std::size_t count) const {
  static_assert(sizeof(RPoint) == 2 * sizeof(double));
  const std::optional<RadialKernel> kernel = RadialKernelOf(*this);
  if (!kernel || polynomial_.empty()) {
    std::transform(points, points + count, results,
                   [this](const RPoint& point) { return Transform(point); });
    return;
  }
  const SplineTerms terms{ControlU().data(),  ControlV().data(), weights_.data(), weights_.Rows(),
                          polynomial_.data(), CenterX(),         CenterY(),       Scale()};
  MapBySpline(*kernel, terms, reinterpret_cast<const double*>(points),
              reinterpret_cast<double*>(results), count);
}

bool CRadialBasisFunction::Calibrate(const RPoints& from, const RPoints& to) {
  weights_.Clear();
  polynomial_.Clear();
  if (!AreUsable(from, to, FEWEST_POINTS) || AreAllEqual(from)) return false;
  ScaleControlPoints(from);
  if (const std::optional<RadialKernel> kernel = RadialKernelOf(*this)) {
    SplineSystem system(*kernel, ControlU(), ControlV());
    if (system.Factor() && system.Solve(TargetColumns(to), weights_, polynomial_)) return true;
  }
  if (SolveByIteration(from, to)) return true;
  weights_.Clear();
  polynomial_.Clear();
  return false;
}

/// Solves by `CPDSolve`, and where that fails or its result is no fit by `AlternateSolve`.
bool CRadialBasisFunction::SolveByIteration(const RPoints& from, const RPoints& to) {
  const RVector& u = ControlU();
  const RVector& v = ControlV();
  const std::size_t count = u.size();
  RMatrix phi(count, count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t j = 0; j < count; ++j) phi(i, j) = Phi(u(i) - u(j), v(i) - v(j));
  }
  const RMatrix constraints = Constraints(u, v);
  const Remainder rest[2] = {TakeTrend(u, v, TargetColumn(to, &RPoint::x)),
                             TakeTrend(u, v, TargetColumn(to, &RPoint::y))};
  weights_.Resize(count, 2);
  polynomial_.Resize(CONSTRAINTS, 2);
  RVector x[2], y[2];
  if (CPDSolve(phi, constraints, rest[0].values, x[0], y[0]) &&
      CPDSolve(phi, constraints, rest[1].values, x[1], y[1])) {
    for (std::uint64_t k = 0; k < 2; ++k) {
      AssignCol(x[k], k, weights_);
      AssignCol(y[k], k, polynomial_);
    }
    PutBack(rest, weights_, polynomial_);
    if (FitsBetterThanMean(from, to)) return true;
  }
  RMatrix targets(count, 2);
  for (std::uint64_t k = 0; k < 2; ++k) AssignCol(rest[k].values, k, targets);
  if (!AlternateSolve(phi, constraints, targets, weights_, polynomial_)) return false;
  PutBack(rest, weights_, polynomial_);
  return FitsBetterThanMean(from, to);
}

/// A pseudo-inverse is a solution of anything, so what it says is looked at.
bool CRadialBasisFunction::FitsBetterThanMean(const RPoints& from, const RPoints& to) const {
  constexpr double ROUNDING = 1e-12;
  RPoints values(from.size());
  CImageWarp::Transform(from, values);
  RPoint mean;
  for (const RPoint& target : to) {
    mean.x += target.x / static_cast<double>(to.size());
    mean.y += target.y / static_cast<double>(to.size());
  }
  double left = 0.0, ofMean = 0.0, size = 0.0;
  for (std::size_t i = 0; i < to.size(); ++i) {
    left += Square(to[i].x - values[i].x) + Square(to[i].y - values[i].y);
    ofMean += Square(to[i].x - mean.x) + Square(to[i].y - mean.y);
    size += Square(to[i].x) + Square(to[i].y);
  }
  return left <= ofMean + Square(ROUNDING) * size;
}

CThinPlateSpline* CThinPlateSpline::Clone() const {
  return new CThinPlateSpline(*this);
}

double CThinPlateSpline::Phi(double dx, double dy) const {
  return RadialFunction(RadialKernel::ThinPlate, dx * dx + dy * dy);
}

CNaturalCubicSpline* CNaturalCubicSpline::Clone() const {
  return new CNaturalCubicSpline(*this);
}

double CNaturalCubicSpline::Phi(double dx, double dy) const {
  return RadialFunction(RadialKernel::NaturalCubic, dx * dx + dy * dy);
}

CMarcovSpline* CMarcovSpline::Clone() const {
  return new CMarcovSpline(*this);
}

double CMarcovSpline::Phi(double dx, double dy) const {
  return RadialFunction(RadialKernel::Marcov, dx * dx + dy * dy);
}

CExponentialSpline* CExponentialSpline::Clone() const {
  return new CExponentialSpline(*this);
}

double CExponentialSpline::Phi(double dx, double dy) const {
  return RadialFunction(RadialKernel::Exponential, dx * dx + dy * dy);
}

CRationalQuadraticSpline* CRationalQuadraticSpline::Clone() const {
  return new CRationalQuadraticSpline(*this);
}

double CRationalQuadraticSpline::Phi(double dx, double dy) const {
  return RadialFunction(RadialKernel::RationalQuadratic, dx * dx + dy * dy);
}

}  // namespace shr
