// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/Fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shared/numerics/registration/RegistrationQuality.h"

namespace georeference {

using namespace shr;

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
/// Errors that differ by less than this part count as equal, so that the choice is no matter of
/// rounding.
constexpr double TIE = 1e-9;

double Extent(const RPoints& points) {
  RPoint low = points.front(), high = low;
  for (const RPoint& point : points) {
    low = RPoint(std::min(low.x, point.x), std::min(low.y, point.y));
    high = RPoint(std::max(high.x, point.x), std::max(high.y, point.y));
  }
  return std::max(high.x - low.x, high.y - low.y);
}

/// Splines of more points take minutes each; they are calibrated when they are asked for.
constexpr std::size_t MOST_FOR_SPLINES = 2000;

/// A spline of many points whose errors cannot be told is not solved directly, and calibrating it
/// just to compare could take hours.
MethodFit Measure(const ControlPoints& points, WarpingMethod method) {
  MethodFit fit{method, method, NO_NUMBER, NO_NUMBER};
  const bool isSpline = method < WarpInverseDistanceSquared;
  if (isSpline && points.image.size() > MOST_FOR_SPLINES) return fit;
  fit.leftOut = RootMeanSquare(LeaveOneOutErrors(method, points.image, points.map));
  if (isSpline && !std::isfinite(fit.leftOut) && points.image.size() > MOST_REFITS) {
    return fit;
  }
  CImageRegistration registration;
  fit.inForce = registration.Calibrate(points.image, points.map, method);
  fit.rms = RootMeanSquare(Residuals(registration.Warp(), points.image, points.map));
  if (fit.inForce != method) fit.leftOut = NO_NUMBER;
  return fit;
}

WarpingMethod Best(const std::vector<MethodFit>& fits) {
  const MethodFit* best = nullptr;
  for (const MethodFit& fit : fits) {
    if (!std::isfinite(fit.leftOut)) continue;
    if (best == nullptr || fit.leftOut <= best->leftOut * (1.0 + TIE)) best = &fit;
  }
  return best != nullptr ? best->method : WarpThinPlateSpline;
}

}  // namespace

double Length(const RPoint& error) {
  return std::sqrt(error.x * error.x + error.y * error.y);
}

Georeference Fit(const ControlPoints& points, std::optional<WarpingMethod> method,
                 examples::IProgress& progress) {
  Georeference result;
  result.imageExtent = Extent(points.image);
  result.mapExtent = Extent(points.map);
  {
    examples::Operation operation(progress, L"Comparing methods", WARPING_METHOD_COUNT);
    for (int i = 0; i < WARPING_METHOD_COUNT; ++i) {
      result.comparison.push_back(Measure(points, static_cast<WarpingMethod>(i)));
      operation.Step();
    }
  }
  result.isChosen = !method;
  const WarpingMethod requested = method ? *method : Best(result.comparison);
  const examples::Operation operation(progress, L"Calibrating", 0);
  const WarpingMethod inForce = result.registration.Calibrate(points.image, points.map, requested);
  // With a single point the chain begins at the translation.
  const bool isSingle = points.image.size() == 1 && requested != WarpIdentityMap;
  result.chain = {requested};
  if (isSingle && requested != WarpTranslate) result.chain.push_back(WarpTranslate);
  while (result.chain.back() != inForce) result.chain.push_back(FallbackOf(result.chain.back()));
  result.residuals = Residuals(result.registration.Warp(), points.image, points.map);
  result.leftOut = LeaveOneOutErrors(inForce, points.image, points.map);
  result.rms = RootMeanSquare(result.residuals);
  result.leftOutRms = RootMeanSquare(result.leftOut);
  return result;
}

}  // namespace georeference
