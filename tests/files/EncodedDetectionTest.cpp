// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What a file is opened as. The grid: contents (none, plain, each encoding with and without mark,
// mark alone, contradictions) x requested encoding x keepEncoding, and the city tables, which hold
// the same rows in twelve encodings.

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "shared/platform/CodePages.h"
#include "shared/platform/TextMode.h"
#include "tests/files/TextFiles.h"

namespace shr {
namespace {

using test::Opening;
using test::ScratchFile;
using test::Utf16Bytes;
using test::Utf8Bytes;

constexpr TextEncoding ENCODINGS[] = {EncodingANSI, EncodingUTF8, EncodingUTF16LE, EncodingUTF16BE};

constexpr auto LITTLE = ByteOrder::LittleEndian;
constexpr auto BIG = ByteOrder::BigEndian;

/// Shorthand for what a file is opened as: encoding and size of the mark.
struct Found {
  TextEncoding encoding;
  std::size_t markSize;
};

constexpr Found A = {EncodingANSI, 0};
constexpr Found U8 = {EncodingUTF8, 0};
constexpr Found U8M = {EncodingUTF8, 3};
constexpr Found LE = {EncodingUTF16LE, 0};
constexpr Found LEM = {EncodingUTF16LE, 2};
constexpr Found BE = {EncodingUTF16BE, 0};
constexpr Found BEM = {EncodingUTF16BE, 2};

struct Row {
  const char* name;
  std::string bytes;
  Found asked[4];  ///< by the encoding asked for
  Found kept[4];   ///< the same with keepEncoding
};

const std::wstring PROSE = L"A line of plain text.\nAnother one.";
const std::wstring CHINESE = L"\x4E2D\x6587\x4E2D\x6587\x4E2D\x6587";

const Row ROWS[] = {
    {"empty", "", {A, LE, LE, BE}, {A, U8, LE, BE}},
    {"ASCII", "plain text", {A, A, A, A}, {A, U8, LE, BE}},
    {"ASCII, odd", "plain texts", {A, A, A, A}, {A, U8, LE, BE}},
    {"one letter", "a", {A, A, A, A}, {A, U8, LE, BE}},
    {"one zero", std::string(1, '\0'), {A, A, LE, BE}, {A, U8, LE, BE}},
    {"one control", "\n", {A, A, LE, BE}, {A, U8, LE, BE}},
    {"UTF-8 without mark", "gr\xC3\xBC\xC3\x9F dich", {A, A, A, A}, {A, U8, LE, BE}},
    {"UTF-8 mark alone",
     "\xEF\xBB\xBF",
     {U8M, U8M, U8M, U8M},
     {A, U8M, {EncodingUTF16LE, 3}, {EncodingUTF16BE, 3}}},
    {"UTF-8 with mark",
     "\xEF\xBB\xBFtext",
     {U8M, U8M, U8M, U8M},
     {A, U8M, {EncodingUTF16LE, 3}, {EncodingUTF16BE, 3}}},
    {"UTF-8 with mark and a zero",
     std::string("\xEF\xBB\xBF"
                 "a\0b",
                 6),
     {U8M, U8M, U8M, U8M},
     {A, U8M, {EncodingUTF16LE, 3}, {EncodingUTF16BE, 3}}},
    {"LE", Utf16Bytes(PROSE, LITTLE), {LE, LE, LE, LE}, {A, U8, LE, BE}},
    {"LE, odd", Utf16Bytes(PROSE, LITTLE) + "x", {A, A, LE, BE}, {A, U8, LE, BE}},
    {"LE with mark",
     Utf16Bytes(L"\xFEFF" + PROSE, LITTLE),
     {LEM, LEM, LEM, LEM},
     {A, {EncodingUTF8, 2}, LEM, {EncodingUTF16BE, 2}}},
    {"LE mark alone",
     "\xFF\xFE",
     {A, A, LEM, LEM},
     {A, {EncodingUTF8, 2}, LEM, {EncodingUTF16BE, 2}}},
    {"LE Chinese", Utf16Bytes(CHINESE, LITTLE), {A, A, A, A}, {A, U8, LE, BE}},
    {"LE Chinese with mark",
     Utf16Bytes(L"\xFEFF" + CHINESE, LITTLE),
     {A, A, LEM, LEM},
     {A, {EncodingUTF8, 2}, LEM, {EncodingUTF16BE, 2}}},
    {"LE Chinese with mark, two lines",
     Utf16Bytes(L"\xFEFF" + CHINESE + L"\n" + CHINESE, LITTLE),
     {LEM, A, LEM, LEM},
     {A, {EncodingUTF8, 2}, LEM, {EncodingUTF16BE, 2}}},
    {"BE", Utf16Bytes(PROSE, BIG), {LE, A, LE, BE}, {A, U8, LE, BE}},
    {"BE with mark",
     Utf16Bytes(L"\xFEFF" + PROSE, BIG),
     {BEM, A, BEM, BEM},
     {A, {EncodingUTF8, 2}, {EncodingUTF16LE, 2}, BEM}},
    {"zeros behind a short text", std::string("abc\0\0", 5), {A, A, LE, BE}, {A, U8, LE, BE}},
    {"zeros", std::string(8, '\0'), {LE, LE, LE, LE}, {A, U8, LE, BE}},
};

void ExpectFound(const ScratchFile& file, const Opening& opening, const Found& expected) {
  const CEncodedBufferedFile opened = test::OpenText(file.Path(), opening);
  EXPECT_EQ(opened.GetEncoding(), expected.encoding);
  EXPECT_EQ(opened.GetMarkSize(), expected.markSize);
  EXPECT_EQ(opened.GetPosition(), static_cast<std::int64_t>(expected.markSize));
}

TEST(EncodedDetection, contentOverrulesTheRequestUnlessKept) {
  for (const Row& row : ROWS) {
    const ScratchFile file(row.bytes);
    for (const TextEncoding asked : ENCODINGS) {
      SCOPED_TRACE(std::string(row.name) + " as " + std::to_string(asked));
      ExpectFound(file, {L"rb", asked, false}, row.asked[asked]);
      ExpectFound(file, {L"rb", asked, true}, row.kept[asked]);
    }
  }
}

TEST(EncodedDetection, onlyTheReadingModesLookAtTheContent) {
  const ScratchFile file(Utf16Bytes(PROSE, LITTLE));
  for (const wchar_t* mode : {L"r", L"r+", L"rt", L"rt+", L"rb", L"rb+"}) {
    SCOPED_TRACE(GString(mode).ToUtf8());
    ExpectFound(file, {mode, EncodingUTF8}, LE);
  }
  for (const wchar_t* mode : {L"r+t", L"r+b"}) {
    SCOPED_TRACE(GString(mode).ToUtf8());
    ExpectFound(file, {mode, EncodingUTF8}, U8);
  }
}

TEST(EncodedDetection, onlyTheFirst512BytesAreLookedAt) {
  ScratchFile file(std::string(512, 'x') + std::string(1, '\0') + "y");
  ExpectFound(file, {L"rb", EncodingANSI}, A);
  file.SetBytes(std::string(510, 'x') + std::string(1, '\0') + "yz");
  ExpectFound(file, {L"rb", EncodingANSI}, LE);
  file.SetBytes(std::string(511, 'x') + std::string(1, '\0') + "yz");
  ExpectFound(file, {L"rb", EncodingANSI}, A);
}

// The city tables.

struct CityFile {
  const char* name;
  const char* folder;
  unsigned codePage;  ///< 0 for UTF
  std::size_t rows;
  /// The encoding it is read in, by the encoding asked for, with the content looked at.
  TextEncoding asked[4];
};

std::vector<CityFile> CityFiles() {
  const char* examples = SHARED_EXAMPLE_DATA_DIR;
  const char* tests = SHARED_TEST_DATA_DIR "/files";
  std::vector<CityFile> files = {
      {"cities-utf8.csv", examples, 0, 3554, {}},
      {"cities-utf8-bom.csv",
       tests,
       0,
       3554,
       {EncodingUTF8, EncodingUTF8, EncodingUTF8, EncodingUTF8}},
      {"cities-utf16le.csv",
       examples,
       0,
       3554,
       {EncodingUTF16LE, EncodingUTF16LE, EncodingUTF16LE, EncodingUTF16LE}},
      {"cities-utf16be.csv",
       tests,
       0,
       3554,
       {EncodingUTF16BE, EncodingANSI, EncodingUTF16BE, EncodingUTF16BE}}};
  const struct {
    const char* name;
    unsigned codePage;
    std::size_t rows;
  } pages[] = {{"cities-cp1252.csv", 1252, 1469}, {"cities-cp1250.csv", 1250, 1655},
               {"cities-cp1251.csv", 1251, 450},  {"cities-cp1253.csv", 1253, 115},
               {"cities-cp1256.csv", 1256, 200},  {"cities-sjis.csv", 932, 251},
               {"cities-gbk.csv", 936, 265},      {"cities-cp949.csv", 949, 79}};
  for (const auto& page : pages) {
    files.push_back({page.name, tests, page.codePage, page.rows, {}});
  }
  return files;
}

GString CityPath(const CityFile& file) {
  return GString((std::filesystem::path(file.folder) / file.name).wstring());
}

/// The request under which a city file is read rightly.
Opening RightOpening(const CityFile& file) {
  if (file.codePage != 0) return {L"rt", EncodingANSI, false, file.codePage};
  return {L"rt", EncodingUTF8, true, 1252};
}

TEST(EncodedDetection, cityFilesAreReadAsWhatTheyAre) {
  for (const CityFile& file : CityFiles()) {
    for (const TextEncoding asked : ENCODINGS) {
      SCOPED_TRACE(std::string(file.name) + " as " + std::to_string(asked));
      const CEncodedBufferedFile opened =
          test::OpenText(CityPath(file), {L"rt", asked, false, file.codePage});
      EXPECT_EQ(opened.GetEncoding(), file.asked[asked]);
    }
  }
}

TEST(EncodedDetection, cityFilesHoldTheSameRows) {
  const std::vector<CityFile> files = CityFiles();
  const std::vector<std::wstring> all = test::ReadLines(CityPath(files[0]), RightOpening(files[0]));
  const std::set<std::wstring> known(all.begin(), all.end());
  for (const CityFile& file : files) {
    SCOPED_TRACE(file.name);
    Opening opening = RightOpening(file);
    if (file.codePage == 0 && file.asked[EncodingUTF16LE] != EncodingANSI) {
      opening = {L"rt", EncodingUTF16LE, false, 1252};
    }
    ASSERT_TRUE(file.codePage == 0 || platform::IsCodePageServed(file.codePage));
    const std::vector<std::wstring> lines = test::ReadLines(CityPath(file), opening);
    ASSERT_EQ(lines.size(), file.rows + 1);
    EXPECT_TRUE(file.rows + 1 != all.size() || lines == all);
    for (const std::wstring& line : lines) {
      ASSERT_TRUE(known.contains(line)) << GString(line).ToUtf8();
    }
  }
}

}  // namespace
}  // namespace shr
