// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/TableFiles.h"

#include <cmath>
#include <optional>

#include "examples/common/CsvWriter.h"
#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Tracks.h"

namespace mapreport {

using namespace shr;

namespace {

std::string Countries(const Model& model) {
  CsvWriter csv({"country", "events", "largest_magnitude", "largest_event", "largest_time"});
  for (const std::size_t index : CountriesByCount(model)) {
    const Country& country = model.countries[index];
    const bool hasLargest = country.largestEvent != NONE;
    const Event largest = hasLargest ? model.events[country.largestEvent] : Event();
    csv.Text(country.name).Number(static_cast<double>(country.eventCount));
    csv.Number(largest.magnitude).Text(largest.place).Text(largest.time).EndRow();
  }
  return csv.Take();
}

std::string Strongest(const Model& model) {
  CsvWriter csv({"magnitude", "time", "place", "country", "latitude", "longitude", "depth_km"});
  for (const std::size_t index : StrongestEvents(model, model.view.strongest)) {
    const Event& event = model.events[index];
    const bool isInCountry = event.country != NONE;
    csv.Number(event.magnitude).Text(event.time).Text(event.place);
    csv.Text(isInCountry ? model.countries[event.country].name : GString());
    csv.Number(event.position.y).Number(event.position.x).Number(event.depth).EndRow();
  }
  return csv.Take();
}

std::string Cities(const Model& model, const MapPicture& picture) {
  CsvWriter csv({"city", "country_code", "population", "latitude", "longitude"});
  for (const std::size_t index : picture.cities) {
    const City& city = model.cities[index];
    csv.Text(city.name).Text(city.countryCode);
    csv.Number(city.population > 0 ? std::optional<double>(city.population) : std::nullopt);
    csv.Number(city.position.y).Number(city.position.x).EndRow();
  }
  return csv.Take();
}

std::string Tracks(const Model& model) {
  CsvWriter csv({"name", "kind", "points", "length_km", "lowest_m", "highest_m", "begin", "end"});
  for (const Track& track : model.tracks) {
    csv.Text(track.name).Text(TrackKindName(track.kind));
    csv.Number(static_cast<double>(track.lines.points.size()));
    csv.Number(std::round(TrackLength(track.lines) * 1000) / 1000);  // metres
    csv.Number(track.lowest).Number(track.highest).Text(track.begin).Text(track.end).EndRow();
  }
  return csv.Take();
}

std::string Waypoints(const Model& model) {
  CsvWriter csv({"name", "latitude", "longitude", "elevation_m", "time"});
  for (const Waypoint& waypoint : model.waypoints) {
    csv.Text(waypoint.name).Number(waypoint.position.y).Number(waypoint.position.x);
    csv.Number(waypoint.elevation).Text(waypoint.time).EndRow();
  }
  return csv.Take();
}

}  // namespace

std::vector<std::pair<GString, std::string>> MakeTableFiles(const Model& model,
                                                            const MapPicture& picture) {
  std::vector<std::pair<GString, std::string>> tables = {{COUNTRIES_TABLE, Countries(model)},
                                                         {STRONGEST_TABLE, Strongest(model)},
                                                         {CITIES_TABLE, Cities(model, picture)}};
  if (!model.tracks.empty()) tables.emplace_back(TRACKS_TABLE, Tracks(model));
  if (!model.waypoints.empty()) tables.emplace_back(WAYPOINTS_TABLE, Waypoints(model));
  return tables;
}

}  // namespace mapreport
