// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes the outlines of glyphs as data of SVG paths: text and markers that look the same wherever
/// the picture is shown, whatever faces are there. Faces and their glyphs are in
/// shared/fonts/FaceInfo.h, the document around the path is SvgWriter's
/// (shared/plots/SvgWriter.h).
///
///     std::string data;
///     AppendGlyphPath(data, face.GetGlyphVectors(U'A').fill, 10, 20, 12);   // 12 units an em
///     svg.Begin("path").Attribute("d", data).End();
///
/// Units: x and y are places of the picture, y downwards; a glyph is y upwards and in em. Places
/// are rounded to hundredths, so that the bytes depend on no machine and small type keeps its
/// shape. Threads: any.

#pragma once

#include <string>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"

namespace shr {

/// Appends the path of `outline` with its origin at (x, y) and `scale` units of the picture an em.
/// Each contour begins with "M" and an absolute place, so that outlines may follow one another in
/// one path. Rounding errors do not add up: every point lies within 0.005 of its place along each
/// axis. Degenerate: no verbs append nothing; a coordinate that is no number is 0, one outside of
/// +-1e9 is drawn there. Requires: the outline has the points that its verbs take; verbs behind the
/// last point are left out. Cost: O(points).
SHARED_API void AppendGlyphPath(std::string& data, const GlyphOutline& outline, double x, double y,
                                double scale);

}  // namespace shr
