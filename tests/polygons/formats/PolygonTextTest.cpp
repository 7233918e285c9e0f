// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Both formats x {what is written, what is read, what is refused and where}; every truncation and
// every change of one bit of a sample; deep nesting; round trips of random polygons to the bit.

#include "shared/polygons/formats/PolygonText.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <random>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

const Points SQUARE = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
const Points HOLE = {{1, 1}, {2, 1}, {2, 2}};

Points Joined(const Points& a, const Points& b) {
  Points points = a;
  points.insert(points.end(), b.begin(), b.end());
  return points;
}

GPolygon FromWkt(std::string_view text) {
  GPolygon polygon;
  ParseWkt(text, polygon);
  return polygon;
}

GPolygon FromGeoJson(std::string_view text) {
  GPolygon polygon;
  ParseGeoJson(text, polygon);
  return polygon;
}

TEST(PolygonText, ringsAreWrittenClosedAndOriented) {
  struct Row {
    const char* name;
    GPolygon polygon;
    const char* wkt;
    const char* geoJson;
  };
  const Row rows[] = {
      {"empty", GPolygon(), "POLYGON EMPTY", R"({"type":"Polygon","coordinates":[]})"},
      {"clockwise square", GPolygon(SQUARE), "POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0))",
       R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,4],[0,0]]]})"},
      {"with a hole", GPolygon(Joined(HOLE, SQUARE), Counts{3, 4}),
       "POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0), (1 1, 2 2, 2 1, 1 1))",
       R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,4],[0,0]],)"
       R"([[1,1],[2,2],[2,1],[1,1]]]})"},
      {"two", GPolygon(Joined(HOLE, {{5, 5}, {6, 5}, {6, 1e21}}), Counts{3, 3}),
       "MULTIPOLYGON (((1 1, 2 1, 2 2, 1 1)), ((5 5, 6 5, 6 1e+21, 5 5)))",
       R"({"type":"MultiPolygon","coordinates":[[[[1,1],[2,1],[2,2],[1,1]]],)"
       R"([[[5,5],[6,5],[6,1e+21],[5,5]]]]})"},
      {"without inside", GPolygon(Points{{1, 2}, {3, 4}}), "POLYGON EMPTY",
       R"({"type":"Polygon","coordinates":[]})"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.wkt, ToWkt(row.polygon)) << row.name;
    EXPECT_EQ(row.geoJson, ToGeoJson(row.polygon)) << row.name;
    EXPECT_EQ(row.wkt, ToWkt(FromWkt(row.wkt))) << row.name;
    EXPECT_EQ(row.wkt, ToWkt(FromGeoJson(row.geoJson))) << row.name;
    GPolygon2d polygon2d;
    ParseGeoJson(row.geoJson, polygon2d);
    EXPECT_EQ(row.wkt, ToWkt(polygon2d)) << row.name;
    ParseWkt(row.wkt, polygon2d);
    EXPECT_EQ(row.geoJson, ToGeoJson(polygon2d)) << row.name;
  }
}

TEST(PolygonText, coordinatesThatAreNotFiniteAreRefused) {
  const GString expected = L"Unable to write a polygon as text.\nA coordinate is not finite.";
  EXPECT_EQ(expected, test::Failure([] { ToWkt(GPolygon(Points{{0, 0}, {1, NAN}, {1, 1}})); }));
  EXPECT_EQ(expected, test::Failure([] {
              ToGeoJson(GPolygon2d(Points{{0, 0}, {INFINITY, 1}, {1, 1}}));
            }));
}

TEST(PolygonText, everyCoordinateComesBackToTheBit) {
  std::mt19937_64 random(5);
  for (int round = 0; round < 20; ++round) {
    Points star = test::MakeStar({1e6, -3.0}, std::ldexp(1.0, round * 4 - 40), 100, random);
    star.front() = {DBL_MIN / 3.0, -DBL_MAX};
    MultiPolygon2d source(1);
    source[0].outer().assign(star.begin(), star.end());
    source[0].outer().push_back(star.front());
    MultiPolygon2d wkt;
    MultiPolygon2d geoJson;
    ParseWkt(ToWkt(source), wkt);
    ParseGeoJson(ToGeoJson(source), geoJson);
    const auto isLess = [](const Vec2d& a, const Vec2d& b) {
      return std::pair(a.x, a.y) < std::pair(b.x, b.y);
    };
    std::sort(star.begin(), star.end(), isLess);
    for (MultiPolygon2d* read : {&wkt, &geoJson}) {
      Ring2d& ring = (*read)[0].outer();
      ring.pop_back();
      std::sort(ring.begin(), ring.end(), isLess);
      EXPECT_TRUE(std::equal(star.begin(), star.end(), ring.begin(), ring.end())) << round;
    }
  }
}

