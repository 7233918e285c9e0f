// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: each style, styles together and where they end; what has no counterpart; text that must
// not become markup; faults.

#include "shared/mathtext/MathTextHtml.h"

#include <gtest/gtest.h>

#include "shared/mathtext/Context.h"

namespace shr {
namespace {

TEST(MathTextHtml, writesRunsWithTheirStyles) {
  struct Row {
    const char* name;
    const wchar_t* text;
    const char* html;
  };
  const Row rows[] = {
      {"plain", L"a < b & {c}", "a &lt; b &amp; {c}"},
      {"bold", L"{\\b a} b", "<SPAN STYLE=\"font-weight:bold;\">a</SPAN> b"},
      {"both lines", L"\\ul\\strike a\\plain b",
       "<SPAN STYLE=\"text-decoration:underline line-through;\">a</SPAN>b"},
      {"index", L"CO{\\dn20\\fs70 2}",
       "CO<SPAN STYLE=\"font-size:0.7em;vertical-align:-0.286em;line-height:0;\">2</SPAN>"},
      {"color", L"\\color(#ff800080)x", "<SPAN STYLE=\"color:rgba(255,128,0,0.50);\">x</SPAN>"},
      {"channel", L"\\rgbr9 x", "<SPAN STYLE=\"color:rgb(9,0,0);\">x</SPAN>"},
      {"face", L"\\f\"A'\\\"\"<b\"x",
       "<SPAN STYLE=\"font-family:&#39;A\\&#39;\\\\&quot;&lt;b&#39;;\">x</SPAN>"},
      {"lines begin anew", L"\\i a\nb", "<SPAN STYLE=\"font-style:italic;\">a</SPAN><BR>b"},
      {"character", L"\\a65\\a0x1F600", "&#65;&#128512;"},
      {"sub-string", L"\\ssbeg(0,0,left,top)\\b a\\ssend b",
       "<SPAN STYLE=\"font-weight:bold;\">a</SPAN>b"},
      {"lines of a sub-string", L"\\i\\ssbeg(0,0,left,top)a\nb\\ssend",
       "<SPAN STYLE=\"font-style:italic;\">a</SPAN><BR><SPAN "
       "STYLE=\"font-style:italic;\">b</SPAN>"},
      {"left out", L"a\\sp1\\line(1,2,top)\\rp1 b", "ab"},
      {"faulty", L"\\bogus <", "\\bogus &lt;"},
      {"unbalanced", L"}\\b", "}\\b"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.html, MathTextToHtml(row.text)) << row.name;
}

TEST(MathTextHtml, faultsAreThoseOfParsing) {
  EXPECT_EQ(L"", FindMathTextFault(L"plain {"));
  EXPECT_EQ(L"", FindMathTextFault(L"\\b x"));
  EXPECT_EQ(L"MathText parsing error near '\\bogus'", FindMathTextFault(L"a \\bogus"));
  EXPECT_EQ(L"Unbalanced '{' and '}' directives", FindMathTextFault(L"{\\b x"));
}

}  // namespace
}  // namespace shr
