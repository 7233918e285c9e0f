// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapFile.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "examples/mapreport/InputError.h"
#include "examples/mapreport/TableReader.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr unsigned int FEWEST_POINTS = 3;
/// A count is only a promise; no more room than this is taken before the points are there.
constexpr unsigned int LARGEST_RESERVE = 4096;

struct RecordHeader {
  GString name;
  bool isHole = false;
  unsigned int count = 0;
  std::size_t line = 0;
};

std::vector<GString> SplitAtTabs(const GString& line) {
  std::vector<GString> fields;
  std::size_t begin = 0;
  for (std::size_t tab = line.find(L'\t'); tab != GString::npos; tab = line.find(L'\t', begin)) {
    fields.push_back(line.substr(begin, tab - begin));
    begin = tab + 1;
  }
  fields.push_back(line.substr(begin));
  return fields;
}

class MapReader {
public:
  MapReader(const GString& path, const TextFormat& format) : lines_(path, format) {}

  MapContent Read() {
    GString line;
    while (lines_.Next(line)) {
      if (!line.empty()) ReadRecord(line);
    }
    if (content_.rings == 0) ThrowInputError(lines_.Path(), 1, L"The file holds no record.");
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

  void ReadRecord(const GString& headerLine) {
    const RecordHeader header = ParseHeader(headerLine);
    Contours& contours = Target(header);
    const std::size_t first = contours.points.size();
    contours.points.reserve(first + std::min(header.count, LARGEST_RESERVE));
    GString line;
    for (unsigned int i = 0; i < header.count; ++i) {
      const bool more = lines_.Next(line);
      if (!more || line.find(L'\t') != GString::npos) FailCount(header, i, more);
      contours.points.push_back(ParsePoint(line));
    }
    contours.counts.push_back(header.count);
    ++content_.rings;
    if (header.isHole) ++content_.holes;
    content_.points += header.count;
  }

  RecordHeader ParseHeader(const GString& line) const {
    const std::vector<GString> fields = SplitAtTabs(line);
    if (fields.size() != 3) {
      lines_.Fail(L"A record header has to be here: name, role and point count between tabs.");
    }
    RecordHeader header{fields[0], fields[1] == L"hole", 0, lines_.LineNumber()};
    if (!header.isHole && fields[1] != L"outer") {
      lines_.Fail(L"The role " + Quoted(fields[1]) + L" is neither 'outer' nor 'hole'.");
    }
    if (!fields[2].ToUnsignedInt(header.count)) {
      lines_.Fail(L"The point count " + Quoted(fields[2]) + L" is no number.");
    }
    if (header.count < FEWEST_POINTS) lines_.Fail(L"A ring needs at least 3 points.");
    return header;
  }

  [[noreturn]] void FailCount(const RecordHeader& header, unsigned int found, bool more) const {
    const GString counts = GString(std::to_wstring(header.count)) + L" points announced in line " +
                           std::to_wstring(header.line) + L" for " + Quoted(header.name) +
                           L", but " + std::to_wstring(found) + L" found.";
    if (!more)
      ThrowInputError(lines_.Path(), lines_.LineNumber(), L"The file ends early: " + counts);
    lines_.Fail(L"The record ends early: " + counts);
  }

  /// Returns the contours that the record's ring belongs to.
  Contours& Target(const RecordHeader& header) {
    if (header.isHole) {
      if (lastOuter_ == NONE) lines_.Fail(L"A hole needs an outer ring above it.");
      return buildings_[lastOuter_].holes;
    }
    const auto [place, isNew] = byName_.try_emplace(header.name, buildings_.size());
    if (isNew) buildings_.push_back(Building{header.name, {}, {}});
    lastOuter_ = place->second;
    return buildings_[lastOuter_].land;
  }

  Vec2d ParsePoint(const GString& line) const {
    const std::size_t comma = line.find(L',');
    if (comma == GString::npos) {
      lines_.Fail(Quoted(line) + L" is no point: longitude, comma, latitude.");
    }
    return Vec2d(ParseDegrees(line.substr(0, comma), L"longitude", 180),
                 ParseDegrees(line.substr(comma + 1), L"latitude", 90));
  }

  double ParseDegrees(GString text, const wchar_t* what, double limit) const {
    double value = 0;
    if (!text.ToDouble(value)) {
      lines_.Fail(GString(L"The ") + what + L" " + Quoted(text.Trim()) + L" is no number.");
    }
    // Not a number compares false.
    if (!(std::abs(value) <= limit)) {
      lines_.Fail(GString(L"The ") + what + L" " + Quoted(text.Trim()) + L" is not on the globe.");
    }
    return value;
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

  LineReader lines_;
  MapContent content_;
  std::vector<Building> buildings_;
  std::map<GString, std::size_t> byName_;
  std::size_t lastOuter_ = NONE;
};

}  // namespace

MapContent ReadMapFile(const GString& path, const TextFormat& format) {
  return MapReader(path, format).Read();
}

}  // namespace mapreport
