// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A loaded map is checked before it is used: the drawing code relies on rings that agree with their
// points, on indices that exist and on visible things that lie in the window.

#include "examples/mapreport/MapArchive.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "examples/common/InputError.h"
#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Settings.h"
#include "shared/archive/ArchiveTemplates.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr unsigned int MAGIC = 0x5250414D;  // "MAPR"
constexpr int VERSION_2 = 2;
/// Window coordinates reach from -180 to 360 and shifted ones not much further.
constexpr double FARTHEST = 1000;

/// Takes 9 bytes with and without a value, unlike an optional of the archive: so it is in files of
/// version 1.
void TransferGiven(Archive& archive, std::optional<double>& value) {
  bool hasValue = value.has_value();
  double number = value.value_or(0);
  archive.Transfer(hasValue);
  archive.Transfer(number);
  value = hasValue ? std::optional<double>(number) : std::nullopt;
}

/// All of the model but its history.
void TransferState(Archive& archive, Model& model) {
  Transfer(archive, model.countries);
  Transfer(archive, model.rivers);
  Transfer(archive, model.events);
  Transfer(archive, model.cities);
  Transfer(archive, model.sources);
  Transfer(archive, model.view);
  Transfer(archive, model.window);
  Transfer(archive, model.clip);
  Transfer(archive, model.continent);
  Transfer(archive, model.palette);
  Transfer(archive, model.classes);
  if (archive.GetVersion() < VERSION_2) return;
  Transfer(archive, model.tracks);
  Transfer(archive, model.waypoints);
}

bool IsPlace(const Vec2d& point) {
  return std::abs(point.x) <= FARTHEST && std::abs(point.y) <= FARTHEST;  // false for NaN
}

bool IsWhole(const Contours& contours, unsigned int fewest) {
  std::uint64_t points = 0;
  for (const unsigned int count : contours.counts) {
    if (count < fewest) return false;
    points += count;
  }
  return points == contours.points.size() &&
         std::all_of(contours.points.begin(), contours.points.end(), IsPlace);
}

bool IsFinite(const std::optional<double>& value) {
  return !value || std::isfinite(*value);
}

/// Visible points are drawn at their place in the window, so they must have one.
template <class Point>
bool IsWellPlaced(const Point& point, const Box2d& window) {
  if (!IsPlace(point.position)) return false;
  return !point.visible || PlaceInWindow(point.position, window).has_value();
}

bool AreCountriesWhole(const Model& model) {
  return std::all_of(model.countries.begin(), model.countries.end(), [&](const Country& country) {
    const std::size_t largest = country.largestEvent;
    const bool hasLargest =
        largest == NONE || (largest < model.events.size() && model.events[largest].magnitude);
    return hasLargest && country.outerRings <= country.rings.counts.size() &&
           IsWhole(country.rings, 1) && IsWhole(country.visible, 1);
  });
}

bool AreCountsRight(const Model& model) {
  std::vector<std::size_t> counts(model.countries.size());
  for (const Event& event : model.events) {
    if (event.country != NONE) ++counts[event.country];
  }
  return std::equal(
      counts.begin(), counts.end(), model.countries.begin(),
      [](std::size_t count, const Country& country) { return count == country.eventCount; });
}

bool ArePointsRight(const Model& model) {
  return std::all_of(model.events.begin(), model.events.end(),
                     [&](const Event& event) {
                       const bool isIndex =
                           event.country == NONE || event.country < model.countries.size();
                       return isIndex && IsFinite(event.depth) && IsFinite(event.magnitude) &&
                              IsWellPlaced(event, model.window);
                     }) &&
         std::all_of(model.cities.begin(), model.cities.end(), [&](const City& city) {
           return std::isfinite(city.population) && IsWellPlaced(city, model.window);
         });
}

bool AreTracksWhole(const Model& model) {
  return std::all_of(model.tracks.begin(), model.tracks.end(),
                     [](const Track& track) {
                       return track.kind <= Track::Kind::Outline && IsFinite(track.lowest) &&
                              IsFinite(track.highest) && IsWhole(track.lines, 1) &&
                              IsWhole(track.visible, 1);
                     }) &&
         std::all_of(model.waypoints.begin(), model.waypoints.end(), [&](const Waypoint& waypoint) {
           return IsFinite(waypoint.elevation) && IsWellPlaced(waypoint, model.window);
         });
}

bool AreRiversWhole(const Model& model) {
  return std::all_of(model.rivers.begin(), model.rivers.end(), [](const River& river) {
    return std::all_of(river.points.begin(), river.points.end(), IsPlace) &&
           IsWhole(river.visible, 1);
  });
}

/// Returns what is wrong with a loaded model, or null.
const wchar_t* FindFault(const Model& model) {
  if (!IsWindow(model.window)) return L"the window is none";
  if (!ArePointsRight(model)) return L"an event or a city is out of place";
  if (!AreCountriesWhole(model)) return L"a country is incomplete";
  if (!AreCountsRight(model)) return L"the counts of events do not add up";
  if (!AreRiversWhole(model)) return L"a river is incomplete";
  if (!AreTracksWhole(model)) return L"a track or a waypoint is out of place";
  if (!IsWhole(model.clip.rings, 1) || !IsWhole(model.continent.rings, 1)) {
    return L"an area is incomplete";
  }
  if (model.palette.ramp.size() < 2) return L"colors are missing";
  if (!IsDashPattern(model.view.dashes)) return L"the dashes are none";
  if (model.view.text > TextMode::Portable) return L"the mode of texts is none";
  return nullptr;
}

