// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: where every command and combinations of them put text and lines; styles and how long they
// last; options; the clock; every error with its message and what it leaves behind; limits; long
// and deep texts; simple text.

#include "shared/mathtext/Context.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/ThrowError.h"
#include "tests/mathtext/MathTextDrawing.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Drawn;

struct DrawingRow {
  const char* name;
  const wchar_t* text;
  const char* drawn;
};

template <std::size_t COUNT>
void CheckDrawings(const DrawingRow (&rows)[COUNT]) {
  for (const DrawingRow& row : rows) EXPECT_EQ(row.drawn, Drawn(row.text)) << row.name;
}

TEST(MathTextContext, placesRunsOfText) {
  const DrawingRow rows[] = {
      {"plain", L"abc", "'abc'0,0"},
      {"braces in plain text", L"{a}", "'{a}'0,0"},
      {"runs follow each other", L"ab\\b c", "'ab'0,0 'c'10,0b"},
      {"no run for nothing", L"\\b\\i\\plain", ""},
      {"escapes", L"\\{\\\\\\}", "'{\\}'0,0"},
      {"character by number", L"a\\a98 c", "'abc'0,0"},
      {"size", L"a\\fs200 b\\fs50 c", "'a'0,0 'b'5,0*20 'c'15,0"},
      {"raised and lowered", L"a\\up50 b\\dn25 c\\dn25 d", "'a'0,0 'b'5,5 'c'10,2.5 'd'15,0"},
      {"raised by the new height", L"a\\fs50\\up100 b", "'a'0,0 'b'5,5*5"},
      {"offsets end with the brace", L"a{\\up50 b{\\up50 c}d}e",
       "'a'0,0 'b'5,5 'c'10,10 'd'15,5 'e'20,0"},
      {"position kept and restored", L"x\\sp1{\\up40\\fs50 2}\\rp1{\\dn20\\fs50 i}",
       "'x'0,0 '2'5,4*5 'i'5,-2*5"},
      {"positions keep the offset", L"{\\up50\\sp7}a\\rp7 b", "'a'0,0 'b'0,5"},
      {"a blank alone", L"a\\b  c", "'a'0,0 ' c'5,0b"},
      {"tab", L"a\tb", "'a'0,0 'b'40,0"},
      {"tab at a stop", L"abcdefgh\ti", "'abcdefgh'0,0 'i'80,0"},
      {"two tabs", L"\t\ta", "'a'80,0"},
      {"stops do not grow with text", L"\\fs200 a\tb", "'a'0,0*20 'b'40,0*20"},
      {"lines", L"ab\nc", "'ab'0,0 'c'0,-11"},
      {"CR LF and CR", L"a\r\nb\rc", "'a'0,0 'b'0,-11 'c'0,-22"},
      {"empty lines", L"a\n\nb\n", "'a'0,0 'b'0,-22"},
      {"an empty line of the current height", L"\\fs200\nb", "'b'0,-13"},
      {"a high line", L"a\n\\fs200 b\nc", "'a'0,0 'b'0,-20*20 'c'0,-33"},
      {"raised text widens lines", L"a\nb\\up100 c", "'a'0,0 'b'0,-21 'c'5,-11"},
      {"lines of raised text alone", L"\\up100 a\n\\up100 b", "'a'0,10 'b'0,-11"},
      {"lines begin plain", L"\\b\\up50\\red a\nb", "'a'0,5b#ff0000 'b'0,-11"},
  };
  CheckDrawings(rows);
}

