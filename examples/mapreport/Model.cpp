// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Model.h"

#include <algorithm>
#include <span>

namespace mapreport {

void Contours::Append(const Contours& other) {
  points.insert(points.end(), other.points.begin(), other.points.end());
  counts.insert(counts.end(), other.counts.begin(), other.counts.end());
}

void Country::MakePolygons() {
  std::size_t outerPoints = 0;
  for (unsigned int i = 0; i < outerRings; ++i) outerPoints += rings.counts[i];
  const std::span<const Vec2d> points(rings.points);
  const std::span<const unsigned int> counts(rings.counts);
  land = GPolygon2d(points.first(outerPoints), counts.first(outerRings));
  holes = GPolygon2d(points.subspan(outerPoints), counts.subspan(outerRings));
}

Color4b Palette::At(double t) const {
  const double position = std::clamp(t, 0.0, 1.0) * static_cast<double>(ramp.size() - 1);
  const std::size_t index = std::min(static_cast<std::size_t>(position), ramp.size() - 2);
  return Color4b::Interp(ramp[index], ramp[index + 1], position - static_cast<double>(index),
                         Color4b::INTERP_LINEAR);
}

Palette DefaultPalette() {
  // Yellow, orange, brown: lightness falls evenly along the ramp, and so do print and gray copies.
  return Palette{
      {Color4b(255, 240, 196), Color4b(253, 199, 111), Color4b(229, 128, 53), Color4b(176, 76, 28)},
      Color4b(238, 236, 230),
      Color4b(217, 230, 238),
      Color4b(74, 127, 167)};
}

}  // namespace mapreport