void TransferHead(Archive& archive, const GString& path) {
  unsigned int magic = MAGIC;
  int version = MAP_VERSION;
  archive.Transfer(magic);
  archive.Transfer(version);
  if (magic != MAGIC) ThrowInputError(path, L"This is no saved map.");
  if (version < 1 || version > MAP_VERSION) {
    ThrowInputError(path, GString(L"The map was saved by another version of the program (") +
                              std::to_wstring(version).c_str() + L").");
  }
  archive.SetVersion(version);
}

std::string_view Stored(Archive& archive) {
  return std::string_view(reinterpret_cast<const char*>(archive.GetBuffer()),
                          static_cast<std::size_t>(archive.GetSize()));
}

Model LoadFrom(Archive& archive, const GString& path) {
  Model model;
  TransferHead(archive, path);
  TransferState(archive, model);
  Transfer(archive, model.history);
  archive.SyncCheck();
  archive.Close();
  if (const wchar_t* const fault = FindFault(model)) {
    ThrowInputError(path, GString(L"The saved map is damaged: ") + fault + L".");
  }
  for (Country& country : model.countries) country.MakePolygons();
  return model;
}

}  // namespace

void Contours::Serialize(Archive& archive) {
  Transfer(archive, counts);
  Transfer(archive, points);
}

void Country::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, continent);
  Transfer(archive, rings);
  Transfer(archive, outerRings);
  Transfer(archive, visible);
  archive.Transfer64(eventCount);
  archive.Transfer64(largestEvent);
  Transfer(archive, fill);
}

void River::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, points);
  Transfer(archive, visible);
}

void Event::Serialize(Archive& archive) {
  Transfer(archive, time);
  Transfer(archive, place);
  Transfer(archive, position);
  TransferGiven(archive, depth);
  TransferGiven(archive, magnitude);
  Transfer(archive, visible);
  archive.Transfer64(country);
}

void City::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, countryCode);
  Transfer(archive, position);
  Transfer(archive, population);
  Transfer(archive, visible);
  if (archive.GetVersion() >= VERSION_2) Transfer(archive, isCapital);
}

void Track::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, kind);
  Transfer(archive, lines);
  for (GString* text : {&begin, &end}) Transfer(archive, *text);
  TransferGiven(archive, lowest);
  TransferGiven(archive, highest);
  Transfer(archive, visible);
}

void Waypoint::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, position);
  TransferGiven(archive, elevation);
  for (GString* text : {&time, &symbol}) Transfer(archive, *text);
  Transfer(archive, visible);
}

void Source::Serialize(Archive& archive) {
  for (GString* text : {&layer, &fileName, &encoding, &content, &credit}) {
    Transfer(archive, *text);
  }
}

void ColorClass::Serialize(Archive& archive) {
  archive.Transfer64(from);
  archive.Transfer64(to);
  Transfer(archive, color);
  archive.Transfer64(countries);
}

void Palette::Serialize(Archive& archive) {
  Transfer(archive, ramp);
  for (Color4b* color : {&none, &sea, &river}) Transfer(archive, *color);
}

void View::Serialize(Archive& archive) {
  if (archive.IsLoading()) title.clear();
  Transfer(archive, title);
  archive.Transfer64(labels);
  archive.Transfer64(strongest);
  Transfer(archive, dashes);
  if (archive.GetVersion() < VERSION_2) return;
  Transfer(archive, text);
  Transfer(archive, face);
}

void Area::Serialize(Archive& archive) {
  Transfer(archive, name);
  Transfer(archive, rings);
}

void Step::Serialize(Archive& archive) {
  for (GString* text : {&action, &label, &outcome, &fingerprint}) Transfer(archive, *text);
}

std::string StoreMap(Model& model) {
  Archive archive;
  archive.OpenMem();
  TransferHead(archive, GString());
  TransferState(archive, model);
  Transfer(archive, model.history);
  archive.SyncCheck();
  return std::string(Stored(archive));
}

Model LoadMap(const GString& path) {
  Archive archive(path, Archive::Load);
  return LoadFrom(archive, path);
}

Model LoadMap(std::string_view bytes, const GString& name) {
  Archive archive;
  archive.OpenMem(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  return LoadFrom(archive, name);
}
GString Fingerprint(Model& model) {
  constexpr std::uint32_t OFFSET_BASIS = 2166136261;
  constexpr std::uint32_t PRIME = 16777619;
  Archive archive;
  archive.OpenMem();
  archive.SetVersion(MAP_VERSION);
  TransferState(archive, model);
  std::uint32_t hash = OFFSET_BASIS;
  for (const char byte : Stored(archive)) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * PRIME;
  }
  GString text;
  text.FormatString(L"%08x", hash);
  return text;
}

}  // namespace mapreport
