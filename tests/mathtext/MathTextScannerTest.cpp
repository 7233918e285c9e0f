// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every command with the calls it makes; where words, numbers and runs end; arguments at
// both ends of their ranges and beyond; constructs that break off; what an error says; colors as
// text; the escape law on random units; hostile sizes; a sink that throws.

#include "shared/mathtext/MathTextScanner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

/// Writes down each call as "Name:argument,argument;".
class Protocol : public IMathTextScanner {
public:
  void Text(const wchar_t* text) override { Add(L"T", text); }
  void CharCode(unsigned code) override { Add(L"C", Number(code)); }
  void Newline() override { Add(L"N"); }
  void Facename(const wchar_t* name) override { Add(L"F", name); }
  void FontSize(double percent) override { Add(L"S", Number(percent)); }
  void Bold() override { Add(L"b"); }
  void Italic() override { Add(L"i"); }
  void Underline() override { Add(L"u"); }
  void StrikeThrough() override { Add(L"s"); }
  void Plain() override { Add(L"p"); }
  void VerticalOffset(double percent) override { Add(L"V", Number(percent)); }
  void SavePosition(unsigned index) override { Add(L"sp", Number(index)); }
  void RestorePosition(unsigned index) override { Add(L"rp", Number(index)); }
  void PushState() override { Add(L"{"); }
  void PopState() override { Add(L"}"); }
  void PredefinedColor(Color4b color) override { Add(L"P", color.GetHex().String()); }
  void ColorComponent(unsigned component, unsigned value) override {
    Add(L"R", Number(component) + L"," + Number(value));
  }
  void Color(Color4b color) override { Add(L"K", color.GetHex().String()); }
  void Line(double x, double y, Side side) override {
    Add(L"L", Number(x) + L"," + Number(y) + L"," + Number(static_cast<int>(side)));
  }
  void DateTime(const wchar_t* picture) override { Add(L"D", picture); }
  void BeginSubstring(double width, double height, HAlignment horizontal,
                      VAlignment vertical) override {
    Add(L"[", Number(width) + L"," + Number(height) + L"," + Number(static_cast<int>(horizontal)) +
                  L"," + Number(static_cast<int>(vertical)));
  }
  void EndSubstring() override { Add(L"]"); }
  void Error(const wchar_t* nearText) override { Add(L"E", nearText); }

  std::wstring calls;

private:
  static std::wstring Number(double value) {
    GString text;
    text.FormatString(L"%.15g", value);
    return text.String();
  }
  void Add(const wchar_t* name, const std::wstring& arguments = {}) {
    calls += name;
    if (!arguments.empty()) calls += L":" + arguments;
    calls += L";";
  }
};

std::string Calls(const std::wstring& text) {
  Protocol protocol;
  const bool isRead = ScanMathText(text.c_str(), protocol);
  EXPECT_EQ(isRead, protocol.calls.find(L"E") == std::wstring::npos) << GString(text).ToUtf8();
  return GString(protocol.calls).ToUtf8();
}

