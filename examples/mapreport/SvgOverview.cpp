// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgOverview.h"

#include <cstddef>
#include <vector>

#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"
#include "shared/polygons/CoverageSimplifier.h"

namespace mapreport {

using namespace shr;

namespace {

/// In square pixels: what a point of an outline must be worth to stay, and an island.
constexpr double LEAST_TRIANGLE = 0.5;
constexpr double LEAST_ISLAND = 0.5;

constexpr const char* STYLE_SHEET =
    ".country{stroke:#857a6b;stroke-width:.2;stroke-linejoin:round}"
    ".window{fill:none;stroke:#b3261e;stroke-width:1.5}";

const Box2d WORLD(-180, -90, 180, 90);

/// The land and the holes of each country in turn, with the points that show.
std::vector<GPolygon2d> SimplifyCountries(const Model& model, const Projection& projection) {
  std::vector<GPolygon2d> parts;
  for (const Country& country : model.countries) {
    parts.push_back(country.land);
    parts.push_back(country.holes);
  }
  const Box2d& page = projection.Frame();
  const double pixel = WORLD.xRange() * WORLD.yRange() / (page.xRange() * page.yRange());
  return SimplifyCoverage(parts, LEAST_TRIANGLE * pixel, LEAST_ISLAND * pixel);
}

void AddRings(const GPolygon2d& polygons, const Projection& projection, SvgPathBuilder& path) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  polygons.GetPolyPolygon(points, counts, false);
  const Vec2d* next = points.data();
  for (const unsigned int count : counts) {
    for (unsigned int i = 0; i < count; ++i, ++next) {
      const Vec2d point = projection.ToPage(*next);
      if (i == 0) {
        path.MoveTo(point);
      } else {
        path.LineTo(point);
      }
    }
    if (count > 0) path.Close();
  }
}

void DrawWindow(SvgWriter& svg, const Box2d& window, const Projection& projection) {
  const Vec2d low = projection.ToPage(Vec2d(window.xMin(), window.yMax()));
  const Vec2d high = projection.ToPage(Vec2d(window.xMax(), window.yMin()));
  svg.BeginRectangle(Box2d(low.x, low.y, high.x, high.y)).Attribute("class", "window").End();
}

}  // namespace

std::string DrawOverview(const Model& model) {
  const Projection projection(WORLD, 0, 0, OVERVIEW_WIDTH, OVERVIEW_HEIGHT + 1);
  SvgWriter svg;
  svg.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg").Attribute("version", "1.1");
  svg.Attribute("width", OVERVIEW_WIDTH).Attribute("height", OVERVIEW_HEIGHT);
  svg.Attribute("viewBox",
                "0 0 " + std::to_string(OVERVIEW_WIDTH) + " " + std::to_string(OVERVIEW_HEIGHT));
  svg.Attribute("role", "img").Attribute("aria-labelledby", "title");
  svg.Begin("title").Attribute("id", "title").Text(L"Where the map lies").End();
  svg.Begin("style").Raw(STYLE_SHEET).End();
  svg.BeginRectangle(projection.Frame()).Attribute("fill", HexColor(model.palette.sea)).End();
  const std::vector<GPolygon2d> parts = SimplifyCountries(model, projection);
  for (std::size_t i = 0; i < model.countries.size(); ++i) {
    SvgPathBuilder path;
    AddRings(parts[2 * i], projection, path);
    AddRings(parts[2 * i + 1], projection, path);
    if (path.IsEmpty()) continue;
    svg.Begin("path").Attribute("class", "country");
    svg.Attribute("fill", HexColor(model.countries[i].fill));
    svg.Attribute("fill-rule", "evenodd").Attribute("d", path.Data()).End();
  }
  DrawWindow(svg, model.window, projection);
  if (model.window.xMax() > WORLD.xMax()) {
    const Box2d& window = model.window;
    DrawWindow(svg,
               Box2d(window.xMin() - WORLD.xRange(), window.yMin(), window.xMax() - WORLD.xRange(),
                     window.yMax()),
               projection);
  }
  svg.End();
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + svg.Take();
}

}  // namespace mapreport
