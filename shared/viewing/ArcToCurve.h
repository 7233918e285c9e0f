// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `ArcToCurve`, which turns an arc of an ellipse into a polyline.
///
///     Vec2d curve[33];
///     const Box2d ellipse(0.0, 0.0, 20.0, 10.0);
///     ArcToCurve(ellipse, Vec2d(20.0, 5.0), Vec2d(10.0, 10.0), curve);  // its upper right quarter
///
/// Threads: no state.

#pragma once

#include <span>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Fills an array with points of the ellipse that is inscribed in `box`, whose corners may come in
/// any order, counter-clockwise in a y-up frame, from the direction in which `start` is seen from
/// the center to that of `end`, in equal steps of that direction. Equal directions give the full
/// ellipse; the last point is then exactly the first. A direction within 0.005 radians of straight
/// up or down gives the topmost or lowest point itself. `bounds` receives the bounds of the points.
///
/// That snap makes a step in tall ellipses, those of a half height b of many times the half width
/// a: within 0.005 radians of straight up the ellipse itself bends away as far as
/// x = a / sqrt(1 + (200 a / b)^2) from its axis, and the curve steps from there, at the height of
/// 200 x, to the topmost point at once. The steps are 0.005 b wide where b is up to 20 a, under
/// 0.1 a; of an ellipse 200 times as tall as wide they begin 0.7 a from the axis and 0.7 b high.
///
/// Returns false and stores nothing when `count` is below 2, the array null, `start` or `end` the
/// center or no number, or the box without width or height.
SHARED_API bool ArcToCurve(const Box2d& box, const Vec2d& start, const Vec2d& end, int count,
                           Vec2d* points, Box2d* bounds = nullptr);
SHARED_API bool ArcToCurve(const Box2f& box, const Vec2f& start, const Vec2f& end, int count,
                           Vec2f* points, Box2f* bounds = nullptr);
/// The same, filling a span.
SHARED_API bool ArcToCurve(const Box2d& box, const Vec2d& start, const Vec2d& end,
                           std::span<Vec2d> points, Box2d* bounds = nullptr);
SHARED_API bool ArcToCurve(const Box2f& box, const Vec2f& start, const Vec2f& end,
                           std::span<Vec2f> points, Box2f* bounds = nullptr);

}  // namespace shr