TEST(WellKnownText, isReadInAllItsSpellings) {
  const char* const texts[] = {
      "POLYGON ((0 0, 4 0, 4 4, 0 0))",
      "polygon((0 0,4 0,4 4,0 0))",
      " \n PolyGon\t( ( 0.0  0 ,4e0 0 , +4 4. ) ) \r\n",
      "POLYGON Z ((0 0 1, 4 0 2, 4 4 3, 0 0 1))",
      "POLYGONZM ((0 0 1 -2,4 0 2 -2,4 4 3 -2,0 0 1 -2))",
      "POLYGON ((0 0 1, 4 0, 4 4 2 3, 0 0))",
      "SRID=4326;POLYGON M ((0 0 1, 4 0 2, 4 4 3))",
      "MULTIPOLYGON (EMPTY, ((0 0, 4 0, 4 4, 0 0)))",
      "MULTIPOLYGON Z (((0 0 9, 4 0 9, 4 4 9)))",
  };
  for (const char* text : texts) {
    EXPECT_EQ("POLYGON ((0 0, 4 0, 4 4, 0 0))", ToWkt(FromWkt(text))) << text;
  }
  for (const char* text : {"POLYGON EMPTY", "multipolygon z empty", "MULTIPOLYGON (EMPTY,EMPTY)"}) {
    EXPECT_EQ(0u, FromWkt(text).GetNumContours()) << text;
  }
}

TEST(GeoJson, isReadInAllItsSpellings) {
  const char* const texts[] = {
      R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,0]]]})",
      R"( { "coordinates" : [ [ [0,0.0e-1] , [4,0,7,8], [4.0,40e-1] ] ] , "type":"Polygon" } )",
      "\xEF\xBB\xBF"
      R"({"t\u0079pe":"Pol\u0079gon","bbox":[0,0,4,4],"coordinates":[[[0,0],[4,0],[4,4]]]})",
      R"({"type":"MultiPolygon","coordinates":[[],[[[0,0],[4,0],[4,4],[0,0]]]]})",
      R"({"properties":{"a":[{"type":1},"\n\"{[",true,false,null,{}]},"type":"Feature",)"
      R"("geometry":{"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,0]]]},"id":7})",
      R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":null},)"
      R"({"type":"Feature","geometry":{"type":"GeometryCollection","geometries":[)"
      R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[4,4],[0,0]]]}]}}]})",
  };
  for (const char* text : texts) {
    EXPECT_EQ("POLYGON ((0 0, 4 0, 4 4, 0 0))", ToWkt(FromGeoJson(text))) << text;
  }
}

struct BadText {
  std::string text;
  unsigned offset;
  const wchar_t* message;
};

TEST(WellKnownText, errorsNameTheirPlace) {
  const BadText rows[] = {
      {"", 0, L"The text is no POLYGON or MULTIPOLYGON."},
      {"  POINT (1 2)", 2, L"The text is no POLYGON or MULTIPOLYGON."},
      {"POLYGON", 7, L"The sign ( is missing."},
      {"POLYGON Q ((1 2))", 8, L"The word is neither Z, M, ZM nor EMPTY."},
      {"POLYGON (1 2)", 9, L"The sign ( is missing."},
      {"POLYGON ((1 2, 3", 16, L"The text ends, but a parenthesis is not closed."},
      {"POLYGON ((1 2, 3 4", 18, L"The text ends, but a parenthesis is not closed."},
      {"POLYGON ((1 2, 3 4) ", 20, L"The text ends, but a parenthesis is not closed."},
      {"MULTIPOLYGON (((1 2, 3 4)), ", 28, L"The text ends, but a parenthesis is not closed."},
      {"POLYGON (())", 10, L"A number is missing."},
      {"POLYGON ((1))", 11, L"A number is missing."},
      {"POLYGON ((1-2))", 11, L"A space is missing between two numbers."},
      {"POLYGON ((1 2x))", 13, L"A space is missing between two numbers."},
      {"POLYGON ((nan 2))", 10, L"The number is not finite."},
      {"POLYGON ((1 1e999))", 12, L"The number is not finite."},
      {"POLYGON Z ((1 2))", 15, L"A number is missing."},
      {"POLYGON ((1 2 3 4 5))", 18, L"The sign , or ) is missing."},
      {"POLYGON ((1 2)) x", 16, L"Something follows the polygon."},
      {"MULTIPOLYGON (FULL)", 14, L"The word is not EMPTY."},
      {"SRID=;POLYGON EMPTY", 5, L"A number is missing."},
  };
  for (const BadText& row : rows) {
    GString expected;
    expected.FormatString(L"Unable to read WKT text at offset %u.\n%s", row.offset, row.message);
    GPolygon polygon(SQUARE);
    EXPECT_EQ(expected, test::Failure([&] { ParseWkt(row.text, polygon); })) << row.text;
    EXPECT_EQ(4u, polygon.GetTotalVertexCount());
  }
}

