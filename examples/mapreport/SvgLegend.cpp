// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgLegend.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/SvgPoints.h"
#include "examples/mapreport/SvgTracks.h"
#include "examples/mapreport/Tracks.h"
#include "shared/mathtext/MathTextScanner.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double SWATCH_WIDTH = 68;
constexpr double SWATCH_HEIGHT = 15;
constexpr double MAGNITUDE_STEP = 37;
constexpr double LARGEST_SHOWN = 8;
constexpr double TRACK_ROW = 24;
/// Wider windows differ too much in scale from their middle to their edge for one bar.
constexpr double WIDEST_WITH_BAR = 60;

/// How the legend writes.
const TextStyle LABEL;
const TextStyle HEADING{12, TEXT_COLOR, BOLD};
const TextStyle NOTE{NOTE_SIZE, NOTE_COLOR};

TextStyle Centred(TextStyle style) {
  style.side = HAlignment::Center;
  return style;
}

void DrawSwatch(MapCanvas& canvas, const Vec2d& corner, const Color4b& color, const GString& label,
                std::size_t countries) {
  SvgWriter& svg = canvas.svg;
  svg.BeginRectangle(Box2d(corner.x, corner.y, corner.x + SWATCH_WIDTH, corner.y + SWATCH_HEIGHT));
  svg.Attribute("fill", HexColor(color)).Attribute("class", "country").End();
  const double middle = corner.x + SWATCH_WIDTH / 2;
  canvas.text.Write(Vec2d(middle, corner.y + 29), label, Centred(LABEL));
  canvas.text.Write(Vec2d(middle, corner.y + 42), L"(" + FormatCount(countries) + L")",
                    Centred(NOTE));
}

GString ClassLabel(const ColorClass& c) {
  if (c.from == c.to) return FormatCount(c.from);
  return FormatCount(c.from) + L"\u2013" + FormatCount(c.to);
}

/// Countries outside the window are not on the map and so not in the legend.
std::size_t CountEmptyCountries(const Model& model) {
  return static_cast<std::size_t>(
      std::count_if(model.countries.begin(), model.countries.end(), [](const Country& country) {
        return country.eventCount == 0 && !country.visible.counts.empty();
      }));
}

void DrawClasses(MapCanvas& canvas, const Model& model, const Vec2d& corner) {
  canvas.text.Write(corner, L"Events in the country (number of countries)", HEADING);
  Vec2d at(corner.x, corner.y + 9);
  if (const std::size_t empty = CountEmptyCountries(model)) {
    DrawSwatch(canvas, at, model.palette.none, L"none", empty);
    at.x += SWATCH_WIDTH;
  }
  for (const ColorClass& c : model.classes) {
    DrawSwatch(canvas, at, c.color, ClassLabel(c), c.countries);
    at.x += SWATCH_WIDTH;
  }
  if (model.clip.IsEmpty()) return;
  canvas.svg.BeginRectangle(Box2d(at.x, at.y, at.x + SWATCH_WIDTH, at.y + SWATCH_HEIGHT));
  canvas.svg.Attribute("class", "ground").End();
  canvas.text.Write(Vec2d(at.x + SWATCH_WIDTH / 2, at.y + 29), L"not shown", Centred(LABEL));
}

void DrawMagnitudes(MapCanvas& canvas, const Model& model, const Vec2d& corner) {
  SvgWriter& svg = canvas.svg;
  const std::vector<std::size_t> strongest = StrongestEvents(model, 1);
  if (strongest.empty()) return;
  const double largest = std::ceil(*model.events[strongest.front()].magnitude);
  const double last = std::clamp(largest, 2.0, LARGEST_SHOWN);
  const EventSizes sizes(model);
  canvas.text.Write(corner,
                    CountCounted(model) == 0 ? L"Magnitude" : L"Magnitude; squares: many events",
                    HEADING);
  Vec2d at(corner.x + 6, corner.y + 20);
  for (double magnitude = std::max(1.0, last - 5); magnitude <= last; ++magnitude) {
    svg.Begin("circle").Attribute("class", "event").Attribute("cx", at.x).Attribute("cy", at.y);
    svg.Attribute("r", sizes.Radius(magnitude)).End();
    canvas.text.Write(Vec2d(at.x, corner.y + 51), FormatNumber(magnitude, 0), Centred(NOTE));
    at.x += MAGNITUDE_STEP;
  }
}

void DrawCitySizes(MapCanvas& canvas, const Model& model, const Vec2d& corner) {
  static constexpr const wchar_t* ROWS[] = {L"over 5 million people", L"over 1 million",
                                            L"smaller"};
  SvgWriter& svg = canvas.svg;
  canvas.text.Write(corner, L"City", HEADING);
  double x = corner.x + 42;
  svg.Begin("g").Attribute("class", "city");
  const auto write = [&](const Marker& marker, const wchar_t* text, double size) {
    canvas.markers.Use(svg, marker, Vec2d(x, corner.y - 4));
    const MapText::Label label = canvas.text.Make(text, {size});
    canvas.text.Draw(label, Vec2d(x + 8, corner.y));
    x += canvas.text.WidthOf(label) + 28;
  };
  if (std::any_of(model.cities.begin(), model.cities.end(),
                  [](const City& city) { return city.isCapital && city.visible; })) {
    write(CapitalMarker(canvas.projection), L"capital", LABEL.size);
  }
  for (std::size_t i = 0; i < std::size(ROWS); ++i) {
    write(CityMarker(CITY_SIZES[i], canvas.projection), ROWS[i], CITY_SIZES[i].type);
  }
  svg.End();
}

