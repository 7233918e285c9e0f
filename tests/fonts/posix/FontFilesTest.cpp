// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a machine without fonts; fonts that come and go while the program runs; files cut short
// and with changed bytes; the cache of what files say, cut, changed and in folders that cannot be
// written; stand-ins by Fontconfig's aliases.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "tests/fonts/posix/FontFolder.h"

namespace shr {
namespace {

using test::MONO;
using test::SANS;

class FontFiles : public test::FontFolder {};

TEST_F(FontFiles, withoutFontsTheStrokedFaceServes) {
  EXPECT_TRUE(Families().empty());
  CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
  faces.Refresh();
  EXPECT_EQ(2, faces.GetFaceCount());
  for (const wchar_t* const name : {L"Arial", L"", L"Courier New"}) {
    const int index = faces.Match(name, 700, 1, 0, 0, 63, FACE_TRUE_TYPE);
    EXPECT_EQ(STROKED_TEXT_FACE, faces.GetFaceInfo(index)->GetFaceName());
    EXPECT_GT(faces.GetFaceInfo(index)->CalcEmExtent(L"Depth, m"), 2);
  }
  Install(SANS, "a.ttf");
  faces.Refresh();
  const std::shared_ptr<CFaceInfo> arial = faces.GetFaceInfo(faces.GetDefaultTextFace());
  EXPECT_EQ(L"Arial", arial->GetFaceName());
  EXPECT_TRUE(dynamic_cast<const CTrueTypeFaceInfo&>(*arial).IsStandIn());
}

TEST_F(FontFiles, fontsComeAndGoWhileTheProgramRuns) {
  Install(SANS, "a.ttf");
  EXPECT_EQ((std::vector<GString>{L"DejaVu Sans"}), Families());
  Install(MONO, "b.ttf");
  EXPECT_EQ((std::vector<GString>{L"DejaVu Sans", L"DejaVu Sans Mono"}), Families());
  std::filesystem::remove(test::ToFilesystemPath(FontPath("a.ttf")));
  EXPECT_EQ((std::vector<GString>{L"DejaVu Sans Mono"}), Families());
  // Another font under a name that the cache knows.
  std::filesystem::remove(test::ToFilesystemPath(FontPath("b.ttf")));
  Install(SANS, "b.ttf");
  EXPECT_EQ((std::vector<GString>{L"DejaVu Sans"}), Families());
}

TEST_F(FontFiles, aliasesOfFontconfigStandIn) {
  WriteConfiguration(
      "<alias binding=\"same\"><family>Courier New</family><accept><family>DejaVu "
      "Sans Mono</family></accept></alias>");
  Install(SANS, "a.ttf");
  Install(MONO, "b.ttf");
  platform::ListFonts();
  EXPECT_EQ(L"DejaVu Sans Mono", platform::FindStandIn(L"Courier New", 0));
}

TEST_F(FontFiles, brokenFilesAreLeftOutOrMeasuredWithoutHarm) {
  const std::string whole = test::ReadBytes(GString::FromUtf8(MONO));
  std::mt19937 random(7);
  for (int trial = 0; trial < 12; ++trial) {
    std::string bytes = whole;
    if (trial % 2 == 0) bytes.resize(random() % bytes.size());
    // The head of the file and its tables first, then anywhere.
    const std::size_t range =
        trial % 3 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 600);
    for (int i = 0; i < 40 && range > 0; ++i) bytes[random() % range] = static_cast<char>(random());
    test::WriteBytes(FontPath(std::to_string(trial) + ".ttf"), bytes);
  }
  test::WriteBytes(FontPath("empty.ttf"), "");
  test::WriteBytes(FontPath("text.otf"), "this is no font");
  Install(SANS, "good.ttf");
  const platform::FontList list = platform::ListFonts();
  EXPECT_FALSE(list.fonts.empty());
  for (const platform::FontDescription& font : list.fonts) {
    const CTrueTypeFaceInfo face(font, font.family);
    GlyphVectors vectors;
    GlyphMetrics metrics;
    for (std::uint32_t glyph = 0; glyph < 400; ++glyph) {
      face.GetMetricsOfGlyph(glyph, metrics);
      face.GetVectorsOfGlyph(glyph, vectors);
    }
    face.CalcEmBounds(L"Depth, m");
  }
  // What was found broken is told once.
  EXPECT_TRUE(platform::ListFonts().unreadable.empty());
}

TEST_F(FontFiles, aFontThatVanishesLeavesAFaceWithoutMetrics) {
  Install(SANS, "a.ttf");
  const platform::FontList list = platform::ListFonts();
  ASSERT_EQ(1u, list.fonts.size());
  const CTrueTypeFaceInfo face(list.fonts[0], list.fonts[0].family);
  std::filesystem::remove(test::ToFilesystemPath(FontPath("a.ttf")));
  EXPECT_EQ(0, face.CalcEmExtent(L"abc"));
  EXPECT_ANY_THROW(face.GetOTM());
}

TEST_F(FontFiles, theCacheSurvivesWhateverItHolds) {
  Install(SANS, "a.ttf");
  Install(MONO, "b.ttf");
  const std::vector<GString> expected = Families();
  ASSERT_EQ(2u, expected.size());
  const std::string whole = test::ReadBytes(CacheFile());
  EXPECT_EQ(expected, Families()) << "from the cache";
  for (std::size_t length = 0; length < whole.size(); length += 23) {
    test::WriteBytes(CacheFile(), whole.substr(0, length));
    ASSERT_EQ(expected, Families()) << length;
  }
  std::mt19937 random(3);
  for (int trial = 0; trial < 25; ++trial) {
    std::string bytes = whole;
    // Names alone may be wrong: what a file is called is not checked again.
    const std::size_t place = random() % bytes.find("DejaVu");
    bytes[place] = static_cast<char>(random());
    test::WriteBytes(CacheFile(), bytes);
    ASSERT_EQ(2u, Families().size()) << trial;
  }
  std::filesystem::remove_all(test::ToFilesystemPath(folder_.Path(L"cache")));
  test::WriteBytes(folder_.Path(L"cache"), "a file where the folder should be");
  EXPECT_EQ(expected, Families());
}

}  // namespace
}  // namespace shr
