// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clips and unions on the made map of SmallModel.h and on real countries.

#include "examples/mapreport/Areas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/PointTables.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/mapreport/SmallModel.h"

using namespace mapreport;

namespace {

SilentProgress silent;

double InnerArea(const Contours& rings) {
  shr::MultiPolygon2d polygons;
  shr::GPolygon(rings.points, rings.counts).GetMultiPolygon(polygons);
  double area = 0;
  for (const shr::Polygon2d& polygon : polygons) {
    area += std::abs(shr::PolygonArea(polygon.outerRing.data(), polygon.outerRing.size()));
    for (const shr::Ring2d& hole : polygon.innerRings) {
      area -= std::abs(shr::PolygonArea(hole.data(), hole.size()));
    }
  }
  return area;
}

Contours Rectangle(double xMin, double yMin, double xMax, double yMax) {
  return {{Vec2d(xMin, yMin), Vec2d(xMax, yMin), Vec2d(xMax, yMax), Vec2d(xMin, yMax)}, {4}};
}

Model WindowModel(const Box2d& window) {
  Model model = SmallModel();
  model.rivers.push_back({L"R", {Vec2d(-4, 1), Vec2d(12, 1)}, {}});
  ClipToWindow(model, window, silent);
  return model;
}

}  // namespace

TEST(Areas, onlyWhatLiesInsideStaysVisible) {
  Model model = WindowModel(Box2d(-5, -5, 15, 15));
  EXPECT_DOUBLE_EQ(96, InnerArea(model.countries[0].visible));
  EXPECT_TRUE(ClipToArea(model, {L"middle", Rectangle(1, 0, 5, 5)}, silent));
  // 4 x 5, less the quarter of the hole that lies in it.
  EXPECT_DOUBLE_EQ(19, InnerArea(model.countries[0].visible));
  EXPECT_TRUE(model.countries[1].visible.counts.empty());
  EXPECT_TRUE(model.events[0].visible);
  EXPECT_FALSE(model.cities[0].visible);
  EXPECT_EQ((std::vector<Vec2d>{Vec2d(1, 1), Vec2d(5, 1)}), model.rivers[0].visible.points);
}

TEST(Areas, ringsInsideRingsAreHoles) {
  Model model = WindowModel(Box2d(-5, -5, 15, 15));
  Contours frame = Rectangle(-1, -1, 11, 11);
  frame.Append(Rectangle(1, 1, 9, 9));
  ClipToArea(model, {L"frame", frame}, silent);
  EXPECT_DOUBLE_EQ(36, InnerArea(model.countries[0].visible));
  EXPECT_FALSE(model.events[0].visible);
  EXPECT_FALSE(model.cities[0].visible);
}

TEST(Areas, liesInTheWindowBeyondTheAntimeridian) {
  const InputFile file("A\touter\t4\n-180, 0\n-180, 10\n-170, 10\n-170, 0\n");
  Model model;
  model.countries = ReadMapFile(file.Path(), Utf8Format()).countries;
  ClipToWindow(model, Box2d(160, -10, 200, 20), silent);
  ClipToArea(model, {L"half", Rectangle(-175, -5, -160, 15)}, silent);
  EXPECT_DOUBLE_EQ(50, InnerArea(model.countries[0].visible));
  EXPECT_DOUBLE_EQ(185, model.clip.rings.points[0].x);
}

TEST(Areas, aStoppedStepIsTold) {
  Model model = WindowModel(Box2d(-5, -5, 15, 15));
  SilentProgress stopping(1);
  EXPECT_FALSE(ClipToArea(model, {L"middle", Rectangle(1, 0, 5, 5)}, stopping));
}

TEST(Areas, theUnionOfAContinentHasTheAreaOfItsCountries) {
  Model model;
  const GString folder(SHARED_EXAMPLE_DATA_DIR "/");
  model.countries = ReadMapFile(folder + L"countries-110m.txt", Utf8Format()).countries;
  const auto continents = ReadContinents(folder + L"countries-attributes.csv", Utf8Format());
  for (Country& country : model.countries) {
    const auto found = continents.find(country.name);
    if (found != continents.end()) country.continent = found->second;
  }
  ClipToWindow(model, Box2d(-180, -90, 180, 90), silent);
  for (const wchar_t* const continent : {L"africa", L"Europe", L"South America"}) {
    ASSERT_TRUE(UniteContinent(model, continent, silent));
    double sum = 0;
    std::size_t points = 0;
    for (const Country& country : model.countries) {
      if (country.continent != model.continent.name) continue;
      sum += InnerArea(country.visible);
      points += country.visible.points.size();
    }
    // Neighbours of the source overlap by rounding at most.
    EXPECT_NEAR(sum, InnerArea(model.continent.rings), 1e-6 * sum) << GString(continent);
    EXPECT_LT(model.continent.rings.points.size(), points) << GString(continent);
  }
}
