// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads control points and points to transform from tables.
///
///     const ControlPoints points = ReadControlPoints(path, std::nullopt);
///
/// Columns are recognised by their names, letter case does not matter: id, image_x, image_y, map_x
/// and map_y, what GIS programs call them (mapX, mapY, sourceX, sourceY, enable of QGIS) and common
/// words for them (pixel and line, column and row, longitude and latitude, easting and northing).

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "shared/geometry/Points.h"
#include "shared/text/GString.h"

namespace georeference {

using shr::GString;
using shr::RPoint;
using shr::RPoints;

struct ControlPoints {
  std::vector<GString> ids;  ///< the number of the row where the table has none
  RPoints image;
  RPoints map;
  std::size_t disabled = 0;  ///< rows that the table itself puts aside
  GString crs;               ///< the coordinate system that a .points file names
};

/// Points of the image to transform.
struct ImagePoints {
  std::vector<GString> ids;
  RPoints points;
};

/// Errors: the library's exception when a file cannot be read; `ThrowInputError` with the line for
/// a row that is broken, and when a file has no rows. Control points may all be disabled, which is
/// an error, too.
ControlPoints ReadControlPoints(const GString& path, std::optional<std::uint32_t> codePage);
ImagePoints ReadImagePoints(const GString& path, std::optional<std::uint32_t> codePage);

}  // namespace georeference
