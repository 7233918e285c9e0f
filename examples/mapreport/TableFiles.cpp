// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/TableFiles.h"

#include <optional>

#include "examples/common/CsvWriter.h"
#include "examples/mapreport/Analysis.h"

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

}  // namespace

std::vector<std::pair<GString, std::string>> MakeTableFiles(const Model& model,
                                                            const MapPicture& picture) {
  return {{COUNTRIES_TABLE, Countries(model)},
          {STRONGEST_TABLE, Strongest(model)},
          {CITIES_TABLE, Cities(model, picture)}};
}

}  // namespace mapreport