TEST(MathTextContext, setsStyles) {
  const DrawingRow rows[] = {
      {"bold and italic", L"\\b a\\i b\\plain c", "'a'0,0b 'b'5,0bi 'c'10,0"},
      {"face", L"{\\f\"Arial\"a}b", "'a'0,0(Arial) 'b'5,0"},
      {"underline", L"\\ul ab", "'ab'0,0 [0,-1>10,-1]"},
      {"struck out, larger", L"\\fs200\\strike a", "'a'0,0*20 [0,5>10,5]~1"},
      {"plain ends lines", L"\\ul\\strike\\plain a", "'a'0,0"},
      {"color words", L"\\green a\\gray b", "'a'0,0#00ff00 'b'5,0#808080"},
      {"colors", L"\\color(#102030)a\\color(1,2,3,4)b", "'a'0,0#102030 'b'5,0#01020304"},
      {"channels", L"\\rgbr16\\rgbg32\\rgbb48\\rgba64 a", "'a'0,0#10203040"},
      {"braces", L"{\\b{\\red a}b}c", "'a'0,0b#ff0000 'b'5,0b 'c'10,0"},
  };
  CheckDrawings(rows);
}

TEST(MathTextContext, drawsSegmentsFromTheSidesOfTheString) {
  const DrawingRow rows[] = {
      {"left", L"ab\\line(100,0,left)", "'ab'0,0 [0,0>10,0]"},
      {"right", L"ab\\line(50,-50,right)c", "'ab'0,0 [10,0>15,-5] 'c'10,0"},
      {"top", L"ab\\line(100,0,top)", "'ab'0,0 [0,8>10,8]"},
      {"bottom", L"ab\\line(0,20,bottom)", "'ab'0,0 [0,-2>0,0]"},
      {"without a string", L"\\line(100,0,right)a", "[0,0>10,0] 'a'0,0"},
      {"raised behind a string", L"a\\up50\\line(100,0,left)", "'a'0,0 [5,5>15,5]"},
      {"in a color and height of its own", L"a\\red\\fs200\\line(100,0,top)",
       "'a'0,0 [0,8>20,8]~1#ff0000"},
      {"two at one string", L"a\\line(1,0,left)\\line(2,0,left)", "'a'0,0 [0,0>0.1,0] [0,0>0.2,0]"},
      {"after a return", L"ab\\sp1 c\\rp1\\line(10,0,right)", "'ab'0,0 'c'10,0 [10,0>11,0]"},
  };
  CheckDrawings(rows);
}

TEST(MathTextContext, placesSubStrings) {
  const DrawingRow rows[] = {
      {"natural width", L"a\\ssbeg(0,0,left,baseline)bc\\ssend d", "'a'0,0 'bc'5,0 'd'15,0"},
      {"field, left", L"\\ssbeg(300,0,left,baseline)ab\\ssend c", "'ab'0,0 'c'30,0"},
      {"field, center", L"\\ssbeg(300,0,center,baseline)ab\\ssend c", "'ab'10,0 'c'30,0"},
      {"field, right", L"\\ssbeg(300,0,right,baseline)ab\\ssend c", "'ab'20,0 'c'30,0"},
      {"lines justified", L"\\ssbeg(0,0,right,baseline)abc\nd\\ssend", "'abc'0,0 'd'10,-11"},
      {"bottom", L"\\ssbeg(0,0,left,bottom)a\nb\\ssend", "'a'0,13 'b'0,2"},
      {"top", L"\\ssbeg(0,80,left,top)a\nb\\ssend", "'a'0,0 'b'0,-11"},
      {"top, higher", L"\\ssbeg(0,180,left,top)a\\ssend", "'a'0,10"},
      {"raised", L"\\up50\\ssbeg(0,0,left,bottom)a\\ssend", "'a'0,7"},
      {"attributes come back", L"\\ssbeg(0,0,left,baseline)\\b\\red a\\ssend b",
       "'a'0,0b#ff0000 'b'5,0"},
      {"attributes go in", L"\\b\\ssbeg(0,0,left,baseline)a\\plain b\nc\\ssend",
       "'a'0,0b 'b'5,0 'c'0,-11b"},
      {"nested", L"\\ssbeg(400,0,center,baseline)\\ssbeg(200,0,right,baseline)a\\ssend b\\ssend c",
       "'a'22.5,0 'b'27.5,0 'c'40,0"},
      {"sub-strings widen lines", L"a\n\\ssbeg(0,0,left,bottom)b\nc\\ssend",
       "'a'0,0 'b'0,-11 'c'0,-22"},
      {"positions are its own", L"\\sp1 a\\ssbeg(0,0,left,baseline)bc\\sp1 d\\rp1 e\\ssend\\rp1 f",
       "'a'0,0 'bc'5,0 'd'15,0 'e'15,0 'f'0,0"},
      {"a fraction", L"\\ssbeg(0,0,center,bottom)12\\ssend\\line(-100,0,right)",
       "'12'0,2 [10,0>0,0]"},
  };
  CheckDrawings(rows);
}

