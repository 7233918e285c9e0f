// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Least squares: with the rows q of the orthonormal factor that belong to point k, the residual r
// becomes (I - q q^T)^-1 r when the point is left out; one row where X and Y are fitted apart, two
// where they share parameters. MGSLeastSquares leaves that factor, and the residuals, behind.
//
// Inverse distance: leaving out point k changes its trend, and so the residual of point j, by
// h_jk e_k, where e_k is the error of the trend at k and h_jk = q_j . q_k; the rest is the weighted
// mean of these.

#include "shared/numerics/registration/RegistrationQuality.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/ImageRegistration.h"
#include "shared/numerics/registration/RadialKernelOf.h"
#include "shared/numerics/registration/SimpleWarps.h"
#include "shared/numerics/registration/SplineSystem.h"
#include "shared/numerics/registration/WarpDesign.h"

namespace shr {
namespace {

using Errors = std::vector<RPoint>;

/// What is left of a point's freedom when the others do not determine the parameters.
constexpr double LEAST_FREEDOM = 1e-13;

/// The points of a problem and their normalised sources.
struct Problem {
  const RPoints& from;
  const RPoints& to;
  RVector u;
  RVector v;
};

double Dot(std::span<const double> a, std::span<const double> b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
  return sum;
}

/// An error of least squares whose parameters are of one coordinate.
double WithoutPoint(double residual, std::span<const double> q) {
  const double freedom = 1.0 - Dot(q, q);
  return freedom > LEAST_FREEDOM ? residual / freedom : NO_NUMBER;
}

Errors Columns(const Problem& problem, RMatrix design) {
  RMatrix parameters, rest = TargetColumns(problem.to);
  Errors errors(problem.from.size(), NO_POINT);
  if (!FitLeastSquares(design, parameters, rest)) return errors;
  for (std::size_t i = 0; i < errors.size(); ++i) {
    errors[i].x = WithoutPoint(rest(i, 0), design.Row(i));
    errors[i].y = WithoutPoint(rest(i, 1), design.Row(i));
  }
  return errors;
}

Errors Axes(const Problem& problem) {
  Errors errors(problem.from.size(), NO_POINT);
  RMatrix designX = AxisDesign(problem.u), designY = AxisDesign(problem.v);
  RVector x = TargetColumn(problem.to, &RPoint::x), y = TargetColumn(problem.to, &RPoint::y);
  RVector parameters;
  if (!FitLeastSquares(designX, parameters, x) || !FitLeastSquares(designY, parameters, y)) {
    return errors;
  }
  for (std::size_t i = 0; i < errors.size(); ++i) {
    const RPoint error(WithoutPoint(x(i), designX.Row(i)), WithoutPoint(y(i), designY.Row(i)));
    if (IsFinitePoint(error)) errors[i] = error;
  }
  return errors;
}

/// Two rows of the design a point.
Errors Rows(const Problem& problem, RMatrix design) {
  Errors errors(problem.from.size(), NO_POINT);
  RVector parameters, rest = TargetRows(problem.to);
  if (!FitLeastSquares(design, parameters, rest)) return errors;
  for (std::size_t i = 0; i < errors.size(); ++i) {
    const auto first = design.Row(2 * i), second = design.Row(2 * i + 1);
    const double xx = 1.0 - Dot(first, first), yy = 1.0 - Dot(second, second);
    const double xy = -Dot(first, second);
    const double determinant = xx * yy - xy * xy;
    if (!(determinant > LEAST_FREEDOM)) continue;
    const RPoint r(rest(2 * i), rest(2 * i + 1));
    errors[i] = RPoint((yy * r.x - xy * r.y) / determinant, (xx * r.y - xy * r.x) / determinant);
  }
  return errors;
}

Errors InverseDistance(const Problem& problem) {
  RMatrix q = LinearDesign(problem.u, problem.v);
  RMatrix parameters, rest = TargetColumns(problem.to);
  const std::size_t count = problem.from.size();
  Errors errors(count, NO_POINT);
  if (!FitLeastSquares(q, parameters, rest)) return errors;
  for (std::size_t k = 0; k < count; ++k) {
    const RPoint ofTrend(WithoutPoint(rest(k, 0), q.Row(k)), WithoutPoint(rest(k, 1), q.Row(k)));
    double x = 0.0, y = 0.0, sum = 0.0;
    for (std::size_t j = 0; j < count; ++j) {
      if (j == k) continue;
      const double du = problem.u(k) - problem.u(j), dv = problem.v(k) - problem.v(j);
      const double weight = 1.0 / std::max(LEAST_SQUARED_DISTANCE, du * du + dv * dv);
      const double share = Dot(q.Row(j), q.Row(k));
      x += weight * (rest(j, 0) + share * ofTrend.x);
      y += weight * (rest(j, 1) + share * ofTrend.y);
      sum += weight;
    }
    errors[k] = RPoint(ofTrend.x - x / sum, ofTrend.y - y / sum);
  }
  return errors;
}

/// Calibrates without point `k`.
RPoint Refit(WarpingMethod method, const RPoints& from, const RPoints& to, std::size_t k) {
  RPoints otherFrom = from, otherTo = to;
  otherFrom.erase(otherFrom.begin() + static_cast<std::ptrdiff_t>(k));
  otherTo.erase(otherTo.begin() + static_cast<std::ptrdiff_t>(k));
  const std::unique_ptr<CImageWarp> warp = MakeWarp(method);
  if (!warp->Calibrate(otherFrom, otherTo)) return NO_POINT;
  const RPoint value = warp->Transform(from[k]);
  return RPoint(to[k].x - value.x, to[k].y - value.y);
}

double ScaleOf(const RPoints& points) {
  CTranslate warp;
  warp.ScaleControlPoints(points);
  return warp.Scale();
}

/// Returns true when the scale of the other points is another one.
bool BearsScale(const RPoints& from, std::size_t k, double scale) {
  RPoints others = from;
  others.erase(others.begin() + static_cast<std::ptrdiff_t>(k));
  return ScaleOf(others) != scale;
}

/// The points that are calibrated anew, of a function whose shape depends on the scale.
std::vector<std::size_t> PointsThatBearScale(RadialKernel kernel, const RPoints& from) {
  std::vector<std::size_t> points;
  if (kernel != RadialKernel::Exponential && kernel != RadialKernel::RationalQuadratic) {
    return points;
  }
  const auto [left, right] = std::minmax_element(
      from.begin(), from.end(), [](const RPoint& a, const RPoint& b) { return a.x < b.x; });
  const auto [bottom, top] = std::minmax_element(
      from.begin(), from.end(), [](const RPoint& a, const RPoint& b) { return a.y < b.y; });
  const double scale = ScaleOf(from);
  for (const auto extreme : {left, right, bottom, top}) {
    const auto k = static_cast<std::size_t>(extreme - from.begin());
    const bool isKnown = std::find(points.begin(), points.end(), k) != points.end();
    if (!isKnown && BearsScale(from, k, scale)) points.push_back(k);
  }
  return points;
}

Errors Spline(WarpingMethod method, const CRadialBasisFunction& spline, const Problem& problem) {
  const RadialKernel kernel = *RadialKernelOf(spline);
  const std::size_t count = problem.from.size();
  Errors errors(count, NO_POINT);
  const RMatrix targets = TargetColumns(problem.to);
  RMatrix weights, polynomial;
  SplineSystem system(kernel, problem.u, problem.v);
  if (system.Factor() && system.Solve(targets, weights, polynomial)) {
    const RMatrix columns = system.LeaveOneOut(targets, weights);
    for (std::size_t i = 0; i < count; ++i) errors[i] = RPoint(columns(i, 0), columns(i, 1));
    for (const std::size_t k : PointsThatBearScale(kernel, problem.from)) {
      errors[k] = Refit(method, problem.from, problem.to, k);
    }
  } else if (count <= MOST_REFITS) {
    for (std::size_t k = 0; k < count; ++k) {
      errors[k] = Refit(method, problem.from, problem.to, k);
    }
  }
  return errors;
}

/// The mean of the other offsets is what the translation adds.
Errors Translate(const Problem& problem) {
  CTranslate warp;
  Errors errors(problem.from.size(), NO_POINT);
  if (!warp.Calibrate(problem.from, problem.to)) return errors;
  const auto count = static_cast<double>(errors.size());
  errors = Residuals(warp, problem.from, problem.to);
  for (RPoint& error : errors) {
    error.x *= count / (count - 1.0);
    error.y *= count / (count - 1.0);
  }
  return errors;
}

/// The fewest control points of a method.
std::size_t FewestPoints(WarpingMethod method) {
  if (method == WarpQuadraticPolynomial) return 6;
  if (method <= WarpInverseDistanceSquared || method == WarpGeneralLinear) return 4;
  return method == WarpIdentityMap ? 0 : 2;
}

}  // namespace

std::vector<RPoint> Residuals(const CImageWarp& warp, const RPoints& from, const RPoints& to) {
  std::vector<RPoint> errors(std::min(from.size(), to.size()));
  warp.Transform(from, errors);
  for (std::size_t i = 0; i < errors.size(); ++i) {
    errors[i] = RPoint(to[i].x - errors[i].x, to[i].y - errors[i].y);
  }
  return errors;
}

double RootMeanSquare(std::span<const RPoint> errors) {
  if (errors.empty()) return NO_NUMBER;
  double sum = 0.0;
  for (const RPoint& error : errors) sum += error.x * error.x + error.y * error.y;
  return std::sqrt(sum / static_cast<double>(errors.size()));
}

std::vector<RPoint> LeaveOneOutErrors(WarpingMethod method, const RPoints& from,
                                      const RPoints& to) {
  const std::unique_ptr<CImageWarp> warp = MakeWarp(method);
  if (warp == nullptr || !AreUsable(from, to, FewestPoints(method) + 1)) {
    return Errors(std::min(from.size(), to.size()), NO_POINT);
  }
  warp->ScaleControlPoints(from);
  const Problem problem{from, to, warp->ControlU(), warp->ControlV()};
  switch (method) {
    case WarpInverseDistanceSquared:
      return InverseDistance(problem);
    case WarpQuadraticPolynomial:
      return Columns(problem, QuadraticDesign(problem.u, problem.v));
    case WarpGeneralLinear:
      return Columns(problem, LinearDesign(problem.u, problem.v));
    case WarpLinearConformal:
      return Rows(problem, ConformalDesign(problem.u, problem.v));
    case WarpMixedScale:
      return Axes(problem);
    case WarpUniformScale:
      return Rows(problem, UniformDesign(problem.u, problem.v));
    case WarpTranslate:
      return Translate(problem);
    case WarpIdentityMap:
      return Residuals(*warp, from, to);
    default:
      return Spline(method, dynamic_cast<const CRadialBasisFunction&>(*warp), problem);
  }
}

}  // namespace shr
