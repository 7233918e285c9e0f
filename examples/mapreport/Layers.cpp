// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Layers.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "examples/mapreport/Format.h"
#include "examples/mapreport/MapFile.h"
#include "examples/mapreport/PointTables.h"
#include "examples/mapreport/Tracks.h"
#include "shared/diagnostics/Logger.h"

namespace mapreport {

using namespace shr;

namespace {

Source MakeSource(const wchar_t* layer, const GString& path, const TextFormat& format,
                  const GString& content) {
  return {layer, FileNameOf(path), format.Describe(), content, FindCredit(path)};
}

void ReadCountries(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  MapContent content = ReadMapFile(input.path, format);
  model.sources.push_back(
      MakeSource(L"Countries", input.path, format,
                 FormatCount(content.countries.size(), L"country", L"countries") + L", " +
                     FormatCount(content.rings, L"ring", L"rings") + L" (" +
                     FormatCount(content.holes, L"hole", L"holes") + L"), " +
                     FormatCount(content.points, L"point", L"points")));
  model.countries = std::move(content.countries);
}

void ReadEventLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  model.events = ReadEvents(input.path, format);
  model.sources.push_back(MakeSource(L"Events", input.path, format,
                                     FormatCount(model.events.size(), L"event", L"events")));
}

void ReadCityLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  model.cities = ReadCities(input.path, format);
  model.sources.push_back(MakeSource(L"Cities", input.path, format,
                                     FormatCount(model.cities.size(), L"city", L"cities")));
}

void ReadRiverLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  model.rivers = ReadRivers(input.path, format);
  std::size_t points = 0;
  for (const River& river : model.rivers) points += river.points.size();
  model.sources.push_back(MakeSource(L"Rivers", input.path, format,
                                     FormatCount(model.rivers.size(), L"line", L"lines") + L", " +
                                         FormatCount(points, L"point", L"points")));
}

void ReadAttributeLayer(const TextInput& input, Model& model) {
  const TextFormat format = DetectTextFormat(input.path, input.codePage);
  const std::map<GString, GString> continents = ReadContinents(input.path, format);
  std::size_t found = 0;
  for (Country& country : model.countries) {
    const auto place = continents.find(country.name);
    if (place == continents.end()) continue;
    country.continent = place->second;
    ++found;
  }
  model.sources.push_back(
      MakeSource(L"Attributes", input.path, format,
                 L"continents of " + FormatCount(found, L"country", L"countries")));
}

/// Returns "2 tracks, 1 route, 5 waypoints, 230 points", of what there is.
GString DescribeTracks(const TrackContent& content) {
  const auto count = [&](Track::Kind kind) {
    return static_cast<std::size_t>(
        std::count_if(content.tracks.begin(), content.tracks.end(),
                      [&](const Track& track) { return track.kind == kind; }));
  };
  GString text;
  const auto add = [&](std::size_t number, const wchar_t* one, const wchar_t* many) {
    if (number > 0) text += FormatCount(number, one, many) + L", ";
  };
  add(count(Track::Kind::Track), L"track", L"tracks");
  add(count(Track::Kind::Route), L"route", L"routes");
  add(count(Track::Kind::Outline), L"outline", L"outlines");
  add(content.waypoints.size(), L"waypoint", L"waypoints");
  return text + FormatCount(content.points, L"point", L"points");
}

void ReadTrackLayer(const TextInput& input, Model& model) {
  TrackContent content = ReadTracks(input.path, input.codePage);
  model.sources.push_back(
      MakeSource(L"Tracks", input.path, content.format, DescribeTracks(content)));
  std::move(content.tracks.begin(), content.tracks.end(), std::back_inserter(model.tracks));
  std::move(content.waypoints.begin(), content.waypoints.end(),
            std::back_inserter(model.waypoints));
}

/// Reads one layer and logs what was found.
template <class Read>
void ReadLayer(const wchar_t* label, const TextInput& input, Read read, Model& model,
               IProgress& progress) {
  const Operation operation(progress, label, 0);
  const ScopedLogMessage scope(label);
  read(input, model);
  const Source& source = model.sources.back();
  g_Logger.SendVA(LogInfo, L"%s: %s (%s)", input.path, source.content, source.encoding);
}

}  // namespace

Model ReadModel(const Inputs& inputs, IProgress& progress) {
  Model model;
  ReadLayer(L"Reading countries", inputs.map, ReadCountries, model, progress);
  ReadLayer(L"Reading events", inputs.points, ReadEventLayer, model, progress);
  ReadLayer(L"Reading cities", inputs.cities, ReadCityLayer, model, progress);
  if (!inputs.rivers.path.empty()) {
    ReadLayer(L"Reading rivers", inputs.rivers, ReadRiverLayer, model, progress);
  }
  if (!inputs.attributes.path.empty()) {
    ReadLayer(L"Reading attributes", inputs.attributes, ReadAttributeLayer, model, progress);
  }
  for (const TextInput& input : inputs.tracks) {
    ReadLayer(L"Reading tracks", input, ReadTrackLayer, model, progress);
  }
  return model;
}

}  // namespace mapreport
