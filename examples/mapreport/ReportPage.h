// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes the report: the map, the countries by count, the strongest events, the cities and the
/// inputs.

#pragma once

#include <cstddef>
#include <string>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/SvgMap.h"

namespace mapreport {

struct PageContent {
  GString title;
  GString pictureName;  ///< file name of the map, beside the page
  std::size_t strongest = 20;
};

/// Returns the page as HTML 4.01 in pure ASCII: every other character is a reference.
std::string MakePage(const Model& model, const MapPicture& picture, const PageContent& content);

}  // namespace mapreport
