// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// One table each for what is read, listed and written, run against the system's own functions on
// Windows and against the library's elsewhere: blanks, quotation marks, comments, headers, names
// that occur twice, line ends, encodings, zero units, files of garbage. Then limits of lengths,
// numbers, failures, and writers on several threads.

#include "shared/files/ConfigFile.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "shared/files/File.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using namespace std::string_literals;

/// Returns text in Latin-1 as UTF-16LE without a mark.
std::string Utf16(std::string_view text) {
  std::string bytes;
  for (const char c : text) (bytes += c) += '\0';
  return bytes;
}

const std::string UTF16_MARK = "\xFF\xFE";
const std::string UTF16_SWAPPED_MARK = "\xFE\xFF";
const std::string UTF8_MARK = "\xEF\xBB\xBF";

struct ReadRow {
  const char* name;
  std::string file;
  const wchar_t* section;
  const wchar_t* key;
  const wchar_t* value;  ///< empty when nothing is found
};

const ReadRow READ_ROWS[] = {
    {"plain", "[s]\r\nk=v\r\n", L"s", L"k", L"v"},
    {"no last line end", "[s]\r\nk=v", L"s", L"k", L"v"},
    {"line feeds", "[s]\na=1\nk=v\n", L"s", L"k", L"v"},
    {"carriage returns", "[s]\ra=1\rk=v\r", L"s", L"k", L"v"},
    {"doubled carriage returns", "[s]\r\r\nk=v\r\r\n", L"s", L"k", L"v"},
    {"blanks around", "  [ s ]  \r\n \t k \t = \v v w \f\r\n", L"s", L"k", L"v w"},
    {"other spaces stay", "[s]\r\nk=\xA0v\xA0\r\n", L"s", L"k", L"\u00A0v\u00A0"},
    {"blanks around the names asked for", "[s]\r\nk=v\r\n", L" s\t", L"\tk ", L"v"},
    {"other case", "[Sec]\r\nKey=v\r\n", L"sEC", L"kEY", L"v"},
    {"first equals sign splits", "[s]\r\nk=a=b\r\n", L"s", L"k", L"a=b"},
    {"empty value", "[s]\r\nk=  \r\n", L"s", L"k", L""},
    {"double quotation marks", "[s]\r\nk=\" v \"\r\n", L"s", L"k", L" v "},
    {"single quotation marks", "[s]\r\nk=' v '\r\n", L"s", L"k", L" v "},
    {"one pair only", "[s]\r\nk=\"\"v\"\"\r\n", L"s", L"k", L"\"v\""},
    {"marks within marks", "[s]\r\nk=\"a\"b\"\r\n", L"s", L"k", L"a\"b"},
    {"unequal marks", "[s]\r\nk=\"v'\r\n", L"s", L"k", L"\"v'"},
    {"mark at the front", "[s]\r\nk=\"v\r\n", L"s", L"k", L"\"v"},
    {"lone mark", "[s]\r\nk=\"\r\n", L"s", L"k", L"\""},
    {"empty marks", "[s]\r\nk=\"\"\r\n", L"s", L"k", L""},
    {"marked key", "[s]\r\n\"k\"=v\r\n", L"s", L"\"k\"", L"v"},
    {"semicolon in a value", "[s]\r\nk=v ; w\r\n", L"s", L"k", L"v ; w"},
    {"number sign makes no comment", "[s]\r\n#k=v\r\n", L"s", L"#k", L"v"},
    {"behind a comment", "[s]\r\n; k=a\r\nk=v\r\n", L"s", L"k", L"v"},
    {"line without a value", "[s]\r\nk\r\n", L"s", L"k", L""},
    {"line without a value hides an entry", "[s]\r\nk\r\nk=v\r\n", L"s", L"k", L""},
    {"empty key", "[s]\r\n=v\r\n", L"s", L"", L"v"},
    {"first of two entries", "[s]\r\nk=v\r\nK=w\r\n", L"s", L"k", L"v"},
    {"first of two sections", "[s]\r\nk=v\r\n[t]\r\n[S]\r\nk=w\r\n", L"s", L"k", L"v"},
    {"second section is not searched", "[s]\r\n[t]\r\n[s]\r\nk=w\r\n", L"s", L"k", L""},
    {"before the first header", "k=v\r\n[s]\r\nk=w\r\n", L"", L"k", L"v"},
    {"header without a name", "[]\r\nk=v\r\n", L"", L"k", L""},
    {"header without an end", "[s]\r\n[t\r\nk=v\r\n", L"t", L"k", L""},
    {"header without an end is a line", "[s]\r\n[t\r\nk=v\r\n", L"s", L"k", L"v"},
    {"header with an entry's sign", "[s]\r\n[t=1\r\nk=v\r\n", L"s", L"[t", L"1"},
    {"text behind a header", "[s] ; x\r\nk=v\r\n", L"s", L"k", L"v"},
    {"last bracket ends a header", "[a]b]\r\nk=v\r\n", L"a]b", L"k", L"v"},
    {"zero byte ends a value", "[s]\r\nk=v\0w\r\nl=1\r\n"s, L"s", L"k", L"v"},
    {"line behind a zero byte", "[s]\r\nk=v\0w\r\nl=1\r\n"s, L"s", L"l", L"1"},
    {"zero byte ends a key", "[s]\r\n\0\0k=v\r\n"s, L"s", L"", L"v"},
    {"end-of-file character", "[s]\r\nk=a\x1A\r\nl=v\r\n", L"s", L"l", L"v"},
    {"ANSI", "[s]\r\nk=\x80\xE9\r\n", L"s", L"k", L"\u20AC\u00E9"},
    {"UTF-8 without a mark is ANSI", "[s]\r\nk=\xC3\xA9\r\n", L"s", L"k", L"\u00C3\u00A9"},
    {"UTF-8", UTF8_MARK + "[s]\r\nk=\xD0\x96\r\n", L"s", L"k", L"\u0416"},
    {"bad UTF-8", UTF8_MARK + "[s]\r\nk=\xD0\xFF\r\nl=v\r\n", L"s", L"l", L"v"},
    {"UTF-16", UTF16_MARK + Utf16("[s]\r\nk=") + "\x16\x04\r\0\n\0"s, L"s", L"k", L"\u0416"},
    {"UTF-16 swapped", UTF16_SWAPPED_MARK + "\0[\0s\0]\0\r\0\n\0k\0=\x04\x16"s, L"s", L"k",
     L"\u0416"},
    {"half a unit at the end", UTF16_MARK + Utf16("[s]\r\nk=v\r\n") + "x", L"s", L"k", L"v"},
    {"UTF-16 line separator stays", UTF16_MARK + Utf16("[s]\r\nk=a") + "\x28\x20", L"s", L"k",
     L"a\u2028"},
    {"UTF-16 without a mark", Utf16("[s]\r\nk=v\r\n"), L"s", L"k", L""},
    {"mark alone", UTF16_MARK, L"s", L"k", L""},
    {"empty file", "", L"s", L"k", L""},
    {"garbage",
     std::string("\x7F"
                 "ELF\x02\x01\x01\0\0\xFF\xFE\r[\n]==\0[",
                 17),
     L"s", L"k", L""},
};

