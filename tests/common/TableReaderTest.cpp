// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Tables: separators, quotes, line ends, wrong rows.

#include "examples/common/TableReader.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/common/Inputs.h"

using namespace examples;

namespace {

/// All fields of all rows, each in brackets, rows between slashes.
GString ReadAll(const GString& path, std::size_t columns) {
  TableReader table(path, Utf8Format());
  GString text;
  while (table.NextRow()) {
    for (std::size_t i = 0; i < columns; ++i) text += L"[" + table.Field(i) + L"]";
    text += L"/";
  }
  return text;
}

}  // namespace

TEST(TableReader, splitsRowsIntoFields) {
  struct Row {
    const char* name;
    const char* bytes;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"plain", "x,y\na,b\n", L"[a][b]/"},
      {"carriage returns", "x,y\r\na,b\r\n", L"[a][b]/"},
      {"no end at the end", "x,y\na,b", L"[a][b]/"},
      {"empty fields", "x,y\n,\n", L"[][]/"},
      {"blanks around plain fields go", "x,y\n a , b\t\n", L"[a][b]/"},
      {"blanks in quotes stay", "x,y\n\" a \",b\n", L"[ a ][b]/"},
      {"separator in quotes", "x,y\n\"a,b\",c\n", L"[a,b][c]/"},
      {"two quotes are one", "x,y\n\"a \"\"b\"\"\",\"\"\"\"\n", L"[a \"b\"][\"]/"},
      {"empty quotes", "x,y\n\"\",\"\"\n", L"[][]/"},
      {"quote inside a plain field", "x,y\na\"b,c\n", L"[a\"b][c]/"},
      {"line end in quotes", "x,y\n\"a\r\nb\",c\nd,e\n", L"[a\nb][c]/[d][e]/"},
      {"blank lines", "x,y\n\na,b\n\n\nc,d\n", L"[a][b]/[c][d]/"},
      {"semicolons", "x;y\na,1;b\n", L"[a,1][b]/"},
      {"tabs", "x\ty\na b\tc\n", L"[a b][c]/"},
      {"non-ascii", "x,y\n\xE4\xB8\x8A,\xCE\x91\n", L"[\x4E0A][\x391]/"},
  };
  for (const Row& row : rows) {
    const InputFile file(row.bytes);
    EXPECT_EQ(row.expected, ReadAll(file.Path(), 2)) << row.name;
  }
}

TEST(TableReader, namesTheLineOfAWrongRow) {
  struct Row {
    const char* name;
    const char* bytes;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"too few", "x,y\na,b\nc\n", L"input:3: 1 fields where the first row has 2."},
      {"too many", "x,y\na,b,c\n", L"input:2: 3 fields where the first row has 2."},
      {"open quotes", "x,y\na,b\n\"c,d\ne,f\n", L"input:3: The quotes of a field are not closed."},
      {"text behind quotes", "x,y\n\"a\"b,c\n",
       L"input:2: Text follows the closing quote of a field."},
      {"after a row of two lines", "x,y\n\"a\nb\",c\nd\n",
       L"input:4: 1 fields where the first row has 2."},
  };
  for (const Row& row : rows) {
    const InputFile file(row.bytes);
    EXPECT_EQ(row.expected, MessageOf(file, [&] { ReadAll(file.Path(), 2); })) << row.name;
  }
}