TEST(MathTextContext, heedsItsOptions) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  CMTContext context(record, 10);
  const auto drawn = [&](const wchar_t* text) {
    std::shared_ptr<CMTMultiLineElement> element;
    EXPECT_EQ(CMTContext::MT_SUCCESS, context.Parse(text, element));
    record.Clear();
    element->InternalDraw(record, Vec2d::ZERO);
    return test::Describe(record);
  };
  const wchar_t* const text = L"\\red\\rgba9\\f\"Arial\"a\n\\color(blue)b";
  context.SetOptions(MT_IGNORE_COLORS);
  EXPECT_EQ("'a'0,0(Arial) 'b'0,-11", drawn(text));
  context.SetOptions(MT_IGNORE_FACES);
  EXPECT_EQ("'a'0,0 'b'0,-11", drawn(text));
  context.SetOptions(MT_SINGLE_LINE);
  context.ClearOptions(MT_IGNORE_COLORS);
  EXPECT_EQ("'a'0,0#ff000009 ' '5,0 'b'10,0#0000ff", drawn(text));
  EXPECT_EQ(MT_IGNORE_FACES | MT_SINGLE_LINE, context.GetOptions());
  EXPECT_EQ("'a'0,5 ' b'5,0", drawn(L"\\up50 a\nb"));
  context.SetCharsPerTab(2.5);
  EXPECT_EQ("'abc'0,0 'd'25,0", drawn(L"abc\td"));
  for (const double count : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { context.SetCharsPerTab(count); }));
    EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure([&] { CMTContext(record, count); }));
  }
}

TEST(MathTextContext, beginsWithTheAttributesOfTheInterface) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  CMTContext context(record, 10);
  for (const Color4b& color : {Color4b::Red, Color4b::Red, Color4b::Blue}) {
    MTAttributes attributes;
    attributes.color = color;
    attributes.height = 33;
    attributes.hAlignment = HAlignment::Right;
    record.SetAttributes(attributes);
    for (const wchar_t* const text : {L"a", L"\\plain a", L"\\green x\na"}) {
      std::shared_ptr<CMTMultiLineElement> element;
      ASSERT_EQ(CMTContext::MT_SUCCESS, context.Parse(text, element));
      EXPECT_EQ(HAlignment::Right, element->GetAttributes().hAlignment);
      const CMTLineElement& line = *element->GetLine(element->GetCount() - 1);
      const MTAttributes& last = line.GetElement(line.GetCount() - 1)->GetAttributes();
      EXPECT_EQ(color, last.color);
      EXPECT_EQ(10, last.height);
      EXPECT_EQ(33, record.GetAttributes().height);
    }
  }
}

TEST(MathTextContext, writesTheTimeOfItsClock) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  CMTContext context(record, 10);
  const auto simple = [&] {
    std::shared_ptr<CMTMultiLineElement> element;
    context.Parse(L"\\date \\time, \\dt(\"d MMMM\")", element);
    return element->GetSimpleText();
  };
  context.SetClock([] {
    std::tm time{};
    time.tm_year = 126;
    time.tm_mon = 2;
    time.tm_mday = 5;
    time.tm_hour = 14;
    time.tm_min = 30;
    return time;
  });
  EXPECT_EQ(L"2026-03-0514:30, 5 March", simple());
  context.SetClock(nullptr);
  EXPECT_EQ(L"20", simple().substr(0, 2));
}