TEST(ConfigFile, readsWhatTheSystemReads) {
  const test::TemporaryFolder folder;
  int number = 0;
  for (const ReadRow& row : READ_ROWS) {
    // A file of its own, so that no row sees what is remembered of another.
    const CConfigFile file(folder.Path(std::to_wstring(++number) + L".ini"));
    test::WriteBytes(file.GetFileName(), row.file);
    GString value = L"before";
    EXPECT_EQ(file.Read(row.section, row.key, value), *row.value != 0) << row.name;
    EXPECT_EQ(value, row.value) << row.name;
  }
}

struct ListRow {
  const char* name;
  std::string file;
  const wchar_t* section;
  std::vector<GString> lines;
};

const ListRow LIST_ROWS[] = {
    {"order and duplicates", "[s]\r\nb=1\r\na=2\r\nb=3\r\n", L"s", {L"b=1", L"a=2", L"b=3"}},
    {"blanks", "[s]\r\n\r\n  a = 1 2 \r\n \t\r\n", L"s", {L"a=1 2"}},
    {"quotation marks stay", "[s]\r\na=\" 1 \"\r\n", L"s", {L"a=\" 1 \""}},
    {"comments", "[s]\r\n;a=1\r\n ;b\r\n#c=3\r\n", L"s", {L"#c=3"}},
    {"lines without a value", "[s]\r\na\r\n b c \r\n[d\r\n", L"s", {L"a", L"b c", L"[d"}},
    {"empty keys and values", "[s]\r\n=1\r\na=\r\n", L"s", {L"=1", L"a="}},
    {"zero bytes", "[s]\r\n\0a\r\n\0b=1\r\nc=2\0d\r\n"s, L"s", {L"=1", L"c=2"}},
    {"first section only", "[s]\r\na=1\r\n[t]\r\nb=2\r\n[s]\r\nc=3\r\n", L"S", {L"a=1"}},
    {"before the first header", "a=1\r\n[s]\r\nb=2\r\n", L"", {L"a=1"}},
    {"missing section", "[s]\r\na=1\r\n", L"t", {}},
};

