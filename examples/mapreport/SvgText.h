// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Measures and writes the texts of a map.

#pragma once

#include "examples/mapreport/Model.h"
#include "shared/plots/LabelPlacement.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

/// Returns the room that text of `size` takes: what letters really use above and below the base
/// line, level with the point the middle of small letters.
shr::LabelExtent ExtentOf(const GString& text, double size);

/// Writes text at a place that was found for it.
void DrawLabel(SvgWriter& svg, const shr::LabelPlace& place, const GString& text);

}  // namespace mapreport