TEST(GeoJson, errorsNameTheirPlace) {
  std::string deep;
  for (int i = 0; i < 70; ++i) deep += R"({"type":"GeometryCollection","geometries":[)";
  const BadText rows[] = {
      {"", 0, L"An object is missing."},
      {"[]", 0, L"An object is missing."},
      {"{}", 0, L"The object has no type."},
      {R"({"type":"Point","coordinates":[1,2]})", 8, L"The type is none of polygons."},
      {R"({"type":"Polygon"})", 0, L"The object lacks the member of its type."},
      {R"({"type":"Polygon","coordinates":[[]]})", 35, L"The ring has no points."},
      {R"({"type":"Polygon","coordinates":[[[1]]]})", 37,
       L"The position has fewer than two numbers."},
      {R"({"type":"Polygon","coordinates":[[1,2]]})", 34, L"An array is missing."},
      {R"({"type":"Polygon","coordinates":[[[01,2]]]})", 35, L"The number is wrong."},
      {R"({"type":"Polygon","coordinates":[[[1,+2]]]})", 37, L"A value or a digit is missing."},
      {R"({"type":"Polygon","coordinates":[[[1,1e999]]]})", 37, L"The number is not finite."},
      {R"({"type":"Polygon","type":"Polygon"})", 25, L"The member is there twice."},
      {R"({"type":"Polygon","coordinates":[],"features":[]})", 46,
       L"The member belongs to another type of object."},
      {R"({"type":"FeatureCollection","features":[{"type":"Polygon"}]})", 48,
       L"The type is not Feature."},
      {R"({"a":[1,2})", 9, L"A comma or an end is missing."},
      {R"({"a":tru})", 5, L"A value or a digit is missing."},
      {R"({"a":"\x"})", 7, L"The escape is wrong."},
      {"{\"a\":\"\n\"}", 6, L"The string does not end."},
      {R"({"type":"Polygon","coordinates":[]} {)", 36, L"Something follows the object."},
      {deep, 43 * 65, L"Objects are nested too deep."},
  };
  for (const BadText& row : rows) {
    GString expected;
    expected.FormatString(L"Unable to read GeoJSON text at offset %u.\n%s", row.offset,
                          row.message);
    GPolygon polygon(SQUARE);
    EXPECT_EQ(expected, test::Failure([&] { ParseGeoJson(row.text, polygon); })) << row.text;
    EXPECT_EQ(4u, polygon.GetTotalVertexCount());
  }
}

TEST(GeoJson, foreignMembersMayBeNestedAnyDeep) {
  constexpr std::size_t DEPTH = 200'000;
  const std::string text = R"({"a":)" + std::string(DEPTH, '[') + std::string(DEPTH, ']') +
                           R"(,"type":"Polygon","coordinates":[]})";
  EXPECT_EQ(0u, FromGeoJson(text).GetNumContours());
}

TEST(PolygonText, everyTruncationIsAnErrorAndEveryFlippedBitIsSafe) {
  const GPolygon polygon(Joined(Joined(HOLE, SQUARE), {{5, 5}, {6, 5}, {6, 7.25}}),
                         Counts{3, 4, 3});
  const std::pair<std::string, GPolygon (*)(std::string_view)> formats[] = {
      {ToWkt(polygon), FromWkt}, {ToGeoJson(polygon), FromGeoJson}};
  for (const auto& [text, read] : formats) {
    for (std::size_t size = 0; size < text.size(); ++size) {
      EXPECT_THROW(read(text.substr(0, size)), Exception) << size;
    }
    for (std::size_t bit = 0; bit < 8 * text.size(); ++bit) {
      std::string flipped = text;
      flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
      try {
        EXPECT_LE(read(flipped).GetTotalVertexCount(), 14u);
      } catch (const Exception&) {
      }
    }
  }
}

}  // namespace
}  // namespace shr
