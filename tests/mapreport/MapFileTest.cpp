// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapFile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/common/Inputs.h"

using namespace mapreport;

namespace {

const char* const SQUARE = "0, 0\n0, 4\n4, 4\n4, 0\n";
const char* const SMALL_SQUARE = "1, 1\n2, 1\n2, 2\n1, 2\n";

}  // namespace

TEST(MapFile, ringsOfOneNameMakeOneCountry) {
  const InputFile file(std::string("A b, c\touter\t4\n") + SQUARE + "B\touter\t4\n" + SQUARE +
                       "A b, c\thole\t4\n" + SMALL_SQUARE + "A b, c\touter\t4\n" + SMALL_SQUARE);
  const MapContent content = ReadMapFile(file.Path(), Utf8Format());
  ASSERT_EQ(2u, content.countries.size());
  EXPECT_EQ(4u, content.rings);
  EXPECT_EQ(1u, content.holes);
  EXPECT_EQ(16u, content.points);
  // The hole follows a ring of B and is cut out of it, whatever its own name.
  EXPECT_EQ(L"A b, c", content.countries[0].name);
  EXPECT_EQ(2u, content.countries[0].land.GetNumContours());
  EXPECT_EQ(0u, content.countries[0].holes.GetNumContours());
  EXPECT_EQ(1u, content.countries[1].holes.GetNumContours());
  EXPECT_EQ(2u, content.countries[1].rings.counts.size());
}

TEST(MapFile, riversAreLinesInTheirOrder) {
  const InputFile file("\tline\t2\n0, 0\n1, 1\nNile\tline\t3\n0, 0\n1, 1\n0, 0\n");
  const std::vector<River> rivers = ReadRivers(file.Path(), Utf8Format());
  ASSERT_EQ(2u, rivers.size());
  EXPECT_EQ(L"", rivers[0].name);
  EXPECT_EQ(3u, rivers[1].points.size());
  const InputFile ring("A\touter\t3\n0, 0\n1, 1\n1, 0\n");
  EXPECT_EQ(L"input:1: The role 'outer' is not 'line'.",
            MessageOf(ring, [&] { ReadRivers(ring.Path(), Utf8Format()); }));
  const InputFile dot("A\tline\t1\n0, 0\n");
  EXPECT_EQ(L"input:1: A line needs at least 2 points.",
            MessageOf(dot, [&] { ReadRivers(dot.Path(), Utf8Format()); }));
}

TEST(MapFile, namesTheLineOfAWrongRecord) {
  struct Row {
    const char* name;
    std::string bytes;
    const wchar_t* expected;
  };
  const std::string square(SQUARE);
  const Row rows[] = {
      {"no tabs", "A outer 4\n",
       L"input:1: A record header has to be here: name, role and point count between tabs."},
      {"role", "A\tline\t4\n", L"input:1: The role 'line' is neither 'outer' nor 'hole'."},
      {"count", "A\touter\tx4\n", L"input:1: The point count 'x4' is no number."},
      {"negative count", "A\touter\t-4\n", L"input:1: The point count '-4' is no number."},
      {"count beyond 32 bits", "A\touter\t99999999999\n",
       L"input:1: The point count '99999999999' is no number."},
      {"two points", "A\touter\t2\n0, 0\n1, 1\n", L"input:1: A ring needs at least 3 points."},
      {"count too small", "A\touter\t3\n" + square,
       L"input:5: A record header has to be here: name, role and point count between tabs."},
      {"count too large", "A\touter\t5\n" + square + "B\touter\t4\n" + square,
       L"input:6: The record ends early: 5 points announced in line 1 for 'A', but 4 found."},
      {"truncated", "A\touter\t4\n" + square + "B\touter\t4\n0, 0\n1, 1\n",
       L"input:8: The file ends early: 4 points announced in line 6 for 'B', but 2 found."},
      {"huge count", "A\touter\t4294967295\n0, 0\n",
       L"input:2: The file ends early: 4294967295 points announced in line 1 for 'A', but 1 "
       L"found."},
      {"no comma", "A\touter\t4\n0 0\n",
       L"input:2: '0 0' is no point: longitude, comma, latitude."},
      {"no number", "A\touter\t4\n0, 0\n0, abc\n", L"input:3: The latitude 'abc' is no number."},
      {"three numbers", "A\touter\t4\n0, 0, 0\n", L"input:2: The latitude '0, 0' is no number."},
      {"off the globe", "A\touter\t4\n181, 0\n",
       L"input:2: The longitude '181' is not on the globe."},
      {"not a number", "A\touter\t4\n0, nan\n",
       L"input:2: The latitude 'nan' is not on the globe."},
      {"hole first", "A\thole\t4\n" + square, L"input:1: A hole needs an outer ring above it."},
      {"blank lines only", "\n\n", L"input:1: The file holds no record."},
  };
  for (const Row& row : rows) {
    const InputFile file(row.bytes);
    EXPECT_EQ(row.expected, MessageOf(file, [&] { ReadMapFile(file.Path(), Utf8Format()); }))
        << row.name;
  }
}

TEST(MapFile, theCountriesOfTheExampleAreWhole) {
  const GString path(SHARED_EXAMPLE_DATA_DIR "/countries-110m.txt");
  const MapContent content = ReadMapFile(path, DetectTextFormat(path, std::nullopt));
  EXPECT_EQ(177u, content.countries.size());
  EXPECT_EQ(289u, content.rings);
  EXPECT_EQ(1u, content.holes);
  EXPECT_EQ(10365u, content.points);
}
