// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the visible parts of the countries in their colors, with borders.

#pragma once

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "examples/mapreport/SvgWriter.h"

namespace mapreport {

/// Draws one group a country that shows, with its name and count as the title.
void DrawCountries(SvgWriter& svg, const Model& model, const Projection& projection);

}  // namespace mapreport
