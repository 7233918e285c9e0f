// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Warps that fit few parameters to many control points by least squares, from a quadratic
/// polynomial to one scale. For warps that pass through every point see
/// shared/numerics/registration/RadialBasisFunction.h.
///
///     CLinearConformal warp;
///     if (warp.Calibrate(from, to)) RPoint onMap = warp.Transform(RPoint(120.5, 88.0));
///
/// All are solved by `MGSLeastSquares` on the normalised source points (u, v) and refuse points
/// that do not determine the parameters, on one line say. Cost: calibration O(n), a transform O(1).
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// X = k0 + k1 u + k2 v + k3 u v + k4 u^2 + k5 v^2, and Y with its own six. 6 control points at
/// least.
class SHARED_API CQuadraticPolynomial : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CQuadraticPolynomial* Clone() const override;

  /// 6 x 2, a column for X and one for Y; empty unless calibrated.
  const RMatrix& Coefficients() const { return coefficients_; }

private:
  RMatrix coefficients_;
};

/// X = k0 + k1 u + k2 v, Y = m0 + m1 u + m2 v: any affine map. 4 control points at least.
class SHARED_API CGeneralLinear : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CGeneralLinear* Clone() const override;

  /// 3 x 2, a column for X and one for Y; empty unless calibrated.
  const RMatrix& Coefficients() const { return coefficients_; }

private:
  RMatrix coefficients_;
};

/// X = a + c u + d v, Y = b + c v - d u: a rotation, one scale and a translation. It keeps the
/// sense of rotation; rows of an image that are counted downwards are negated before. 2 control
/// points at least.
class SHARED_API CLinearConformal : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CLinearConformal* Clone() const override;

  /// a, b, c and d; empty unless calibrated.
  const RVector& Coefficients() const { return coefficients_; }

private:
  RVector coefficients_;
};

/// X = k0 + k1 u, Y = m0 + m1 v: a scale for each axis and a translation. 2 control points at
/// least.
class SHARED_API CMixedScale : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CMixedScale* Clone() const override;

  /// 2 x 2, a column for X and one for Y; empty unless calibrated.
  const RMatrix& Coefficients() const { return coefficients_; }

private:
  RMatrix coefficients_;
};

/// X = a + s u, Y = b + s v: one scale and a translation. 2 control points at least.
class SHARED_API CUniformScale : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CUniformScale* Clone() const override;

  /// a, b and s; empty unless calibrated.
  const RVector& Coefficients() const { return coefficients_; }

private:
  RVector coefficients_;
};

}  // namespace shr
