// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what a set of symbols says, step by step of its paths; every error with its line; hostile
// counts, numbers and truncations at every length; the sets that are shipped; where files are
// looked for.

#include "shared/fonts/StrokedFace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/files/Path.h"
#include "shared/fonts/SymbolFaceInfo.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

constexpr char SAMPLE[] =
    "shared-symbols 1   # the format\n"
    "name \"Sample # 1\"\n"
    "em 100\n"
    "ascent 80\r\n"
    "descent 20\n"
    "underline -10 4\n"
    "strikeout 40 4\n"
    "pen 8\n"
    "missing U+25A1\n"
    "glyphs 4\n"
    "\n"
    "glyph U+0042 \"filled\"\n"
    "advance 60\n"
    "fill\n"
    "M 0 0 L 50 0 50 50 0 50 Z\n"
    "stroke\n"
    "M 25 60 Q 35 60 35 70 C 35 80 25 80 15 80\n"
    "glyph 33 \"ring\"\n"
    "advance 100\n"
    "A 50 50 40 0 360 Z\n"
    "glyph 32\n"
    "advance 30.5\n"
    "glyph U+25A1\n"
    "advance 70\n"
    "bounds 1 2 3 4\n"
    "M 0 0 L 1 1\n"
    "end\n";

CStrokedFace Read(std::string_view text) {
  return CStrokedFace::FromText(text, L"sample.sym");
}

/// The description of the error that reading gives, empty when there is none.
std::string ErrorOf(std::string_view text) {
  try {
    Read(text);
    return std::string();
  } catch (const Exception& error) {
    EXPECT_EQ(L"StrokedFace", error.GetSrcFile());
    return error.GetDescription().ToUtf8();
  }
}

TEST(StrokedFace, readsWhatASetSays) {
  const CStrokedFace face = Read(SAMPLE);
  EXPECT_EQ(L"Sample # 1", face.GetFaceName());
  EXPECT_EQ(NO_SYMBOL_SET, face.GetSetIndex());
  EXPECT_EQ(0.08, face.GetPenWidth());
  EXPECT_EQ(0.8, face.GetTextMeasures().ascent);
  EXPECT_EQ(0.2, face.GetTextMeasures().descent);
  EXPECT_EQ(-0.1, face.GetTextMeasures().underlinePosition);
  ASSERT_EQ(4u, face.GetGlyphs().size());
  EXPECT_EQ(U' ', face.GetGlyphs()[0].code) << "sorted by code";
  EXPECT_EQ(0.305, face.FindGlyph(U' ')->metrics.advance);
  EXPECT_FALSE(face.FindGlyph(U' ')->metrics.HasInk());
  EXPECT_EQ(nullptr, face.FindGlyph(U'A'));
  EXPECT_EQ(face.FindGlyph(U'!'), face.FindGlyph(L"RING"));
  EXPECT_EQ(nullptr, face.FindGlyph(L"rin"));
  ASSERT_NE(nullptr, face.GetMissingGlyph());
  EXPECT_EQ(0.7, face.GetMissingGlyph()->metrics.advance);
  EXPECT_EQ(0.03, face.GetMissingGlyph()->metrics.xMax) << "the bounds that are told";
}

