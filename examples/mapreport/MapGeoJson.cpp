// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapGeoJson.h"

#include <cstdint>

#include "shared/polygons/GPolygon.h"
#include "shared/polygons/formats/PolygonText.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr unsigned char FIRST_PLAIN = 0x20;

std::string JsonText(const GString& text) {
  std::string json = "\"";
  for (const char ch : text.ToUtf8()) {
    if (ch == '"' || ch == '\\') json += '\\';
    json += static_cast<unsigned char>(ch) < FIRST_PLAIN ? ' ' : ch;
  }
  return json + "\"";
}

std::string Feature(const std::string& properties, const Contours& rings) {
  return "{\"type\":\"Feature\",\"properties\":{" + properties +
         "},\"geometry\":" + ToGeoJson(GPolygon(rings.points, rings.counts)) + "}";
}

std::string CountryFeature(const Country& country) {
  std::string properties = "\"name\":" + JsonText(country.name);
  if (!country.continent.empty()) properties += ",\"continent\":" + JsonText(country.continent);
  properties += ",\"events\":" + std::to_string(country.eventCount);
  return Feature(properties, country.visible);
}

}  // namespace

std::string MakeGeoJson(const Model& model) {
  std::string features;
  if (!model.continent.IsEmpty()) {
    features = "\n" + Feature("\"name\":" + JsonText(model.continent.name), model.continent.rings);
  } else {
    for (const Country& country : model.countries) {
      if (country.visible.counts.empty()) continue;
      features += (features.empty() ? "\n" : ",\n") + CountryFeature(country);
    }
  }
  return "{\"type\":\"FeatureCollection\",\"features\":[" + features + "\n]}\n";
}

}  // namespace mapreport
