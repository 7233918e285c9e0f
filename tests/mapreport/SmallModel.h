// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A made map: a country with a hole, one far away, an event and a city.

#pragma once

#include "examples/mapreport/MapFile.h"
#include "examples/mapreport/Model.h"
#include "tests/common/Inputs.h"

namespace mapreport {

inline Model SmallModel() {
  const InputFile file(
      "A<B\touter\t4\n0, 0\n0, 10\n10, 10\n10, 0\n"
      "A<B\thole\t4\n4, 4\n6, 4\n6, 6\n4, 6\n"
      "Far\touter\t4\n50, 50\n50, 60\n60, 60\n60, 50\n");
  Model model;
  model.countries = ReadMapFile(file.Path(), Utf8Format()).countries;
  Event event;
  event.position = Vec2d(2, 2);
  event.magnitude = 5.26;
  event.depth = -1.25;
  event.time = L"2018-01-31T02:00:31.800Z";
  event.place = L"Here & \"there\"";
  model.events.push_back(event);
  City city;
  city.name = L"\x6771\x4EAC";
  city.countryCode = L"JP";
  city.position = Vec2d(8, 8);
  city.population = 6e6;
  model.cities.push_back(city);
  model.sources.push_back({L"Events", L"e.csv", L"ASCII", L"1 event", L""});
  model.view.title = L"Title & more";
  model.view.text = TextMode::Portable;
  return model;
}

}  // namespace mapreport
