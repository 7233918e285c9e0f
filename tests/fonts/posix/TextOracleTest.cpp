// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: words of several scripts against HarfBuzz asked directly, glyph by glyph; random lines of
// all directions against FriBidi's own reordering; a machine without these libraries.

#include <fribidi.h>
#include <gtest/gtest.h>
#include <hb-ot.h>
#include <hb.h>

#include <cstdlib>
#include <random>

#include "shared/fonts/TextLayout.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/platform/posix/LoadedLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using platform::LoadedLibrary;

TextFace Named(const wchar_t* name) {
  TextFace face;
  face.name = name;
  return face;
}

/// A function of a library that the program does not link, so that it runs without the library.
template <typename Function>
Function Find(const char* file, const char* name) {
  Function function = nullptr;
  LoadedLibrary(file).Find(name, function);
  if (function == nullptr) throw std::runtime_error(std::string("no ") + name + " in " + file);
  return function;
}
#define HARFBUZZ(name) Find<decltype(&::name)>("libharfbuzz.so.0", #name)
#define BIDI(name) Find<decltype(&::name)>("libfribidi.so.0", #name)

/// What HarfBuzz makes of a whole text in one font.
platform::ShapedText ShapeDirectly(const std::string& file, std::wstring_view text,
                                   bool isPlainScript) {
  hb_blob_t* const blob = HARFBUZZ(hb_blob_create_from_file)(file.c_str());
  hb_face_t* const face = HARFBUZZ(hb_face_create)(blob, 0);
  hb_font_t* const font = HARFBUZZ(hb_font_create)(face);
  hb_buffer_t* const buffer = HARFBUZZ(hb_buffer_create)();
  const auto length = static_cast<int>(text.size());
  HARFBUZZ(hb_buffer_add_utf32)
  (buffer, reinterpret_cast<const std::uint32_t*>(text.data()), length, 0, length);
  HARFBUZZ(hb_buffer_guess_segment_properties)(buffer);
  HARFBUZZ(hb_buffer_set_flags)(buffer, HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
  const hb_feature_t off[] = {{HB_TAG('k', 'e', 'r', 'n'), 0, 0, HB_FEATURE_GLOBAL_END},
                              {HB_TAG('l', 'i', 'g', 'a'), 0, 0, HB_FEATURE_GLOBAL_END}};
  HARFBUZZ(hb_shape)(font, buffer, off, isPlainScript ? 2 : 0);
  const double em = HARFBUZZ(hb_face_get_upem)(face);
  unsigned int count = 0;
  const hb_glyph_info_t* const infos = HARFBUZZ(hb_buffer_get_glyph_infos)(buffer, &count);
  const hb_glyph_position_t* const places = HARFBUZZ(hb_buffer_get_glyph_positions)(buffer, &count);
  platform::ShapedText shaped;
  for (unsigned int i = 0; i < count; ++i) {
    shaped.glyphs.push_back({infos[i].codepoint, infos[i].cluster,
                             shaped.advance + places[i].x_offset / em, places[i].y_offset / em});
    shaped.advance += places[i].x_advance / em;
  }
  HARFBUZZ(hb_buffer_destroy)(buffer);
  HARFBUZZ(hb_font_destroy)(font);
  HARFBUZZ(hb_face_destroy)(face);
  HARFBUZZ(hb_blob_destroy)(blob);
  return shaped;
}

TEST(TextOracle, wordsAreShapedAsByHarfBuzz) {
  const wchar_t* const sans = L"DejaVu Sans";
  const wchar_t* const deva = L"Lohit Devanagari";
  struct Row {
    const wchar_t* family;
    const char* text;
    bool isPlainScript = false;
  };
  const Row rows[] = {
      {sans, "القاهرة"},
      {sans, "الرياض"},
      {sans, "بغداد"},
      {sans, "طهران"},
      {sans, "كراچی"},
      {sans, "السَّلَامُ"},
      {sans, "لا إله"},
      {sans, "مكة المكرمة"},
      {sans, "دمشق!"},
      {sans, "ירושלים"},
      {sans, "תל אביב"},
      {sans, "שָׁלוֹם"},
      {sans, "חיפה־נתב"},
      {deva, "दिल्ली"},
      {deva, "मुंबई"},
      {deva, "काठमाण्डू"},
      {deva, "कि"},
      {deva, "की"},
      {deva, "क्षत्रिय"},
      {deva, "ज्ञान"},
      {deva, "श्रीनगर"},
      {deva, "राष्ट्र"},
      {deva, "हिन्दी भाषा"},
      {deva, "र्क"},
      {deva, "क्‍ष"},
      {deva, "द्ध्र्य"},
      {sans, "e\u0301", true},
      {sans, "o\u0302\u0323", true},
      {sans, "и\u0306", true},
  };
  for (const Row& row : rows) {
    GString text = GString::FromUtf8(row.text);
    const TextLayout layout = LayoutText(text, Named(row.family));
    ASSERT_EQ(1u, layout.runs.size()) << row.text;
    const TextRun& run = layout.runs[0];
    const auto& face = dynamic_cast<const CTrueTypeFaceInfo&>(*run.face);
    const platform::ShapedText expected =
        ShapeDirectly(face.GetDescription().file.ToUtf8(), text, row.isPlainScript);
    ASSERT_EQ(expected.glyphs.size(), run.glyphs.size()) << row.text;
    for (std::size_t i = 0; i < run.glyphs.size(); ++i) {
      EXPECT_EQ(expected.glyphs[i].glyph, run.glyphs[i].glyph) << row.text << i;
      EXPECT_EQ(expected.glyphs[i].begin, run.glyphs[i].begin) << row.text << i;
      EXPECT_NEAR(expected.glyphs[i].x, run.glyphs[i].x, 1e-12) << row.text << i;
      EXPECT_NEAR(expected.glyphs[i].y, run.glyphs[i].y, 1e-12) << row.text << i;
    }
    EXPECT_NEAR(expected.advance, layout.advance, 1e-12) << row.text;
  }
}

/// The places of the characters of a line from left to right, by FriBidi alone.
std::vector<std::size_t> OrderDirectly(const std::wstring& text, bool isRightToLeft) {
  const auto length = static_cast<FriBidiStrIndex>(text.size());
  const auto* const units = reinterpret_cast<const FriBidiChar*>(text.data());
  std::vector<FriBidiCharType> types(text.size());
  std::vector<FriBidiBracketType> brackets(text.size());
  std::vector<FriBidiLevel> levels(text.size());
  std::vector<FriBidiStrIndex> map(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) map[i] = static_cast<FriBidiStrIndex>(i);
  FriBidiParType direction = isRightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
  BIDI(fribidi_get_bidi_types)(units, length, types.data());
  BIDI(fribidi_get_bracket_types)(units, length, types.data(), brackets.data());
  BIDI(fribidi_get_par_embedding_levels_ex)
  (types.data(), brackets.data(), length, &direction, levels.data());
  BIDI(fribidi_reorder_line)
  (0, types.data(), length, 0, direction, levels.data(), nullptr, map.data());
  return std::vector<std::size_t>(map.begin(), map.end());
}

bool IsDirectional(wchar_t c) {
  return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F;
}

TEST(TextOracle, linesAreOrderedAsByFriBidi) {
  const std::wstring alphabet =
      L"abAB 12+-.,%$()[]<>!\x5D0\x5D1\x5D2\x5D3 \x5DE\x660\x661 "
      L"\x202A\x202B\x202C\x202D\x202E\x2066\x2067\x2068\x2069\x200E\x200F";
  std::mt19937 random(9);
  for (int trial = 0; trial < 3000; ++trial) {
    std::wstring text;
    // Half of the lines without directional marks, some with many.
    const std::size_t letters = trial % 2 == 0 ? alphabet.size() - 11 : alphabet.size();
    for (std::size_t left = 1 + random() % 30; left > 0; --left)
      text += alphabet[random() % letters];
    const bool isRightToLeft = random() % 2 == 0;
    const TextLayout layout =
        LayoutText(text, Named(L"DejaVu Sans"),
                   isRightToLeft ? TextDirection::RightToLeft : TextDirection::LeftToRight);
    std::vector<std::size_t> seen, expected;
    for (const TextRun& run : layout.runs) {
      for (const PlacedGlyph& glyph : run.glyphs) {
        // A letter behind a mark of format that is not shown begins with it.
        std::size_t place = glyph.begin;
        while (IsDirectional(text[place])) ++place;
        seen.push_back(place);
      }
    }
    for (const std::size_t place : OrderDirectly(text, isRightToLeft)) {
      if (!IsDirectional(text[place])) expected.push_back(place);
    }
    ASSERT_EQ(expected, seen) << trial << " " << GString(text).ToUtf8();
  }
}

/// Ends a program that finds neither HarfBuzz nor FriBidi: 0 when text is turned around but not
/// joined.
[[noreturn]] void LayOutWithoutLibraries() {
  const TextFace sans = Named(L"DejaVu Sans");
  const std::wstring text = L"ab \x5D0\x5D1 \x5D2, 7 \x628\x64E.";
  const TextLayout layout = LayoutText(text, sans);
  std::wstring seen;
  for (const TextRun& run : layout.runs) {
    for (const PlacedGlyph& glyph : run.glyphs) seen += text[glyph.begin];
  }
  const bool isRight =
      seen == L"ab \x64E\x628 7 ,\x5D2 \x5D1\x5D0." && layout.advance == MeasureText(text, sans);
  std::exit(isRight ? 0 : 1);
}

TEST(TextWithoutLibraries, textIsDrawnLetterByLetter) {
  const test::TemporaryFolder folder;
  for (const wchar_t* const file : {L"libharfbuzz.so.0", L"libfribidi.so.0"}) {
    test::WriteBytes(folder.Path(file), "this is no library");
  }
  // The statement runs in a new process, whose loader looks there first.
  constexpr const char* VARIABLE = "LD_LIBRARY_PATH";
  const char* const before = std::getenv(VARIABLE);
  const std::string kept = before != nullptr ? before : "";
  setenv(VARIABLE, folder.Path(L"").ToUtf8().c_str(), 1);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(LayOutWithoutLibraries(), testing::ExitedWithCode(0), "");
  before != nullptr ? setenv(VARIABLE, kept.c_str(), 1) : unsetenv(VARIABLE);
}

}  // namespace
}  // namespace shr
