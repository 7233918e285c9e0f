// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes that docs/archive-format.md shows are what is stored, in each version; the
// counts of docs/archives.md are those of its examples, and ours works; files of both versions load
// on every target; files of other formats and versions are refused.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "tests/archive/ArchiveExample.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/archive/SurveyFormat.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::CSurvey;
using test::LoadFrom;
using test::Stored;
using test::ToHex;

std::shared_ptr<CSurvey> Sample() {
  auto survey = std::make_shared<CSurvey>();
  survey->name = L"Br\u00fccke \U0001F309";
  survey->points = {Vec2f(1.0f, -2.5f), Vec2f(0.0f, 1e10f)};
  survey->color = Color4b(10, 20, 30, 40);
  return survey;
}

std::string StoredSample(int version) {
  return Stored([&](Archive& archive) {
    std::shared_ptr<CSurvey> survey = Sample();
    archive.SetVersion(version);
    TransferSurvey(archive, survey);
  });
}

std::string Page(const char* name) {
  return test::ReadBytes(GString(std::string(SHARED_TEST_DATA_DIR "/../../docs/") + name));
}

/// Returns the block of C++ that stands behind a mark.
std::string CodeBehind(const std::string& page, const std::string& mark) {
  const std::string fence = "<!-- " + mark + " -->\n```cpp\n";
  const std::size_t first = page.find(fence) + fence.size();
  return page.substr(first, page.find("```", first) - first);
}

/// Returns the bytes that the page shows behind a mark: the hexadecimal digits in front of each
/// line's bar.
std::string PageBytes(const std::string& mark) {
  const std::string page = Page("archive-format.md");
  const std::size_t begin = page.find("\n", page.find("<!-- bytes: " + mark + " -->") + 1);
  const std::size_t first = page.find('\n', begin + 1);
  const std::size_t end = page.find("```", first);
  std::string digits;
  for (std::size_t line = first + 1; line < end; line = page.find('\n', line) + 1) {
    digits += page.substr(line, page.find_first_of("|\n", line) - line);
  }
  return test::FromHex(digits);
}

TEST(ArchiveFormat, thePageShowsWhatIsStored) {
  EXPECT_EQ(ToHex(PageBytes("survey")), ToHex(StoredSample(2)));
}

TEST(ArchiveFormat, thePageCountsTheCharactersOfItsExamples) {
  const std::string page = Page("archives.md");
  const std::pair<const char*, const char*> rows[] = {
      {"source: tests/archive/ArchiveExample.h#classes", "| this one | "},
      {"not ours: cereal", "| cereal 1.3 | "},
      {"not ours: Boost", "| Boost.Serialization 1.81 | "}};
  for (const auto& [mark, row] : rows) {
    const std::string code = CodeBehind(page, mark);
    const auto count =
        std::count_if(code.begin(), code.end(), [](char ch) { return ch != ' ' && ch != '\n'; });
    EXPECT_NE(std::string::npos, page.find(row + std::to_string(count) + " |")) << mark << count;
  }
}

TEST(ArchiveFormat, theExampleSavesAndLoads) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"map.bin");
  auto circle = std::make_shared<test::Circle>();
  circle->name = L"lake";
  circle->radius = 2.5;
  std::vector<std::shared_ptr<test::Shape>> shapes = {circle, std::make_shared<test::Shape>()};
  test::SaveMap(path, shapes);
  const auto loaded = test::LoadMap(path);
  ASSERT_EQ(2u, loaded.size());
  const auto* const same = dynamic_cast<const test::Circle*>(loaded[0].get());
  ASSERT_NE(nullptr, same);
  EXPECT_EQ(L"lake", same->name);
  EXPECT_EQ(2.5, same->radius);
}

TEST(ArchiveFormat, filesOfAllVersionsAreStoredAndLoaded) {
  for (const int version : {1, 2}) {
    const GString path(std::string(SHARED_TEST_DATA_DIR "/archive/survey-") +
                       std::to_string(version) + ".bin");
    EXPECT_EQ(ToHex(test::ReadBytes(path)), ToHex(StoredSample(version)));
    Archive archive(path, Archive::Load);
    std::shared_ptr<CSurvey> survey;
    TransferSurvey(archive, survey);
    EXPECT_EQ(version, archive.GetVersion());
    archive.Close();
    ASSERT_NE(nullptr, survey);
    EXPECT_EQ(Sample()->name, survey->name);
    EXPECT_EQ(Sample()->points, survey->points);
    EXPECT_EQ(version == 1 ? Color4b::Red : Sample()->color, survey->color);
  }
}

TEST(ArchiveFormat, otherFilesAreRefusedBeforeTheirContentIsRead) {
  for (const char* const hex : {"53 52 56 58 01 00 00 00", "53 52 56 59 03 00 00 00",
                                "53 52 56 59 00 00 00 00", "53 52 56 59 FF FF FF FF"}) {
    std::shared_ptr<CSurvey> survey;
    EXPECT_EQ(L"'' is no survey that this version can read.", test::Failure([&] {
                LoadFrom(test::FromHex(hex),
                         [&](Archive& archive) { TransferSurvey(archive, survey); });
              }));
  }
}

}  // namespace
}  // namespace shr
