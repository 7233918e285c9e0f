// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/ReportPage.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string_view>

#include "examples/common/NumberText.h"
#include "examples/georeference/Tables.h"
#include "shared/html/HtmlReport.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/MathTextHtml.h"
#include "shared/plots/NumberText.h"

namespace georeference {

using namespace shr;
using examples::FormatCount;

namespace {

/// Rows of the table of residuals; the CSV file has all.
constexpr std::size_t MOST_ROWS = 500;
/// Errors below this part of the map's extent are shown as 0.
constexpr double ROUNDING = 1e-10;
constexpr int DIGITS = 6;

constexpr const char* STYLE =
    "BODY    {max-width:960px; margin:1.5em auto; padding:0 1em; color:#2b2b2b;"
    " background-color:#ffffff;}\n"
    "H1, H2  {line-height:1.2; overflow-wrap:break-word;}\n"
    "P       {overflow-wrap:anywhere;}\n"
    "TABLE   {border-collapse:collapse; margin:0;}\n"
    "TD, TH  {padding:2px 0.7em; border-bottom:solid #dddddd thin;}\n"
    ".num    {text-align:right; font-variant-numeric:tabular-nums;}\n"
    ".chosen TD {font-weight:bold;}\n"
    ".note   {color:#555555; font-size:smaller;}\n"
    ".scroll {overflow-x:auto; margin:0 0 1.5em 0;}\n"
    "IMG     {max-width:100%; height:auto;}\n"
    "@media screen and (max-width:700px) {\n"
    "  BODY  {margin:0.5em auto; padding:0 0.6em;}\n"
    "  H1    {font-size:1.4em;}\n"
    "  H2    {font-size:1.15em;}\n"
    "  .scroll IMG {max-width:none; width:640px;}\n"
    "  TD, TH {white-space:nowrap;}\n"
    "}\n"
    "@media screen and (prefers-color-scheme:dark) {\n"
    "  BODY  {color:#e6e6e6; background-color:#16181c;}\n"
    "  TH    {background-color:#30343c;}\n"
    "  TD, TH {border-color:#444a54;}\n"
    "  A     {color:#8ab4f8;}\n"
    "  .note {color:#b0b4bc;}\n"
    "}\n"
    "@media print {\n"
    "  BODY  {max-width:none; margin:0; padding:0; font-size:9pt;}\n"
    "  TR, IMG {page-break-inside:avoid;}\n"
    "  .scroll {overflow:visible;}\n"
    "}";

constexpr std::string_view DOCUMENT_TAG = "<HTML>";
constexpr std::string_view HEAD_TAG = "<HEAD>";

std::string WithLanguageAndViewport(std::string page) {
  page.replace(page.find(DOCUMENT_TAG), DOCUMENT_TAG.size(), "<HTML LANG=\"en\">");
  page.insert(page.find(HEAD_TAG) + HEAD_TAG.size(),
              "\n<META NAME=\"viewport\" CONTENT=\"width=device-width, initial-scale=1\">"
              "\n<META NAME=\"color-scheme\" CONTENT=\"light dark\">");
  return page;
}

CoreAttrib OfClass(const char* name) {
  return CoreAttrib("", name, "", "");
}

struct Column {
  const wchar_t* heading;
  bool isNumeric = true;
};

class Table {
public:
  Table(CHtmlReport& report, const wchar_t* title, std::initializer_list<Column> columns)
      : report_(report) {
    TableAttrib attributes;
    attributes.SUMMARY = HtmlEscape(std::wstring_view(title));
    attributes.CELLSPACING = "0";
    report_ << Heading(2, GString(title)) << "<DIV CLASS=\"scroll\">\n" << TableBeg(attributes);
    report_ << THeadBeg() << TRBeg();
    for (const Column& column : columns) {
      CellAttrib cell;
      if (column.isNumeric) cell.CLASS = "num";
      cell.SCOPE = "col";
      report_ << TH(GString(column.heading), cell);
    }
    report_ << TREnd() << THeadEnd() << TBodyBeg();
  }
  ~Table() { report_ << TBodyEnd() << TableEnd() << "</DIV>\n"; }
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  void BeginRow(bool isChosen = false) {
    RowAttrib attributes;
    if (isChosen) attributes.CLASS = "chosen";
    report_ << TRBeg(attributes);
  }
  void Text(const GString& text) { report_ << TD(text); }
  void Number(const GString& text) {
    CellAttrib cell;
    cell.CLASS = "num";
    report_ << TD(text, cell);
  }
  void EndRow() { report_ << TREnd(); }

private:
  CHtmlReport& report_;
};

/// An error in map units; rounding is 0.
GString ErrorText(double value, const Georeference& fit) {
  return SignificantText(std::abs(value) <= ROUNDING * fit.mapExtent ? 0.0 : value, DIGITS);
}

GString ChainText(const Georeference& fit) {
  GString text =
      fit.isChosen ? L"Chosen, as it errs least on points that are left out: " : L"Asked for: ";
  text += GString(NameOf(fit.chain.front())) + L".";
  for (std::size_t i = 1; i < fit.chain.size(); ++i) {
    text += (i == 1 ? GString(L" The control points do not determine it; it fell back to ")
                    : GString(L", then to ")) +
            NameOf(fit.chain[i]);
  }
  if (fit.chain.size() > 1) text += L".";
  return text;
}

void WriteSummary(CHtmlReport& report, const ControlPoints& points, const Georeference& fit,
                  const PageFacts& facts) {
  GString text =
      FormatCount(points.ids.size(), L"control point", L"control points") + L" of " + facts.source;
  if (points.disabled > 0) text += L" (" + FormatCount(points.disabled) + L" more are disabled)";
  text += L". In force: " + GString(NameOf(fit.Method())) + L". Root mean square error " +
          ErrorText(fit.rms, fit) + L"; of points that are left out " +
          ErrorText(fit.leftOutRms, fit) + L", in units of the map.";
  report << Paragraph(text) << Paragraph(ChainText(fit));
  if (!points.crs.empty()) {
    report << Paragraph(L"Coordinate system of the map: " + points.crs, OfClass("note"));
  }
  if (facts.transformed > 0) {
    report << Paragraph(FormatCount(facts.transformed, L"point was", L"points were") +
                        L" transformed:");
    report << Anchor(GString(POINTS_NAME), GString(POINTS_NAME));
  }
}

void WritePicture(CHtmlReport& report, const GridPicture& picture) {
  ImageAttrib image;
  image.SRC = HtmlEscape(std::wstring_view(GRID_NAME));
  image.ALT = "The grid of the image as it lies on the map, with the control points.";
  image.WIDTH = "900";
  image.HEIGHT = "720";
  report << Heading(2, "The image on the map") << "<DIV CLASS=\"scroll\">\n" << Img(image);
  report << "</DIV>\n" << Paragraph(picture.caption, OfClass("note"));
}

void WriteComparison(CHtmlReport& report, const Georeference& fit) {
  Table table(report, L"Methods",
              {{L"Method", false}, {L"RMS error"}, {L"RMS of left-out points"}, {L"", false}});
  for (const MethodFit& row : fit.comparison) {
    table.BeginRow(row.method == fit.Method());
    table.Text(NameOf(row.method));
    table.Number(ErrorText(row.inForce == row.method ? row.rms : NAN, fit));
    table.Number(ErrorText(row.leftOut, fit));
    table.Text(row.inForce == row.method ? GString(row.method == fit.Method() ? L"in force" : L"")
                                         : GString(L"falls back to ") + NameOf(row.inForce));
    table.EndRow();
  }
}

/// Returns " − 2" or " + 2" for -2.
GString Less(double value) {
  return (value < 0.0 ? GString(L" + ") : GString(L" \u2212 ")) +
         SignificantText(std::abs(value), 10);
}

void WriteCoefficients(CHtmlReport& report, const Georeference& fit) {
  const CImageWarp& warp = fit.registration.Warp();
  const std::vector<Parameter> parameters = ParametersOf(warp);
  if (parameters.empty()) return;
  {
    Table table(report, L"Coefficients", {{L"Of", false}, {L"X"}, {L"Y"}});
    for (const Parameter& parameter : parameters) {
      table.BeginRow();
      table.Text(parameter.name);
      table.Number(SignificantText(parameter.x, 10));
      table.Number(SignificantText(parameter.y, 10));
      table.EndRow();
    }
  }
  if (!warp.ControlU().empty()) {
    const GString scale = L") / " + SignificantText(warp.Scale(), 10);
    report << Paragraph(L"u = (x" + Less(warp.CenterX()) + scale + L", v = (y" +
                            Less(warp.CenterY()) + scale + L".",
                        OfClass("note"));
  }
  report << Anchor(GString(COEFFICIENTS_NAME),
                   GString(L"All coefficients, with the weights of splines, as CSV"),
                   OfClass("note"));
}

void WriteResiduals(CHtmlReport& report, const ControlPoints& points, const Georeference& fit) {
  const std::vector<std::size_t> order = WorstFirst(fit);
  const std::size_t rows = std::min(order.size(), MOST_ROWS);
  {
    Table table(report, L"Residuals, the worst first",
                {{L"Point", false},
                 {L"Image x"},
                 {L"Image y"},
                 {L"Residual X"},
                 {L"Residual Y"},
                 {L"Length"},
                 {L"Left out"}});
    for (std::size_t k = 0; k < rows; ++k) {
      const std::size_t i = order[k];
      table.BeginRow();
      table.Text(points.ids[i]);
      table.Number(SignificantText(points.image[i].x, 10));
      table.Number(SignificantText(points.image[i].y, 10));
      table.Number(ErrorText(fit.residuals[i].x, fit));
      table.Number(ErrorText(fit.residuals[i].y, fit));
      table.Number(ErrorText(Length(fit.residuals[i]), fit));
      table.Number(ErrorText(Length(fit.leftOut[i]), fit));
      table.EndRow();
    }
  }
  GString text =
      L"Residual: target less transform, in units of the map. Left out: how far the point "
      L"is from where the others map it.";
  if (rows < order.size()) {
    text += L" The first " + FormatCount(rows) + L" of " + FormatCount(order.size()) + L".";
  }
  report << Paragraph(text, OfClass("note"));
  report << Anchor(GString(RESIDUALS_NAME), GString(L"The table as CSV"), OfClass("note"));
}

}  // namespace

std::string MakePage(const ControlPoints& points, const Georeference& fit,
                     const GridPicture& picture, const PageFacts& facts) {
  CHtmlReport report;
  report << Preamble(MathTextToSimpleText(facts.title), STYLE)
         << Heading(1, MathTextToHtml(facts.title));
  WriteSummary(report, points, fit, facts);
  WritePicture(report, picture);
  WriteComparison(report, fit);
  WriteCoefficients(report, fit);
  WriteResiduals(report, points, fit);
  return WithLanguageAndViewport(report.GetReport()) + "\n";
}

}  // namespace georeference
