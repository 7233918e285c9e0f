// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Warps that pass through every control point: `CThinPlateSpline` and four more radial basis
/// functions on one base. For warps that smooth errors of the points see
/// shared/numerics/registration/PolynomialWarps.h.
///
///     CThinPlateSpline spline;
///     if (spline.Calibrate(from, to)) spline.Transform(points, results);
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// A sum of a radial function around each control point and a polynomial of first degree:
/// X = c0 + c1 u + c2 v + sum of Phi(u - ui, v - vi) wi, and Y with its own w and c. 4 control
/// points at least.
///
/// Calibration solves  Phi w + P^T c = target, P w = 0, where the rows of P are 1, u and v. The
/// five functions of this header are positive definite where P w = 0, so the system is reduced to
/// that space by reflections and solved by Cholesky's method with a step of iterative refinement,
/// which at a thousand points takes a fraction of the time of conjugate gradients and leaves
/// residuals near rounding. Where that fails, and for other functions, it is solved by `CPDSolve`,
/// and where that fails by `AlternateSolve`. Control points that are exactly equal count as one at
/// the mean of their targets, which is what `AlternateSolve` finds for them.
///
/// Degenerate: points that are all equal calibrate nothing; collinear ones are solved by
/// `AlternateSolve`, which keeps to their line; a solution that fits worse than the mean of the
/// targets does is refused. Error bound: where it was solved directly, the spline misses a target
/// by about epsilon times the sum of |Phi w|; that is rounding of the target for the thin-plate,
/// Marcov and exponential ones and may be more for the smooth ones, whose weights grow fast where
/// points are near each other. More than a thousandth of the targets' distance from their linear
/// trend is refused. Cost: calibration O(n^3) time and 8 n^2 bytes for n points (800 MB for
/// 10,000); a transform O(n). What is not solved directly, above all rational quadratic splines of
/// more than some 50 points and points nearer than about 1e-8 of the extent, takes up to 10 n
/// products of a matrix of n^2 numbers, then O(n^3) with a large factor: a minute for 1,000
/// points, not usable for 10,000. Source: F. Bookstein, "Principal warps: thin-plate splines and
/// the decomposition of deformations", IEEE Transactions on Pattern Analysis and Machine
/// Intelligence 11 (1989); H. Wendland, "Scattered Data Approximation", 2005, chapter 8.
class SHARED_API CRadialBasisFunction : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;

  /// n x 2, one row for each control point; empty unless calibrated.
  const RMatrix& Weights() const { return weights_; }
  /// 3 x 2: the constant, the factor of u and that of v.
  const RMatrix& Polynomial() const { return polynomial_; }

protected:
  /// Returns the radial function of a distance in normalised units.
  virtual double Phi(double dx, double dy) const = 0;

private:
  bool SolveByIteration(const RPoints& from, const RPoints& to);
  bool FitsBetterThanMean(const RPoints& from, const RPoints& to) const;
  void TransformAll(const RPoint* points, RPoint* results, std::size_t count) const;
  friend class CImageWarp;

  RMatrix weights_;
  RMatrix polynomial_;
};

// With r^2 = dx^2 + dy^2. All have the same bits on every target (see
// shared/numerics/registration/PortableMath.h).

/// r^2 / 2 ln(r^2); 0 where r^2 is at most 1.1754943508222875e-38.
class SHARED_API CThinPlateSpline : public CRadialBasisFunction {
public:
  [[nodiscard]] CThinPlateSpline* Clone() const override;

protected:
  double Phi(double dx, double dy) const override;
};

/// r^3.
class SHARED_API CNaturalCubicSpline : public CRadialBasisFunction {
public:
  [[nodiscard]] CNaturalCubicSpline* Clone() const override;

protected:
  double Phi(double dx, double dy) const override;
};

/// -r.
class SHARED_API CMarcovSpline : public CRadialBasisFunction {
public:
  [[nodiscard]] CMarcovSpline* Clone() const override;

protected:
  double Phi(double dx, double dy) const override;
};

/// exp(-r).
class SHARED_API CExponentialSpline : public CRadialBasisFunction {
public:
  [[nodiscard]] CExponentialSpline* Clone() const override;

protected:
  double Phi(double dx, double dy) const override;
};

/// -r^2 / (r^2 + 1).
class SHARED_API CRationalQuadraticSpline : public CRadialBasisFunction {
public:
  [[nodiscard]] CRationalQuadraticSpline* Clone() const override;

protected:
  double Phi(double dx, double dy) const override;
};

}  // namespace shr
