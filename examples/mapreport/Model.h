// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The data that the application works on: the layers as they were read, and what the analysis adds
/// to them.
///
/// The steps of the analysis (Analysis.h) each take the model and change it; the outputs only read
/// it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "shared/color/Color4b.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/text/GString.h"

namespace mapreport {

using shr::Box2d;
using shr::Color4b;
using shr::GPolygon2d;
using shr::GString;
using shr::Vec2d;

/// No country, no event.
inline constexpr std::size_t NONE = static_cast<std::size_t>(-1);

/// Rings one behind the other, open, with the number of points of each. A point lies inside when it
/// lies inside an odd number of them.
struct Contours {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
};

struct Country {
  GString name;
  GPolygon2d land;   ///< the outer rings
  GPolygon2d holes;  ///< what is cut out of them

  Contours rings;    ///< land and holes together
  Contours visible;  ///< the part inside the window, in window coordinates
  std::size_t eventCount = 0;
  std::size_t largestEvent = NONE;  ///< of those with a magnitude
  Color4b fill;
};

/// An earthquake, or whatever point a table holds.
struct Event {
  GString time;
  GString place;
  Vec2d position;  ///< longitude and latitude in degrees
  std::optional<double> depth;
  std::optional<double> magnitude;

  bool visible = false;
  std::size_t country = NONE;
};

struct City {
  GString name;
  GString countryCode;  ///< two letters
  Vec2d position;
  double population = 0;
};

/// One file that went into the model.
struct Source {
  GString layer;  ///< what it was read for: "Countries"
  GString fileName;
  GString encoding;
  GString content;  ///< what was found in it: "1,679 events"
  GString credit;   ///< what a map made from it must say; may be empty
};

/// Events from `from` to `to` are drawn in `color`.
struct ColorClass {
  std::size_t from = 1;
  std::size_t to = 1;
  Color4b color;
  std::size_t countries = 0;  ///< how many fall into it
};

struct Model {
  std::vector<Country> countries;
  std::vector<Event> events;
  std::vector<City> cities;
  std::vector<Source> sources;

  /// What the map shows, in degrees. The west side is at least -180, the east side may lie beyond
  /// 180: such a window reaches over the antimeridian.
  Box2d window;
  std::vector<ColorClass> classes;
};

}  // namespace mapreport
