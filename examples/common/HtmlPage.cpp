// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/HtmlPage.h"

#include <cstddef>

namespace examples {

using namespace shr;

const char* const PAGE_STYLE =
    "BODY    {max-width:1320px; margin:1.5em auto; padding:0 1em; color:#222222;"
    " background:#ffffff; font-family:system-ui,'Segoe UI',Roboto,Helvetica,Arial,sans-serif;}\n"
    "H1, H2, H3 {line-height:1.2; overflow-wrap:anywhere;}\n"
    "H2      {margin-top:2em; border-bottom:solid #d0d0d0 thin; padding-bottom:0.2em;}\n"
    "TABLE   {border-collapse:collapse; margin:0;}\n"
    "TH      {text-align:left; vertical-align:bottom; background:transparent; color:inherit;}\n"
    "TH, TD  {border-bottom:solid #dddddd thin; padding:3px 10px 3px 0;}\n"
    ".num    {text-align:right; font-variant-numeric:tabular-nums; white-space:nowrap;}\n"
    ".note   {color:#555555; font-size:smaller;}\n"
    ".scroll {overflow-x:auto; margin:0.6em 0 1.2em 0;}\n"
    ".side   {display:flex; flex-wrap:wrap; gap:1em; align-items:flex-start;}\n"
    ".side .scroll {margin:0;}\n"
    ".side .note {max-width:26em;}\n"
    ".picture {overflow-x:auto; margin:0 0 0.6em 0; max-width:100%;}\n"
    "IMG     {max-width:100%; height:auto; display:block;}\n"
    "@media screen and (max-width:700px) {\n"
    "  BODY  {margin:0.5em auto; padding:0 0.6em;}\n"
    "  H1    {font-size:1.4em;}\n"
    "  H2    {font-size:1.15em;}\n"
    "  .side DIV {max-width:100%;}\n"
    "  .picture IMG {max-width:150%;}\n"
    "}\n"
    "@media (prefers-color-scheme:dark) {\n"
    "  BODY  {color:#e8e8e8; background:#0e1013;}\n"
    "  H2    {border-color:#3a3f46;}\n"
    "  TH, TD {border-color:#33383f;}\n"
    "  .note {color:#b4b4b4;}\n"
    "  A     {color:#7cc4f2;}\n"
    "}\n"
    "@media print {\n"
    "  BODY  {max-width:none; margin:0; padding:0; font-size:9pt;}\n"
    "  H2, H3 {page-break-after:avoid;}\n"
    "  TR, IMG {page-break-inside:avoid;}\n"
    "  .scroll {overflow:visible;}\n"
    "}";

namespace {

CellAttrib NumberAttributes() {
  CellAttrib attributes;
  attributes.CLASS = "num";
  return attributes;
}

/// Returns the value of the first attribute `name` of a picture, its size in pixels.
std::string AttributeOf(std::string_view svg, std::string_view name) {
  const std::string mark = " " + std::string(name) + "=\"";
  const std::size_t from = svg.find(mark);
  if (from == std::string_view::npos) return std::string();
  const std::size_t start = from + mark.size();
  // Whole pixels, as HTML has them.
  return std::string(svg.substr(start, svg.find_first_of(".\"", start) - start));
}

}  // namespace

void BeginTable(CHtmlReport& report, const char* summary,
                std::initializer_list<TableColumn> columns) {
  TableAttrib attributes;
  attributes.SUMMARY = summary;
  attributes.CELLSPACING = "0";
  report << "<DIV CLASS=\"scroll\">\n" << TableBeg(attributes) << THeadBeg() << TRBeg();
  for (const TableColumn& column : columns) {
    CellAttrib cell;
    if (column.isNumeric) cell.CLASS = "num";
    cell.SCOPE = "col";
    report << TH(column.heading, cell);
  }
  report << TREnd() << THeadEnd() << TBodyBeg();
}

void EndTable(CHtmlReport& report) {
  report << TBodyEnd() << TableEnd() << "</DIV>\n";
}

void Cell(CHtmlReport& report, const GString& text) {
  report << TD(text);
}

void NumberCell(CHtmlReport& report, const GString& text) {
  report << TD(text, NumberAttributes());
}

void NumberRow(CHtmlReport& report, const GString& name, const GString& number) {
  report << TRBeg();
  Cell(report, name);
  NumberCell(report, number);
  report << TREnd();
}

void WriteNote(CHtmlReport& report, const GString& text) {
  if (!text.empty()) report << Paragraph(text, CoreAttrib("", "note", "", ""));
}

void WritePicture(CHtmlReport& report, const GString& fileName, const GString& alternative,
                  std::string_view svg) {
  ImageAttrib image;
  image.SRC = HtmlEscape(fileName);
  image.ALT = HtmlEscape(alternative);
  image.WIDTH = AttributeOf(svg, "width");
  image.HEIGHT = AttributeOf(svg, "height");
  report << "<DIV CLASS=\"picture\">\n" << Img(image) << "</DIV>\n";
}

std::string FinishPage(const CHtmlReport& report) {
  constexpr std::string_view DOCUMENT_TAG = "<HTML>";
  constexpr std::string_view HEAD_TAG = "<HEAD>";
  std::string page = report.GetReport() + "\n";
  page.replace(page.find(DOCUMENT_TAG), DOCUMENT_TAG.size(), "<HTML LANG=\"en\">");
  page.insert(page.find(HEAD_TAG) + HEAD_TAG.size(),
              "\n<META NAME=\"viewport\" CONTENT=\"width=device-width, initial-scale=1\">"
              "\n<META NAME=\"color-scheme\" CONTENT=\"light dark\">");
  return page;
}

}  // namespace examples
