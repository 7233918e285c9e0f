// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CImageWarp`, the base of the methods that map points from one frame, a scanned image say, to
/// another, a map, after they were calibrated on pairs of control points. To let a method be chosen
/// with simpler ones to fall back on, take shared/numerics/registration/ImageRegistration.h.
///
///     CGeneralLinear warp;
///     if (warp.Calibrate(from, to)) RPoint onMap = warp.Transform(RPoint(120.5, 88.0));
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <span>

#include "shared/Export.h"
#include "shared/geometry/Points.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// The warping methods, from the most flexible one to the one that changes nothing.
enum WarpingMethod : int {
  WarpThinPlateSpline = 0,
  WarpNaturalCubicSpline = 1,
  WarpMarcovSpline = 2,
  WarpExponentialSpline = 3,
  WarpRationalQuadraticSpline = 4,
  WarpInverseDistanceSquared = 5,
  WarpQuadraticPolynomial = 6,
  WarpGeneralLinear = 7,
  WarpLinearConformal = 8,
  WarpMixedScale = 9,
  WarpUniformScale = 10,
  WarpTranslate = 11,
  WarpIdentityMap = 12,
};
inline constexpr int WARPING_METHOD_COUNT = 13;

/// Maps points by one method. Source points are normalised to (u, v), about -1 to 1, by a centre
/// and a scale; targets are not, results are in their units.
///
/// A control point with a coordinate that is not finite, and lists of different lengths, calibrate
/// nothing. A method that is not calibrated maps every point to NaN.
class SHARED_API CImageWarp {
public:
  virtual ~CImageWarp();

  /// Returns where a point lies in the other frame.
  virtual RPoint Transform(const RPoint& point) const = 0;
  /// Fits the method to pairs of control points, `from[i]` and `to[i]`. Returns false when there
  /// are fewer than the method needs or they do not determine it; its parameters are then empty.
  /// Errors: `std::bad_alloc`.
  virtual bool Calibrate(const RPoints& from, const RPoints& to) = 0;
  /// Returns a deep copy, which the caller deletes.
  [[nodiscard]] virtual CImageWarp* Clone() const = 0;

  /// Transforms each of `points` into `results`, which may be the same memory: the bits of the
  /// transform of each alone, by the widest vectors of the processor. Requires: `results` is as
  /// long as `points`; what is behind the shorter one is left alone.
  void Transform(std::span<const RPoint> points, std::span<RPoint> results) const;

  /// Takes the middle of the bounding box as the centre, half of its larger side as the scale (1
  /// where that is below 1.2e-38) and normalises the points. A single point is the centre itself;
  /// without points it is 0.
  void ScaleControlPoints(const RPoints& from);

  double CenterX() const { return centerX_; }
  double CenterY() const { return centerY_; }
  double Scale() const { return scale_; }
  /// The normalised control points; empty for methods that do not normalise.
  const RVector& ControlU() const { return u_; }
  const RVector& ControlV() const { return v_; }

protected:
  CImageWarp() = default;
  CImageWarp(const CImageWarp&) = default;
  CImageWarp& operator=(const CImageWarp&) = default;
  CImageWarp(CImageWarp&&) = default;
  CImageWarp& operator=(CImageWarp&&) = default;

  double NormalizeX(double x) const { return (x - centerX_) / scale_; }
  double NormalizeY(double y) const { return (y - centerY_) / scale_; }

private:
  double centerX_ = 0.0;
  double centerY_ = 0.0;
  double scale_ = 1.0;
  RVector u_;
  RVector v_;
};

}  // namespace shr