TEST(MathTextContext, tellsWhatDoesNotParse) {
  const struct {
    const wchar_t* text;
    const wchar_t* message;
  } rows[] = {
      {L"", L""},
      {L"a\\nonsense b", L"MathText parsing error near '\\nonsense b'"},
      {L"\\fs-5", L"MathText parsing error near '\\fs-5'"},
      {L"\\fs1e300", L"MathText parsing error near '\\fs1e300'"},
      {L"\\sp99999", L"MathText parsing error near '\\sp99999'"},
      {L"\\sp1\\rp2", L"MathText parsing error near '\\rp2'"},
      {L"\\sp1\n\\rp1", L"MathText parsing error near '\\rp1'"},
      {L"\\fs1\\fs1\\fs1", L"MathText parsing error near '\\fs1'"},
      {L"\\fs10000\\fs10000\\fs10000", L"MathText parsing error near '\\fs10000'"},
      {L"\\fs10000\\fs10000\\up10000\\up10000", L"MathText parsing error near '\\up10000'"},
      {L"\\ssend", L"MathText parsing error near '\\ssend'"},
      {L"\\ssbeg(0,0,left,top)a", L"MathText parsing error near '\\ssbeg'"},
      {L"{\\b x\n}", L"Unbalanced '{' and '}' directives"},
      {L"\\b{", L"Unbalanced '{' and '}' directives"},
      {L"\\b}", L"Unbalanced '{' and '}' directives"},
      {L"{\\ssbeg(0,0,left,top)}\\ssend", L"Unbalanced '{' and '}' directives"},
      {L"\\ssbeg(0,0,left,top){\\ssend}", L"Unbalanced '{' and '}' directives"},
  };
  for (const auto& row : rows) {
    CMTRecordingTextIF record{MTFixedMetrics()};
    const auto before = record.ShareAttributes();
    record.PreserveState();
    CMTContext context(record, 10);
    auto element = std::make_shared<CMTMultiLineElement>(record);
    EXPECT_EQ(CMTContext::MT_FAILURE, context.Parse(row.text, element)) << GString(row.text);
    EXPECT_EQ(row.message, context.GetError());
    EXPECT_EQ(nullptr, element);
    EXPECT_EQ(before, record.ShareAttributes());
    EXPECT_EQ(1u, record.GetStateDepth());
    EXPECT_EQ(CMTContext::MT_SUCCESS, context.Parse(L"{\\b a}", element)) << "after " << row.text;
    EXPECT_EQ(L"", context.GetError());
    EXPECT_EQ(before, record.ShareAttributes());
  }
}

/// Keeps the exceptions that pass through what the scanner calls.
class ErrorKeeper : public CMTContext {
public:
  using CMTContext::CMTContext;

  void Newline() override {
    Keep([this] { CMTContext::Newline(); });
  }
  void PopState() override {
    Keep([this] { CMTContext::PopState(); });
  }
  void Error(const wchar_t* nearText) override {
    Keep([&] { CMTContext::Error(nearText); });
  }

  std::vector<Exception> kept;

private:
  void Keep(const std::function<void()>& action) {
    try {
      action();
    } catch (const Exception& error) {
      kept.push_back(error);
      throw;
    }
  }
};

