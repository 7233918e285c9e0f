// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// GPX and KML: what is read, in every encoding; what is refused, with its line; any depth. Lengths
// against known distances; lines that cross the antimeridian.

#include "examples/mapreport/Tracks.h"

#include <gtest/gtest.h>

#include <cmath>

#include "examples/mapreport/Analysis.h"
#include "shared/diagnostics/Exception.h"
#include "tests/support/Failures.h"

using namespace mapreport;

namespace {

TrackContent Read(const std::string& bytes) {
  return ReadTracks(bytes, L"t.xml", std::nullopt);
}

GString ReadFailure(const std::string& bytes) {
  return shr::test::Failure([&] { Read(bytes); });
}

/// The places of a track, segments between bars: "1,2 3,4 | 5,6 ".
std::string Places(const Contours& lines) {
  std::string text;
  const Vec2d* point = lines.points.data();
  for (std::size_t segment = 0; segment < lines.counts.size(); ++segment) {
    if (segment > 0) text += "| ";
    for (unsigned int i = 0; i < lines.counts[segment]; ++i, ++point) {
      GString place;
      place.FormatString(L"%g,%g ", point->x, point->y);
      text += place.ToUtf8();
    }
  }
  return text;
}

std::string Gpx(const std::string& content) {
  return "<?xml version=\"1.0\"?>\n<gpx>\n" + content + "</gpx>\n";
}

std::string Kml(const std::string& geometry) {
  return "<kml><Placemark><name>P</name>\n" + geometry + "</Placemark></kml>";
}

std::string Utf16(const std::string& ascii, bool isBig) {
  std::string bytes;
  for (const char c : ascii) {
    if (isBig) bytes += '\0';
    bytes += c;
    if (!isBig) bytes += '\0';
  }
  return bytes;
}

}  // namespace

TEST(Tracks, readsGpx) {
  const TrackContent content = Read(
      "<!-- all --><?xml version='1.0'?><!DOCTYPE gpx>\n"
      "<g:gpx xmlns:g=\"http://www.topografix.com/GPX/1/0\"><g:bounds minlat='99' minlon='999'/>"
      "<g:wpt lat='47.25' lon=\"-8.5\"><g:ele> 540.5 "
      "</g:ele><g:time>2024-06-01T08:00:00Z</g:time>\n"
      "<g:name> A &amp;\n\t<![CDATA[B <&amp;>]]>&#33;&#x1F30D;&nbsp; </g:name><g:sym>Summit</g:sym>"
      "<g:extensions><x:name>no</x:name><x:wpt lat='x'/></g:extensions></g:wpt>"
      "<g:rte><g:name>R</g:name><g:rtept lat='1' lon='2'/><g:rtept lat='3' lon='4'/></g:rte>"
      "<g:trk><g:name/><g:trkseg><g:trkpt lat='5' "
      "lon='6'><g:ele>7</g:ele><g:time>t0</g:time></g:trkpt>"
      "<g:trkpt lat='+5.5' lon='6e0'><g:ele>-8</g:ele></g:trkpt></g:trkseg><g:trkseg></g:trkseg>"
      "<g:trkseg><g:trkpt lat='9' lon='10'><g:time>t1</g:time></g:trkpt></g:trkseg></g:trk>"
      "<g:trk><g:name>none</g:name></g:trk></g:gpx>");
  ASSERT_EQ(1u, content.waypoints.size());
  const Waypoint& waypoint = content.waypoints[0];
  EXPECT_EQ(GString::FromUtf8("A & B <&amp;>!\xF0\x9F\x8C\x8D&nbsp;"), waypoint.name);
  EXPECT_EQ(Vec2d(-8.5, 47.25), waypoint.position);
  EXPECT_EQ(540.5, waypoint.elevation);
  EXPECT_EQ(L"Summit", waypoint.symbol);
  EXPECT_EQ(L"2024-06-01T08:00:00Z", waypoint.time);
  ASSERT_EQ(2u, content.tracks.size());
  EXPECT_EQ(Track::Kind::Route, content.tracks[0].kind);
  EXPECT_EQ(L"R", content.tracks[0].name);
  EXPECT_EQ("2,1 4,3 ", Places(content.tracks[0].lines));
  const Track& track = content.tracks[1];
  EXPECT_EQ("6,5 6,5.5 | 10,9 ", Places(track.lines));
  EXPECT_EQ(-8, track.lowest);
  EXPECT_EQ(7, track.highest);
  EXPECT_EQ(L"t0", track.begin);
  EXPECT_EQ(L"t1", track.end);
  EXPECT_EQ(5u, content.points);
}

