// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Pixel geometry on the plain Windows types: rectangles as corner points and back, distances from
/// segments.
///
///     POINT corners[2];
///     RectToPoints(rect, corners);
///     matrix.Transform(...);
///     RectFromPoints(corners, rect);
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"

struct tagPOINT;
struct tagRECT;

namespace shr {

/// Stores left, top and right, bottom.
SHARED_API void RectToPoints(const tagRECT& rect, tagPOINT (&points)[2]);
/// Stores the corners in turn: left top, right top, right bottom, left bottom.
SHARED_API void RectToPoints(const tagRECT& rect, tagPOINT (&points)[4]);

/// Makes the rectangle of two opposite corners, the first one left and top, in whatever order they
/// lie. Law: undoes `RectToPoints`.
SHARED_API void RectFromPoints(const tagPOINT (&points)[2], tagRECT& rect);
SHARED_API void RectFromPoints(const tagPOINT (&points)[4], tagRECT& rect);

/// Returns the squared distance of `point` from the segment from `begin` to `end`, which may be one
/// point.
SHARED_API double PointLineSegDistSq(const tagPOINT& point, const tagPOINT& begin,
                                     const tagPOINT& end);

}  // namespace shr
