// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the visible pieces of the rivers as lines or dashes.

#pragma once

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

/// Draws all rivers as one path in the palette's color. The pattern of `View::dashes` begins anew
/// with each piece.
void DrawRivers(SvgWriter& svg, const Model& model, const Projection& projection);

}  // namespace mapreport
