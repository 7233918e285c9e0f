// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Writes a report with every element and attribute group to the path given, for an HTML checker.

#include <exception>
#include <iostream>

#include "shared/diagnostics/Exception.h"
#include "shared/html/HtmlReport.h"

namespace {

using namespace shr;

void StreamTable(std::ostream& report) {
  TableAttrib table;
  table.SUMMARY = "Cities and their people";
  table.BORDER = "1";
  table.RULES = "groups";
  ColAttrib wide;
  wide.SPAN = "2";
  wide.WIDTH = "50%";
  CellAttrib header;
  header.SCOPE = "col";
  header.ABBR = "name";
  const RowAttrib right("", "numbers", "", "", "right", ".", "1", "top");
  report << TableBeg(table) << Caption("People &amp; cities") << ColGroupBeg() << Col(wide)
         << ColGroupEnd();
  report << THeadBeg() << TRBeg() << TH("City", header) << THBeg(header) << "People" << THEnd()
         << TREnd() << THeadEnd();
  report << TFootBeg() << TRBeg() << TD("All") << TD("3") << TREnd() << TFootEnd();
  report << TBodyBeg() << TRBeg(right) << TDBeg()
         << HtmlEscape(L"\u0391\u03B8\u03AE\u03BD\u03B1 <\u4EAC>") << TDEnd() << TD("3") << TREnd()
         << TBodyEnd() << TableEnd();
  report << TableBeg(table) << CaptionBeg() << "Empty" << CaptionEnd() << TRBeg() << TD("")
         << TREnd() << TableEnd();
}

void StreamLists(std::ostream& report) {
  report << ULBeg() << LI("one") << LIBeg() << "two" << LIEnd() << ULEnd();
  report << OLBeg() << LI("first", CoreAttrib("first", "", "", "")) << OLEnd();
  report << DLBeg() << DT("term") << DD("meaning") << DTBeg() << "other" << DTEnd() << DDBeg()
         << "thing" << DDEnd() << DLEnd();
}

CHtmlReport MakeReport() {
  CHtmlReport report;
  report << Preamble("Sample &lt;1&gt;", "P {margin:0}");
  report << Heading(1, "Sample") << Heading(6, "Small", CoreAttrib("top", "c", "color:red", "tip"));
  report << Paragraph("Text") << Note("note") << VSpace(2) << Anchor("#top", "up") << HRule();
  ImageAttrib image;
  image.SRC = "map.svg";
  image.ALT = "map";
  image.WIDTH = image.HEIGHT = "10";
  report << Img(image);
  StreamTable(report);
  StreamLists(report);
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    MakeReport().WriteToFile(GString(argv[1]));
  } catch (const Exception& error) {
    std::cerr << error.GetDescription() << '\n';
    return 1;
  }
}