TEST(Tracks, readsKml) {
  const TrackContent content = Read(
      "<kml:kml><kml:Document><name>D</name><Style><name>S</name></Style><Folder><Folder>"
      "<Placemark><name>P</name><MultiGeometry><MultiGeometry><Point><coordinates>\n1.5,2,3\n"
      "</coordinates></Point></MultiGeometry><LineString><coordinates>1,2 "
      "3,4,5\t\n-6,7</coordinates>"
      "</LineString><LineString><coordinates>8,9 10,11</coordinates></LineString><Polygon>"
      "<outerBoundaryIs><LinearRing><coordinates>0,0 1,0 1,1 0,0</coordinates></LinearRing>"
      "</outerBoundaryIs><innerBoundaryIs><LinearRing><coordinates>.1,.1 .2,.1 .2,.2</coordinates>"
      "</LinearRing></innerBoundaryIs></Polygon></MultiGeometry></Placemark></Folder></Folder>"
      "<Placemark><gx:MultiTrack><gx:Track><when>w0</when><gx:coord>1 2 "
      "-3</gx:coord><when>w1</when>"
      "<gx:coord>2 3</gx:coord></gx:Track><gx:Track/></gx:MultiTrack></Placemark>"
      "<NetworkLink><Placemark><Point/></Placemark></NetworkLink></kml:Document></kml:kml>");
  ASSERT_EQ(1u, content.waypoints.size());
  EXPECT_EQ(L"P", content.waypoints[0].name);
  EXPECT_EQ(Vec2d(1.5, 2), content.waypoints[0].position);
  EXPECT_EQ(3, content.waypoints[0].elevation);
  ASSERT_EQ(3u, content.tracks.size());
  EXPECT_EQ("1,2 3,4 -6,7 | 8,9 10,11 ", Places(content.tracks[0].lines));
  EXPECT_EQ(5, content.tracks[0].lowest);
  EXPECT_EQ(Track::Kind::Outline, content.tracks[1].kind);
  EXPECT_EQ("0,0 1,0 1,1 0,0 | 0.1,0.1 0.2,0.1 0.2,0.2 ", Places(content.tracks[1].lines));
  EXPECT_EQ(L"P", content.tracks[1].name);
  EXPECT_EQ("1,2 2,3 ", Places(content.tracks[2].lines));
  EXPECT_EQ(L"w0", content.tracks[2].begin);
  EXPECT_EQ(L"w1", content.tracks[2].end);
  EXPECT_EQ(-3, content.tracks[2].lowest);
}

TEST(Tracks, readsEveryEncoding) {
  const std::string point = "<gpx><wpt lat='1' lon='2'><name>";
  const std::string end = "</name></wpt></gpx>";
  const auto declared = [&](const char* name, const char* text) {
    return std::string("<?xml version='1.0' encoding='") + name + "'?>" + point + text + end;
  };
  struct Row {
    const char* name;
    std::string bytes;
    std::optional<std::uint32_t> codePage;
    const wchar_t* text;
    const wchar_t* format;
  };
  const Row rows[] = {
      {"UTF-8", declared("utf-8", "\xC3\xBC"), {}, L"\x00FC", L"UTF-8 without mark"},
      {"UTF-8 with mark", "\xEF\xBB\xBF" + point + "\xC3\xBC" + end, 1251, L"\x00FC",
       L"UTF-8 with mark"},
      {"UTF-16", Utf16(declared("UTF-16", "u"), false), {}, L"u", L"UTF-16LE without mark"},
      {"UTF-16 with mark",
       "\xFF\xFE" + Utf16(point + "u" + end, false),
       {},
       L"u",
       L"UTF-16LE with mark"},
      {"big endian", "\xFE\xFF" + Utf16(point + "u" + end, true), {}, L"u", L"UTF-16BE with mark"},
      {"big endian without mark",
       Utf16(point + "u" + end, true),
       {},
       L"u",
       L"UTF-16BE without mark"},
      {"Latin-1", declared("ISO-8859-1", "\xFC"), {}, L"\x00FC", L"code page 28591"},
      {"Cyrillic", declared("windows-1251", "\xC6"), {}, L"\x0416", L"code page 1251"},
      {"Japanese", declared("Shift_JIS", "\x93\x8C"), {}, L"\x6771", L"code page 932"},
      {"the page that is named", declared("utf-8", "\xC6"), 1251, L"\x0416", L"code page 1251"},
  };
  for (const Row& row : rows) {
    const TrackContent content = ReadTracks(row.bytes, L"t.gpx", row.codePage);
    EXPECT_EQ(row.text, content.waypoints.at(0).name) << row.name;
    EXPECT_EQ(row.format, content.format.Describe()) << row.name;
  }
}

