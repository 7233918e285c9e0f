// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/PointTables.h"

#include <algorithm>
#include <optional>

#include "examples/common/InputError.h"
#include "examples/common/TableReader.h"
#include "shared/files/FileUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double LARGEST_POPULATION = 1e11;

struct PositionColumns {
  explicit PositionColumns(const TableReader& table)
      : latitude(table.Column({L"latitude", L"lat"})),
        longitude(table.Column({L"longitude", L"lon", L"long", L"lng"})) {}

  Vec2d Read(const TableReader& table) const {
    const double lat = table.Number(latitude, -90, 90);
    return Vec2d(table.Number(longitude, -180, 180), lat);
  }

  std::size_t latitude;
  std::size_t longitude;
};

std::size_t SlashEnd(const GString& path) {
  for (std::size_t end = path.size(); end > 0; --end) {
    if (path[end - 1] == L'/' || path[end - 1] == L'\\') return end;
  }
  return 0;
}

}  // namespace

std::vector<Event> ReadEvents(const GString& path, const TextFormat& format) {
  TableReader table(path, format);
  const PositionColumns position(table);
  const std::size_t magnitude = table.FindColumn({L"magnitude", L"mag"});
  const std::size_t depth = table.FindColumn({L"depth"});
  const std::size_t time = table.FindColumn({L"time", L"date"});
  const std::size_t place = table.FindColumn({L"place", L"name", L"location"});
  std::vector<Event> events;
  while (table.NextRow()) {
    Event event;
    event.time = table.Field(time);
    event.place = table.Field(place);
    event.position = position.Read(table);
    event.depth = table.OptionalNumber(depth);
    event.magnitude = table.OptionalNumber(magnitude);
    events.push_back(std::move(event));
  }
  return events;
}

/// Reads "yes" or "no", in short or as numbers; an empty field is no.
bool ReadFlag(const TableReader& table, std::size_t column) {
  const GString text = table.Field(column).ToLower();
  for (const wchar_t* const yes : {L"yes", L"y", L"true", L"1"}) {
    if (text == yes) return true;
  }
  for (const wchar_t* const no : {L"", L"no", L"n", L"false", L"0"}) {
    if (text == no) return false;
  }
  table.Fail(Quoted(table.Field(column)) + L" in column 'capital' is neither yes nor no.");
}

std::vector<City> ReadCities(const GString& path, const TextFormat& format) {
  TableReader table(path, format);
  const PositionColumns position(table);
  const std::size_t name = table.Column({L"name", L"city"});
  const std::size_t country = table.FindColumn({L"country"});
  const std::size_t population = table.FindColumn({L"population"});
  const std::size_t capital = table.FindColumn({L"capital"});
  std::vector<City> cities;
  while (table.NextRow()) {
    City city;
    city.name = table.Field(name);
    city.countryCode = table.Field(country);
    city.position = position.Read(table);
    if (!table.Field(population).empty()) {
      city.population = table.Number(population, 0, LARGEST_POPULATION);
    }
    city.isCapital = ReadFlag(table, capital);
    cities.push_back(std::move(city));
  }
  std::stable_sort(cities.begin(), cities.end(),
                   [](const City& a, const City& b) { return a.population > b.population; });
  return cities;
}

std::map<GString, GString> ReadContinents(const GString& path, const TextFormat& format) {
  TableReader table(path, format);
  const std::size_t name = table.Column({L"name", L"country"});
  const std::size_t continent = table.Column({L"continent"});
  std::map<GString, GString> continents;
  while (table.NextRow()) continents[table.Field(name)] = table.Field(continent);
  return continents;
}

GString FindCredit(const GString& path) {
  const GString creditsPath = FolderOf(path) + L"credits.csv";
  if (!FileExists(creditsPath)) return GString();
  TableReader table(creditsPath, DetectTextFormat(creditsPath, std::nullopt));
  const std::size_t file = table.Column({L"file"});
  const std::size_t credit = table.Column({L"credit"});
  const GString fileName = FileNameOf(path);
  while (table.NextRow()) {
    if (table.Field(file) == fileName) return table.Field(credit);
  }
  return GString();
}

GString FileNameOf(const GString& path) {
  return path.substr(SlashEnd(path));
}

GString FolderOf(const GString& path) {
  return path.substr(0, SlashEnd(path));
}

}  // namespace mapreport
