// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The data that the application works on: the layers as they were read, and what the analysis adds
/// to them.
///
/// The steps of the analysis (Analysis.h) each take the model and change it; the outputs only read
/// it. `Serialize` of each part both stores and loads it (MapArchive.h).

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

namespace shr {
class Archive;
}

namespace examples {}

namespace mapreport {

using namespace examples;  // what the programs share, examples/common/
using shr::Box2d;
using shr::Color4b;
using shr::GPolygon2d;
using shr::GString;
using shr::Vec2d;

/// No country, no event.
inline constexpr std::size_t NONE = static_cast<std::size_t>(-1);

/// Rings one behind the other, open, with the number of points of each. A point lies inside when it
/// lies inside an odd number of them. Also the pieces of a line.
struct Contours {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;

  void Append(const Contours& other);
  void Serialize(shr::Archive& archive);
};

struct Country {
  GString name;
  GString continent;            ///< empty when it is not known
  Contours rings;               ///< the outer rings first, then what is cut out of them
  unsigned int outerRings = 0;  ///< how many of `rings` are outer ones
  GPolygon2d land;              ///< the outer rings
  GPolygon2d holes;             ///< the other ones

  Contours visible;  ///< the part inside the window, in window coordinates
  std::size_t eventCount = 0;
  std::size_t largestEvent = NONE;  ///< of those with a magnitude
  Color4b fill;

  /// Makes `land` and `holes` from `rings` and `outerRings`.
  void MakePolygons();
  void Serialize(shr::Archive& archive);
};

struct River {
  GString name;  ///< may be empty
  std::vector<Vec2d> points;
  Contours visible;  ///< the pieces inside the window, in window coordinates

  void Serialize(shr::Archive& archive);
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

  void Serialize(shr::Archive& archive);
};

struct City {
  GString name;
  GString countryCode;  ///< two letters
  Vec2d position;
  double population = 0;
  bool isCapital = false;

  bool visible = false;

  void Serialize(shr::Archive& archive);
};

/// A track, a planned route or an outline from a GPX or KML file (Tracks.h).
struct Track {
  enum class Kind : unsigned char { Track, Route, Outline };

  GString name;  ///< may be empty
  Kind kind = Kind::Track;
  Contours lines;                ///< its segments, in degrees
  GString begin;                 ///< time of the first point that has one; empty when none has
  GString end;                   ///< time of the last point that has one
  std::optional<double> lowest;  ///< elevations in metres
  std::optional<double> highest;

  Contours visible;  ///< the pieces inside the window, in window coordinates

  void Serialize(shr::Archive& archive);
};

/// A named place from a GPX or KML file.
struct Waypoint {
  GString name;  ///< may be empty
  Vec2d position;
  std::optional<double> elevation;  ///< in metres
  GString time;
  GString symbol;  ///< the name of the marker that it asks for; may be empty or unknown

  bool visible = false;

  void Serialize(shr::Archive& archive);
};

/// One file that went into the model.
struct Source {
  GString layer;  ///< what it was read for: "Countries"
  GString fileName;
  GString encoding;
  GString content;  ///< what was found in it: "1,679 events"
  GString credit;   ///< what a map made from it must say; may be empty

  void Serialize(shr::Archive& archive);
};

/// Events from `from` to `to` are drawn in `color`.
struct ColorClass {
  std::size_t from = 1;
  std::size_t to = 1;
  Color4b color;
  std::size_t countries = 0;  ///< how many fall into it

  void Serialize(shr::Archive& archive);
};

/// The colors of the map.
struct Palette {
  std::vector<Color4b> ramp;  ///< from few events to many, at least two colors
  Color4b none;               ///< countries without events
  Color4b sea;
  Color4b river;

  /// Returns the color at `t` from 0 to 1 on the ramp.
  Color4b At(double t) const;
  void Serialize(shr::Archive& archive);
  friend bool operator==(const Palette&, const Palette&) = default;
};

/// Returns the colors of maps that ask for no others.
Palette DefaultPalette();

/// How the texts of a map are written.
enum class TextMode : unsigned char {
  Text,      ///< as text, measured by the faces of this machine
  Outlines,  ///< as paths: the same everywhere, also without any font
  Portable   ///< as text, by estimates: the bytes of the picture depend on no machine
};

/// How the model is shown.
struct View {
  GString title{L"Earthquakes by country"};  ///< math text
  std::size_t labels = 150;                  ///< most city names on the map
  std::size_t strongest = 20;                ///< rows of the table of strongest events
  std::vector<double> dashes;                ///< drawn and left out along rivers in turn, in pixels
  TextMode text = TextMode::Text;
  GString face;  ///< of all texts; empty for the default face

  void Serialize(shr::Archive& archive);
};

/// A named area: what the map is clipped to, the union of countries.
struct Area {
  GString name;
  Contours rings;

  bool IsEmpty() const { return rings.counts.empty(); }
  void Serialize(shr::Archive& archive);
};

/// A line of the history of the map.
struct Step {
  GString action;       ///< "Done", "Taken back", "Redone"
  GString label;        ///< what the step is called
  GString outcome;      ///< what the map held afterwards
  GString fingerprint;  ///< equal for equal states of the map

  void Serialize(shr::Archive& archive);
};

struct Model {
  std::vector<Country> countries;
  std::vector<River> rivers;
  std::vector<Event> events;
  std::vector<City> cities;
  std::vector<Track> tracks;
  std::vector<Waypoint> waypoints;
  std::vector<Source> sources;
  View view;
  std::vector<Step> history;

  /// What the map shows, in degrees. The west side is at least -180, the east side may lie beyond
  /// 180: such a window reaches over the antimeridian.
  Box2d window;
  Area clip;       ///< what is shown of the window; all of it when empty
  Area continent;  ///< the united visible parts of the countries of a continent, or empty
  Palette palette;
  std::vector<ColorClass> classes;
};

}  // namespace mapreport
