// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Which contour of an even-odd polygon lies in which. Not installed.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"

namespace shr {

/// Returns 1 when a simple contour runs counter-clockwise in a y-up frame and -1 when it runs
/// clockwise: decided exactly by the lowest edge at its lowest leftmost vertex, and by its area
/// where it runs along that edge both ways. Degenerate: 0 for contours without area and with
/// infinite or NaN coordinates.
int TurnOf(std::span<const Vec2d> contour);

/// An outer contour and the contours directly inside it, by their index.
struct ContourGroup {
  std::size_t outer;
  std::vector<std::size_t> holes;
};

/// Groups contours that may touch but do not cross each other or themselves: those at an even depth
/// are outer ones. Groups come in the order of their outer contours, holes in order. Contours of
/// fewer than three vertices, with the area 0 or with infinite or NaN coordinates are left out. Of
/// contours that cross, any grouping may come. Cost: O(n log n).
std::vector<ContourGroup> GroupContours(std::span<const GpcContour> contours);

}  // namespace shr
