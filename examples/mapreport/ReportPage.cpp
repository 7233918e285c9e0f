// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/ReportPage.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "examples/mapreport/MapEditor.h"
#include "examples/mapreport/SvgOverview.h"
#include "examples/mapreport/SvgPoints.h"
#include "examples/mapreport/TableFiles.h"
#include "examples/mapreport/Tracks.h"
#include "shared/html/HtmlReport.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/MathTextHtml.h"

namespace mapreport {

using namespace shr;

namespace {

/// Wide things scroll by themselves on a narrow screen, the map at a size at which its names can be
/// read; on paper they are as wide as they are, and rows stay whole.
constexpr const char* STYLE =
    "BODY    {max-width:1300px; margin:1.5em auto; padding:0 1em; color:#2b2b2b;}\n"
    "H1, H2  {line-height:1.2; overflow-wrap:break-word;}\n"
    "TABLE   {border-collapse:collapse; margin:0;}\n"
    "TD      {border-bottom:solid #dddddd thin; padding-top:2px; padding-bottom:2px;}\n"
    ".num    {text-align:right;}\n"
    ".swatch {width:1.2em; border:solid #857a6b thin; print-color-adjust:exact;"
    " -webkit-print-color-adjust:exact;}\n"
    ".note   {color:#555555; font-size:smaller;}\n"
    ".scroll {overflow-x:auto; margin:0 0 2em 0;}\n"
    "IMG     {max-width:100%; height:auto;}\n"
    ".overview {float:right; margin:0 0 0.5em 1em;}\n"
    ".scroll {clear:both;}\n"
    "@media screen and (max-width:700px) {\n"
    "  BODY  {margin:0.5em auto; padding:0 0.6em;}\n"
    "  H1    {font-size:1.4em;}\n"
    "  H2    {font-size:1.15em;}\n"
    "  .scroll IMG {max-width:none; width:900px;}\n"
    "  .overview {float:none; margin:0;}\n"
    "  TD, TH {white-space:nowrap;}\n"
    "}\n"
    "@media print {\n"
    "  BODY  {max-width:none; margin:0; padding:0; font-size:9pt;}\n"
    "  H2    {page-break-after:avoid;}\n"
    "  TR, IMG {page-break-inside:avoid;}\n"
    "  THEAD {display:table-header-group;}\n"
    "  .scroll {overflow:visible;}\n"
    "  .screen {display:none;}\n"
    "}";

/// What the head of a page of today needs beside what that of a report has.
constexpr std::string_view DOCUMENT_TAG = "<HTML>";
constexpr std::string_view DOCUMENT_TAG_OF_LANGUAGE = "<HTML LANG=\"en\">";
constexpr std::string_view HEAD_TAG = "<HEAD>";
constexpr std::string_view VIEWPORT =
    "\n<META NAME=\"viewport\" CONTENT=\"width=device-width, initial-scale=1\">";

std::string WithLanguageAndViewport(std::string page) {
  page.replace(page.find(DOCUMENT_TAG), DOCUMENT_TAG.size(), DOCUMENT_TAG_OF_LANGUAGE);
  page.insert(page.find(HEAD_TAG) + HEAD_TAG.size(), VIEWPORT);
  return page;
}

CellAttrib CellOfClass(const char* name) {
  CellAttrib attributes;
  attributes.CLASS = name;
  return attributes;
}

/// A column of a table: its heading and whether it holds numbers.
struct Column {
  const char* heading;
  bool isNumeric = false;
};

void BeginTable(CHtmlReport& report, const char* title, std::initializer_list<Column> columns) {
  TableAttrib attributes;
  attributes.SUMMARY = title;
  attributes.CELLSPACING = "0";
  report << Heading(2, title) << "<DIV CLASS=\"scroll\">\n";
  report << TableBeg(attributes) << THeadBeg() << TRBeg();
  for (const Column& column : columns) {
    CellAttrib cell = CellOfClass(column.isNumeric ? "num" : "");
    cell.SCOPE = "col";
    report << TH(column.heading, cell);
  }
  report << TREnd() << THeadEnd() << TBodyBeg();
}

/// `file` is the name of the same table as a file; empty when there is none.
void EndTable(CHtmlReport& report, const GString& file = GString()) {
  report << TBodyEnd() << TableEnd();
  if (!file.empty()) {
    report << Anchor(HtmlEscape(file), "The table as CSV", CoreAttrib("", "note screen", "", ""));
  }
  report << "</DIV>\n";
}

void Cell(CHtmlReport& report, const GString& text) {
  report << TD(HtmlEscape(text));
}

void NumberCell(CHtmlReport& report, const GString& text) {
  report << TD(HtmlEscape(text), CellOfClass("num"));
}

void SwatchCell(CHtmlReport& report, const Color4b& color) {
  CellAttrib attributes = CellOfClass("swatch");
  attributes.STYLE = "background-color:" + HexColor(color);
  report << TD("&nbsp;", attributes);
}

GString CountryName(const Model& model, std::size_t country) {
  return country == NONE ? GString(L"\u2013") : model.countries[country].name;
}

void WriteSummary(CHtmlReport& report, const Model& model) {
  const std::size_t visible = CountVisible(model);
  const std::size_t inCountries = CountInCountries(model);
  const std::size_t struck = CountriesByCount(model).size();
  GString text = FormatCount(visible, L"event lies", L"events lie") +
                 (model.clip.IsEmpty() ? L" in the window" : L" in the part that is shown");
  const GString period = FormatPeriod(model);
  if (!period.empty()) text += L", " + period;
  text += L": " + FormatCount(inCountries) + L" in " +
          FormatCount(struck, L"country", L"countries") + L", " +
          FormatCount(visible - inCountries) + L" at sea or outside every outline.";
  report << Paragraph(HtmlEscape(text));
  text = L"Window: " + FormatWindow(model.window) + L".";
  report << Paragraph(HtmlEscape(text), CoreAttrib("", "note", "", ""));
}

/// Tells the clip and the union; nothing without them.
void WriteAreas(CHtmlReport& report, const Model& model) {
  GString text;
  if (!model.clip.IsEmpty()) text = L"Clipped to " + model.clip.name + L". ";
  if (!model.continent.IsEmpty()) {
    const Contours& rings = model.continent.rings;
    text += L"The countries of " + model.continent.name + L" are united: " +
            FormatCount(rings.counts.size(), L"ring", L"rings") + L", " +
            FormatCount(rings.points.size(), L"point", L"points") + L".";
  }
  if (!text.empty()) report << Paragraph(HtmlEscape(text), CoreAttrib("", "note", "", ""));
}

void WriteOverview(CHtmlReport& report) {
  ImageAttrib image;
  image.CLASS = "overview";
  image.SRC = HtmlEscape(OVERVIEW_NAME);
  image.ALT = "Where the map lies";
  image.WIDTH = std::to_string(OVERVIEW_WIDTH);
  image.HEIGHT = std::to_string(OVERVIEW_HEIGHT);
  report << Img(image);
}

void WritePicture(CHtmlReport& report, const Model& model, const MapPicture& picture,
                  const GString& pictureName) {
  const std::string name = HtmlEscape(pictureName);
  ImageAttrib image;
  image.SRC = name;
  image.ALT = "Map of " + HtmlEscape(MathTextToSimpleText(model.view.title));
  image.WIDTH = std::to_string(picture.width);
  image.HEIGHT = std::to_string(picture.height);
  report << "<DIV CLASS=\"scroll\">\n" << Img(image) << "</DIV>\n";
  report << Anchor(name, "The map as a picture of its own", CoreAttrib("", "screen", "", ""))
         << Note("tells what an event is when it is pointed at.", CoreAttrib("", "screen", "", ""));
  const std::size_t counted = CountCounted(model);
  if (counted == 0) return;
  const GString text = L"Of so many events the strongest " + FormatCount(STRONGEST_OF_MANY) +
                       L" are drawn one by one; the other " + FormatCount(counted) +
                       L" are counted in small squares, the darker the more.";
  report << Paragraph(HtmlEscape(text), CoreAttrib("", "note", "", ""));
}

void WriteCountries(CHtmlReport& report, const Model& model, bool tables) {
  BeginTable(report, "Countries by number of events",
             {{"", false},
              {"Country", false},
              {"Events", true},
              {"Largest magnitude", true},
              {"Largest event", false}});
  for (const std::size_t index : CountriesByCount(model)) {
    const Country& country = model.countries[index];
    report << TRBeg();
    SwatchCell(report, country.fill);
    Cell(report, country.name);
    NumberCell(report, FormatCount(country.eventCount));
    const bool hasLargest = country.largestEvent != NONE;
    const Event none;
    const Event& largest = hasLargest ? model.events[country.largestEvent] : none;
    NumberCell(report, FormatMagnitude(largest.magnitude));
    Cell(report, largest.place);
    report << TREnd();
  }
  EndTable(report, tables ? GString(COUNTRIES_TABLE) : GString());
}

void WriteStrongest(CHtmlReport& report, const Model& model, bool tables) {
  BeginTable(report, "Strongest events",
             {{"Magnitude", true},
              {"Time (UTC)", false},
              {"Place", false},
              {"Country", false},
              {"Position", false},
              {"Depth (km)", true}});
  for (const std::size_t index : StrongestEvents(model, model.view.strongest)) {
    const Event& event = model.events[index];
    report << TRBeg();
    NumberCell(report, FormatMagnitude(event.magnitude));
    Cell(report, FormatTime(event.time));
    Cell(report, event.place);
    Cell(report, CountryName(model, event.country));
    Cell(report, FormatPosition(event.position));
    NumberCell(report, event.depth ? FormatNumber(*event.depth, 1) : GString(L"\u2013"));
    report << TREnd();
  }
  EndTable(report, tables ? GString(STRONGEST_TABLE) : GString());
}

void WriteCities(CHtmlReport& report, const Model& model, const MapPicture& picture, bool tables) {
  BeginTable(report, "Cities on the map",
             {{"City", false}, {"Country code", false}, {"Population", true}, {"Position", false}});
  for (const std::size_t index : picture.cities) {
    const City& city = model.cities[index];
    report << TRBeg();
    Cell(report, city.name);
    Cell(report, city.countryCode);
    NumberCell(report, city.population > 0 ? FormatCount(static_cast<std::size_t>(city.population))
                                           : GString(L"unknown"));
    Cell(report, FormatPosition(city.position));
    report << TREnd();
  }
  EndTable(report, tables ? GString(CITIES_TABLE) : GString());
}

GString TrackName(const GString& name) {
  return name.empty() ? GString(L"\u2013") : name;
}

/// Returns "540 to 1,202", or a dash.
GString FormatRange(const std::optional<double>& lowest, const std::optional<double>& highest) {
  if (!lowest || !highest) return L"\u2013";
  return FormatNumber(*lowest, 0) + L" to " + FormatNumber(*highest, 0);
}

/// The whole tracks, whatever of them is visible.
void WriteTracks(CHtmlReport& report, const Model& model, bool tables) {
  if (model.tracks.empty()) return;
  BeginTable(report, "Tracks",
             {{"Name", false},
              {"Kind", false},
              {"Points", true},
              {"Length (km)", true},
              {"Elevation (m)", true},
              {"From", false},
              {"To", false}});
  for (const Track& track : model.tracks) {
    report << TRBeg();
    Cell(report, TrackName(track.name));
    Cell(report, TrackKindName(track.kind));
    NumberCell(report, FormatCount(track.lines.points.size()));
    NumberCell(report, FormatNumber(TrackLength(track.lines), 1));
    NumberCell(report, FormatRange(track.lowest, track.highest));
    Cell(report, FormatTime(track.begin));
    Cell(report, FormatTime(track.end));
    report << TREnd();
  }
  EndTable(report, tables ? GString(TRACKS_TABLE) : GString());
}

void WriteWaypoints(CHtmlReport& report, const Model& model, bool tables) {
  if (model.waypoints.empty()) return;
  BeginTable(report, "Waypoints",
             {{"Name", false}, {"Position", false}, {"Elevation (m)", true}, {"Time", false}});
  for (const Waypoint& waypoint : model.waypoints) {
    report << TRBeg();
    Cell(report, TrackName(waypoint.name));
    Cell(report, FormatPosition(waypoint.position));
    NumberCell(report,
               waypoint.elevation ? FormatNumber(*waypoint.elevation, 0) : GString(L"\u2013"));
    Cell(report, FormatTime(waypoint.time));
    report << TREnd();
  }
  EndTable(report, tables ? GString(WAYPOINTS_TABLE) : GString());
}

void WriteSources(CHtmlReport& report, const Model& model) {
  BeginTable(report, "What was read",
             {{"Layer", false},
              {"File", false},
              {"Encoding", false},
              {"Content", false},
              {"Source", false}});
  for (const Source& source : model.sources) {
    report << TRBeg();
    Cell(report, source.layer);
    Cell(report, source.fileName);
    Cell(report, source.encoding);
    Cell(report, source.content);
    Cell(report, source.credit);
    report << TREnd();
  }
  EndTable(report);
}

/// Tells what was taken back and done again; nothing when no step was.
GString DescribeRedone(const Model& model) {
  GString text;
  for (const Step& step : model.history) {
    if (step.action != REDONE) continue;
    text += text.empty() ? L"Taken back and done again: " : L", ";
    text += step.label;
  }
  return text.empty() ? text : text + L". ";
}

void WriteHistory(CHtmlReport& report, const Model& model) {
  if (model.history.empty()) return;
  BeginTable(report, "Steps",
             {{"", true},
              {"Action", false},
              {"Step", false},
              {"The map afterwards", false},
              {"State", false}});
  std::size_t number = 0;
  for (const Step& step : model.history) {
    report << TRBeg();
    NumberCell(report, FormatCount(++number));
    Cell(report, step.action);
    Cell(report, step.label);
    Cell(report, step.outcome);
    Cell(report, step.fingerprint);
    report << TREnd();
  }
  EndTable(report);
  const GString note = DescribeRedone(model) + L"Equal states have equal numbers.";
  report << Paragraph(HtmlEscape(note), CoreAttrib("", "note", "", ""));
}

}  // namespace

std::string MakePage(const Model& model, const MapPicture& picture, const GString& pictureName,
                     bool tables) {
  CHtmlReport report;
  report << Preamble(HtmlEscape(MathTextToSimpleText(model.view.title)), STYLE);
  report << Heading(1, MathTextToHtml(model.view.title));
  WriteOverview(report);
  WriteSummary(report, model);
  WriteAreas(report, model);
  WritePicture(report, model, picture, pictureName);
  WriteCountries(report, model, tables);
  WriteStrongest(report, model, tables);
  WriteCities(report, model, picture, tables);
  WriteTracks(report, model, tables);
  WriteWaypoints(report, model, tables);
  WriteSources(report, model);
  WriteHistory(report, model);
  return WithLanguageAndViewport(report.GetReport()) + "\n";
}

}  // namespace mapreport
