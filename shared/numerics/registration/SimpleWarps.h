// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTranslate` and `CIdentityMap`, the warps that neither scale nor turn and do not normalise the
/// control points.
///
///     CTranslate warp;
///     if (warp.Calibrate(from, to)) RPoint onMap = warp.Transform(RPoint(120.5, 88.0));
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// Adds an offset, 0 in a new object. 2 control points at least.
class SHARED_API CTranslate : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  /// Adds the sums of target less source to the offset and divides by the number of pairs: the mean
  /// in a new object. On failure the offset is as before.
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CTranslate* Clone() const override;

  double OffsetX() const { return offsetX_; }
  double OffsetY() const { return offsetY_; }

private:
  double offsetX_ = 0.0;
  double offsetY_ = 0.0;
};

/// Returns every point as it is.
class SHARED_API CIdentityMap : public CImageWarp {
public:
  using CImageWarp::Transform;
  RPoint Transform(const RPoint& point) const override;
  /// Returns true, whatever the points are.
  bool Calibrate(const RPoints& from, const RPoints& to) override;
  [[nodiscard]] CIdentityMap* Clone() const override;
};

}  // namespace shr
