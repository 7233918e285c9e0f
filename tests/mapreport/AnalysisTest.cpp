// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A made map of two neighbours, one with a hole that holds an island of its own:
//
//   West: 0..10 x 0..10, hole 2..8 x 2..8, island 4..6 x 4..6     East: 10..20 x 0..10

#include "examples/mapreport/Analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "examples/mapreport/MapFile.h"
#include "shared/polygons/FlatPolygon.h"
#include "tests/common/Inputs.h"

using namespace mapreport;

namespace {

std::string Square(const char* name, const char* role, int from, int to, int shiftX = 0) {
  const auto point = [&](int x, int y) {
    return std::to_string(x + shiftX) + ", " + std::to_string(y) + "\n";
  };
  return std::string(name) + "\t" + role + "\t4\n" + point(from, from) + point(from, to) +
         point(to, to) + point(to, from);
}

Model MakeModel() {
  const InputFile file(Square("West", "outer", 0, 10) + Square("West", "hole", 2, 8) +
                       Square("West", "outer", 4, 6) + Square("East", "outer", 0, 10, 10));
  Model model;
  model.countries = ReadMapFile(file.Path(), Utf8Format()).countries;
  return model;
}

void AddEvent(Model& model, double x, double y, std::optional<double> magnitude) {
  Event event;
  event.position = Vec2d(x, y);
  event.magnitude = magnitude;
  model.events.push_back(event);
}

double VisibleArea(const Country& country) {
  return shr::PolygonArea(country.visible.points, country.visible.counts);
}

const Box2d WORLD(-180, -90, 180, 90);
SilentProgress silent;

}  // namespace

TEST(Analysis, eventsAreCountedWhereTheyLie) {
  struct Row {
    const char* name;
    double x;
    double y;
    std::size_t country;
  };
  const Row rows[] = {
      {"land of the west", 1, 5, 0},   {"hole", 3, 5, NONE},
      {"island in the hole", 5, 5, 0}, {"east", 15, 5, 1},
      {"common border", 10, 5, 1},     {"sea", 25, 5, NONE},
  };
  for (const Row& row : rows) {
    Model model = MakeModel();
    AddEvent(model, row.x, row.y, 1.0);
    ClipToWindow(model, WORLD, silent);
    CountEvents(model, silent);
    EXPECT_EQ(row.country, model.events[0].country) << row.name;
    const std::size_t counted = model.countries[0].eventCount + model.countries[1].eventCount;
    EXPECT_EQ(row.country == NONE ? 0u : 1u, counted) << row.name;
  }
}

TEST(Analysis, theLargestEventIsTheFirstOfTheLargestMagnitude) {
  Model model = MakeModel();
  AddEvent(model, 1, 1, std::nullopt);
  AddEvent(model, 1, 1, -0.5);
  AddEvent(model, 1, 1, 2.5);
  AddEvent(model, 1, 1, 2.5);
  AddEvent(model, 15, 1, std::nullopt);
  ClipToWindow(model, WORLD, silent);
  CountEvents(model, silent);
  EXPECT_EQ(4u, model.countries[0].eventCount);
  EXPECT_EQ(2u, model.countries[0].largestEvent);
  EXPECT_EQ(NONE, model.countries[1].largestEvent);
  EXPECT_EQ((std::vector<std::size_t>{0, 1}), CountriesByCount(model));
  EXPECT_EQ((std::vector<std::size_t>{2, 3}), StrongestEvents(model, 2));
}

TEST(Analysis, theWindowCutsCountriesAndEvents) {
  Model model = MakeModel();
  AddEvent(model, 1, 5, 1.0);
  AddEvent(model, 5, 5, 9.0);
  ClipToWindow(model, Box2d(-5, -5, 5, 5), silent);
  CountEvents(model, silent);
  // A quarter of 100, less a quarter of 36, and a quarter of 4; the flat form does not tell holes.
  std::vector<double> areas;
  const Vec2d* points = model.countries[0].visible.points.data();
  for (const unsigned int count : model.countries[0].visible.counts) {
    areas.push_back(std::abs(shr::PolygonArea(points, count)));
    points += count;
  }
  std::sort(areas.begin(), areas.end());
  EXPECT_EQ((std::vector<double>{1, 9, 25}), areas);
  EXPECT_TRUE(model.countries[1].visible.counts.empty());
  EXPECT_EQ(2u, model.countries[0].eventCount) << "the edge belongs to the window";
  ClipToWindow(model, Box2d(-5, -5, 4, 4), silent);
  CountEvents(model, silent);
  EXPECT_EQ(0u, CountVisible(model));
  EXPECT_EQ(0u, model.countries[0].eventCount);
}

