// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: each shape of element with and without attributes; the order of every attribute group; the
// document head with and without title and style; what the report ends with; independence of stream
// settings and locale; files written, replaced and refused; escaping of all kinds of characters.

#include "shared/html/HtmlReport.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <locale>

#include "shared/diagnostics/Exception.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

template <class Element>
std::string Written(const Element& element) {
  std::ostringstream out;
  out << element;
  return out.str();
}

TEST(HtmlReport, elementsAreWrittenOnOneLineEach) {
  const CoreAttrib core("i", "c", "s", "t");
  const struct {
    const char* name;
    std::string written;
    std::string expected;
  } rows[] = {
      {"heading", Written(Heading(2, "Summary")), "<H2>Summary</H2>\n"},
      {"heading with attributes", Written(Heading(1, "A", core)),
       "<H1 ID=\"i\" CLASS=\"c\" STYLE=\"s\" TITLE=\"t\">A</H1>\n"},
      {"paragraph", Written(Paragraph("a<b", CoreAttrib("", "c", "", ""))),
       "<P CLASS=\"c\">a<b</P>\n"},
      {"note", Written(Note("n")), "<SPAN>n</SPAN>\n"},
      {"anchor", Written(Anchor("#x", "up", CoreAttrib("i", "", "", ""))),
       "<A HREF=\"#x\" ID=\"i\">up</A>\n"},
      {"rule", Written(HRule()), "<HR>\n"},
      {"three breaks", Written(VSpace(3)), "<BR><BR><BR>\n"},
      {"no break", Written(VSpace(0)), "\n"},
      {"negative breaks", Written(VSpace(-1)), "\n"},
      {"bare cell", Written(TDBeg()), "<TD>\n"},
      {"cell end", Written(TDEnd()), "</TD>\n"},
      {"table end", Written(TableEnd()), "</TABLE>\n"},
      {"column", Written(Col()), "<COL>\n"},
      {"list entry", Written(LI("x")), "<LI>x</LI>\n"},
      {"unescaped value", Written(THeadBeg(RowAttrib("a\"<", "", "", "", "", "", "", ""))),
       "<THEAD ID=\"a\"<\">\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.written, row.expected) << row.name;
}

TEST(HtmlReport, attributeGroupsKeepTheirOrderAndCanBeCleared) {
  const std::string core = " ID=\"1\" CLASS=\"2\" STYLE=\"3\" TITLE=\"4\"";
  const std::string row = core + " ALIGN=\"5\" CHAR=\"6\" CHAROFF=\"7\" VALIGN=\"8\"";
  RowAttrib rowGroup("1", "2", "3", "4", "5", "6", "7", "8");
  ColAttrib column("1", "2", "3", "4", "5", "6", "7", "8", "9", "10");
  CellAttrib cell("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14");
  ImageAttrib image("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11");
  TableAttrib table("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11");
  EXPECT_EQ(Written(rowGroup), row);
  EXPECT_EQ(Written(column), row + " SPAN=\"9\" WIDTH=\"10\"");
  EXPECT_EQ(Written(cell), row +
                               " ROWSPAN=\"9\" COLSPAN=\"10\" HEADERS=\"11\" ABBR=\"12\" "
                               "SCOPE=\"13\" AXIS=\"14\"");
  EXPECT_EQ(Written(image), core +
                                " SRC=\"5\" ALT=\"6\" LONGDESC=\"7\" WIDTH=\"8\" HEIGHT=\"9\" "
                                "USEMAP=\"10\" ISMAP=\"11\"");
  EXPECT_EQ(Written(table), core +
                                " SUMMARY=\"5\" WIDTH=\"6\" BORDER=\"7\" FRAME=\"8\" RULES=\"9\" "
                                "CELLSPACING=\"10\" CELLPADDING=\"11\"");
  rowGroup.clear();
  column.clear();
  cell.clear();
  image.clear();
  table.clear();
  EXPECT_EQ(Written(rowGroup) + Written(column) + Written(cell) + Written(image) + Written(table),
            "");
}

TEST(HtmlReport, headHoldsTitleAndStyle) {
  const std::string head = Written(Preamble("A & B", "P {margin:0}"));
  EXPECT_EQ(head.substr(0, head.find("<TITLE>")),
            "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
            "\"http://www.w3.org/TR/html4/loose.dtd\">\n<HTML>\n<HEAD>\n"
            "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=iso-8859-1\">\n"
            "<META HTTP-EQUIV=\"Content-Style-Type\" CONTENT=\"text/css\">\n");
  EXPECT_NE(head.find("<TITLE>A & B</TITLE>\n<STYLE TYPE=\"text/css\">\nBODY    {font"), head.npos);
  EXPECT_TRUE(head.ends_with("lightgrey;}\nP {margin:0}\n</STYLE>\n</HEAD>\n<BODY>\n")) << head;
  const std::string bare = Written(Preamble());
  EXPECT_NE(bare.find("<TITLE>Report</TITLE>\n"), bare.npos);
  EXPECT_TRUE(bare.ends_with("lightgrey;}\n</STYLE>\n</HEAD>\n<BODY>\n")) << bare;
}

TEST(HtmlReport, canBeTakenWhileItGrows) {
  CHtmlReport report;
  EXPECT_EQ(report.GetReport(), "</BODY>\n</HTML>");
  report << Paragraph("one");
  EXPECT_EQ(report.GetReport(), report.GetReport());
  report << Paragraph("two") << 3;
  EXPECT_EQ(report.GetReport(), "<P>one</P>\n<P>two</P>\n3</BODY>\n</HTML>");
  CHtmlReport moved(std::move(report));
  moved << 4;
  EXPECT_EQ(moved.str(), "<P>one</P>\n<P>two</P>\n34");
  report << Paragraph("new");  // NOLINT(bugprone-use-after-move): the state is promised
  EXPECT_EQ(report.str(), "<P>new</P>\n");
  moved = std::move(report);
  EXPECT_EQ(moved.str(), "<P>new</P>\n");
}

struct GroupingPunctuation : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(HtmlReport, ignoresTheProgramsLocaleAndTheStreamsWidth) {
  const std::locale before =
      std::locale::global(std::locale(std::locale(), new GroupingPunctuation));
  CHtmlReport report;
  std::locale::global(before);
  report << 1234567 << std::setw(40) << std::hex << Heading(12, "x") << TableBeg();
  EXPECT_EQ(report.str(), "1234567<H12>x</H12>\n<TABLE>\n");
}

TEST(HtmlReport, isWrittenWithTheSameBytesEverywhereAndReplacesAFile) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"\u03B1.html");
  test::WriteBytes(path, std::string(1000, 'x'));
  CHtmlReport report;
  report << Paragraph("one");
  report.WriteToFile(path);
  EXPECT_EQ(test::ReadBytes(path), "<P>one</P>\n</BODY>\n</HTML>\n");
  EXPECT_THROW(report.WriteToFile(folder.Path()), Exception);
  EXPECT_THROW(report.WriteToFile(folder.Path(L"missing") + L"/report.html"), Exception);
}

