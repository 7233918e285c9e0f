// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the model as a map: sea, countries, graticule, events, cities, frame, title and legend.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

struct MapPicture {
  std::string svg;  ///< UTF-8
  int width = 0;
  int height = 0;
  std::vector<std::size_t> cities;  ///< those that are drawn, in the order of the model
};

/// Returns the picture. The same model gives the same bytes on every machine.
MapPicture DrawMap(const Model& model);

}  // namespace mapreport
