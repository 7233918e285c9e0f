// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Places and times as the map and the report write them: in English, the same on every
/// machine.

#pragma once

#include <cstddef>
#include <optional>

#include "examples/common/NumberText.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// Returns the magnitude with one decimal, or a dash.
GString FormatMagnitude(const std::optional<double>& magnitude);

/// Returns "122.5°W", "0°" or, at the antimeridian, "180°"; longitudes beyond 180 count from the
/// other side.
GString FormatLongitude(double degrees, std::size_t decimals);
GString FormatLatitude(double degrees, std::size_t decimals);

/// Returns "46.20°N 122.20°W" with two decimals always, for columns of places.
GString FormatPosition(const Vec2d& position);

/// Returns "longitude 10°W to 40°E, latitude 35°N to 60°N".
GString FormatWindow(const Box2d& window);

/// Returns "2018-01-31 02:00" for "2018-01-31T02:00:15.660Z"; any other text unchanged.
GString FormatTime(const GString& time);

/// Returns "2018-01-31 to 2018-02-07", the first and last day of the visible events; empty when
/// their times are not of the form "2018-01-31...".
GString FormatPeriod(const Model& model);

}  // namespace mapreport
