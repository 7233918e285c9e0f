// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The page is laid out in units of a CSS pixel. The map is as large as MAX_WIDTH by MAX_HEIGHT
// allow, the page at least as wide as the legend. Layers go from the bottom up: sea, land outside
// of the clip, countries, rivers, areas, graticule, tracks, events, markers, names, frame.

#include "examples/mapreport/SvgMap.h"

#include <algorithm>
#include <cmath>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/MapCanvas.h"
#include "examples/mapreport/SvgCountries.h"
#include "examples/mapreport/SvgGraticule.h"
#include "examples/mapreport/SvgLegend.h"
#include "examples/mapreport/SvgPoints.h"
#include "examples/mapreport/SvgRivers.h"
#include "examples/mapreport/SvgTracks.h"
#include "shared/mathtext/Context.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double MAX_WIDTH = 1200;
constexpr double MAX_HEIGHT = 900;
constexpr double SIDE = 48;
constexpr double TOP = 92;
constexpr double FRAME_TO_LEGEND = 40;
constexpr double LABEL_MARGIN = 3;
/// Countries that the description of the picture names.
constexpr std::size_t MOST_DESCRIBED = 3;

/// Of portable texts. Scripts that the first faces lack are found by the viewer; East Asian faces
/// by the language of the text.
constexpr const char* PORTABLE_STYLE =
    "text{font-family:'Noto Sans','Segoe UI','DejaVu Sans','Noto Sans Arabic','Noto Sans Hebrew',"
    "'Noto Sans Thai',Arial,sans-serif}"
    ".halo{paint-order:stroke;stroke:#fff;stroke-opacity:.85;stroke-width:2.6px;"
    "stroke-linejoin:round}";

constexpr const char* STYLE_SHEET =
    ".ground{fill:#dbd9d4;stroke:#c8c5bf;stroke-width:.5;stroke-linejoin:round}"
    ".country{stroke:#857a6b;stroke-width:.5;stroke-linejoin:round}"
    ".river{fill:none;stroke-width:1;stroke-linejoin:round}"
    ".clip{stroke:#6b4f3a;stroke-width:.9;stroke-linejoin:round}"
    ".continent{stroke:#3d2b1f;stroke-width:1.6;stroke-linejoin:round}"
    ".graticule{fill:none;stroke:#5f7f93;stroke-width:.5;stroke-opacity:.45}"
    ".event{fill:#27368a;fill-opacity:.42;stroke:#fff;stroke-width:.35;stroke-opacity:.7}"
    ".many{fill:#27368a;stroke:none}"
    ".city{color:#1a1a1a}.strong{color:#1e2a6b}.waypoint{color:#8e1045}"
    ".track{fill:none;stroke:#b0125b;stroke-width:2;stroke-linejoin:round;stroke-linecap:round}"
    ".route{stroke-dasharray:7 4;stroke-linecap:butt}.outline{stroke-width:1.2}"
    ".track.ground{stroke:#fff;stroke-width:4;stroke-opacity:.8}";

struct Page {
  double width;
  double height;
  Projection projection;
};

Page LayOut(const Model& model) {
  const Box2d& window = model.window;
  const Projection trial(window, 0, 0, MAX_WIDTH, MAX_HEIGHT);
  const double mapWidth = trial.Frame().xRange();
  const double width = std::ceil(std::max(mapWidth, LEGEND_WIDTH) + 2 * SIDE);
  const Projection projection(window, std::floor((width - mapWidth) / 2), TOP, MAX_WIDTH,
                              MAX_HEIGHT);
  const double height =
      std::ceil(projection.Frame().yMax() + FRAME_TO_LEGEND + LegendHeight(model));
  return {width, height, projection};
}

GString Subtitle(const Model& model) {
  const std::size_t visible = CountVisible(model);
  GString text = FormatCount(visible, L"event", L"events");
  if (visible != model.events.size()) text += L" of " + FormatCount(model.events.size());
  const GString period = FormatPeriod(model);
  if (!period.empty()) text += L" \u00B7 " + period;
  const std::vector<std::size_t> strongest = StrongestEvents(model, 1);
  if (strongest.empty()) return text;
  return text + L" \u00B7 largest magnitude " +
         FormatMagnitude(model.events[strongest.front()].magnitude);
}