TEST(MathTextContext, raisesErrorsOfTheParser) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const struct {
    const wchar_t* text;
    const wchar_t* description;
    bool isUnbalanced;
  } rows[] = {
      {L"{\\b x\n}", L"Unbalanced '{' and '}' directives", true},
      {L"\\b x}", L"Unbalanced '{' and '}' directives", true},
      {L"a\\here", L"MathText parsing error near '\\here'", false},
  };
  for (const auto& row : rows) {
    ErrorKeeper context(record, 10);
    std::shared_ptr<CMTMultiLineElement> element;
    EXPECT_EQ(CMTContext::MT_FAILURE, context.Parse(row.text, element));
    ASSERT_EQ(1u, context.kept.size());
    const Exception& error = context.kept[0];
    EXPECT_EQ(row.description, error.GetDescription());
    EXPECT_EQ(L"MTParser", error.GetSrcFile());
    EXPECT_EQ(L"Shared", error.GetModule());
    EXPECT_EQ(row.isUnbalanced, error.GetSrcLine() == 1354);
  }
}

TEST(MathTextContext, refusesToBuildOutsideOfParse) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  record.PreserveState();
  CMTContext context(record, 10);
  for (const wchar_t* const text : {L"a\\b", L"\n", L"}", L"\\sp1", L"\\ssend", L"\\up5"}) {
    EXPECT_NE(L"(nothing)", test::Failure([&] { ScanMathText(text, context); })) << text;
  }
  EXPECT_EQ(1u, record.GetStateDepth());
}

GString Repeated(std::wstring_view text, std::size_t count) {
  GString result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(MathTextContext, staysWithinItsLimits) {
  const GString begin = L"\\ssbeg(0,0,left,top)";
  const GString end = L"\\ssend ";
  EXPECT_EQ("'x'0,0", Drawn(Repeated(L"{", 1000) + L"x\\b" + Repeated(L"}", 1000)));
  EXPECT_EQ("error: Math text has more than 1000 open braces",
            Drawn(L"\\b" + Repeated(L"{", 1001)));
  EXPECT_EQ("error: Math text has more than 1000 open braces",
            Drawn(L"\\b" + Repeated(L"{", 1000000)));
  EXPECT_EQ("'x'0,-800", Drawn(Repeated(begin, 100) + L"x" + Repeated(end, 100)));
  EXPECT_EQ("error: Math text has more than 100 sub-strings inside each other",
            Drawn(Repeated(begin, 101)));
  EXPECT_EQ("error: Math text has more than 250000 parts", Drawn(Repeated(L"\n", 1000000)));
}

TEST(MathTextContext, takesLongTexts) {
  CMTRecordingTextIF record{MTFixedMetrics()};
  const GString plain = Repeated(L"0123456789", 1000000);
  const auto element = test::Parsed(record, L"\\b " + plain);
  ASSERT_NE(nullptr, element);
  EXPECT_EQ(5e7, element->GetExtentUsingTextIF(record));
  EXPECT_EQ(plain, element->GetSimpleText());
  const auto lines = test::Parsed(record, Repeated(L"a\n", 50000));
  ASSERT_NE(nullptr, lines);
  EXPECT_EQ("0,-550002 5,8", test::Describe(lines->GetInternalBBox(record)));
}

TEST(MathTextContext, givesSimpleText) {
  const struct {
    const wchar_t* text;
    const wchar_t* simple;
  } rows[] = {
      {L"", L""},
      {L"plain {}", L"plain {}"},
      {L"{\\b E} = mc\\up40\\fs60 2", L"E = mc2"},
      {L"a\tb\n\nc\n", L"a\tb\n\nc\n"},
      {L"a\\ssbeg(0,0,left,top)b\nc\\ssend d", L"ab\ncd"},
      {L"\\red\\line(1,2,left)", L""},
      {L"\\a176 C\\\\", L"\u00B0C\\"},
      {L"{\\b a", L"*** Math Text Error ***"},
      {L"\\what", L"*** Math Text Error ***"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.simple, MathTextToSimpleText(row.text)) << GString(row.text);
  }
  const GString beyond = MathTextToSimpleText(L"\\a0x1F30D");
  EXPECT_EQ("\xF0\x9F\x8C\x8D", beyond.ToUtf8());
}

}  // namespace
}  // namespace shr
