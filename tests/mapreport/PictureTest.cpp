// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The page's arithmetic, texts and markup, and a whole small map.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Areas.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/Projection.h"
#include "examples/mapreport/ReportPage.h"
#include "examples/mapreport/SvgMap.h"
#include "examples/mapreport/SvgOverview.h"
#include "examples/mapreport/SvgPoints.h"
#include "examples/mapreport/TableFiles.h"
#include "tests/mapreport/SmallModel.h"

using namespace mapreport;

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

MapPicture Draw(Model& model, const Box2d& window) {
  SilentProgress silent;
  ClipToWindow(model, window, silent);
  CountEvents(model, silent);
  ColorByCount(model, DefaultPalette());
  return DrawMap(model);
}

}  // namespace

TEST(Format, writesPlacesAndTimes) {
  EXPECT_EQ(L"122.5\xB0W", FormatLongitude(-122.5, 1));
  EXPECT_EQ(L"170\xB0W", FormatLongitude(190, 0));
  EXPECT_EQ(L"180\xB0", FormatLongitude(-180, 0));
  EXPECT_EQ(L"0\xB0", FormatLatitude(0, 0));
  EXPECT_EQ(L"46.20\xB0N 122.20\xB0W", FormatPosition(Vec2d(-122.197, 46.2035)));
  EXPECT_EQ(L"2018-01-31 02:00", FormatTime(L"2018-01-31T02:00:31.800Z"));
  EXPECT_EQ(L"yesterday", FormatTime(L"yesterday"));
}

TEST(Projection, fillsTheSpaceAndKeepsTheParallelTrue) {
  const Projection world(Box2d(-180, -90, 180, 90), 10, 20, 1200, 900);
  EXPECT_DOUBLE_EQ(45, world.Parallel());
  EXPECT_DOUBLE_EQ(1200, world.Frame().xRange());
  EXPECT_NEAR(0.707, world.Frame().xRange() / world.Frame().yRange() / 2, 1e-12);
  EXPECT_EQ(Vec2d(10, 20), world.ToPage(Vec2d(-180, 90)));
  const Projection tall(Box2d(-75, -56, -66, -17), 0, 0, 1200, 900);
  EXPECT_DOUBLE_EQ(36.5, tall.Parallel());
  EXPECT_DOUBLE_EQ(900, tall.Frame().yRange());
  EXPECT_LT(tall.Frame().xRange(), 1200);
}

TEST(Projection, theGraticuleHasFiveToFifteenSteps) {
  for (double range = 0.01; range <= 360; range *= 1.07) {
    const double lines = range / GraticuleStep(range);
    EXPECT_GE(lines, 5) << range;
    EXPECT_LE(lines, 15) << range;
  }
}

TEST(SvgMap, textsAreMeasuredWhereTheyAreDrawn) {
  Model model = SmallModel();
  model.view.title = L"{\\b A\\{} \\i b";
  model.cities[0].name = L"x{y\\b";
  for (const TextMode mode : {TextMode::Text, TextMode::Outlines, TextMode::Portable}) {
    model.view.text = mode;
    model.view.face = L"Shared Stroke";
    const std::string svg = Draw(model, Box2d(-5, -5, 15, 15)).svg;
    const auto name = static_cast<int>(mode);
    EXPECT_TRUE(Contains(svg, "<title id=\"title\">A{ b</title>")) << name;
    EXPECT_TRUE(Contains(svg, "x{y\\b")) << name;
    // Symbol sets are no faces of a viewer, so their text is outlines in two modes.
    EXPECT_EQ(mode == TextMode::Portable, Contains(svg, "x{y\\b</text>")) << name;
    EXPECT_EQ(mode != TextMode::Portable, Contains(svg, "href=\"#glyph1\"")) << name;
  }
}

TEST(SvgMap, aTitleThatIsTooWideIsSetSmaller) {
  Model model = SmallModel();
  model.view.title = GString(std::wstring(200, L'W'));
  const std::string svg = Draw(model, Box2d(-5, -5, 15, 15)).svg;
  EXPECT_TRUE(Contains(svg, "WWW</text>"));
  EXPECT_FALSE(Contains(svg, "font-size=\"25\""));
  model.view.title = L"{\\b unbalanced";
  EXPECT_TRUE(Contains(Draw(model, Box2d(-5, -5, 15, 15)).svg, ">{\\b unbalanced</text>"));
}

