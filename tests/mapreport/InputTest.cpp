// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The layers that are read from tables: columns, missing and wrong values.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "examples/mapreport/PointTables.h"
#include "tests/common/Inputs.h"

using namespace mapreport;

TEST(PointTables, eventsMayLackAllButTheirPosition) {
  const InputFile file("LON, Lat ,mag\n10,20,3.5\n-180,90,\n");
  const std::vector<Event> events = ReadEvents(file.Path(), Utf8Format());
  ASSERT_EQ(2u, events.size());
  EXPECT_EQ(Vec2d(10, 20), events[0].position);
  EXPECT_EQ(3.5, events[0].magnitude);
  EXPECT_EQ(std::nullopt, events[1].magnitude);
  EXPECT_EQ(std::nullopt, events[1].depth);
  EXPECT_TRUE(events[1].time.empty());
}

TEST(PointTables, nameTheLineOfAWrongNumber) {
  struct Row {
    const char* name;
    const char* bytes;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"no column", "lat,x\n1,2\n", L"input:1: The column 'longitude' is missing."},
      {"no number", "lat,lon\n1,2\nabc,2\n", L"input:3: 'abc' in column 'lat' is no number."},
      {"number with text", "lat,lon\n1,2x\n", L"input:2: '2x' in column 'lon' is no number."},
      {"not a number", "lat,lon\nnan,2\n", L"input:2: 'nan' in column 'lat' is no number."},
      {"infinite", "lat,lon\n1,inf\n", L"input:2: 'inf' in column 'lon' is no number."},
      {"empty", "lat,lon\n,2\n", L"input:2: The column 'lat' is empty."},
      {"off the globe", "lat,lon\n91,2\n",
       L"input:2: '91' in column 'lat' is not between -90 and 90."},
      {"magnitude", "lat,lon,mag\n1,2,big\n", L"input:2: 'big' in column 'mag' is no number."},
  };
  for (const Row& row : rows) {
    const InputFile file(row.bytes);
    EXPECT_EQ(row.expected, MessageOf(file, [&] { ReadEvents(file.Path(), Utf8Format()); }))
        << row.name;
  }
}

TEST(PointTables, citiesComeByPopulation) {
  const InputFile file(
      "name,lat,lon,population,country\nA,1,1,5,XX\nB,1,1,,XX\nC,1,1,9,XX\nD,1,1,5,XX\n");
  GString order;
  for (const City& city : ReadCities(file.Path(), Utf8Format())) order += city.name;
  EXPECT_EQ(L"CADB", order);
}

TEST(PointTables, creditIsFoundBesideTheFile) {
  const shr::test::TemporaryFolder folder;
  const GString file = folder.Path(L"x.csv");
  EXPECT_TRUE(FindCredit(file).empty());
  shr::test::WriteBytes(folder.Path(L"credits.csv"), "file,credit\ny.csv,Y\nx.csv,\"X, 2026\"\n");
  EXPECT_EQ(L"X, 2026", FindCredit(file));
  EXPECT_TRUE(FindCredit(folder.Path(L"z.csv")).empty());
}

TEST(PointTables, pathsSplitAtBothSlashes) {
  EXPECT_EQ(L"c.txt", FileNameOf(L"a/b\\c.txt"));
  EXPECT_EQ(L"a/b\\", FolderOf(L"a/b\\c.txt"));
  EXPECT_EQ(L"", FolderOf(L"c.txt"));
}
