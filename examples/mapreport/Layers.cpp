// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Layers.h"

#include <map>
#include <utility>

#include "examples/mapreport/Format.h"
#include "examples/mapreport/MapFile.h"
#include "examples/mapreport/PointTables.h"
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
  return model;
}

}  // namespace mapreport
