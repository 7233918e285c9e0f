// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapFile.h"

#include <map>
#include <utility>

#include "examples/mapreport/RecordFile.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr unsigned int FEWEST_RING_POINTS = 3;
constexpr unsigned int FEWEST_LINE_POINTS = 2;

void Append(const Record& record, Contours& contours) {
  contours.points.insert(contours.points.end(), record.points.begin(), record.points.end());
  contours.counts.push_back(static_cast<unsigned int>(record.points.size()));
}

class MapReader {
public:
  MapReader(const GString& path, const TextFormat& format)
      : records_(path, format, {L"outer", L"hole"}, FEWEST_RING_POINTS) {}

  MapContent Read() {
    Record record;
    while (records_.Next(record)) {
      const bool isHole = record.role == L"hole";
      Append(record, Target(record.name, isHole));
      ++content_.rings;
      if (isHole) ++content_.holes;
      content_.points += record.points.size();
    }
    for (Building& building : buildings_) Finish(building);
    return std::move(content_);
  }

private:
  /// The rings of one country in the flat form that polygons are made from.
  struct Building {
    GString name;
    Contours land;
    Contours holes;
  };

  /// Returns the contours that a ring belongs to.
  Contours& Target(const GString& name, bool isHole) {
    if (isHole) {
      if (lastOuter_ == NONE) records_.Fail(L"A hole needs an outer ring above it.");
      return buildings_[lastOuter_].holes;
    }
    const auto [place, isNew] = byName_.try_emplace(name, buildings_.size());
    if (isNew) buildings_.push_back(Building{name, {}, {}});
    lastOuter_ = place->second;
    return buildings_[lastOuter_].land;
  }

  void Finish(Building& building) {
    Country country;
    country.name = std::move(building.name);
    country.rings = std::move(building.land);
    country.outerRings = static_cast<unsigned int>(country.rings.counts.size());
    country.rings.Append(building.holes);
    country.MakePolygons();
    content_.countries.push_back(std::move(country));
  }

  RecordReader records_;
  MapContent content_;
  std::vector<Building> buildings_;
  std::map<GString, std::size_t> byName_;
  std::size_t lastOuter_ = NONE;
};

}  // namespace

MapContent ReadMapFile(const GString& path, const TextFormat& format) {
  return MapReader(path, format).Read();
}

std::vector<River> ReadRivers(const GString& path, const TextFormat& format) {
  RecordReader records(path, format, {L"line"}, FEWEST_LINE_POINTS);
  std::vector<River> rivers;
  Record record;
  while (records.Next(record)) {
    rivers.push_back(River{record.name, std::move(record.points), {}});
  }
  return rivers;
}

}  // namespace mapreport