TEST(SvgMap, drawsTracksAndWaypoints) {
  Model model = SmallModel();
  const Contours line = {{Vec2d(1, 1), Vec2d(2, 3)}, {2}};
  model.tracks.push_back({L"A&B", Track::Kind::Track, line, L"", L"", {}, {}, {}});
  model.tracks.push_back({L"", Track::Kind::Route, line, L"", L"", {}, {}, {}});
  model.tracks.push_back(
      {L"far", Track::Kind::Outline, {{Vec2d(99, 1), Vec2d(99, 3)}, {2}}, L"", L"", {}, {}, {}});
  model.waypoints.push_back({L"Top", Vec2d(3, 3), 812.4, L"", L"Summit", false});
  model.waypoints.push_back({L"Pin", Vec2d(7, 3), {}, L"", L"no such symbol", false});
  model.waypoints.push_back({L"Gone", Vec2d(70, 3), {}, L"", L"", false});
  const std::string svg = Draw(model, Box2d(-5, -5, 15, 15)).svg;
  EXPECT_EQ(2u, Count(svg, "class=\"track\" d=")) << "the track and its sample";
  EXPECT_EQ(2u, Count(svg, "class=\"track route\" d="));
  EXPECT_EQ(0u, Count(svg, "class=\"track outline\" d="));
  EXPECT_TRUE(Contains(svg, "<title>A&amp;B, 248.6 km</title>"));
  EXPECT_TRUE(Contains(svg, "<title>Top, 812 m</title>\n<use xlink:href=\"#marker-peak-"));
  EXPECT_TRUE(Contains(svg, "<title>Pin</title>\n<use xlink:href=\"#marker-pin-"));
  EXPECT_FALSE(Contains(svg, "Gone"));
  // The pin of the waypoint and that of the legend are one symbol.
  EXPECT_EQ(2u, Count(svg, "\"#marker-pin-"));
  EXPECT_EQ(1u, Count(svg, "id=\"marker-pin-"));
}

TEST(SvgMap, showsWhatIsInTheWindow) {
  Model model = SmallModel();
  const MapPicture picture = Draw(model, Box2d(-5, -5, 15, 15));
  EXPECT_TRUE(Contains(picture.svg, "<title>A&lt;B: 1 event</title>"));
  EXPECT_FALSE(Contains(picture.svg, "Far"));
  EXPECT_TRUE(Contains(picture.svg, "xml:lang=\"ja\">\n<text"));
  EXPECT_TRUE(Contains(picture.svg, "\xE6\x9D\xB1\xE4\xBA\xAC</text>"));
  EXPECT_TRUE(Contains(picture.svg,
                       ">M\xC2\xA0"
                       "5.3</text>"));
  EXPECT_TRUE(Contains(picture.svg, ">Title &amp; more</text>"));
  EXPECT_TRUE(Contains(picture.svg,
                       ">10\xC2\xB0"
                       "E</text>"));
  EXPECT_EQ(std::vector<std::size_t>{0}, picture.cities);
  // Both rings lie in one path; the hole is drawn by the even-odd rule.
  const std::size_t path = picture.svg.find("class=\"country\" fill-rule=\"evenodd\" d=\"");
  ASSERT_NE(std::string::npos, path);
  const std::string data = picture.svg.substr(path, picture.svg.find("/>", path) - path);
  EXPECT_EQ(2u, Count(data, "M"));
  EXPECT_EQ(2u, Count(data, "z"));
}

TEST(SvgMap, anAftershockInTheCircleOfANamedEventBearsNoName) {
  Model model = SmallModel();
  model.events.push_back(model.events[0]);
  model.events[1].position = Vec2d(2.05, 2);
  model.events[1].magnitude = 5.1;
  EXPECT_EQ(1u, Count(Draw(model, Box2d(-5, -5, 15, 15)).svg, ">M\xC2\xA0"));
  model.events[1].position = Vec2d(8, 2);
  EXPECT_EQ(2u, Count(Draw(model, Box2d(-5, -5, 15, 15)).svg, ">M\xC2\xA0"));
}

