// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Markers of places: glyphs of the library's symbol set (docs/symbol-sets.md) as symbols of an SVG
/// picture, each defined once and used at every place.
///
///     MarkerSheet markers;
///     markers.Use(svg, {L"town", 10}, Vec2d(120, 80));
///     markers.Define(svg);   // behind the last use, before the picture ends

#pragma once

#include <string>
#include <vector>

#include "examples/mapreport/Model.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

/// A glyph by its name, ignoring case, and the size of its em in pixels.
struct Marker {
  GString name;
  int size = 10;

  friend bool operator==(const Marker&, const Marker&) = default;
};

class MarkerSheet {
public:
  /// Reads the symbol set. Errors: the library's exception when it is not where the program looks.
  MarkerSheet();

  bool Has(const GString& name) const { return face_.FindGlyph(name) != nullptr; }

  /// Returns the box of the ink around the place that is marked, y downwards.
  Box2d Bounds(const Marker& marker) const;
  /// Returns half the width of the ink.
  double Radius(const Marker& marker) const;

  /// Draws the marker at a place, in the color (`color` of CSS) of what is around it on a white
  /// ground. Requires: the set has it.
  void Use(SvgWriter& svg, const Marker& marker, const Vec2d& at);

  /// Defines all markers that were used.
  void Define(SvgWriter& svg) const;

private:
  shr::CStrokedFace face_;
  std::vector<Marker> used_;
};

}  // namespace mapreport
