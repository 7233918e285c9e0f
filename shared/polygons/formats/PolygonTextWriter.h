// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The one writer of polygons as text, which the formats give their words. Not installed.

#pragma once

#include <string>

#include "shared/polygons/MultiPolygon.h"

namespace shr {

class GPolygon;

/// The signs of a format.
struct PolygonTextStyle {
  const char* polygon;       ///< before the rings of a single polygon
  const char* multiPolygon;  ///< before the polygons
  const char* empty;         ///< the whole text of no polygons
  const char* end;           ///< behind everything
  char open;                 ///< around polygons and rings
  char close;
  const char* openPoint;
  const char* betweenNumbers;
  const char* closePoint;
  const char* separator;  ///< between points, rings and polygons
};

std::string WritePolygons(const MultiPolygon2d& polygons, const PolygonTextStyle& style);

/// Returns the contours as polygons with holes. Errors: as `WritePolygons` for coordinates that are
/// not finite.
MultiPolygon2d FinitePolygons(const GPolygon& polygon);

}  // namespace shr