TEST(ConfigFile, listsWhatTheSystemLists) {
  const test::TemporaryFolder folder;
  int number = 0;
  for (const ListRow& row : LIST_ROWS) {
    const CConfigFile file(folder.Path(std::to_wstring(++number) + L".ini"));
    test::WriteBytes(file.GetFileName(), row.file);
    std::vector<GString> lines = {L"kept"};
    EXPECT_TRUE(file.ReadSection(row.section, lines)) << row.name;
    std::vector<GString> expected = row.lines;
    expected.insert(expected.begin(), L"kept");
    EXPECT_EQ(lines, expected) << row.name;
  }
}

using Change = void (*)(const CConfigFile& file);

struct WriteRow {
  const char* name;
  std::string before;
  Change change;
  std::string after;
};

// The files are in the form in which every target leaves lines that are not concerned.
const WriteRow WRITE_ROWS[] = {
    {"empty file", "", [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); }, "[s]\r\nk=v\r\n"},
    {"new entry behind the last line", "[s]\r\na=1\r\n;c\r\n[t]\r\nb=2\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); },
     "[s]\r\na=1\r\n;c\r\nk=v\r\n[t]\r\nb=2\r\n"},
    {"new section at the end", "[s]\r\na=1\r\n",
     [](const CConfigFile& f) { f.Write(L"t", L"k", L"v"); }, "[s]\r\na=1\r\n[t]\r\nk=v\r\n"},
    {"missing last line end", "[s]\r\na=1", [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); },
     "[s]\r\na=1\r\nk=v\r\n"},
    {"replacing the last line without its end", "[s]\r\nk=1",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); }, "[s]\r\nk=v\r\n"},
    {"spelling stays", "[Sec]\r\nKey=1\r\n",
     [](const CConfigFile& f) { f.Write(L"sEC", L"kEY", L"v"); }, "[Sec]\r\nKey=v\r\n"},
    {"first of two", "[s]\r\nk=1\r\nk=2\r\n[s]\r\nk=3\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); },
     "[s]\r\nk=v\r\nk=2\r\n[s]\r\nk=3\r\n"},
    {"blanks before a new key and value", "[s]\r\n",
     [](const CConfigFile& f) { f.Write(L" s", L" k", L" \tv"); }, "[s]\r\nk=v\r\n"},
    {"quotation marks", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", L"\" v \""); },
     "[s]\r\nk=\" v \"\r\n"},
    {"empty value", "[s]\r\nk=1\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", L""); },
     "[s]\r\nk=\r\n"},
    {"line without a value gets one", "[s]\r\nk\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); }, "[s]\r\nk=v\r\n"},
    {"key with the entry's sign", "[s]\r\na=b=7\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"a=b", L"v"); }, "[s]\r\na=b=7\r\na=b=v\r\n"},
    {"section with a bracket", "", [](const CConfigFile& f) { f.Write(L"a]b", L"k", L"v"); },
     "[a]b]\r\nk=v\r\n"},
    {"before the first header", "a=1\r\n[s]\r\n",
     [](const CConfigFile& f) { f.Write(L"", L"k", L"v"); }, "a=1\r\nk=v\r\n[s]\r\n"},
    {"before the first header of all", "[s]\r\n",
     [](const CConfigFile& f) { f.Write(L"", L"k", L"v"); }, "k=v\r\n[s]\r\n"},
    {"behind a header without an end", "[s\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); }, "[s\r\n[s]\r\nk=v\r\n"},
    {"two lines", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", L"v\r\nl=w"); },
     "[s]\r\nk=v\r\nl=w\r\n"},
    {"ANSI", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"\u00E9", L"\u20AC"); },
     "[s]\r\n\xE9=\x80\r\n"},
    {"a value beyond ANSI makes the file UTF-16", "; c\r\n[s]\r\na=\x80\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"\u6771\u4EAC"); },
     UTF16_MARK + Utf16("; c\r\n[s]\r\na=") + "\xAC\x20\r\0\n\0k\0=\0\x71\x67\xAC\x4E\r\0\n\0"s},
    {"and all other lines stay", "\n[ s ] ; x\n\n  a = 1\nk\n[t]",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"\u0416"); },
     UTF16_MARK + Utf16("\n[ s ] ; x\n\n  a = 1\nk=") + "\x16\x04" + Utf16("\n[t]")},
    {"a likeness is not enough", "[s]\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"\uFF21"); },
     UTF16_MARK + Utf16("[s]\r\nk=") + "\x21\xFF\r\0\n\0"s},
    {"a character of two units", "",
     [](const CConfigFile& f) { f.Write(L"s", L"k", L"\U0001F600"); },
     UTF16_MARK + Utf16("[s]\r\nk=") + "\x3D\xD8\x00\xDE\r\0\n\0"s},
    {"a key beyond ANSI", "", [](const CConfigFile& f) { f.Write(L"s", L"\u0416", 1); },
     UTF16_MARK + Utf16("[s]\r\n") + "\x16\x04" + Utf16("=1\r\n")},
    {"a section beyond ANSI", "[s]\r\n",
     [](const CConfigFile& f) { f.WriteSection(L"\u0416", {L"k=\u00E9"}); },
     UTF16_MARK + Utf16("[s]\r\n[") + "\x16\x04" + Utf16("]\r\nk=\xE9\r\n")},
    {"what is removed needs no room", "[s]\r\n",
     [](const CConfigFile& f) {
       f.RemoveEntry(L"s", L"\u0416");
       f.RemoveSection(L"\u0416");
     },
     "[s]\r\n"},
    {"blanks around section names", "[s]\r\n",
     [](const CConfigFile& f) {
       f.Write(L" t\t", L"\v k ", L" v ");
       f.WriteSection(L" u ", {L"a=1"});
       f.RemoveSection(L"\f s ");
       f.Write(L"t ", L"l\t", L"w");
       f.RemoveEntry(L" t", L" l");
     },
     "[t]\r\nk=v\r\n[u]\r\na=1\r\n"},
    {"narrow text", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", "\xE9"); },
     "[s]\r\nk=\xE9\r\n"},
    {"UTF-8", UTF8_MARK + "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", L"\u0416"); },
     UTF8_MARK + "[s]\r\nk=\xD0\x96\r\n"},
    {"UTF-16 mark alone", UTF16_MARK, [](const CConfigFile& f) { f.Write(L"", L"k", L"\u0416"); },
     UTF16_MARK + Utf16("k=") + "\x16\x04\r\0\n\0"s},
    {"UTF-16 swapped", UTF16_SWAPPED_MARK,
     [](const CConfigFile& f) { f.Write(L"", L"k", L"\u0416"); },
     UTF16_SWAPPED_MARK + "\0k\0=\x04\x16\0\r\0\n"s},
    {"int", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", -7); }, "[s]\r\nk=-7\r\n"},
    {"unsigned", "[s]\r\n",
     [](const CConfigFile& f) { f.Write(L"s", L"k", std::numeric_limits<std::uint64_t>::max()); },
     "[s]\r\nk=18446744073709551615\r\n"},
    {"tenth", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", 0.1); },
     "[s]\r\nk=0.1\r\n"},
    {"third", "[s]\r\n", [](const CConfigFile& f) { f.Write(L"s", L"k", 1.0 / 3); },
     "[s]\r\nk=0.33333333333333\r\n"},
    {"remove an entry", "[s]\r\nk=1\r\nk=2\r\n;c\r\n",
     [](const CConfigFile& f) { f.RemoveEntry(L"S", L"K"); }, "[s]\r\nk=2\r\n;c\r\n"},
    {"remove a line without a value", "[s]\r\nk\r\nl\r\n",
     [](const CConfigFile& f) { f.RemoveEntry(L"s", L"k"); }, "[s]\r\nl\r\n"},
    {"remove nothing", "[s]\r\nk=1\r\n",
     [](const CConfigFile& f) {
       f.RemoveEntry(L"s", L"a");
       f.RemoveEntry(L"t", L"k");
       f.RemoveSection(L"t");
     },
     "[s]\r\nk=1\r\n"},
    {"remove a section", "[s]\r\nk=1\r\n;c\r\n[t]\r\nl=2\r\n[s]\r\nm=3\r\n",
     [](const CConfigFile& f) { f.RemoveSection(L"s"); }, "[t]\r\nl=2\r\n[s]\r\nm=3\r\n"},
    {"remove what stands before the first header", "a=1\r\n;c\r\n[t]\r\nl=2\r\n",
     [](const CConfigFile& f) { f.RemoveSection(L""); }, "[t]\r\nl=2\r\n"},
    {"replace a section", "[s]\r\nk=1\r\n;c\r\n[t]\r\nl=2\r\n",
     [](const CConfigFile& f) {
       f.WriteSection(L"S", {L"b=1", L"dropped", L" a=\"2\"", L"=", L"b=3"});
     },
     "[s]\r\nb=1\r\na=\"2\"\r\n=\r\nb=3\r\n[t]\r\nl=2\r\n"},
    {"sections of the same name are emptied", "[s]\r\nk=1\r\n[t]\r\n[s]\r\nk=2\r\n",
     [](const CConfigFile& f) { f.WriteSection(L"s", {L"a=1"}); }, "[s]\r\na=1\r\n[t]\r\n[s]\r\n"},
    {"empty a section", "[s]\r\nk=1\r\n[t]\r\n",
     [](const CConfigFile& f) { f.WriteSection(L"s", {}); }, "[s]\r\n[t]\r\n"},
    {"an empty line ends the lines of a section", "[s]\r\nk=1\r\n",
     [](const CConfigFile& f) {
       f.WriteSection(L"s", {L"a=1", L"", L"b=2"});
     },
     "[s]\r\na=1\r\n"},
    {"a new section without lines is not made", "[s]\r\n",
     [](const CConfigFile& f) { f.WriteSection(L"t", {L"dropped"}); }, "[s]\r\n"},
    {"a new section with lines", "[s]\r\n",
     [](const CConfigFile& f) {
       f.WriteSection(L"t", {L"a=1", L"b=2"});
     },
     "[s]\r\n[t]\r\na=1\r\nb=2\r\n"},
};