/// A title without markup is bold. One that is wider than the page is set smaller.
void DrawTitle(MapCanvas& canvas, const Model& model, double left, double room) {
  const GString& title = model.view.title;
  TextStyle style{25, TEXT_COLOR, ContainsMathText(title.c_str()) ? 400 : BOLD};
  const double width = canvas.text.WidthOf(canvas.text.Make(title, style));
  if (width > room) style.size *= room / width;
  canvas.text.Write(Vec2d(left, 38), title, style);
  canvas.text.Write(Vec2d(left, 60), EscapeMathText(Subtitle(model)), {14});
}

/// What the map shows, for those who do not see it.
GString Description(const Model& model) {
  GString text = L"Map of " + FormatWindow(model.window) + L": " + Subtitle(model) + L".";
  if (!model.clip.IsEmpty()) text += L" It is clipped to " + model.clip.name + L".";
  const std::vector<std::size_t> struck = CountriesByCount(model);
  for (std::size_t i = 0; i < std::min(struck.size(), MOST_DESCRIBED); ++i) {
    const Country& country = model.countries[struck[i]];
    text += (i == 0 ? L" Most of them lie in " : L", ") + country.name + L" (" +
            FormatCount(country.eventCount) + L")";
  }
  return struck.empty() ? text : text + L".";
}

void BeginDocument(SvgWriter& svg, const Page& page, const Model& model) {
  std::string box = "0 0 ";
  AppendSvgTenths(box, SvgTenths(page.width));
  box += ' ';
  AppendSvgTenths(box, SvgTenths(page.height));
  svg.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg").Attribute("version", "1.1");
  svg.Attribute("xmlns:xlink", "http://www.w3.org/1999/xlink");
  svg.Attribute("width", page.width).Attribute("height", page.height).Attribute("viewBox", box);
  svg.Attribute("xml:lang", "en").Attribute("role", "img");
  svg.Attribute("aria-labelledby", "title desc");
  svg.Begin("title").Attribute("id", "title").Text(MathTextToSimpleText(model.view.title)).End();
  svg.Begin("desc").Attribute("id", "desc").Text(Description(model)).End();
  svg.Begin("style").Raw(STYLE_SHEET);
  if (model.view.text == TextMode::Portable) svg.Raw(PORTABLE_STYLE);
  svg.End();
  svg.Begin("clipPath").Attribute("id", "map");
  svg.BeginRectangle(page.projection.Frame()).Attribute("fill", "#fff").End();
  svg.End();
  svg.BeginRectangle(Box2d(0, 0, page.width, page.height)).Attribute("fill", "#fdfcf9").End();
}

}  // namespace

MapPicture DrawMap(const Model& model) {
  const Page page = LayOut(model);
  const Projection& projection = page.projection;
  const Graticule graticule = MakeGraticule(model.window);
  Box2d labelled = projection.Frame();
  labelled.Inflate(-LABEL_MARGIN, -LABEL_MARGIN);
  MapCanvas canvas(model, projection, labelled);
  SvgWriter& svg = canvas.svg;
  BeginDocument(svg, page, model);
  svg.Begin("g").Attribute("clip-path", "url(#map)");
  svg.BeginRectangle(projection.Frame()).Attribute("fill", HexColor(model.palette.sea)).End();
  DrawGround(svg, model, projection);
  DrawCountries(svg, model, projection);
  DrawRivers(svg, model, projection);
  DrawAreas(svg, model, projection);
  DrawGraticule(svg, projection, graticule);
  DrawTracks(canvas, model);
  DrawEvents(svg, model, projection);
  DrawWaypoints(canvas, model);
  CityPainter cities(canvas, model, model.view.labels);
  DrawEventNames(canvas, model);
  DrawWaypointNames(canvas, model);
  MapPicture picture;
  picture.cities = cities.Draw();
  svg.End();
  DrawFrame(canvas, graticule);
  const double left = std::min(projection.Frame().xMin(), (page.width - LEGEND_WIDTH) / 2);
  const double width = page.width - 2 * left;
  DrawTitle(canvas, model, left, width);
  DrawLegend(canvas, model, Vec2d(left, projection.Frame().yMax() + FRAME_TO_LEGEND), width);
  canvas.markers.Define(svg);
  svg.End();
  picture.svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + svg.Take();
  picture.width = static_cast<int>(page.width);
  picture.height = static_cast<int>(page.height);
  return picture;
}

}  // namespace mapreport
