// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what a run becomes in both modes, its bytes where the face is the library's own; places,
// turns, colors, halos; families; labels; text from right to left; any text gives well-formed XML.

#include "shared/plots/SvgTextIF.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/mathtext/Context.h"
#include "tests/plots/XmlCheck.h"

namespace shr {
namespace {

constexpr const wchar_t* STROKED = L"Shared Stroke";

/// A picture under construction with an interface that draws into it.
struct Picture {
  explicit Picture(SvgTextMode mode) : output(svg, mode) { svg.Begin("svg"); }

  void Set(const wchar_t* face, double height, Color4b color = Color4b::Black) {
    MTAttributes attributes;
    attributes.face.name = face;
    attributes.height = height;
    attributes.color = color;
    output.SetAttributes(attributes);
  }

  std::string Take() {
    svg.End();
    return svg.Take();
  }

  SvgWriter svg;
  CMTSvgTextIF output;
};

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != text.npos;
}

TEST(SvgTextIF, definesEachGlyphOnceAndUsesItWhereItStands) {
  Picture picture(SvgTextMode::Outlines);
  picture.Set(STROKED, 20, Color4b(1, 2, 3, 51));
  picture.output.SetHalo(Color4b::White, 1);
  picture.output.DrawString(CMTSvgTextIF::FromPicture(10.126, 30), L"| |");
  picture.output.SetHalo(Color4b::White, 0);
  picture.Set(STROKED, 10);
  picture.output.DrawString(Vec2d(-0.5, 0), L"|");
  EXPECT_EQ(picture.Take(), R"svg(<svg>
<defs>
<path id="glyph1" d="M12.5-78.13l0 100.01" fill="none" stroke-linecap="round" stroke-linejoin="round"/>
</defs>
<g transform="translate(10.13 30)scale(0.2)" fill="#010203" fill-opacity="0.2" stroke="#ffffff" stroke-width="10" stroke-linejoin="round" paint-order="stroke" role="img" aria-label="| |">
<use href="#glyph1" stroke="#ffffff" stroke-width="16.25"/>
<use href="#glyph1" x="75" stroke="#ffffff" stroke-width="16.25"/>
<use href="#glyph1" stroke="#010203" stroke-opacity="0.2" stroke-width="6.25"/>
<use href="#glyph1" x="75" stroke="#010203" stroke-opacity="0.2" stroke-width="6.25"/>
</g>
<g transform="translate(-0.5 0)scale(0.1)" fill="#000000" role="img" aria-label="|">
<use href="#glyph1" stroke="#000000" stroke-width="6.25"/>
</g>
</svg>
)svg");
}

TEST(SvgTextIF, writesTextAsWideAsItWasMeasured) {
  Picture picture(SvgTextMode::Text);
  picture.Set(L"DejaVu Sans", 12.5, Color4b::Firebrick);
  const double width = picture.output.GetTextExtent(L"a <b");
  picture.output.DrawString(CMTSvgTextIF::FromPicture(1, 2.345), L"a <b");
  const std::string svg = picture.Take();
  EXPECT_TRUE(Has(svg, "<text y=\"2.35\" x=\"1\" font-family=\"'DejaVu Sans'")) << svg;
  EXPECT_TRUE(Has(svg, " font-size=\"12.5\" fill=\"#b22222\" textLength=\"")) << svg;
  EXPECT_TRUE(Has(svg, " style=\"font-kerning:none\" xml:space=\"preserve\">a &lt;b</text>"))
      << svg;
  const std::size_t at = svg.find("textLength=\"") + 12;
  EXPECT_NEAR(std::stod(svg.substr(at)), width, 0.005 + 1e-9);
}

TEST(SvgTextIF, textInSymbolSetsIsDrawnAsOutlines) {
  Picture picture(SvgTextMode::Text);
  picture.Set(STROKED, 10);
  picture.output.DrawString(Vec2d(0, 0), L"abc");
  const std::string svg = picture.Take();
  EXPECT_EQ(CountOf(svg, "<text"), 0u) << svg;
  EXPECT_EQ(CountOf(svg, "<use"), 3u) << svg;
}

TEST(SvgTextIF, listsWhatWasAskedForAndWhatAnyMachineHas) {
  const struct {
    const wchar_t* name;
    unsigned char pitchAndFamily;
    const char* first;
    const char* last;
  } rows[] = {
      {L"No 'such' \\ <face>", platform::FAMILY_ROMAN,
       "font-family=\"'No \\27 such\\27  \\5c  &lt;face&gt;', '", "', serif\""},
      {L"", platform::FAMILY_MODERN, "font-family=\"'", "', monospace\""},
      {L"Arial", platform::FAMILY_SCRIPT, "font-family=\"'Arial', ", ", cursive\""},
  };
  for (const auto& row : rows) {
    Picture picture(SvgTextMode::Text);
    MTAttributes attributes;
    attributes.face.name = row.name;
    attributes.face.pitchAndFamily = row.pitchAndFamily | platform::PITCH_VARIABLE;
    attributes.face.weight = 700;
    attributes.face.italic = 1;
    picture.output.SetAttributes(attributes);
    picture.output.DrawString(Vec2d(0, 0), L"x");
    const std::string svg = picture.Take();
    EXPECT_TRUE(Has(svg, row.first)) << svg;
    EXPECT_TRUE(Has(svg, row.last)) << svg;
    EXPECT_TRUE(Has(svg, " font-weight=\"700\" font-style=\"italic\"")) << svg;
  }
}

TEST(SvgTextIF, theDefaultFaceIsBoldWhereThatIsAskedFor) {
  TextFace face;
  const auto weightOf = [&face] {
    return LayoutText(L"x", face).runs.at(0).face->GetAttributes().weight;
  };
  EXPECT_LT(weightOf(), 600);
  face.weight = 700;
  EXPECT_GE(weightOf(), 600);
}

TEST(SvgTextIF, turnsTextAboutItsBeginning) {
  for (const SvgTextMode mode : {SvgTextMode::Text, SvgTextMode::Outlines}) {
    Picture picture(mode);
    picture.Set(L"", 10);
    picture.output.SetRotation(-30.25);
    picture.output.DrawString(Vec2d(3, 4), L"x");
    const std::string svg = picture.Take();
    EXPECT_TRUE(Has(svg, " transform=\"translate(3 -4)rotate(30.25)")) << svg;
  }
}

TEST(SvgTextIF, whatCannotBeSeenIsNotDrawn) {
  for (const SvgTextMode mode : {SvgTextMode::Text, SvgTextMode::Outlines}) {
    Picture picture(mode);
    picture.output.DrawString(Vec2d(0, 0), L"");
    picture.output.DrawString(Vec2d(0, 0), L"  \u00a0");
    picture.Set(L"", 10, Color4b(255, 0, 0, 0));
    picture.output.DrawString(Vec2d(0, 0), L"x");
    picture.output.DrawLine(Vec2d(0, 0), Vec2d(1, 1), 1);
    EXPECT_EQ(picture.Take(), "<svg/>\n");
  }
}

TEST(SvgTextIF, drawsLines) {
  Picture picture(SvgTextMode::Text);
  picture.Set(L"", 10, Color4b(1, 2, 3, 128));
  picture.output.DrawLine(Vec2d(1, 2), Vec2d(-3.456, 0), 0.5);
  EXPECT_EQ(picture.Take(),
            "<svg>\n<line x1=\"1\" y1=\"-2\" x2=\"-3.46\" y2=\"0\" stroke=\"#010203\" "
            "stroke-opacity=\"0.5\" stroke-width=\"0.5\"/>\n</svg>\n");
}

std::string LabelIn(SvgTextMode mode, const GString& markup) {
  Picture picture(mode);
  CMTContext context(picture.output, 10);
  std::shared_ptr<CMTMultiLineElement> label;
  EXPECT_EQ(context.ParseMultiLine(markup, label), CMTContext::MT_SUCCESS);
  picture.output.DrawLabel(*label, Vec2d(5, 5));
  return picture.Take();
}

TEST(SvgTextIF, labelsInOutlinesTellTheirText) {
  const GString markup = L"{\\b A \"B\"}\nc\\up30 d";
  const std::string outlines = LabelIn(SvgTextMode::Outlines, markup);
  EXPECT_TRUE(Has(outlines, "<g role=\"img\" aria-label=\"A &quot;B&quot; cd\">")) << outlines;
  EXPECT_EQ(CountOf(outlines, "aria-label"), 1u);
  const std::string text = LabelIn(SvgTextMode::Text, markup);
  EXPECT_EQ(CountOf(text, "<text "), 3u) << text;
  EXPECT_EQ(CountOf(text, "aria-label"), 0u);
  EXPECT_EQ(CountOf(text, "font-kerning"), 1u);
  EXPECT_EQ(test::FaultOfXml(text), "");
}

/// The text of all `<text>` elements in their order, each in brackets,
/// "{" where it runs from right to left.
std::wstring WordsOf(const std::string& svg) {
  std::string words;
  for (std::size_t at = svg.find("<text "); at != svg.npos; at = svg.find("<text ", at)) {
    const std::size_t end = svg.find("</text>", at);
    const bool isRightToLeft = svg.substr(at, end - at).find("\"rtl\"") != svg.npos;
    words += isRightToLeft ? '{' : '[';
    for (bool isTag = true; at < end; ++at) {
      if (svg[at] == '<') isTag = true;
      if (!isTag) words += svg[at];
      if (svg[at] == '>') isTag = false;
    }
    words += ']';
  }
  return GString::FromUtf8(words).String();
}

TEST(SvgTextIF, writesOneElementForWhatIsReadInOneDirection) {
  const struct {
    const wchar_t* text;
    const wchar_t* words;
  } rows[] = {
      {L"abc", L"[abc]"},
      {L"a \u2693 \u05d0 b", L"[a \u2693 ]{\u05d0][ b]"},
      {L"\u05d0\u05d1, \u0627!", L"{\u05d0\u05d1, \u0627!]"},
      {L"\u05d0 12 \u05d1", L"{ \u05d1][12]{\u05d0 ]"},
  };
  for (const auto& row : rows) {
    Picture picture(SvgTextMode::Text);
    picture.Set(L"", 10);
    picture.output.DrawString(Vec2d(0, 0), row.text);
    const std::string svg = picture.Take();
    EXPECT_EQ(GString(WordsOf(svg)).ToUtf8(), GString(row.words).ToUtf8()) << svg;
  }
}

TEST(SvgTextIF, refusesAHaloThatIsNone) {
  Picture picture(SvgTextMode::Text);
  for (const double width :
       {-1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(picture.output.SetHalo(Color4b::White, width), Exception);
  }
}

TEST(SvgTextIF, anyTextGivesAWellFormedPicture) {
  std::mt19937 random(20261122);
  constexpr wchar_t UNITS[] = {L'<',
                               L'&',
                               L'"',
                               L'\'',
                               L'>',
                               L'a',
                               L' ',
                               L'\t',
                               L'\x01',
                               L'\u05d0',
                               L'\u0627',
                               L'\u0915',
                               L'\u4e2d',
                               L'\u0301',
                               static_cast<wchar_t>(0xD800),
                               static_cast<wchar_t>(0xFFFE)};
  for (int round = 0; round < 60; ++round) {
    std::wstring text(random() % 12, L'\0');
    for (wchar_t& unit : text) unit = UNITS[random() % std::size(UNITS)];
    for (const SvgTextMode mode : {SvgTextMode::Text, SvgTextMode::Outlines}) {
      Picture picture(mode);
      picture.Set(L"", 10);
      picture.output.DrawString(Vec2d(0, 0), text);
      EXPECT_EQ(test::FaultOfXml(picture.Take()), "") << GString(text).ToUtf8();
    }
  }
}

}  // namespace
}  // namespace shr