TEST(ConfigFile, writesWhatTheSystemWrites) {
  const test::TemporaryFolder folder;
  int number = 0;
  for (const WriteRow& row : WRITE_ROWS) {
    const CConfigFile file(folder.Path(std::to_wstring(++number) + L".ini"));
    test::WriteBytes(file.GetFileName(), row.before);
    EXPECT_EQ(test::Failure([&] { row.change(file); }), L"(nothing)") << row.name;
    EXPECT_EQ(test::ReadBytes(file.GetFileName()), row.after) << row.name;
  }
  EXPECT_EQ(folder.Names().size(), std::size(WRITE_ROWS)) << "nothing else remains";
}

class ConfigFileTest : public testing::Test {
protected:
  test::TemporaryFolder folder;
  CConfigFile file{folder.Path(L"settings.ini")};
};

TEST_F(ConfigFileTest, aMissingFileIsEmptyUntilItIsWritten) {
  GString value;
  EXPECT_FALSE(file.Read(L"s", L"k", value));
  file.RemoveEntry(L"s", L"k");
  file.RemoveSection(L"s");
  EXPECT_FALSE(test::Exists(file.GetFileName()));
  file.Write(L"s", L"k", L"v");
  EXPECT_TRUE(file.Read(L"s", L"k", value));
  EXPECT_EQ(test::ReadBytes(file.GetFileName()), "[s]\r\nk=v\r\n");
}

