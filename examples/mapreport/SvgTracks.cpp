// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgTracks.h"

#include <optional>
#include <span>
#include <string>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/Tracks.h"
#include "shared/mathtext/MathTextScanner.h"

namespace mapreport {

using namespace shr;

namespace {

/// A pin stands on its point and needs to be larger than what lies around it.
constexpr int SYMBOL_SIZE = 16;

/// The classes of the style sheet.
const char* ClassOf(Track::Kind kind) {
  switch (kind) {
    case Track::Kind::Route:
      return "track route";
    case Track::Kind::Outline:
      return "track outline";
    default:
      return "track";
  }
}

/// Lines of one point cannot be seen.
std::string PathOf(const Track& track, const Projection& projection) {
  SvgPathBuilder path;
  std::span<const Vec2d> rest(track.visible.points);
  for (const unsigned int count : track.visible.counts) {
    if (count > 1) path.MoveTo(projection.ToPage(rest[0]));
    for (unsigned int i = 1; i < count; ++i) path.LineTo(projection.ToPage(rest[i]));
    rest = rest.subspan(count);
  }
  return path.Data();
}

GString Tooltip(const Track& track) {
  GString text = track.name.empty() ? GString(TrackKindName(track.kind)) : track.name;
  text += L", " + FormatNumber(TrackLength(track.lines), 1) + L" km";
  if (!track.begin.empty()) text += L", " + FormatTime(track.begin);
  return text;
}

GString Tooltip(const Waypoint& waypoint) {
  GString text = waypoint.name.empty() ? FormatPosition(waypoint.position) : waypoint.name;
  if (waypoint.elevation) text += L", " + FormatNumber(*waypoint.elevation, 0) + L" m";
  if (!waypoint.time.empty()) text += L", " + FormatTime(waypoint.time);
  return text;
}

/// Names of symbols that navigation devices write, and what the symbol set calls them. Other names
/// may be those of the set itself.
Marker MarkerOf(const Waypoint& waypoint, const MarkerSheet& markers) {
  static constexpr std::pair<const wchar_t*, const wchar_t*> NAMES[] = {
      {L"summit", L"peak"},           {L"campground", L"camp site"},   {L"lodge", L"hut"},
      {L"flag, blue", L"flag"},       {L"flag, red", L"flag"},         {L"flag, green", L"flag"},
      {L"scenic area", L"viewpoint"}, {L"residence", L"hut"},          {L"city (small)", L"town"},
      {L"city (medium)", L"city"},    {L"city (large)", L"large city"}};
  GString name = waypoint.symbol.ToLower();
  for (const auto& [written, known] : NAMES) {
    if (name == written) name = known;
  }
  if (name.empty() || !markers.Has(name)) return WAYPOINT_MARKER;
  return Marker{name, SYMBOL_SIZE};
}

Vec2d PositionOf(const Waypoint& waypoint, const Model& model, const Projection& projection) {
  return projection.ToPage(*PlaceInWindow(waypoint.position, model.window));
}

}  // namespace

void DrawTracks(MapCanvas& canvas, const Model& model) {
  SvgWriter& svg = canvas.svg;
  for (const Track& track : model.tracks) {
    const std::string data = PathOf(track, canvas.projection);
    if (data.empty()) continue;
    svg.Begin("path").Attribute("class", "track ground").Attribute("d", data).End();
    svg.Begin("path").Attribute("class", ClassOf(track.kind)).Attribute("d", data);
    svg.Begin("title").Text(Tooltip(track)).End().End();
  }
}

void DrawTrackSample(SvgWriter& svg, Track::Kind kind, const Vec2d& from, const Vec2d& to) {
  SvgPathBuilder path;
  path.MoveTo(from);
  path.LineTo(to);
  svg.Begin("path").Attribute("class", ClassOf(kind)).Attribute("d", path.Data()).End();
}

void DrawWaypoints(MapCanvas& canvas, const Model& model) {
  SvgWriter& svg = canvas.svg;
  for (const Waypoint& waypoint : model.waypoints) {
    if (!waypoint.visible) continue;
    const Marker marker = MarkerOf(waypoint, canvas.markers);
    const Vec2d at = PositionOf(waypoint, model, canvas.projection);
    const Box2d ink = canvas.markers.Bounds(marker);
    canvas.placer.Block(Box2d(at + ink.Min(), at + ink.Max()));
    svg.Begin("g").Attribute("class", "waypoint").Begin("title").Text(Tooltip(waypoint)).End();
    canvas.markers.Use(svg, marker, at);
    svg.End();
  }
}

void DrawWaypointNames(MapCanvas& canvas, const Model& model) {
  const TextStyle style{11, Color4b(0x8E, 0x10, 0x45), 400, HAlignment::Left, true};
  canvas.svg.Begin("g").Attribute("class", "waypoint");
  for (const Waypoint& waypoint : model.waypoints) {
    if (!waypoint.visible || waypoint.name.empty()) continue;
    const Vec2d at = PositionOf(waypoint, model, canvas.projection);
    const double radius = canvas.markers.Radius(MarkerOf(waypoint, canvas.markers));
    const MapText::Label label = canvas.text.Make(EscapeMathText(waypoint.name), style);
    const auto place = canvas.placer.Place({at, radius, canvas.text.ExtentOf(label), 0, false});
    if (place) canvas.text.Draw(label, *place);
  }
  canvas.svg.End();
}

}  // namespace mapreport