TEST(StrokedFace, pathsBecomeOutlines) {
  using enum OutlineVerb;
  const CStrokedFace face = Read(SAMPLE);
  const CStrokedFace::Glyph& filled = *face.FindGlyph(U'B');
  EXPECT_EQ((std::vector{Move, Line, Line, Line, Close}), filled.vectors.fill.verbs);
  EXPECT_EQ((std::vector{Move, Quadratic, Cubic}), filled.vectors.stroke.verbs);
  EXPECT_EQ(0.08, filled.vectors.penWidth);
  // The box holds the fill as it is and half the pen around the stroke.
  EXPECT_EQ(0, filled.metrics.xMin);
  EXPECT_DOUBLE_EQ(0.84, filled.metrics.yMax);
  const CStrokedFace::Glyph& ring = *face.FindGlyph(U'!');
  EXPECT_EQ((std::vector{Move, Cubic, Cubic, Cubic, Cubic, Close}), ring.vectors.stroke.verbs);
  constexpr double NEAR = 1e-12;
  EXPECT_NEAR(0.06, ring.metrics.xMin, NEAR);
  EXPECT_NEAR(0.94, ring.metrics.yMax, NEAR);
  // Half way through each quarter the curve is as far from the centre as its radius.
  const std::vector<OutlinePoint>& p = ring.vectors.stroke.points;
  for (std::size_t i = 0; i + 3 < p.size(); i += 3) {
    const double x = (p[i].x + 3 * p[i + 1].x + 3 * p[i + 2].x + p[i + 3].x) / 8;
    const double y = (p[i].y + 3 * p[i + 1].y + 3 * p[i + 2].y + p[i + 3].y) / 8;
    EXPECT_NEAR(0.4, std::hypot(x - 0.5, y - 0.5), 0.4 * 3e-4);
  }
}