TEST(ScanMathText, tellsWhatEachConstructMeans) {
  const struct {
    const wchar_t* text;
    const char* calls;
  } rows[] = {
      {L"", ""},
      {L"abc", "T:abc;"},
      {L"a \\b b\\i c\\ul d\\strike e\\plain f", "T:a ;b;T:b;i;T:c;u;T:d;s;T:e;p;T:f;"},
      {L"\\f\"Times New Roman\"x\\f\"a\"\"b\"\\f\"\"", "F:Times New Roman;T:x;F:a\"b;F;"},
      {L"\\fs200 a\\fs1\\fs10000\\fs12.5b\\fs1e2", "S:200;T:a;S:1;S:10000;S:12.5;T:b;S:100;"},
      {L"x\\up50 2\\dn30 i\\up-20\\dn-.5", "T:x;V:50;T:2;V:-30;T:i;V:-20;V:0.5;"},
      {L"\\up+10000\\dn10000 ", "V:10000;V:-10000;"},
      {L"\\sp1 a\\rp255 b\\sp0", "sp:1;T:a;rp:255;T:b;sp:0;"},
      {L"{{a}}", "{;{;T:a;};};"},
      {L"}{", "};{;"},
      {L"\\black\\blue\\green\\cyan\\red", "P:#000000;P:#0000ff;P:#00ff00;P:#00ffff;P:#ff0000;"},
      {L"\\magenta\\yellow\\white\\gray", "P:#ff00ff;P:#ffff00;P:#ffffff;P:#808080;"},
      {L"\\rgbr0\\rgbg255 \\rgbb1\\rgba128", "R:0,0;R:1,255;R:2,1;R:3,128;"},
      {L"\\color( Sea Green)", "E:\\color( Sea Green);"},
      {L"\\color( SeaGreen ) x", "K:#2e8b57;T: x;"},
      {L"\\line(100,0,right)", "L:100,0,1;"},
      {L"\\line( -10000 ,\t+2.5 , left )x", "L:-10000,2.5,0;T:x;"},
      {L"\\line(0,0,top)\\line(0,0,bottom)", "L:0,0,2;L:0,0,3;"},
      {L"\\date1x\\oops", "D:yyyy-MM-dd;T:1x;E:\\oops;"},
      {L"\\date \\time x", "D:yyyy-MM-dd;D:HH:mm;T:x;"},
      {L"\\dt(\"d \"\"of\"\" MMM\")\\dt( \"\" )", "D:d \"of\" MMM;D;"},
      {L"\\ssbeg(100,200,left,top)x\\ssend y", "[:100,200,0,0;T:x;];T:y;"},
      {L"\\ssbeg( 0 , 10000 , center , baseline )", "[:0,10000,1,1;"},
      {L"\\ssbeg(0,0,right,bottom)", "[:0,0,2,2;"},
      {L"a\nb\r\nc\rd\n\n\r\r\n", "T:a;N;T:b;N;T:c;N;T:d;N;N;N;N;"},
      {L"a\tb", "T:a\tb;"},
      {L"a\\\\b\\{c\\}d", "T:a\\b{c}d;"},
      {L"\\a176 C\\a0x3B1 \\a0X10fFfF", "C:176;T:C;C:945;C:1114111;"},
  };
  for (const auto& row : rows) {
    const std::wstring text = row.text;
    EXPECT_EQ(Calls(text), row.calls) << GString(text).ToUtf8();
  }
}

TEST(ScanMathText, endsWordsAndNumbersAtTheFirstUnitThatIsNoneOfTheirs) {
  const struct {
    const wchar_t* text;
    const char* calls;
  } rows[] = {
      {L"\\b  x", "b;T: x;"},         {L"\\b1", "b;T:1;"},
      {L"\\b\\i{x}", "b;i;{;T:x;};"}, {L"\\b\nx", "b;N;T:x;"},
      {L"\\fs150pt", "S:150;T:pt;"},  {L"\\fs150e", "S:150;T:e;"},
      {L"\\fs150em", "S:150;T:em;"},  {L"\\fs1.5.5", "S:1.5;T:.5;"},
      {L"\\sp1.5", "sp:1;T:.5;"},     {L"\\a65 5", "C:65;T:5;"},
      {L"\\a0x41g", "C:65;T:g;"},     {L"\\f\"A\" x", "F:A;T: x;"},
      {L"\\ul\xE9", "u;T:\xC3\xA9;"}, {L"\\a0000000000000000000065", "C:65;"},
  };
  for (const auto& row : rows) {
    const std::wstring text = row.text;
    EXPECT_EQ(Calls(text), row.calls) << GString(text).ToUtf8();
  }
}