TEST(HtmlEscape, leavesAsciiThatIsSafeInTextAndValues) {
  const struct {
    const char* name;
    std::wstring_view text;
    std::string expected;
  } rows[] = {
      {"plain", L"a b\t\r\n~", "a b\t\r\n~"},
      {"markup", L"<a href=\"x\">&'", "&lt;a href=&quot;x&quot;&gt;&amp;&#39;"},
      {"Latin", L"\u00E9\u00A0", "&#233;&#160;"},
      {"Greek and Chinese", L"\u03B1\u4EAC", "&#945;&#20140;"},
      {"beyond the first plane", L"\U0001F30D", "&#127757;"},
      {"pair of surrogates", std::wstring_view(L"\xD83C\xDF0D", 2), "&#127757;"},
      {"lonely surrogates", std::wstring_view(L"\xDF0D\xD83C", 2), "&#65533;&#65533;"},
      {"controls", std::wstring_view(L"\0\x1F\x7F\x85", 4), "&#65533;&#65533;&#65533;&#65533;"},
  };
  for (const auto& row : rows) EXPECT_EQ(HtmlEscape(row.text), row.expected) << row.name;
  EXPECT_EQ(HtmlEscape(GString(L"<\u00E9>")), "&lt;&#233;&gt;");
  EXPECT_EQ(HtmlEscape(std::string("<\xE9\x80>")), "&lt;&#233;&#8364;&gt;") << "page 1252";
}

TEST(HtmlReport, wideTextIsEscapedAndNarrowTextIsMarkup) {
  const GString text(L"<\u00E9\u4E2D>");
  const std::wstring string = text;
  const std::string escaped = "&lt;&#233;&#20013;&gt;";
  const struct {
    const char* name;
    std::string written;
    std::string expected;
  } rows[] = {
      {"paragraph", Written(Paragraph(text)), "<P>" + escaped + "</P>\n"},
      {"paragraph of a literal", Written(Paragraph(L"&")), "<P>&amp;</P>\n"},
      {"cell with attributes", Written(TD(string, CellAttrib())), "<TD>" + escaped + "</TD>\n"},
      {"narrow cell", Written(TD("<B>b</B>")), "<TD><B>b</B></TD>\n"},
      {"heading", Written(Heading(1, std::wstring_view(string))), "<H1>" + escaped + "</H1>\n"},
      {"anchor", Written(Anchor(L"a&b", text)), "<A HREF=\"a&amp;b\">" + escaped + "</A>\n"},
      {"anchor to markup", Written(Anchor("#a", text)), "<A HREF=\"#a\">" + escaped + "</A>\n"},
      {"anchor of markup", Written(Anchor(text, "<B>")), "<A HREF=\"" + escaped + "\"><B></A>\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.written, row.expected) << row.name;
  EXPECT_NE(Written(Preamble(text, "P {}")).find("<TITLE>" + escaped + "</TITLE>"), GString::npos);

  CHtmlReport report;
  std::ostream& stream = report;
  report << text << string << std::wstring_view(string) << "<B>" << TDBeg() << text;
  stream << text;
  EXPECT_EQ(report.str(), escaped + escaped + escaped + "<B><TD>\n" + escaped + escaped);
  CHtmlReport moved(std::move(report));
  CHtmlReport assigned;
  assigned = std::move(moved);
  report << text;  // NOLINT(bugprone-use-after-move): the state is promised
  moved << text;   // NOLINT(bugprone-use-after-move)
  assigned.str({});
  assigned << text;
  EXPECT_EQ(report.str() + moved.str() + assigned.str(), escaped + escaped + escaped);
  std::ostringstream plain;
  plain << text;
  EXPECT_EQ(plain.str(), "<\xC3\xA9\xE4\xB8\xAD>");
}

}  // namespace
}  // namespace shr
