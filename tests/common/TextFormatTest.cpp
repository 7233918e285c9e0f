// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Grid: mark (none, UTF-8, both UTF-16) x content (ASCII, good, damaged, cut off, zeros, nothing) x
// a page named by the caller or not.

#include "examples/common/TextFormat.h"

#include <gtest/gtest.h>

#include <string>

#include "examples/common/TableReader.h"
#include "tests/common/Inputs.h"

using namespace examples;
using namespace std::string_literals;

namespace {

std::string Utf16(const std::string& ascii, bool little) {
  std::string bytes;
  for (const char ch : ascii) bytes += little ? ch + "\0"s : "\0"s + ch;
  return bytes;
}

/// Many characters above ASCII, so that one bad one is damage and not another encoding.
std::string GreekLines() {
  std::string text;
  for (int i = 0; i < 8; ++i) text += "\xCE\xB1\xCE\xB2\n";
  return text;
}

struct Row {
  const char* name;
  std::string bytes;
  const wchar_t* expected;  // the description, or the message of the error
  std::optional<std::uint32_t> codePage = std::nullopt;
};

GString Outcome(const Row& row) {
  const InputFile file(row.bytes);
  GString description;
  const GString message = MessageOf(
      file, [&] { description = DetectTextFormat(file.Path(), row.codePage).Describe(); });
  return message.empty() ? description : message;
}

}  // namespace

TEST(TextFormat, isFoundFromMarkAndContent) {
  const Row rows[] = {
      {"ascii", "a,b\n", L"ASCII"},
      {"utf-8", "a,\xC3\xA9\n", L"UTF-8 without mark"},
      {"utf-8 with mark",
       "\xEF\xBB\xBF"
       "a,b\n",
       L"UTF-8 with mark"},
      {"replacement character in the file", GreekLines() + "\xEF\xBF\xBD\n", L"UTF-8 without mark"},
      {"latin letters of one byte", "caf\xE9,S\xE3o\n", L"code page 1252"},
      {"named page", "\x8A\xBF\x8E\x9A\n", L"code page 932", 932},
      {"named page over utf-8", "a,\xC3\xA9\n", L"code page 1250", 1250},
      {"mark over named page",
       "\xEF\xBB\xBF"
       "a,b\n",
       L"UTF-8 with mark", 932},
      {"utf-16le with mark", "\xFF\xFE" + Utf16("a,b\n", true), L"UTF-16LE with mark"},
      {"utf-16be with mark", "\xFE\xFF" + Utf16("a,b\n", false), L"UTF-16BE with mark"},
      {"utf-16le", Utf16("name,lat,lon\nOslo,59.9,10.7\n", true), L"UTF-16LE without mark"},
      {"utf-16be", Utf16("name,lat,lon\nOslo,59.9,10.7\n", false), L"UTF-16BE without mark"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, Outcome(row)) << row.name;
}

TEST(TextFormat, rejectsWhatIsNoText) {
  const Row rows[] = {
      {"empty", "", L"input:1: The file is empty."},
      {"mark alone", "\xFF\xFE", L"input:1: The file is empty."},
      {"utf-8 mark alone", "\xEF\xBB\xBF", L"input:1: The file is empty."},
      {"zero in ascii", "a,b\nc\0d\n"s,
       L"input:2: The line holds a zero character; this is no text."},
      {"zero in marked utf-16", "\xFF\xFE" + Utf16("a\nb\n\0c"s, true),
       L"input:3: The line holds a zero character; this is no text."},
      {"odd length", "\xFE\xFF" + Utf16("a\nb", false) + "x",
       L"input:2: The UTF-16 text ends inside a character."},
      {"marked utf-8 damaged",
       "\xEF\xBB\xBF"
       "a\nb\xFF\n",
       L"input:2: The text is not UTF-8, although its mark says so."},
      {"marked utf-8 cut off",
       "\xEF\xBB\xBF"
       "a\nb\xCE",
       L"input:2: The text is not UTF-8, although its mark says so."},
      {"utf-8 cut off", GreekLines() + "\xCE",
       L"input:9: The UTF-8 text is damaged or cut off here."},
      {"long line", "a\n" + std::string(LONGEST_LINE + 1, 'x') + "\n",
       L"input:2: The line is longer than 1048576 characters."},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, Outcome(row)) << row.name;
}

TEST(TextFormat, charactersThatLieAcrossReadingBlocksAreWhole) {
  // Three bytes a character: each block of 64 KiB ends at another place inside one.
  std::string bytes;
  while (bytes.size() < 300000) bytes += bytes.size() % 999 == 0 ? "\n" : "\xE4\xB8\xAD";
  EXPECT_EQ(L"UTF-8 without mark", Outcome({"", bytes, L""}));
}

TEST(TextFormat, theSameRowsComeFromEveryEncoding) {
  const std::string utf8 = "name,lat,lon\nOslo,59.9,10.7\n";
  const std::string files[] = {utf8,
                               "\xEF\xBB\xBF" + utf8,
                               "\xFF\xFE" + Utf16(utf8, true),
                               "\xFE\xFF" + Utf16(utf8, false),
                               Utf16(utf8, true),
                               Utf16(utf8, false)};
  for (const std::string& bytes : files) {
    const InputFile file(bytes);
    TableReader table(file.Path(), DetectTextFormat(file.Path(), std::nullopt));
    ASSERT_TRUE(table.NextRow()) << bytes.size();
    EXPECT_EQ(L"Oslo", table.Field(table.Column({L"name"})));
    EXPECT_FALSE(table.NextRow());
  }
}