TEST(ScanMathText, stopsAtTheFirstConstructThatDoesNotParse) {
  const wchar_t* const rows[] = {
      L"\\",
      L"\\ b",
      L"\\B",
      L"\\bold",
      L"\\bx",
      L"\\1",
      L"\\\xE9",
      L"\\\n",
      L"\\f",
      L"\\f Arial",
      L"\\f \"Arial\"",
      L"\\f\"Arial",
      L"\\f\"Ari\nal\"",
      L"\\f\"a\"\"",
      L"\\fs",
      L"\\fs 100",
      L"\\fs-5",
      L"\\fs0",
      L"\\fs0.99",
      L"\\fs10001",
      L"\\fs1e300",
      L"\\fs1e999999999999",
      L"\\fsnan",
      L"\\fs+inf",
      L"\\fs.",
      L"\\fs-",
      L"\\up",
      L"\\up x",
      L"\\up10000.5",
      L"\\dn-10001",
      L"\\up--1",
      L"\\sp",
      L"\\sp-1",
      L"\\sp256",
      L"\\sp99999",
      L"\\sp4294967297",
      L"\\rp+1",
      L"\\rp 1",
      L"\\rgbr256",
      L"\\rgba",
      L"\\rgb1",
      L"\\rgbg-1",
      L"\\a",
      L"\\a0",
      L"\\a0x",
      L"\\a0x0",
      L"\\a55296",
      L"\\a0xDFFF",
      L"\\a0x110000",
      L"\\a1114112",
      L"\\a99999999999999999999",
      L"\\a-1",
      L"\\color",
      L"\\color(",
      L"\\color()",
      L"\\color(red",
      L"\\color (red)",
      L"\\color(rot)",
      L"\\line",
      L"\\line(1,2)",
      L"\\line(1,2,left",
      L"\\line (1,2,left)",
      L"\\line(1,2,middle)",
      L"\\line(1,2,Left)",
      L"\\line(1,,left)",
      L"\\line(1 2,left)",
      L"\\line(10001,0,left)",
      L"\\line(1,2,left,3)",
      L"\\line(1,\n2,left)",
      L"\\dt",
      L"\\dt()",
      L"\\dt(yyyy)",
      L"\\dt(\"yyyy)",
      L"\\dt(\"yyyy\"",
      L"\\dt(\"a\nb\")",
      L"\\ssbeg",
      L"\\ssbeg(1,2,left,top",
      L"\\ssbeg(-1,2,left,top)",
      L"\\ssbeg(1,2,top,left)",
      L"\\ssbeg(1,2,left)",
      L"\\ssbeg(1,10001,left,top)",
      L"\\ssbeg(1,2,left,baselines)",
  };
  for (const wchar_t* const row : rows) {
    const std::wstring text = row;
    EXPECT_EQ(Calls(L"ok" + text), "T:ok;E:" + GString(text).ToUtf8() + ";");
  }
}

TEST(ScanMathText, quotesFortyUnitsOfWhatFollows) {
  const std::wstring tail(100, L'x');
  EXPECT_EQ(Calls(L"a\\zz " + tail), "T:a;E:\\zz " + std::string(36, 'x') + ";");
  EXPECT_EQ(Calls(L"\\zz " + tail.substr(64)), "E:\\zz " + std::string(36, 'x') + ";");
  // The fortieth and forty-first unit are a pair where a character takes two.
  Protocol protocol;
  std::wstring pairs = L"\\zz " + tail.substr(65);
  pairs += static_cast<wchar_t>(0xD83C);
  pairs += static_cast<wchar_t>(0xDF0D);
  EXPECT_FALSE(ScanMathText(pairs.c_str(), protocol));
  EXPECT_EQ(protocol.calls, L"E:" + pairs.substr(0, 39) + L";");
}

