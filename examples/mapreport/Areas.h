// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Areas: what a user names as one, clipping the map to one, and the union of a continent.
///
///     const Area area = FindArea(model, L"Italy");   // or WKT, GeoJSON, a file of either
///     ClipToArea(model, area, progress);
///     UniteContinent(model, L"Europe", progress);
///
/// Inside is what lies in an odd number of rings.

#pragma once

#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// Returns the area that `text` describes: well-known text or GeoJSON of polygons; "@" and a file
/// of either; the name of a country of the map in any letter case; or just the file.
/// Errors: `ThrowInputError` that names the file or the text.
Area FindArea(const Model& model, const GString& text);

/// Leaves only what lies in the area visible: of countries and rivers their parts, of events and
/// cities those inside. Returns false when the user stopped it; the model is then half done.
bool ClipToArea(Model& model, const Area& area, IProgress& progress);

/// Makes `Model::continent` the union of the visible parts of the countries of a continent, whose
/// name is taken in any letter case. Returns false when the user stopped it.
/// Errors: `ThrowInputError` when no country lies there.
bool UniteContinent(Model& model, const GString& continent, IProgress& progress);

}  // namespace mapreport
