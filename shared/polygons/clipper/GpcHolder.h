// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Owners of the clipper's records, and the record as spans. Not installed.

#pragma once

#include <cstddef>
#include <span>

#include "shared/polygons/Gpc.h"

namespace shr {

/// A record that is freed at the end of the scope unless it has been handed over.
struct GpcPolygonHolder {
  GpcPolygonHolder() = default;
  ~GpcPolygonHolder() { gpc_free_polygon(record); }
  GpcPolygonHolder(const GpcPolygonHolder&) = delete;
  GpcPolygonHolder& operator=(const GpcPolygonHolder&) = delete;

  GpcPolygon record;
};

struct GpcTristripHolder {
  GpcTristripHolder() = default;
  ~GpcTristripHolder() { gpc_free_tristrip(record); }
  GpcTristripHolder(const GpcTristripHolder&) = delete;
  GpcTristripHolder& operator=(const GpcTristripHolder&) = delete;

  GpcTristrip record;
};

inline std::span<const Vec2d> VerticesOf(const GpcContour& contour) {
  return {contour.vertices, static_cast<std::size_t>(contour.vertexCount)};
}

inline std::span<const GpcContour> ContoursOf(const GpcPolygon& polygon) {
  return {polygon.contours, static_cast<std::size_t>(polygon.contourCount)};
}

inline std::span<const GpcContour> StripsOf(const GpcTristrip& tristrip) {
  return {tristrip.strips, static_cast<std::size_t>(tristrip.stripCount)};
}

}  // namespace shr
