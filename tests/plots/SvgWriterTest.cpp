// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Numbers in tenths, escaping of any text, nesting, paths, width of text.

#include "shared/plots/SvgWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/plots/TextWidth.h"

using namespace shr;

TEST(SvgWriter, writesDecimalsAndEscapes) {
  const std::pair<double, const char*> rows[] = {
      {0, "0"},        {12, "12"},          {-0.04, "0"},   {0.05, "0.1"},
      {-0.35, "-0.4"}, {1234.56, "1234.6"}, {99.96, "100"}, {-12.34, "-12.3"}};
  for (const auto& [value, expected] : rows) {
    std::string text;
    AppendSvgTenths(text, SvgTenths(value));
    EXPECT_EQ(expected, text) << value;
  }
  EXPECT_EQ("&lt;a &amp; &quot;b&quot;&gt; \xC3\xA9\xEF\xBF\xBD",
            SvgEscape(L"<a & \"b\"> \xE9\x01"));
  EXPECT_EQ("#0a0bff", HexColor(Color4b(10, 11, 255, 7)));
}

TEST(SvgWriter, pathsAddUpToTheRoundedPoints) {
  SvgPathBuilder path;
  path.MoveTo(Vec2d(1.04, 2));
  path.LineTo(Vec2d(1.02, 2.01));  // the same tenth
  path.LineTo(Vec2d(2.06, 1));
  path.LineTo(Vec2d(0, 3.5));
  path.Close();
  EXPECT_EQ("M1 2l1.1-1-2.1 2.5z", path.Data());
}

TEST(SvgWriter, placesThatAreNoneAreDrawnSomewhere) {
  EXPECT_EQ(0, SvgTenths(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(10000000000, SvgTenths(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(-10000000000, SvgTenths(-1e300));
}

TEST(SvgWriter, elementsNest) {
  SvgWriter svg;
  svg.Begin("g").TextAttribute("aria-label", L"\"<&>\"").Begin("rect").Attribute("x", 0.25).End();
  svg.Begin("text").Text(L"]]><script>").End().End();
  EXPECT_EQ(
      "<g aria-label=\"&quot;&lt;&amp;&gt;&quot;\">\n<rect x=\"0.3\"/>\n"
      "<text>]]&gt;&lt;script&gt;</text>\n</g>\n",
      svg.Take());
  EXPECT_THROW(svg.End(), Exception);
}

TEST(TextWidth, followsTheScript) {
  EXPECT_DOUBLE_EQ(20, EstimateTextWidth(L"\x6771\x4EAC", 10));
  EXPECT_LT(EstimateTextWidth(L"ill", 10), EstimateTextWidth(L"mmm", 10));
  EXPECT_DOUBLE_EQ(EstimateTextWidth(L"e", 10), EstimateTextWidth(L"e\x0301", 10));
}