TEST(Analysis, aWindowBeyondTheAntimeridianShowsBothSides) {
  const InputFile file(
      "Low\touter\t4\n-180, 0\n-180, 10\n-170, 10\n-170, 0\n"
      "High\touter\t4\n170, 0\n170, 10\n180, 10\n180, 0\n");
  Model model;
  model.countries = ReadMapFile(file.Path(), Utf8Format()).countries;
  AddEvent(model, -175, 5, 1.0);
  AddEvent(model, 175, 5, 1.0);
  AddEvent(model, 0, 5, 1.0);
  const Box2d window(160, -10, 200, 20);
  ClipToWindow(model, window, silent);
  CountEvents(model, silent);
  EXPECT_DOUBLE_EQ(100, std::abs(VisibleArea(model.countries[0])));
  EXPECT_DOUBLE_EQ(100, std::abs(VisibleArea(model.countries[1])));
  for (const Country& country : model.countries) {
    EXPECT_EQ(1u, country.eventCount);
    for (const Vec2d& point : country.visible.points) EXPECT_TRUE(window.Contains(point));
  }
  EXPECT_EQ(Vec2d(185, 5), PlaceInWindow(Vec2d(-175, 5), window));
  EXPECT_EQ(std::nullopt, PlaceInWindow(Vec2d(0, 5), window));
}

TEST(Analysis, theWindowCutsRiversIntoPieces) {
  Model model;
  // Runs out of the window and back in, and once around the world.
  model.rivers.push_back({L"R", {Vec2d(170, 5), Vec2d(175, 15), Vec2d(178, 5), Vec2d(180, 5)}, {}});
  model.rivers.push_back({L"S", {Vec2d(-180, 5), Vec2d(-165, 5)}, {}});
  ClipToWindow(model, Box2d(160, 0, 190, 10), silent);
  EXPECT_EQ((std::vector<unsigned int>{2, 3}), model.rivers[0].visible.counts);
  EXPECT_EQ(Vec2d(172.5, 10), model.rivers[0].visible.points[1]);
  const std::vector<Vec2d> shifted = {Vec2d(180, 5), Vec2d(190, 5)};
  EXPECT_EQ(shifted, model.rivers[1].visible.points);
}

TEST(Analysis, everyCountBelongsToOneClassOfAtMostSeven) {
  const std::vector<std::size_t> lists[] = {
      {1},
      {0, 1, 2, 3},
      {0, 0, 4, 1349, 21, 10, 5, 5, 1},
      {1, 2, 5, 10, 20, 50, 100, 200},
      {1, 3, 10, 30, 100, 300, 1000, 3000},
      {1, 10, 100, 1000, 10000, 100000, 1000000},
      {7, 7, 7},
  };
  for (const std::vector<std::size_t>& counts : lists) {
    const std::vector<ColorClass> classes = MakeClasses(counts);
    EXPECT_LE(classes.size(), 7u);
    std::size_t members = 0;
    for (std::size_t i = 0; i < classes.size(); ++i) {
      EXPECT_LE(classes[i].from, classes[i].to);
      if (i > 0) {
        EXPECT_LT(classes[i - 1].to, classes[i].from);
      }
      EXPECT_GT(classes[i].countries, 0u);
      members += classes[i].countries;
    }
    EXPECT_EQ(
        counts.size() - static_cast<std::size_t>(std::count(counts.begin(), counts.end(), 0u)),
        members);
  }
  EXPECT_TRUE(MakeClasses({}).empty());
  EXPECT_TRUE(MakeClasses({0, 0}).empty());
}

TEST(Analysis, theRampDarkensSteadily) {
  const Palette palette = DefaultPalette();
  double last = palette.At(0).Intensity();
  for (int i = 1; i <= 12; ++i) {
    const double intensity = palette.At(i / 12.0).Intensity();
    EXPECT_LT(intensity, last) << i;
    last = intensity;
  }
  EXPECT_EQ(palette.At(1), palette.At(7));
}
