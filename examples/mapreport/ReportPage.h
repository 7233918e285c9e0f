// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes the report: the map, the countries by count, the strongest events, the cities, the inputs
/// and the steps that made the map.

#pragma once

#include <cstddef>
#include <string>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/SvgMap.h"

namespace mapreport {

/// Returns the page as HTML 4.01 in pure ASCII: every other character is a reference.
/// `pictureName` is the file name of the map, beside the page; with `tables` the files of
/// TableFiles.h are there, too.
std::string MakePage(const Model& model, const MapPicture& picture, const GString& pictureName,
                     bool tables = false);

}  // namespace mapreport
