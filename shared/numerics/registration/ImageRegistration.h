// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CImageRegistration`: maps points from one frame to another by the method that was asked for, or
/// by a simpler one where the control points do not determine it.
///
///     CImageRegistration registration;
///     WarpingMethod method = registration.Calibrate(from, to, WarpThinPlateSpline);
///     RPoint onMap = registration.Transform(RPoint(120.5, 88.0));
///
/// How good a registration is tells shared/numerics/registration/RegistrationQuality.h, the way
/// back shared/numerics/registration/InverseWarp.h.
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <memory>
#include <span>

#include "shared/Export.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// Owns one warp, the identity after construction. Copies are deep.
class SHARED_API CImageRegistration {
public:
  CImageRegistration();
  CImageRegistration(const CImageRegistration& other);
  CImageRegistration& operator=(const CImageRegistration& other);
  /// The source holds another warp afterwards.
  CImageRegistration(CImageRegistration&& other);
  CImageRegistration& operator=(CImageRegistration&& other) noexcept;
  ~CImageRegistration();

  /// Calibrates a new warp of the method. Where that fails, goes on with `FallbackOf` it, to the
  /// identity at last, and returns the method in force. Without control points that is the identity
  /// at once; a single one begins at the translation, which needs two, and so ends at the identity
  /// as well. A value that is no method is returned and nothing is done.
  /// Errors: `std::bad_alloc`; the warp is then the identity.
  WarpingMethod Calibrate(const RPoints& from, const RPoints& to, WarpingMethod requested);

  RPoint Transform(const RPoint& point) const { return warp_->Transform(point); }
  /// As `CImageWarp::Transform` of many points.
  void Transform(std::span<const RPoint> points, std::span<RPoint> results) const {
    warp_->Transform(points, results);
  }

  /// Valid until the registration changes.
  const CImageWarp& Warp() const { return *warp_; }

private:
  std::unique_ptr<CImageWarp> warp_;  ///< never null
};

/// Returns a new warp of the method; null for a value that is no method.
[[nodiscard]] SHARED_API std::unique_ptr<CImageWarp> MakeWarp(WarpingMethod method);

/// Returns the method that is tried when this one fails: the splines go on to inverse distance
/// squared, that to linear conformal; quadratic polynomial to general linear to linear conformal;
/// linear conformal and mixed scale to uniform scale to translate to identity. The identity, and a
/// value that is no method, return themselves.
SHARED_API WarpingMethod FallbackOf(WarpingMethod method);

/// Returns the name in English, such as "thin-plate spline"; "" for a value that is no method.
SHARED_API const wchar_t* NameOf(WarpingMethod method);

}  // namespace shr
