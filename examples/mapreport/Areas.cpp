// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Areas.h"

#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "examples/common/InputError.h"
#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/PointTables.h"
#include "examples/mapreport/XmlDocument.h"
#include "shared/diagnostics/Exception.h"
#include "shared/files/FileUtility.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/formats/PolygonText.h"
#include "shared/polygons/lines/LineClipPolygon.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double FULL_CIRCLE = 360;
constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";

std::string ReadAll(const GString& path) {
  std::string bytes = ReadBytes(path);
  if (bytes.starts_with(UTF8_MARK)) bytes.erase(0, UTF8_MARK.size());
  return bytes;
}

Contours Flat(const GPolygon& polygon) {
  Contours rings;
  polygon.GetPolyPolygon(rings.points, rings.counts, false);
  return rings;
}

/// Reads the text of a polygon; `origin` is what an error names.
Contours ParseRings(const std::string& text, const GString& origin) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  GPolygon polygon;
  try {
    if (first != std::string::npos && text[first] == '{') {
      ParseGeoJson(text, polygon);
    } else {
      ParseWkt(text, polygon);
    }
  } catch (const Exception& error) {
    ThrowInputError(origin, error.GetDescription());
  }
  if (polygon.GetNumContours() == 0) ThrowInputError(origin, L"The polygon is empty.");
  return Flat(polygon);
}

bool IsPolygonText(const GString& text) {
  const GString lower = text.ToLower();
  return text.find(L'(') != GString::npos && (lower.find(GString(L"polygon")) != GString::npos);
}

Area ReadArea(const GString& path) {
  return Area{FileNameOf(path), ParseRings(ReadAll(path), path)};
}

/// Returns the rings where they lie in the window, which may reach beyond 180 degrees.
Contours PlaceRings(const Contours& rings, const Box2d& window) {
  Contours placed;
  for (const double shift : {-FULL_CIRCLE, 0.0, FULL_CIRCLE}) {
    Contours moved = rings;
    Box2d bounds;
    for (Vec2d& point : moved.points) {
      point.x += shift;
      bounds.ExtendBy(point);
    }
    if (bounds.Intersects(window)) placed.Append(moved);
  }
  return placed;
}

Box2d Bounds(const Contours& rings) {
  Box2d bounds;
  for (const Vec2d& point : rings.points) bounds.ExtendBy(point);
  return bounds;
}

/// What a map is clipped to, in the forms that the clippers take.
class Clipper {
public:
  explicit Clipper(const Contours& rings)
      : rings_(rings),
        bounds_(Bounds(rings)),
        polygon_(rings.points, rings.counts),
        lines_(rings.points, rings.counts) {}

  template <class Point>
  void ClipPoint(Point& point, const Box2d& window) const {
    if (!point.visible) return;
    const Vec2d place = *PlaceInWindow(point.position, window);
    point.visible = bounds_.Contains(place) && PointInPolygon(place, rings_.points, rings_.counts);
  }

  void ClipRings(Contours& visible) const {
    GPolygon result;
    if (bounds_.Intersects(Bounds(visible))) {
      GPolygon(visible.points, visible.counts).Intersection(polygon_, result);
    }
    visible = Flat(result);
  }

  void ClipLines(Contours& visible) const {
    Contours inside;
    std::span<const Vec2d> rest(visible.points);
    for (const unsigned int count : visible.counts) {
      lines_.Clip(rest.first(count), inside.points, inside.counts);
      rest = rest.subspan(count);
    }
    visible = std::move(inside);
  }

private:
  const Contours& rings_;
  Box2d bounds_;
  GPolygon polygon_;
  GLineClipPolygon lines_;
};

[[noreturn]] void FailContinent(const Model& model, const GString& continent) {
  std::set<GString> names;
  for (const Country& country : model.countries) {
    if (!country.continent.empty()) names.insert(country.continent);
  }
  GString known;
  for (const GString& name : names) known += (known.empty() ? L" It knows " : L", ") + name;
  ThrowInputError(Quoted(continent),
                  L"The map knows no such continent." + (known.empty() ? known : known + L"."));
}

}  // namespace

Area FindArea(const Model& model, const GString& text) {
  if (!text.empty() && text[0] == L'@') return ReadArea(text.substr(1));
  if (IsPolygonText(text) || (!text.empty() && text[0] == L'{')) {
    return Area{L"a polygon", ParseRings(text.ToUtf8(), Quoted(text))};
  }
  const GString name = text.ToLower();
  const auto country =
      std::find_if(model.countries.begin(), model.countries.end(),
                   [&](const Country& candidate) { return candidate.name.ToLower() == name; });
  if (country != model.countries.end()) return Area{country->name, country->rings};
  if (FileExists(text)) return ReadArea(text);
  ThrowInputError(Quoted(text), L"This is no polygon, no country of the map and no file.");
}

bool ClipToArea(Model& model, const Area& area, IProgress& progress) {
  Operation operation(progress, L"Clipping to the area",
                      model.countries.size() + model.rivers.size() + model.tracks.size());
  model.clip = Area{area.name, PlaceRings(area.rings, model.window)};
  model.continent = Area();
  const Clipper clipper(model.clip.rings);
  for (Event& event : model.events) clipper.ClipPoint(event, model.window);
  for (City& city : model.cities) clipper.ClipPoint(city, model.window);
  for (Waypoint& waypoint : model.waypoints) clipper.ClipPoint(waypoint, model.window);
  for (Country& country : model.countries) {
    clipper.ClipRings(country.visible);
    if (!operation.Step()) return false;
  }
  for (River& river : model.rivers) {
    clipper.ClipLines(river.visible);
    if (!operation.Step()) return false;
  }
  for (Track& track : model.tracks) {
    clipper.ClipLines(track.visible);
    if (!operation.Step()) return false;
  }
  return true;
}

bool UniteContinent(Model& model, const GString& continent, IProgress& progress) {
  const GString wanted = continent.ToLower();
  GString name;
  std::vector<GPolygon> parts;
  for (const Country& country : model.countries) {
    if (country.continent.ToLower() != wanted) continue;
    name = country.continent;
    parts.emplace_back(country.visible.points, country.visible.counts);
  }
  if (name.empty()) FailContinent(model, continent);
  Operation operation(progress, L"Uniting " + name, parts.size());
  // Pairs of pairs: each point takes part in as many unions as there are levels.
  for (std::size_t step = 1; step < parts.size(); step *= 2) {
    for (std::size_t i = 0; i + step < parts.size(); i += 2 * step) {
      parts[i].Union(parts[i + step]);
      parts[i + step].MakeEmpty();
      if (!operation.Step()) return false;
    }
  }
  model.continent = Area{name, Flat(parts.front())};
  return true;
}

}  // namespace mapreport