bool HasKind(const Model& model, Track::Kind kind) {
  return std::any_of(model.tracks.begin(), model.tracks.end(), [&](const Track& track) {
    return track.kind == kind && !track.visible.counts.empty();
  });
}

bool HasWaypoints(const Model& model) {
  return std::any_of(model.waypoints.begin(), model.waypoints.end(),
                     [](const Waypoint& waypoint) { return waypoint.visible; });
}

bool HasTracks(const Model& model) {
  return HasWaypoints(model) || std::any_of(std::begin(TRACK_KINDS), std::end(TRACK_KINDS),
                                            [&](Track::Kind kind) { return HasKind(model, kind); });
}

/// One sample for each kind of what was read from GPX and KML files.
void DrawTrackKinds(MapCanvas& canvas, const Model& model, const Vec2d& corner) {
  SvgWriter& svg = canvas.svg;
  double x = corner.x;
  const auto write = [&](const GString& text) {
    const MapText::Label label = canvas.text.Make(text, LABEL);
    canvas.text.Draw(label, Vec2d(x + 34, corner.y));
    x += 34 + canvas.text.WidthOf(label) + 24;
  };
  for (const Track::Kind kind : TRACK_KINDS) {
    if (!HasKind(model, kind)) continue;
    DrawTrackSample(svg, kind, Vec2d(x, corner.y - 4), Vec2d(x + 28, corner.y - 4));
    write(TrackKindName(kind));
  }
  if (!HasWaypoints(model)) return;
  svg.Begin("g").Attribute("class", "waypoint");
  canvas.markers.Use(svg, WAYPOINT_MARKER, Vec2d(x + 22, corner.y + 1));
  svg.End();
  write(L"Waypoint");
}

/// Returns the longest of 1, 2, 5, 10 ... kilometres that is at most `limit`.
double RoundLength(double limit) {
  double length = 1;
  for (double decade = 1; decade <= limit; decade *= 10) {
    for (const double factor : {1.0, 2.0, 5.0}) {
      if (factor * decade <= limit) length = factor * decade;
    }
  }
  return length;
}

void DrawScaleBar(MapCanvas& canvas, const Vec2d& right) {
  SvgWriter& svg = canvas.svg;
  const Projection& projection = canvas.projection;
  if (projection.Window().xRange() > WIDEST_WITH_BAR) return;
  constexpr double LONGEST = 150;
  const double kilometres = RoundLength(LONGEST / projection.UnitsPerKilometre());
  const double length = kilometres * projection.UnitsPerKilometre();
  const double left = right.x - length;
  for (int half = 0; half < 2; ++half) {
    const double x = left + half * length / 2;
    svg.BeginRectangle(Box2d(x, right.y - 4, x + length / 2, right.y));
    svg.Attribute("fill", half == 0 ? "#3d4a52" : "#fff").Attribute("stroke", "#3d4a52");
    svg.Attribute("stroke-width", 0.7).End();
  }
  TextStyle style = NOTE;
  style.side = HAlignment::Right;
  canvas.text.Write(Vec2d(left - 6, right.y + 1),
                    FormatCount(static_cast<std::size_t>(kilometres)) + L" km", style);
}

/// Names each source once, with all the layers that come from it.
GString SourceLine(const Model& model) {
  std::vector<std::pair<GString, GString>> layersBySource;
  for (const Source& source : model.sources) {
    const GString& name = source.credit.empty() ? source.fileName : source.credit;
    const auto found = std::find_if(layersBySource.begin(), layersBySource.end(),
                                    [&](const auto& entry) { return entry.first == name; });
    if (found == layersBySource.end()) {
      layersBySource.emplace_back(name, source.layer);
    } else {
      found->second += L", " + source.layer;
    }
  }
  GString text(L"Sources: ");
  const wchar_t* separator = L"";
  for (const auto& [source, layers] : layersBySource) {
    text += separator + layers + L": " + source;
    separator = L" \u00B7 ";
  }
  return text;
}

GString ProjectionLine(const Projection& projection) {
  const Box2d& window = projection.Window();
  GString text(L"Equirectangular projection, true to scale along ");
  if (window.yMin() < 0 && window.yMax() > 0) {
    return text + FormatShort(projection.Parallel(), 1) + L"\u00B0 north and south";
  }
  const double side = window.yMax() <= 0 ? -1 : 1;
  return text + FormatLatitude(side * projection.Parallel(), 1);
}

}  // namespace

double LegendHeight(const Model& model) {
  return HasTracks(model) ? 150 + TRACK_ROW : 150;
}

void DrawLegend(MapCanvas& canvas, const Model& model, const Vec2d& corner, double width) {
  canvas.svg.Begin("g").Attribute("class", "legend");
  DrawClasses(canvas, model, Vec2d(corner.x, corner.y + 8));
  DrawMagnitudes(canvas, model, Vec2d(corner.x + width - 5.4 * MAGNITUDE_STEP, corner.y + 8));
  DrawCitySizes(canvas, model, Vec2d(corner.x, corner.y + 82));
  DrawScaleBar(canvas, Vec2d(corner.x + width, corner.y + 82));
  double y = corner.y + 108;
  if (HasTracks(model)) {
    DrawTrackKinds(canvas, model, Vec2d(corner.x, corner.y + 82 + TRACK_ROW));
    y += TRACK_ROW;
  }
  canvas.text.Write(Vec2d(corner.x, y), ProjectionLine(canvas.projection), NOTE);
  canvas.text.Write(Vec2d(corner.x, y + 16), EscapeMathText(SourceLine(model)), NOTE);
  canvas.svg.End();
}

}  // namespace mapreport
