// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the syntax of a line; files with and without the section; the shipped table, found beside
// the program, against the constants of the same names; searches by color and by name.

#include "shared/color/ColorTable.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "shared/color/Color4b.h"
#include "shared/diagnostics/Exception.h"
#include "shared/files/Path.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

TEST(ParseColorLine, splitsAtTheFirstEqualsSign) {
  const struct {
    const wchar_t* line;
    const wchar_t* name;
    COLORREF color;
  } rows[] = {
      {L"Sky Blue=135 206 235", L"Sky Blue", RGB(135, 206, 235)},
      {L"Teal = 0 128 128", L"Teal", RGB(0, 128, 128)},
      {L"\t \u6771\u4eac \t=1\t2\n3 4", L"\u6771\u4eac", RGB(1, 2, 3)},
      {L"=1 2 3", L"", RGB(1, 2, 3)},
      {L"a=b=1 2 3", L"a", RGB(0, 0, 0)},
      {L"a==1 2 3", L"a", RGB(0, 0, 0)},
      {L"a= ", L"a", RGB(0, 0, 0)},
      {L"one number=7", L"one number", RGB(7, 0, 0)},
      {L"commas=1,2,3", L"commas", RGB(1, 0, 0)},
      {L"run together=1-2+3", L"run together", RGB(1, 254, 3)},
      {L"a sign alone=1 - 2", L"a sign alone", RGB(1, 0, 0)},
      {L"low bits=300 -1 256", L"low bits", RGB(44, 255, 0)},
      {L"any size=18446744073709551617 4294967298 -99999999999999999999999", L"any size",
       RGB(1, 2, 1)},
  };
  for (const auto& row : rows) {
    CColorTableEntry entry;
    const std::string name = GString(row.line).WtoAForDiagnostics();
    ASSERT_TRUE(ParseColorLine(row.line, entry)) << name;
    EXPECT_EQ(entry, CColorTableEntry(row.color, row.name)) << name << entry.Color();
  }
  CColorTableEntry entry(5, L"five");
  for (const wchar_t* line : {L"", L"Teal 0 128 128", L"Teal=", L"="}) {
    EXPECT_FALSE(ParseColorLine(line, entry)) << GString(line).WtoAForDiagnostics();
    EXPECT_EQ(entry, CColorTableEntry(5, L"five"));
  }
}

TEST(ReadColorTable, takesTheLinesOfTheSectionInTheirOrder) {
  const test::TemporaryFolder folder;
  const GString file = folder.Path(L"Colors.ini");
  test::WriteBytes(file,
                   "[Other]\r\nRed=1 1 1\r\n[colors]\r\nB=3 2 1\r\nno value\r\nempty=\r\n"
                   "A=1 2 3\r\nB=9 9 9\r\n[Last]\r\nRed=2 2 2\r\n");
  const std::vector<CColorTableEntry> expected{
      {RGB(3, 2, 1), L"B"}, {RGB(1, 2, 3), L"A"}, {RGB(9, 9, 9), L"B"}};
  EXPECT_EQ(ReadColorTable(file), expected);
  EXPECT_TRUE(ReadColorTable(folder.Path(L"missing.ini")).empty());
  test::WriteBytes(file, "Red=1 1 1\r\n");
  EXPECT_TRUE(ReadColorTable(file).empty());
  EXPECT_THROW(ReadColorTable(GString()), InternalErrorException);
}

TEST(CColorTable, theShippedFileIsFoundAndHoldsTheConstants) {
  const CColorTable& table = CColorTable::Instance();
  EXPECT_EQ(&table, &Singleton<CColorTable>::GetInstance());
  ASSERT_EQ(table.size(), 140u);
  EXPECT_FALSE(table.empty());
  EXPECT_EQ(table.end() - table.begin(), 140);
  EXPECT_EQ(*table.crbegin(), table[139]);
  const struct {
    const wchar_t* name;
    Color4b color;
  } rows[] = {
      {L"Alice Blue", Color4b::AliceBlue},
      {L"firebrick", Color4b::Firebrick},
      {L"GREEN", Color4b::Green},
      {L"Light Goldenrod Yellow", Color4b::LightGoldenrodYellow},
      {L"old lace", Color4b::OldLace},
      {L"Slate Gray", Color4b::SlateGray},
      {L"yellow green", Color4b::YellowGreen},
  };
  for (const auto& row : rows) {
    std::size_t index = 999;
    ASSERT_TRUE(table.IndexFromColor(GString(row.name), index)) << row.color;
    EXPECT_EQ(table[index].Color(), row.color.GetCOLORREF()) << row.color;
    EXPECT_EQ(table[index].Name().ToLower(), GString(row.name).ToLower()) << row.color;
  }
}

TEST(CColorTable, theShippedFileIsCompiledIn) {
  EXPECT_EQ(BuiltInColorTable(), ReadColorTable(LocateFile(L"Colors.ini")));
}

TEST(CColorTable, theFirstEntryOfAColorIsFound) {
  const CColorTable& table = CColorTable::Instance();
  std::size_t index = 999;
  EXPECT_FALSE(table.IndexFromColor(GString(L"Alice  Blue"), index));
  EXPECT_FALSE(table.IndexFromColor(RGB(1, 2, 3), index));
  EXPECT_FALSE(table.IndexFromColor(Color4b::Red.GetCOLORREF() | 0xFF000000u, index));
  EXPECT_EQ(index, 999u);
  ASSERT_TRUE(table.IndexFromColor(Color4b::Cyan.GetCOLORREF(), index));
  EXPECT_EQ(table[index].Name(), L"Aqua") << "Cyan is the same color and comes later";
  EXPECT_TRUE(std::all_of(table.begin(), table.end(), [&table](const CColorTableEntry& entry) {
    std::size_t found = 999;
    return table.IndexFromColor(entry.Name(), found) && table[found] == entry;
  }));
}

}  // namespace
}  // namespace shr