TEST(Tracks, tellsTheLineOfWhatIsWrong) {
  struct Row {
    const char* name;
    std::string bytes;
    const wchar_t* message;
  };
  const Row rows[] = {
      {"empty", "", L"t.xml:1: The file is empty."},
      {"text", "no file of the kind", L"t.xml:1: This is neither GPX nor KML."},
      {"another kind", "<html></html>", L"t.xml:1: This is neither GPX nor KML."},
      {"nothing in it", Gpx("<metadata/>"),
       L"t.xml:1: The file holds no track, no route and no waypoint."},
      {"latitude",
       Gpx("<trk><trkseg>\n<trkpt lat='1' lon='2'/>\n<trkpt lat='90.01' lon='2'/></trkseg></trk>"),
       L"t.xml:5: The latitude '90.01' is not on the globe."},
      {"longitude", Gpx("<wpt\n lat='0' lon='-180.5'/>"),
       L"t.xml:3: The longitude '-180.5' is not on the globe."},
      {"missing attribute", Gpx("<rte>\n<rtept lat='1'/></rte>"),
       L"t.xml:4: The longitude is missing."},
      {"word", Gpx("<wpt lat='1' lon='x'/>"), L"t.xml:3: The longitude 'x' is no number."},
      {"no number", Gpx("<wpt lat='nan' lon='1'/>"), L"t.xml:3: The latitude 'nan' is no number."},
      {"too large", Gpx("<wpt lat='1e999' lon='1'/>"),
       L"t.xml:3: The latitude '1e999' is no number."},
      {"elevation", Gpx("<wpt lat='1' lon='1'>\n<ele>high</ele></wpt>"),
       L"t.xml:4: The elevation 'high' is no number."},
      {"behind a comment", Gpx("<!--\n\n--><?pi\n?><wpt lat='' lon='1'/>"),
       L"t.xml:6: The latitude is missing."},
      {"empty coordinates", Kml("<LineString>\n<coordinates> \n</coordinates></LineString>"),
       L"t.xml:3: The coordinates are empty."},
      {"no coordinates", Kml("<Point></Point>"), L"t.xml:2: The coordinates are missing."},
      {"blank in a place", Kml("<Point><coordinates>1, 2</coordinates></Point>"),
       L"t.xml:2: The latitude is missing."},
      {"two places", Kml("<Point><coordinates>1,2 3,4</coordinates></Point>"),
       L"t.xml:2: A point has one place, without blanks in it."},
      {"four numbers", Kml("<Point><coordinates>1,2,3,4</coordinates></Point>"),
       L"t.xml:2: '1,2,3,4' is no place: longitude, comma, latitude."},
      {"place of a track", Kml("<gx:Track>\n<gx:coord>200 1 1</gx:coord></gx:Track>"),
       L"t.xml:3: The longitude '200' is not on the globe."},
      {"not UTF-8", Gpx("<wpt lat='1' lon='1'><name>\xFC</name></wpt>"),
       L"t.xml:3: The text is not UTF-8, as which the file is read; --codepage names another."},
      {"unknown encoding", "<?xml version='1.0' encoding='morse'?><gpx/>",
       L"t.xml:1: The encoding 'morse' is not known."},
      {"page that is none", "<?xml version='1.0' encoding='cp9'?><gpx/>",
       L"t.xml:1: The system has no code page 9."},
      {"cut off", "<gpx>\n<wpt lat='1' lon='2'>",
       L"Error parsing 't.xml', line 2:\nThe file ends inside an element."},
      {"cut off in text", "<gpx><![CDATA[",
       L"Error parsing 't.xml', line 1:\nThe file ends inside an element."},
      {"section outside of elements", "<gpx/><![CDATA[",
       L"t.xml:1: The file holds no track, no route and no waypoint."},
      {"other end", "<gpx>\n<wpt></gpx>", L"Error parsing 't.xml', line 2:\nClosing tag mismatch"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.message, ReadFailure(row.bytes)) << row.name;
}

TEST(Tracks, foldersNestAtAnyDepth) {
  constexpr int DEPTH = 200000;
  std::string bytes = "<kml>";
  for (int i = 0; i < DEPTH; ++i) bytes += "<Folder>";
  bytes += "<Placemark><Point><coordinates>1,2</coordinates></Point></Placemark>";
  for (int i = 0; i < DEPTH; ++i) bytes += "</Folder>";
  EXPECT_EQ(1u, Read(bytes + "</kml>").waypoints.size());
  bytes.replace(bytes.find("1,2"), 3, "1,x");
  EXPECT_EQ(L"t.xml:1: The latitude 'x' is no number.", ReadFailure(bytes + "</kml>"));
}

TEST(Tracks, measuresAlongGreatCircles) {
  struct Row {
    const char* name;
    Vec2d from, to;
    double kilometres;
  };
  const double quarter = 6371.0088 * 3.14159265358979323846 / 2;
  const Row rows[] = {{"a quarter of the equator", {0, 0}, {90, 0}, quarter},
                      {"to the pole", {17, 0}, {-100, 90}, quarter},
                      {"to the other side", {0, 0}, {180, 0}, 2 * quarter},
                      {"over the antimeridian", {179, 0}, {-179, 0}, quarter / 45},
                      {"a hundred thousandth of a degree", {8, 47}, {8, 47.00001}, quarter / 9e6},
                      {"nowhere", {8, 47}, {8, 47}, 0}};
  for (const Row& row : rows) {
    const double length = TrackLength({{row.from, row.to}, {2}});
    EXPECT_NEAR(row.kilometres, length, 1e-9 * row.kilometres + 1e-12) << row.name;
  }
  EXPECT_EQ(0, TrackLength({{Vec2d(0, 0), Vec2d(9, 9)}, {1, 1}})) << "pieces are not joined";
}

TEST(Tracks, linesAreSplitAtTheAntimeridian) {
  struct Row {
    const char* name;
    Contours lines;
    const char* expected;
  };
  const Row rows[] = {
      {"none", {}, ""},
      {"inside", {{{170, 1}, {-10, 2}}, {2}}, "170,1 -10,2 "},
      {"eastwards", {{{170, 0}, {-170, 10}}, {2}}, "170,0 180,5 | -180,5 -170,10 "},
      {"westwards and back",
       {{{-179, 0}, {177, 4}, {-179, 0}}, {3}},
       "-179,0 -180,1 | 180,1 177,4 180,1 | -180,1 -179,0 "},
      {"from the line itself", {{{180, 3}, {-170, 10}}, {2}}, "180,3 180,3 | -180,3 -170,10 "},
      {"along the line", {{{180, 3}, {-180, 10}}, {2}}, "180,3 180,3 | -180,3 -180,10 "},
      {"segments",
       {{{170, 0}, {-170, 10}, {1, 1}}, {2, 1}},
       "170,0 180,5 | -180,5 -170,10 | 1,1 "}};
  for (const Row& row : rows)
    EXPECT_EQ(row.expected, Places(SplitAtAntimeridian(row.lines))) << row.name;
}

TEST(Tracks, areClippedToTheWindow) {
  Track track;
  track.lines = {{{170, 0}, {-170, 10}}, {2}};
  EXPECT_EQ("170,0 180,5 | 180,5 190,10 ", Places(ClipTrack(track, Box2d(120, -50, 240, 50))));
  EXPECT_EQ("-180,5 -170,10 ", Places(ClipTrack(track, Box2d(-180, -50, 0, 50))));
  EXPECT_EQ("", Places(ClipTrack(track, Box2d(-100, -50, 100, 50))));
}