TEST(ReadMathTextColor, readsNamesDigitsAndNumbers) {
  const struct {
    const wchar_t* text;
    const char* hex;
  } rows[] = {
      {L"red", "#ff0000"},
      {L"green", "#00ff00"},
      {L"Green", "#00ff00"},
      {L"lime", "#00ff00"},
      {L"gray", "#808080"},
      {L" DarkSlateGrey\t", "#2f4f4f"},
      {L"LIGHTGOLDENRODYELLOW", "#fafad2"},
      {L"#fA0", "#ffaa00"},
      {L"#123456", "#123456"},
      {L"#12345678", "#12345678"},
      {L"1,2,3", "#010203"},
      {L"255 , 0 ,\t128 , 7", "#ff008007"},
      {L"", nullptr},
      {L" ", nullptr},
      {L"#", nullptr},
      {L"#12", nullptr},
      {L"#12345", nullptr},
      {L"#12g", nullptr},
      {L"#1234567", nullptr},
      {L"1,2", nullptr},
      {L"1,2,3,4,5", nullptr},
      {L"1,2,256", nullptr},
      {L"1,2,-3", nullptr},
      {L"1,2,3,", nullptr},
      {L"1 2 3", nullptr},
      {L"1.5,2,3", nullptr},
      {L"dark gray", nullptr},
      {L"grey50", nullptr},
  };
  for (const auto& row : rows) {
    Color4b color(9, 8, 7, 6);
    const std::string name = GString(row.text).ToUtf8();
    ASSERT_EQ(ReadMathTextColor(row.text, color), row.hex != nullptr) << name;
    EXPECT_EQ(color.GetHex().ToUtf8(), row.hex != nullptr ? row.hex : "#09080706") << name;
  }
}

TEST(ContainsMathText, looksForABackslashALineFeedOrATab) {
  for (const wchar_t* const text : {L"\\", L"a\nb", L"a\t"}) EXPECT_TRUE(ContainsMathText(text));
  for (const wchar_t* const text : {L"", L"abc", L"{a}", L"a\rb"}) {
    EXPECT_FALSE(ContainsMathText(text));
  }
}

/// Joins runs and line breaks, and refuses everything else.
class Joined : public Protocol {
public:
  void Text(const wchar_t* run) override { text += run; }
  void Newline() override { text += L'\n'; }
  std::wstring text;
};

TEST(EscapeMathText, givesMarkupThatReadsAsTheText) {
  std::mt19937 random(20261122);
  constexpr wchar_t UNITS[] = {L'\\',
                               L'{',
                               L'}',
                               L'\n',
                               L'\t',
                               L' ',
                               L'"',
                               L'b',
                               L'1',
                               L'(',
                               static_cast<wchar_t>(0xD800),
                               static_cast<wchar_t>(0xFFFE)};
  for (int round = 0; round < 2000; ++round) {
    std::wstring text(random() % 30, L'\0');
    for (wchar_t& unit : text) unit = UNITS[random() % std::size(UNITS)];
    Joined joined;
    ASSERT_TRUE(ScanMathText(EscapeMathText(text).c_str(), joined));
    ASSERT_EQ(joined.text, text) << GString(text).ToUtf8();
    ASSERT_TRUE(joined.calls.empty());
  }
}

/// Counts calls.
class Counting : public Joined {
public:
  void PushState() override { ++count; }
  void PopState() override { ++count; }
  std::size_t count = 0;
};

TEST(ScanMathText, survivesAnySizeInOnePass) {
  constexpr std::size_t MILLION = 1000000;
  Counting braces;
  EXPECT_TRUE(ScanMathText(std::wstring(MILLION, L'{').c_str(), braces));
  EXPECT_EQ(braces.count, MILLION);
  Counting slashes;
  EXPECT_TRUE(ScanMathText(std::wstring(MILLION, L'\\').c_str(), slashes));
  EXPECT_EQ(slashes.text, std::wstring(MILLION / 2, L'\\'));
  Counting text;
  EXPECT_TRUE(ScanMathText(std::wstring(10 * MILLION, L'x').c_str(), text));
  EXPECT_EQ(text.text.size(), 10 * MILLION);
  for (const wchar_t* const open : {L"\\f\"", L"\\color(", L"\\fs", L"\\up1", L"\\a0x", L"\\"}) {
    Protocol protocol;
    EXPECT_FALSE(ScanMathText((open + std::wstring(MILLION, L'9') + L"z").c_str(), protocol));
    EXPECT_LT(protocol.calls.size(), 50u);
  }
}

TEST(ScanMathText, letsExceptionsOfTheSinkThrough) {
  class Throwing : public Protocol {
    void Bold() override { ThrowErrorImpl(L"Throwing", 1, L"enough"); }
  } sink;
  EXPECT_THROW(ScanMathText(L"a\\b c", sink), Exception);
  EXPECT_EQ(sink.calls, L"T:a;");
}

}  // namespace
}  // namespace shr