TEST(SvgMap, theSidesOfTheWindowAreNoBorders) {
  Model model = SmallModel();
  // The window cuts through the country at x = 5: its outline is filled whole and stroked in part.
  const MapPicture picture = Draw(model, Box2d(-5, -5, 5, 15));
  const std::size_t borders = picture.svg.find("fill=\"none\" fill-rule=\"evenodd\" d=\"");
  ASSERT_NE(std::string::npos, borders);
  const std::string data = picture.svg.substr(borders, picture.svg.find("/>", borders) - borders);
  EXPECT_FALSE(Contains(data, "z"));
}

TEST(SvgMap, riversAreDashedAlongTheirCourse) {
  Model model = SmallModel();
  // About 45 pixels a degree: 180 in all.
  model.rivers.push_back({L"R", {Vec2d(0, 0), Vec2d(4, 0)}, {}});
  const auto dashes = [&](std::vector<double> pattern) {
    model.view.dashes = std::move(pattern);
    const std::string svg = Draw(model, Box2d(-5, -5, 15, 15)).svg;
    const std::size_t path = svg.find("class=\"river\"");
    return Count(svg.substr(path, svg.find("/>", path) - path), "l");
  };
  const std::size_t solid = dashes({});
  const std::size_t longDashes = dashes({10, 5});
  EXPECT_LT(solid, longDashes);
  EXPECT_NEAR(static_cast<double>(dashes({5, 2.5}) - solid),
              2 * static_cast<double>(longDashes - solid), 2);
}

TEST(SvgMap, tellsWhatItIsAndWhatEventsAre) {
  Model model = SmallModel();
  const std::string svg = Draw(model, Box2d(-5, -5, 15, 15)).svg;
  EXPECT_TRUE(Contains(svg, "role=\"img\" aria-labelledby=\"title desc\""));
  EXPECT_TRUE(Contains(svg, "<title id=\"title\">Title &amp; more</title>"));
  EXPECT_TRUE(Contains(svg, "Most of them lie in A&lt;B (1).</desc>"));
  EXPECT_TRUE(Contains(svg, "<title>M 5.3, 2018-01-31 02:00, "));
  EXPECT_FALSE(Contains(svg, "class=\"ground\"")) << "nothing is left out";
}

TEST(SvgMap, landOutsideOfTheClipIsNeutralGround) {
  Model model = SmallModel();
  Draw(model, Box2d(-5, -5, 15, 15));
  SilentProgress silent;
  ClipToArea(model, FindArea(model, L"POLYGON ((0 0, 3 0, 3 9, 0 9, 0 0))"), silent);
  const std::string svg = DrawMap(model).svg;
  const std::size_t ground = svg.find("<path class=\"ground\"");
  ASSERT_NE(std::string::npos, ground);
  EXPECT_LT(ground, svg.find("class=\"country\"")) << "below the countries";
  EXPECT_TRUE(Contains(svg, ">not shown</text>"));
}

TEST(SvgMap, manyEventsAreCountedInSquares) {
  Model model = SmallModel();
  const Event event = model.events[0];
  std::mt19937 random(51);
  std::uniform_real_distribution<double> degrees(-5.0, 15.0);
  for (int i = 0; i < 100000; ++i) {
    model.events.push_back(event);
    model.events.back().position = Vec2d(degrees(random), degrees(random));
    model.events.back().magnitude = 1.0;
  }
  const MapPicture picture = Draw(model, Box2d(-5, -5, 15, 15));
  EXPECT_EQ(Count(picture.svg, "<circle cx="), STRONGEST_OF_MANY);
  EXPECT_LT(picture.svg.size(), 3000000u);
  EXPECT_EQ(CountCounted(model), model.events.size() - STRONGEST_OF_MANY);
  EXPECT_TRUE(Contains(picture.svg, " events, counted in squares</title>"));
  const std::string page = MakePage(model, picture, L"map.svg");
  EXPECT_TRUE(Contains(page, "the strongest 5,000 are drawn one by one; the other 95,00"));
}