TEST_F(ConfigFileTest, textBeyondAnsiIsReadAsItWasWritten) {
  GString value;
  file.Write(L"s", L"k", L"\u6771\u4EAC");
  EXPECT_EQ(test::ReadBytes(file.GetFileName()),
            UTF16_MARK + Utf16("[s]\r\nk=") + "\x71\x67\xAC\x4E\r\0\n\0"s);
  EXPECT_TRUE(file.Read(L"s", L"k", value));
  EXPECT_EQ(value, L"\u6771\u4EAC");
  file.Write(L" s ", L"l", L"\u0416");
  EXPECT_TRUE(file.Read(L"s\t", L"l ", value));
  EXPECT_EQ(value, L"\u0416");
  EXPECT_EQ(folder.Names().size(), 1u);
}

TEST_F(ConfigFileTest, valuesAreReadUpToTheirLongestLength) {
  GString value;
  file.Write(L"s", L"k", std::wstring(1022, L'x'));
  EXPECT_TRUE(file.Read(L"s", L"k", value));
  EXPECT_EQ(value.size(), 1022u);
  for (const std::size_t length : {std::size_t{1023}, std::size_t{1} << 20}) {
    file.Write(L"s", L"k", std::wstring(length, L'x'));
    EXPECT_EQ(test::Failure([&] { file.Read(L"s", L"k", value); }), L"[ConfigFile]") << length;
    EXPECT_EQ(test::ReadBytes(file.GetFileName()).size(), length + 9) << "all of it is kept";
  }
}