TEST(StrokedFace, faultsAreToldWithTheirLine) {
  const std::string head = "shared-symbols 1\nname \"S\"\nem 100\nglyphs 1\n";
  const std::string glyph = head + "glyph 65\nadvance 1\n";
  struct Row {
    const char* name;
    std::string text;
    const char* error;
  };
  const Row rows[] = {
      {"nothing", "", "Line 0: this is not a symbol set."},
      {"blank lines", "\n\n# x\n", "Line 3: this is not a symbol set."},
      {"another file", "<svg>", "Line 1: this is not a symbol set."},
      {"bytes", std::string("\0\xFF\xFE\x80", 4), "Line 1: this is not a symbol set."},
      {"later version", "shared-symbols 2\n", "Line 1: the version of the format is not known."},
      {"no name", "shared-symbols 1\nem 1\nglyphs 1\nglyph 0 advance 1 end end end",
       "Line 4: the line 'name' is missing."},
      {"no em", "shared-symbols 1\nname \"\xC3\xA4\"\n", "Line 2: the line 'em' is missing."},
      {"no count", "shared-symbols 1\nname \"a\"\nem 5\n", "Line 3: the line 'glyphs' is missing."},
      {"unknown line", "shared-symbols 1\ncolor 3\n",
       "Line 2: this line does not belong to the head of a set."},
      {"em of nothing", "shared-symbols 1\nem 0\n", "Line 2: a number is out of range."},
      {"hostile count", "shared-symbols 1\nglyphs 1114111\n",
       "Line 2: the file is too short for its glyphs."},
      {"count beyond Unicode", "shared-symbols 1\nglyphs 99999999999999999999\n",
       "Line 2: a number is out of range."},
      {"negative count", "shared-symbols 1\nglyphs -1\n", "Line 2: a number is out of range."},
      {"half a glyph", "shared-symbols 1\nglyphs 1.5\n", "Line 2: this is not a number of glyphs."},
      {"open quotes", "shared-symbols 1\nname \"abc\n",
       "Line 2: a text between quotes is missing."},
      {"more on the line", "shared-symbols 1\nem 100 200\n",
       "Line 2: there is more on the line than belongs there."},
      {"no code", head + "glyph A\nadvance 1\nend\n", "Line 5: a character code is missing."},
      {"code beyond Unicode", head + "glyph U+110000\nadvance 1\nend",
       "Line 5: there is no such character."},
      {"a surrogate", head + "glyph U+D800\nadvance 1\nend\n",
       "Line 5: there is no such character."},
      {"no advance", head + "glyph 65 \"some long name\"\nend\n",
       "Line 6: the line 'advance' of the glyph before is missing."},
      {"no number", glyph + "M 1\nend\n", "Line 7: a number is missing."},
      {"not a number", glyph + "M 1 2x\nend\n", "Line 7: this is not a number."},
      {"nan", glyph + "M nan 0\nend\n", "Line 7: this is not a number."},
      {"infinite", glyph + "M 1e999 0\nend\n", "Line 7: this is not a number."},
      {"too far", glyph + "M 1000001 0\nend\n", "Line 7: a number is out of range."},
      {"negative radius", glyph + "A 0 0 -1 0 90\nend\n", "Line 7: a number is out of range."},
      {"many turns", glyph + "A 0 0 1 0 1e6\nend\n", "Line 7: a number is out of range."},
      {"line from nowhere", glyph + "L 1 1\nend\n", "Line 7: a path begins with M or A."},
      {"behind the close", glyph + "M 0 0 L 1 1 Z L 2 2\nend\n",
       "Line 7: a path begins with M or A."},
      {"line from before", glyph + "M 0 0\nfill\nL 1 1\nend\n",
       "Line 9: a path begins with M or A."},
      {"unknown step", glyph + "M 0 0 X 1\nend\n", "Line 7: there is no such step of a path."},
      {"unknown word", glyph + "colour red\nend\n",
       "Line 7: this is neither a keyword nor a step of a path."},
      {"bounds", glyph + "bounds 1 1 0 2\nend\n", "Line 7: the bounds are the wrong way round."},
      {"no end", glyph, "Line 6: the file ends before the line 'end'."},
      {"more behind the end", glyph + "end\nend\n", "Line 8: there is more behind the line 'end'."},
      {"too many", glyph + "glyph 66\nadvance 1\nend\n",
       "Line 7: there are more glyphs than 'glyphs' says."},
      {"too few",
       "shared-symbols 1\nname \"S\"\nem 100\nglyphs 2\nglyph 65\nadvance 1\n# and some"
       " room for another\nend\n",
       "Line 8: there are fewer glyphs than 'glyphs' says."},
      {"twice",
       "shared-symbols 1\nname \"S\"\nem 100\nglyphs 2\nglyph 65\nadvance 1\nglyph U+41\n"
       "advance 2\nend\n",
       "Line 9: a character has two glyphs."},
      {"missing glyph",
       "shared-symbols 1\nname \"S\"\nem 100\nmissing 66\nglyphs 1\nglyph 65\n"
       "advance 1\nend\n",
       "Line 8: there is no glyph of the character that 'missing' names."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(std::string("Symbol set file: sample.sym\n") + row.error, ErrorOf(row.text))
        << row.name;
  }
}

TEST(StrokedFace, aFileThatIsCutAnywhereIsAnErrorAndNoCrash) {
  const std::string_view sample = SAMPLE;
  const std::size_t whole = sample.rfind("end") + 3;
  for (std::size_t length = 0; length < sample.size(); ++length) {
    EXPECT_EQ(length < whole, !ErrorOf(sample.substr(0, length)).empty()) << length;
  }
  for (std::size_t place = 0; place < sample.size(); ++place) {
    for (const char byte : {'\0', '\xFF', '9', ' ', '\n', '"'}) {
      std::string changed(sample);
      changed[place] = byte;
      ErrorOf(changed);  // any result, under the sanitizers
    }
  }
}

TEST(StrokedFace, theShippedSetsAreWhole) {
  const CStrokedFace text(0);
  const CStrokedFace markers(1);
  EXPECT_EQ(STROKED_TEXT_FACE, text.GetFaceName());
  EXPECT_EQ(MARKER_FACE, markers.GetFaceName());
  EXPECT_EQ(1u, markers.GetSetIndex());
  EXPECT_GE(markers.GetGlyphs().size(), 60u);
  std::set<GString> names;
  for (const CStrokedFace::Glyph& glyph : markers.GetGlyphs()) {
    EXPECT_FALSE(glyph.name.empty());
    EXPECT_TRUE(names.insert(glyph.name.ToLower()).second) << glyph.name.ToUtf8();
    // Markers are set with their middle at the point.
    EXPECT_NEAR(1, glyph.metrics.advance, 1e-9) << glyph.name.ToUtf8();
    EXPECT_GE(glyph.metrics.xMin, 0) << glyph.name.ToUtf8();
    EXPECT_LE(glyph.metrics.xMax, 1) << glyph.name.ToUtf8();
  }
  for (const wchar_t* const name : {L"circle", L"epicentre", L"volcano", L"anchor", L"airport"}) {
    EXPECT_NE(nullptr, markers.FindGlyph(name)) << GString(name).ToUtf8();
  }
}

TEST(StrokedFace, theTextFaceHasFourAlphabets) {
  const CStrokedFace text(0);
  struct Range {
    const char* name;
    char32_t first, last;
  };
  const Range ranges[] = {{"ASCII", 0x20, 0x7E},
                          {"Latin-1", 0xA0, 0xFF},
                          {"Greek capitals", 0x391, 0x3A9},
                          {"Greek", 0x3AC, 0x3CE},
                          {"Cyrillic", 0x400, 0x45F}};
  for (const Range& range : ranges) {
    for (char32_t code = range.first; code <= range.last; ++code) {
      if (code == 0x3A2) continue;  // not a character
      const CStrokedFace::Glyph* const glyph = text.FindGlyph(code);
      ASSERT_NE(nullptr, glyph) << range.name << " " << static_cast<unsigned>(code);
      const bool isBlank = code == 0x20 || code == 0xA0 || code == 0xAD;
      EXPECT_EQ(isBlank, !glyph->metrics.HasInk())
          << range.name << " " << static_cast<unsigned>(code);
      EXPECT_GT(glyph->metrics.advance, 0);
      EXPECT_LT(glyph->metrics.yMax, 1.25);
      EXPECT_GT(glyph->metrics.yMin, -0.5);
    }
  }
  ASSERT_NE(nullptr, text.GetMissingGlyph());
  EXPECT_GT(text.GetTextMeasures().capHeight, text.GetTextMeasures().xHeight);
}

TEST(StrokedFace, missingFilesAreToldByTheirPath) {
  const test::TemporaryFolder folder;
  const auto errorOf = [](const GString& path) {
    try {
      CStrokedFace::FromFile(path);
      return GString();
    } catch (const Exception& error) {
      return error.GetDescription();
    }
  };
  const GString path = folder.Path(L"none.sym");
  const GString error = L"Symbol set file: " + path + L"\ndoes not exist or is not readable.";
  EXPECT_EQ(error, errorOf(path));
  EXPECT_NE(GString(), errorOf(folder.Path())) << "a folder";
  test::WriteBytes(path, SAMPLE);
  EXPECT_EQ(L"Sample # 1", CStrokedFace::FromFile(path).GetFaceName());
}

TEST(StrokedFace, aSetOfTheProgramTakesThePlaceOfThoseOfTheLibrary) {
  CSYMSetInfo::SetTable({CSYMSetInfo(L"Ours", L"No Such File.sym")});
  EXPECT_THROW(CStrokedFace(std::size_t{1}), Exception);
  try {
    CStrokedFace face(0);
    FAIL() << "read";
  } catch (const Exception& error) {
    const GString folder = GetStartupPath(nullptr, true) + L"Symbols";
    EXPECT_EQ(0u, error.GetDescription().find(L"Symbol set file: " + folder));
  }
  // As a face it has nothing to measure.
  const CSYMFaceInfo face(0);
  EXPECT_EQ(L"Ours", face.GetFaceName());
  EXPECT_THROW(face.GetOTM(), Exception);
  EXPECT_EQ(0, face.CalcEmExtent(L"abc"));
  CSYMSetInfo::ResetTable();
  EXPECT_EQ(2u, CSYMSetInfo::GetTable().size());
}

}  // namespace
}  // namespace shr
