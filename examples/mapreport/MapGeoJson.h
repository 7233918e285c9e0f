// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The areas of a map as GeoJSON (RFC 7946) for other programs.

#pragma once

#include <string>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// Returns a feature collection: the united continent as one feature when there is one, else the
/// visible part of each country with its name, continent and count of events. Longitudes of a
/// window that reaches beyond 180 degrees do so, too.
std::string MakeGeoJson(const Model& model);

}  // namespace mapreport
