// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CRectTransformer`, which maps one rectangle onto another by scaling about their centers.
///
///     const CRectTransformer toPage(mapBounds, page, true);   // the aspect is kept
///     Vec2d onPage = toPage.Transform(city);
///     Vec2d onMap = toPage.ReverseTransform(onPage);
///     Mat3d matrix = toPage;                                  // the same mapping
///
/// Threads: plain values.

#pragma once

#include <cstddef>
#include <span>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Mat3d.h"
#include "shared/geometry/Vec2.h"

struct tagPOINT;
struct tagRECT;

namespace shr {

/// p' = (p - source center) * scale + destination center, along each axis. An inverted axis of a
/// rectangle mirrors.
class SHARED_API CRectTransformer {
public:
  /// Along an axis the scale is the destination's extent divided by the source's. An axis in which
  /// the source has less than DBL_EPSILON takes the scale of the other one; both of them then have
  /// the scale 1. With `keepAspect` both axes have the smaller magnitude, each its own sign.
  CRectTransformer(const Box2d& source, const Box2d& destination, bool keepAspect);

  const Vec2d& GetScale() const { return scale_; }

  Vec2d Transform(const Vec2d& point) const {
    return (point - sourceCenter_) * scale_ + destinationCenter_;
  }
  /// Undoes `Transform`. Degenerate: an axis of scale 0 gives the center of the source.
  Vec2d ReverseTransform(const Vec2d& point) const;

  // Into a result of either kind. Whole numbers are the nearest, of two the one farther from zero,
  // and stop at the ends of 32 bits. Of boxes the two corners are transformed: where an axis is
  // mirrored, the result is inverted. Left, top and right, bottom are the corners of a RECT.

  void Transform(const Vec2d& point, Vec2d& result) const { result = Transform(point); }
  void Transform(const Vec2d& point, tagPOINT& result) const;
  void Transform(const Box2d& box, Box2d& result) const;
  void Transform(const Box2d& box, tagRECT& result) const;
  void ReverseTransform(const Vec2d& point, Vec2d& result) const {
    result = ReverseTransform(point);
  }
  void ReverseTransform(const Vec2d& point, tagPOINT& result) const;
  void ReverseTransform(const Box2d& box, Box2d& result) const;
  void ReverseTransform(const Box2d& box, tagRECT& result) const;

  // Many points; source and result may be the same. Of spans, as many points as both have.

  void Transform(const Vec2d* points, Vec2d* results, std::size_t count) const;
  void Transform(const Vec2d* points, tagPOINT* results, std::size_t count) const;
  void Transform(std::span<const Vec2d> points, std::span<Vec2d> results) const;
  void Transform(std::span<const Vec2d> points, std::span<tagPOINT> results) const;
  void ReverseTransform(const Vec2d* points, Vec2d* results, std::size_t count) const;
  void ReverseTransform(const Vec2d* points, tagPOINT* results, std::size_t count) const;
  void ReverseTransform(std::span<const Vec2d> points, std::span<Vec2d> results) const;
  void ReverseTransform(std::span<const Vec2d> points, std::span<tagPOINT> results) const;

  /// Returns the mapping as a matrix. Error bound: a few units in the last place of the centers.
  operator Mat3d() const;

private:
  Vec2d sourceCenter_;
  Vec2d destinationCenter_;
  Vec2d scale_;
};

}  // namespace shr
