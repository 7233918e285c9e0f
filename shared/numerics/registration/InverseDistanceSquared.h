// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CInverseDistanceSquared`: a linear trend, corrected by what it leaves at the control points
/// nearby. Robust against points that are nearly equal; flat around each of them.
///
///     CInverseDistanceSquared warp;
///     if (warp.Calibrate(from, to)) RPoint onMap = warp.Transform(RPoint(120.5, 88.0));
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// The linear trend of least squares at (u, v) and the mean of the residuals, weighted by
/// 1 / max(squared distance, 1.1754943508222875e-38). At a control point it returns its target, at
/// equal control points the mean of theirs. 4 control points at least, not on one line.
/// Cost: calibration O(n), a transform O(n). Source: D. Shepard, "A two-dimensional interpolation
/// function for irregularly-spaced data", Proceedings of the 23rd ACM National Conference (1968).
class SHARED_API CInverseDistanceSquared : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CInverseDistanceSquared* Clone() const override;

  /// 3 x 2: the constant, the factor of u and that of v; empty unless calibrated.
  const RMatrix& Trend() const { return trend_; }
  /// Target less trend at each control point.
  const RVector& ResidualX() const { return residualX_; }
  const RVector& ResidualY() const { return residualY_; }

private:
  void TransformAll(const RPoint* points, RPoint* results, std::size_t count) const;
  friend class CImageWarp;

  RMatrix trend_;
  RVector residualX_;
  RVector residualY_;
};

}  // namespace shr