TEST_F(ConfigFileTest, sectionsOfAnySizeAreReadWhole) {
  // Sizes around those of the buffers of 8,192 units and more; a line takes 8 of them.
  for (const int count : {1022, 1023, 1024, 1025, 2047, 2048, 20'000}) {
    std::vector<GString> lines;
    for (int i = 0; i < count; ++i) lines.push_back(L"k=" + std::to_wstring(10'000 + i));
    file.WriteSection(L"s", lines);
    std::vector<GString> read;
    file.ReadSection(L"s", read);
    EXPECT_TRUE(read == lines) << count << " lines, read " << read.size();
  }
}

TEST_F(ConfigFileTest, numbersAreReadWhole) {
  struct Row {
    const wchar_t* text;
    bool isInt;
    int asInt;
    bool isUnsigned;
    std::uint64_t asUnsigned;
    bool isDouble;
    double asDouble;
  };
  const Row rows[] = {
      {L"12", true, 12, true, 12, true, 12},
      {L"+3", true, 3, true, 3, true, 3},
      {L"-5", true, -5, false, 0, true, -5},
      {L"2.5", false, 0, false, 0, true, 2.5},
      {L"18446744073709551615", false, 0, true, 18446744073709551615u, true, 18446744073709551615.},
      {L"18446744073709551616", false, 0, false, 0, true, 18446744073709551616.},
      {L"12abc", false, 0, false, 0, false, 0},
      {L"+-3", false, 0, false, 0, false, 0},
      {L"", false, 0, false, 0, false, 0},
  };
  for (const Row& row : rows) {
    file.Write(L"s", L"k", row.text);
    int asInt = 7;
    std::uint64_t asUnsigned = 7;
    double asDouble = 7;
    EXPECT_EQ(file.Read(L"s", L"k", asInt), row.isInt) << GString(row.text);
    EXPECT_EQ(file.Read(L"s", L"k", asUnsigned), row.isUnsigned) << GString(row.text);
    EXPECT_EQ(file.Read(L"s", L"k", asDouble), row.isDouble) << GString(row.text);
    EXPECT_EQ(asInt, row.asInt) << GString(row.text);
    EXPECT_EQ(asUnsigned, row.asUnsigned) << GString(row.text);
    EXPECT_EQ(asDouble, row.asDouble) << GString(row.text);
  }
}

TEST_F(ConfigFileTest, theSameValueWrittenAgainTouchesNothing) {
  file.Write(L"s", L"k", L"v");
  const auto path = test::ToFilesystemPath(file.GetFileName());
  const auto old = std::filesystem::last_write_time(path) - std::chrono::hours(1);
  std::filesystem::last_write_time(path, old);
  file.Write(L"s", L"k", L"v");
  EXPECT_EQ(std::filesystem::last_write_time(path), old);
}

TEST_F(ConfigFileTest, namesWithoutAFullPathAreRefused) {
  EXPECT_EQ(test::Failure([] { const CConfigFile none{GString()}; }), L"[ConfigFile]");
  const GString name(300, L'x');
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { const CConfigFile tooLong(name); }),
                                  L"Unable to open '" + name + L"'."));
  EXPECT_TRUE(CConfigFile(L"relative.ini").GetFileName().size() > 12);
}

