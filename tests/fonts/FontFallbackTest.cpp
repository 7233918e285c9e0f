// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what the system says a font has against the font itself; ranges in order; the order of
// fonts has each once and is the same each time.

#include "shared/platform/FontFallback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace shr::platform {
namespace {

/// The regular font of that family.
FontDescription Installed(const FontList& list, std::wstring_view family) {
  for (const FontDescription& font : list.fonts) {
    if (font.family == family && font.weight == 400 && font.italic == 0) return font;
  }
  throw std::runtime_error("install the fonts of tools/setup.sh test");
}

TEST(FontFallback, coverageIsWhatTheFontHas) {
  const FontList list = ListFonts();
  for (const wchar_t* const family : {L"DejaVu Sans", L"Lohit Devanagari", L"Symbola"}) {
    const FontDescription description = Installed(list, family);
    const std::vector<CharacterRange> ranges = ReadCoverage(description);
    ASSERT_FALSE(ranges.empty());
    for (std::size_t i = 1; i < ranges.size(); ++i) {
      ASSERT_LT(ranges[i - 1].last, ranges[i].first) << "ranges overlap";
    }
    const std::unique_ptr<Font> font = OpenFont(description);
    std::size_t covered = 0;
    // What the system leaves out are controls and the like; what it names the font must have.
    for (const CharacterRange& range : ranges) {
      ASSERT_LE(range.first, range.last);
      for (char32_t c = range.first; c <= range.last; c += 7) {
        ASSERT_NE(MISSING_GLYPH, font->GetGlyph(c)) << static_cast<unsigned>(c);
      }
      covered += range.last - range.first + 1;
    }
    std::size_t had = 0;
    for (char32_t c = 0x21; c < 0x20000; ++c) had += font->GetGlyph(c) != MISSING_GLYPH;
    EXPECT_NEAR(static_cast<double>(had), static_cast<double>(covered),
                20 + 0.02 * static_cast<double>(had));
  }
}

TEST(FontFallback, theOrderHasEveryFontOnce) {
  const FontList list = ListFonts();
  std::vector<const FontDescription*> fonts;
  for (const FontDescription& font : list.fonts) fonts.push_back(&font);
  const FontDescription wanted = Installed(list, L"Lohit Devanagari");
  const std::vector<std::size_t> order = RankFonts(wanted, fonts);
  EXPECT_EQ(order, RankFonts(wanted, fonts));
  std::vector<std::size_t> sorted = order, all(fonts.size());
  std::sort(sorted.begin(), sorted.end());
  std::iota(all.begin(), all.end(), std::size_t{0});
  EXPECT_EQ(all, sorted);
  EXPECT_TRUE(RankFonts(wanted, {}).empty());
}

}  // namespace
}  // namespace shr::platform