TEST(Overview, showsTheWorldWithFewPoints) {
  Model model = SmallModel();
  Draw(model, Box2d(170, -5, 190, 15));
  std::string svg = DrawOverview(model);
  // The country with its hole, the one outside of the window, and the window at both sides.
  EXPECT_EQ(2u, Count(svg, "class=\"country\""));
  EXPECT_EQ(3u, Count(svg, "M"));
  EXPECT_EQ(2u, Count(svg, "class=\"window\""));
  // Neighbours whose border winds by less than a pixel: both lose the same points.
  Country west, east;
  west.rings = {{{20, 0}, {20, 10}, {30, 10}, {30.02, 8}, {29.98, 5}, {30.02, 2}, {30, 0}}, {7}};
  east.rings = {{{30, 0}, {30.02, 2}, {29.98, 5}, {30.02, 8}, {30, 10}, {40, 10}, {40, 0}}, {7}};
  model.countries.clear();
  for (Country* country : {&west, &east}) {
    country->outerRings = 1;
    country->MakePolygons();
    model.countries.push_back(*country);
  }
  svg = DrawOverview(model);
  EXPECT_EQ(2u, Count(svg, "z\"/>"));
  EXPECT_EQ(1u, Count(svg, "d=\"M177.8 113.2l0-12.6 8.9 0 0 12.6z\"")) << svg;
  EXPECT_EQ(1u, Count(svg, "d=\"M186.7 113.2l0-12.6 8.9 0 0 12.6z\"")) << svg;
}

TEST(TableFiles, holdWhatTheReportShows) {
  Model model = SmallModel();
  model.cities[0].name = L"a \"b\", c";
  const MapPicture picture = Draw(model, Box2d(-5, -5, 15, 15));
  const auto files = MakeTableFiles(model, picture);
  ASSERT_EQ(3u, files.size());
  EXPECT_EQ(0u, files[0].second.find("\xEF\xBB\xBF"
                                     "country,events,largest_magnitude,"));
  EXPECT_TRUE(Contains(files[0].second, "\r\nA<B,1,5.26,"));
  EXPECT_TRUE(Contains(files[1].second, "\r\n5.26,2018-01-31T02:00"));
  EXPECT_TRUE(Contains(files[2].second, "\r\n\"a \"\"b\"\", c\",JP,6000000,8,8\r\n"));
  const std::string page = MakePage(model, picture, L"map.svg", true);
  for (const auto& [name, content] : files) {
    EXPECT_TRUE(Contains(page, "HREF=\"" + name.ToUtf8() + "\"")) << content;
  }
}

TEST(ReportPage, namesItsLanguageAndFitsTheScreen) {
  Model model = SmallModel();
  const MapPicture picture = Draw(model, Box2d(-5, -5, 15, 15));
  const std::string page = MakePage(model, picture, L"map.svg");
  EXPECT_TRUE(Contains(page, "\n<HTML LANG=\"en\">\n<HEAD>\n<META NAME=\"viewport\" "));
  EXPECT_TRUE(Contains(page, "@media print {"));
  EXPECT_EQ(Count(page, "<DIV"), Count(page, "</DIV>"));
  EXPECT_FALSE(Contains(page, "The table as CSV"));
}

TEST(ReportPage, holdsTheTablesInPureAscii) {
  Model model = SmallModel();
  const MapPicture picture = Draw(model, Box2d(-5, -5, 15, 15));
  const std::string page = MakePage(model, picture, L"map.svg");
  for (const char ch : page) ASSERT_LT(static_cast<unsigned char>(ch), 128);
  EXPECT_TRUE(Contains(page, "<TITLE>Title &amp; more</TITLE>"));
  EXPECT_TRUE(
      Contains(page, "<TD>A&lt;B</TD>\n<TD CLASS=\"num\">1</TD>\n<TD CLASS=\"num\">5.3</TD>\n"));
  EXPECT_TRUE(Contains(page, "<TD>2018-01-31 02:00</TD>"));
  EXPECT_TRUE(Contains(page, "<TD>&#26481;&#20140;</TD>"));
  EXPECT_TRUE(Contains(page, "SRC=\"map.svg\""));
  EXPECT_TRUE(Contains(page, "1 event lies in the window"));
  EXPECT_EQ(Count(page, "<TR>"), Count(page, "</TR>"));
  EXPECT_FALSE(Contains(page, "Far"));
}