TEST_F(ConfigFileTest, refusedWritesNameTheFileAndChangeNothing) {
  const CConfigFile inMissing(folder.Path(L"missing/x.ini"));
  const GString message = L"Unable to write '" + inMissing.GetFileName() + L"'.";
  const Change changes[] = {
      [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); },
      [](const CConfigFile& f) { f.WriteSection(L"s", {L"k=v"}); },
  };
  for (const Change change : changes) {
    EXPECT_TRUE(test::HasSystemText(test::Failure([&] { change(inMissing); }), message));
  }
  EXPECT_FALSE(test::Exists(folder.Path(L"missing")));
  std::filesystem::create_directory(test::ToFilesystemPath(file.GetFileName()));
  GString value;
  EXPECT_FALSE(file.Read(L"s", L"k", value));
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { file.Write(L"s", L"k", L"v"); }),
                                  L"Unable to write '" + file.GetFileName() + L"'."));
}

TEST_F(ConfigFileTest, aFileThatAnotherOpenerKeepsToItselfIsNeitherReadNorWritten) {
  file.Write(L"s", L"k", L"v");
  GString value;
  {
    CFile other(file.GetFileName(), CFile::AccessReadWrite, CFile::ModeOpenExisting,
                CFile::ShareNone);
    EXPECT_FALSE(file.Read(L"s", L"k", value));
    EXPECT_TRUE(test::HasSystemText(test::Failure([&] { file.Write(L"s", L"k", L"w"); }),
                                    L"Unable to write '" + file.GetFileName() + L"'."));
  }
  EXPECT_TRUE(file.Read(L"s", L"k", value));
  EXPECT_EQ(value, L"v");
}

TEST_F(ConfigFileTest, threadsLoseNothing) {
  constexpr int THREADS = 4, VALUES = 8;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([this, thread] {
      const GString section(std::to_wstring(thread));
      for (int i = 0; i < VALUES; ++i) {
        int value = -1;
        file.Write(section, std::to_wstring(i), i);
        EXPECT_TRUE(file.Read(section, std::to_wstring(i), value));
        EXPECT_EQ(value, i);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int thread = 0; thread < THREADS; ++thread) {
    std::vector<GString> lines;
    file.ReadSection(std::to_wstring(thread), lines);
    EXPECT_EQ(lines.size(), static_cast<std::size_t>(VALUES));
  }
}

}  // namespace
}  // namespace shr
