// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/InverseWarp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/InverseDistanceSquared.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/numerics/registration/PortableMath.h"
#include "shared/numerics/registration/RadialKernelOf.h"
#include "shared/numerics/registration/SimpleWarps.h"

namespace shr {
namespace {

/// A step is halved at most so often.
constexpr int MOST_HALVINGS = 40;

/// Factors of u and v in X (first column) and in Y.
WarpDerivative OfLinear(const RMatrix& k) {
  return {k(1, 0), k(2, 0), k(1, 1), k(2, 1)};
}

/// The derivative of the radial function by r^2, twice: times du it is that by u.
double TwiceSlope(RadialKernel kernel, double squared) {
  if (squared <= LEAST_SQUARED_DISTANCE) {
    return kernel == RadialKernel::RationalQuadratic ? -2.0 : 0.0;
  }
  switch (kernel) {
    case RadialKernel::ThinPlate:
      return PortableLog(squared) + 1.0;
    case RadialKernel::NaturalCubic:
      return 3.0 * std::sqrt(squared);
    case RadialKernel::Marcov:
      return -1.0 / std::sqrt(squared);
    case RadialKernel::Exponential:
      return -PortableExp(-std::sqrt(squared)) / std::sqrt(squared);
    case RadialKernel::RationalQuadratic:
      break;
  }
  return -2.0 / ((squared + 1.0) * (squared + 1.0));
}

WarpDerivative OfSpline(RadialKernel kernel, const CRadialBasisFunction& spline, double u,
                        double v) {
  WarpDerivative result = OfLinear(spline.Polynomial());
  for (std::size_t i = 0; i < spline.Weights().Rows(); ++i) {
    const double du = u - spline.ControlU()(i);
    const double dv = v - spline.ControlV()(i);
    const double slope = TwiceSlope(kernel, du * du + dv * dv);
    const double x = slope * spline.Weights()(i, 0);
    const double y = slope * spline.Weights()(i, 1);
    result.xByX += x * du;
    result.xByY += x * dv;
    result.yByX += y * du;
    result.yByY += y * dv;
  }
  return result;
}

/// With the weights w and the residuals r: (sum of w' r - mean sum of w') / sum of w.
WarpDerivative OfInverseDistance(const CInverseDistanceSquared& warp, double u, double v) {
  WarpDerivative result = OfLinear(warp.Trend());
  const std::size_t count = warp.ControlU().size();
  double sum = 0.0, meanX = 0.0, meanY = 0.0;
  for (const bool isFirst : {true, false}) {
    for (std::size_t i = 0; i < count; ++i) {
      const double du = u - warp.ControlU()(i);
      const double dv = v - warp.ControlV()(i);
      const double squared = du * du + dv * dv;
      if (squared <= LEAST_SQUARED_DISTANCE) return OfLinear(warp.Trend());
      const double weight = 1.0 / squared;
      if (isFirst) {
        sum += weight;
        meanX += weight * warp.ResidualX()(i);
        meanY += weight * warp.ResidualY()(i);
        continue;
      }
      const double slope = -2.0 * weight * (weight / sum);
      const double x = slope * (warp.ResidualX()(i) - meanX);
      const double y = slope * (warp.ResidualY()(i) - meanY);
      result.xByX += x * du;
      result.xByY += x * dv;
      result.yByX += y * du;
      result.yByY += y * dv;
    }
    if (isFirst) {
      meanX /= sum;
      meanY /= sum;
    }
  }
  return result;
}

WarpDerivative OfQuadratic(const RMatrix& k, double u, double v) {
  const auto byU = [&](std::size_t j) { return k(1, j) + (k(3, j) * v + 2.0 * k(4, j) * u); };
  const auto byV = [&](std::size_t j) { return k(2, j) + (k(3, j) * u + 2.0 * k(5, j) * v); };
  return {byU(0), byV(0), byU(1), byV(1)};
}

/// The derivative by the normalised coordinates.
std::optional<WarpDerivative> OfNormalized(const CImageWarp& warp, double u, double v) {
  if (const auto* spline = dynamic_cast<const CRadialBasisFunction*>(&warp)) {
    const auto kernel = RadialKernelOf(*spline);
    if (!kernel || spline->Polynomial().empty()) return std::nullopt;
    return OfSpline(*kernel, *spline, u, v);
  }
  if (const auto* inverse = dynamic_cast<const CInverseDistanceSquared*>(&warp)) {
    if (inverse->Trend().empty()) return std::nullopt;
    return OfInverseDistance(*inverse, u, v);
  }
  if (const auto* quadratic = dynamic_cast<const CQuadraticPolynomial*>(&warp)) {
    if (quadratic->Coefficients().empty()) return std::nullopt;
    return OfQuadratic(quadratic->Coefficients(), u, v);
  }
  if (const auto* linear = dynamic_cast<const CGeneralLinear*>(&warp)) {
    if (linear->Coefficients().empty()) return std::nullopt;
    return OfLinear(linear->Coefficients());
  }
  if (const auto* conformal = dynamic_cast<const CLinearConformal*>(&warp)) {
    const RVector& k = conformal->Coefficients();
    if (k.empty()) return std::nullopt;
    return WarpDerivative{k(2), k(3), -k(3), k(2)};
  }
  if (const auto* mixed = dynamic_cast<const CMixedScale*>(&warp)) {
    const RMatrix& k = mixed->Coefficients();
    if (k.empty()) return std::nullopt;
    return WarpDerivative{k(1, 0), 0.0, 0.0, k(1, 1)};
  }
  if (const auto* uniform = dynamic_cast<const CUniformScale*>(&warp)) {
    const RVector& k = uniform->Coefficients();
    if (k.empty()) return std::nullopt;
    return WarpDerivative{k(2), 0.0, 0.0, k(2)};
  }
  return std::nullopt;
}

double LargestOf(const WarpDerivative& d) {
  return std::max(std::max(std::abs(d.xByX), std::abs(d.xByY)),
                  std::max(std::abs(d.yByX), std::abs(d.yByY)));
}

/// Solves derivative * step = (x, y); not finite where there is no solution.
RPoint Solve(const WarpDerivative& d, double x, double y) {
  // Scaled, so that the determinant neither overflows nor vanishes.
  const double size = LargestOf(d);
  const WarpDerivative s{d.xByX / size, d.xByY / size, d.yByX / size, d.yByY / size};
  const double factor = s.Determinant() * size;
  return RPoint((s.yByY * x - s.xByY * y) / factor, (s.xByX * y - s.yByX * x) / factor);
}

/// Where the linear part of the warp has the target, or the centre.
RPoint FirstGuess(const CImageWarp& warp, const RPoint& target) {
  const RPoint center(warp.CenterX(), warp.CenterY());
  const RMatrix* trend = nullptr;
  if (const auto* spline = dynamic_cast<const CRadialBasisFunction*>(&warp)) {
    trend = &spline->Polynomial();
  } else if (const auto* inverse = dynamic_cast<const CInverseDistanceSquared*>(&warp)) {
    trend = &inverse->Trend();
  }
  if (trend == nullptr || trend->empty()) return center;
  const RPoint step = Solve(OfLinear(*trend), target.x - (*trend)(0, 0), target.y - (*trend)(0, 1));
  const RPoint guess(center.x + step.x * warp.Scale(), center.y + step.y * warp.Scale());
  return IsFinitePoint(guess) ? guess : center;
}

/// A point of the search and what the warp makes of it.
struct Place {
  RPoint point;
  RPoint left;  ///< target less transform
  double distance;
};

Place Visit(const CImageWarp& warp, const RPoint& target, const RPoint& point) {
  const RPoint value = warp.Transform(point);
  const RPoint left(target.x - value.x, target.y - value.y);
  return {point, left, std::hypot(left.x, left.y)};
}

}  // namespace

std::optional<WarpDerivative> DerivativeOf(const CImageWarp& warp, const RPoint& point) {
  if (dynamic_cast<const CTranslate*>(&warp) != nullptr ||
      dynamic_cast<const CIdentityMap*>(&warp) != nullptr) {
    return WarpDerivative{1.0, 0.0, 0.0, 1.0};
  }
  const double scale = warp.Scale();
  auto result =
      OfNormalized(warp, (point.x - warp.CenterX()) / scale, (point.y - warp.CenterY()) / scale);
  if (result) {
    *result = {result->xByX / scale, result->xByY / scale, result->yByX / scale,
               result->yByY / scale};
  }
  return result;
}

InverseResult InverseTransform(const CImageWarp& warp, const RPoint& target) {
  return InverseTransform(warp, target, FirstGuess(warp, target));
}

InverseResult InverseTransform(const CImageWarp& warp, const RPoint& target, const RPoint& start) {
  Place place = Visit(warp, target, start);
  InverseResult result{NO_POINT, false, 0, NO_NUMBER};
  double tolerance = 0.0;
  while (std::isfinite(place.distance)) {
    result.point = place.point;
    result.distance = place.distance;
    const auto derivative = DerivativeOf(warp, place.point);
    if (!derivative) break;
    tolerance = INVERSE_TOLERANCE * (std::max(std::abs(target.x), std::abs(target.y)) +
                                     LargestOf(*derivative) * warp.Scale());
    const RPoint step = Solve(*derivative, place.left.x, place.left.y);
    if (place.distance == 0.0 || !IsFinitePoint(step) || result.steps == MOST_INVERSE_STEPS) break;
    double part = 1.0;
    Place next = place;
    for (int halving = 0; halving < MOST_HALVINGS; ++halving, part /= 2) {
      next =
          Visit(warp, target, RPoint(place.point.x + part * step.x, place.point.y + part * step.y));
      if (next.distance < place.distance) break;
      // Close to the goal only rounding is left.
      if (place.distance <= tolerance) break;
    }
    if (!(next.distance < place.distance)) break;
    place = next;
    ++result.steps;
  }
  result.converged = result.distance <= tolerance;
  return result;
}

}  // namespace shr
