// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cells of every kind, exact moments against sums in another order, counts of frequent values and
// their bound, separators, broken rows, samples.

#include "examples/datareport/DataTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>

#include "examples/datareport/Relations.h"
#include "tests/common/Inputs.h"

using namespace datareport;
using examples::InputFile;
using examples::MessageOf;
using examples::SilentProgress;

namespace {

DataTable Read(const InputFile& file, Options options = {}) {
  options.input = file.Path();
  SilentProgress silent;
  return ReadTable(options, silent);
}

GString FaultOf(const char* bytes, const Options& options = {}) {
  const InputFile file(bytes);
  return MessageOf(file, [&] { Read(file, options); });
}

}  // namespace

TEST(ReadCell, tellsNumbersTimesTextAndNothing) {
  struct Row {
    const wchar_t* text;
    bool decimalComma;
    CellKind kind;
    double value;
  };
  const Row rows[] = {
      {L"", false, CellKind::Missing, 0},
      {L"NA", false, CellKind::Missing, 0},
      {L"n/a", false, CellKind::Missing, 0},
      {L"NaN", false, CellKind::Missing, 0},
      {L"-", false, CellKind::Missing, 0},
      {L"NAN1", false, CellKind::Text, 0},
      {L"0", false, CellKind::Number, 0},
      {L"-12.5e3", false, CellKind::Number, -12500},
      {L"+.5", false, CellKind::Number, 0.5},
      {L"1e999", false, CellKind::Text, 0},
      {L"inf", false, CellKind::Text, 0},
      {L"1,5", false, CellKind::Text, 0},
      {L"1,5", true, CellKind::Number, 1.5},
      {L"1.234.567,25", true, CellKind::Number, 1234567.25},
      {L"-1.234", true, CellKind::Number, -1234},
      {L"1.23", true, CellKind::Text, 0},
      {L"1.2345", true, CellKind::Text, 0},
      {L"1,2,3", true, CellKind::Text, 0},
      {L".123", true, CellKind::Text, 0},
      {L"2018", false, CellKind::Number, 2018},
      {L"2018-01-31", false, CellKind::Time, 1517356800},
      {L"2018-01-31", true, CellKind::Time, 1517356800},
      {L"12 km", false, CellKind::Text, 0},
      {L"0x10", false, CellKind::Text, 0},
  };
  for (const Row& row : rows) {
    const CellValue cell = ReadCell(row.text, row.decimalComma);
    EXPECT_EQ(row.kind, cell.kind) << row.text;
    const bool hasValue = row.kind == CellKind::Number || row.kind == CellKind::Time;
    if (hasValue) {
      EXPECT_EQ(row.value, cell.value) << row.text;
    }
  }
}

TEST(ExactMoments, holdWhereSumsOfDoublesFail) {
  ExactMoments moments;
  for (const double value : {1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16}) moments.Add(value);
  EXPECT_EQ(1e9 + 10, moments.Mean());
  EXPECT_EQ(30, moments.Variance());
  ExactMoments cancelling;
  for (const double value : {1e300, 1.0, -1e300, 2.0}) cancelling.Add(value);
  EXPECT_EQ(0.75, cancelling.Mean());
  EXPECT_EQ(-1e300, cancelling.Minimum());
  EXPECT_EQ(1e300, cancelling.Maximum());
  ExactMoments one;
  EXPECT_TRUE(std::isnan(one.Mean()));
  one.Add(5);
  EXPECT_EQ(5, one.Mean());
  EXPECT_TRUE(std::isnan(one.Variance()));
  one.Add(5);
  EXPECT_EQ(0, one.Variance());
}

TEST(FrequentValues, areCountedExactlyOrWithinTheirBound) {
  std::mt19937 random(3);
  std::geometric_distribution<int> often(0.001);
  FrequentValues values;
  std::map<std::wstring, std::uint64_t> truth;
  for (int i = 0; i < 100000; ++i) {
    // Frequent ones among very many that come once.
    const std::wstring text =
        i % 2 == 0 ? std::to_wstring(often(random)) : L"once " + std::to_wstring(i);
    values.Add(text);
    ++truth[text];
  }
  EXPECT_GT(values.Error(), 0u);
  EXPECT_LE(values.Different(), 20000u);
  for (const auto& [text, count] : values.Most(100)) {
    EXPECT_LE(count, truth[text]);
    EXPECT_GE(count + values.Error(), truth[text]);
  }
  FrequentValues few;
  for (const wchar_t* const text : {L"b", L"a", L"b", L"c", L"a"}) few.Add(text);
  using Counts = std::vector<std::pair<GString, std::uint64_t>>;
  EXPECT_EQ((Counts{{L"a", 2}, {L"b", 2}}), few.Most(2));
  EXPECT_EQ(0u, few.Error());
}

TEST(DataTable, findsWhatColumnsHold) {
  const InputFile file(
      "a;b;c;d;;a\n1;x;2018-01-31;;5;1\n2;1;2018-02-01;;;2\n3;y;2018-02-02;NA;7;x\n");
  const DataTable table = Read(file);
  ASSERT_EQ(6u, table.columns.size());
  EXPECT_EQ(L';', table.separator);
  EXPECT_EQ(3u, table.rows);
  EXPECT_EQ(ColumnKind::Numbers, table.columns[0].Kind());
  EXPECT_EQ(ColumnKind::Text, table.columns[1].Kind());
  EXPECT_EQ(ColumnKind::Times, table.columns[2].Kind());
  EXPECT_EQ(ColumnKind::Empty, table.columns[3].Kind());
  EXPECT_EQ(L"column 5", table.columns[4].Name());
  EXPECT_EQ(1u, table.columns[4].Missing());
  EXPECT_EQ(L"a (2)", table.columns[5].Name());
  EXPECT_TRUE(std::isnan(table.Sample(4)[1]));
  EXPECT_EQ(0u, table.Find(file.Path(), L"A"));
  EXPECT_EQ(L"input:4: 'x' in column 'a (2)' is no number.",
            MessageOf(file, [&] { table.FindNumbers(file.Path(), L"a (2)"); }));
  EXPECT_EQ(L"input:1: There is no column 'e'.",
            MessageOf(file, [&] { table.Find(file.Path(), L"e"); }));
  EXPECT_EQ(L"input:1: The column 'd' is empty.",
            MessageOf(file, [&] { table.FindNumbers(file.Path(), L"d"); }));
}

TEST(DataTable, sniffsWhatStandsBetweenFields) {
  struct Row {
    const char* name;
    std::vector<GString> lines;
    bool decimalComma;
    wchar_t expected;
  };
  const Row rows[] = {
      {"commas", {L"a,b", L"1,2"}, false, L','},
      {"commas in numbers", {L"a;b", L"1,5;2,5", L"1;2"}, false, L';'},
      {"tabs", {L"a, b\tc", L"1\t2"}, false, L'\t'},
      {"bars", {L"a|b", L"1|2"}, false, L'|'},
      {"quoted commas", {L"\"x,y,z\";b", L"1;2"}, false, L';'},
      {"more alike wins", {L"a,b;c,d", L"1;2", L"3;4", L"5;6"}, false, L';'},
      {"one column", {L"a", L"1"}, false, L','},
      {"one column of decimal commas", {L"a", L"1,5"}, true, L';'},
      {"nothing", {}, false, L','},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, SniffSeparator(row.lines, row.decimalComma)) << row.name;
  }
}

TEST(DataTable, tellsBrokenRowsOrCountsThem) {
  const char* const bytes = "a,b\n1,2\n3\n\"4\"x,5\n6,7\n";
  EXPECT_EQ(L"input:3: 1 fields where the first row has 2.", FaultOf(bytes));
  Options options;
  options.skipBroken = true;
  const InputFile file(bytes);
  const DataTable table = Read(file, options);
  EXPECT_EQ(2u, table.rows);
  EXPECT_EQ(2u, table.broken);
  EXPECT_EQ(L"line 3: 1 fields where the first row has 2.", table.firstFault);
  EXPECT_EQ(L"input:1: The table has no rows.", FaultOf("a,b\n"));
  EXPECT_EQ(L"input:1: The file is empty.", FaultOf(""));
  EXPECT_EQ(L"input:1: The table has more than 1000 columns.",
            FaultOf((std::string(1000, ',') + "\n1\n").c_str()));
}

TEST(DataTable, keepsEachRowWithTheSameChanceInTheOrderOfTheFile) {
  std::string bytes = "n\n";
  constexpr int ROWS = 20000;
  for (int i = 0; i < ROWS; ++i) bytes += std::to_string(i) + "\n";
  const InputFile file(bytes);
  Options options;
  options.sample = 2000;
  const DataTable table = Read(file, options);
  EXPECT_TRUE(table.IsSampled());
  const std::vector<double> values = table.Sample(0);
  ASSERT_EQ(2000u, values.size());
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_EQ(values, Read(file, options).Sample(0));
  // A tenth of each tenth of the file, five standard deviations at most away.
  for (int part = 0; part < 10; ++part) {
    const auto inPart = std::count_if(values.begin(), values.end(), [&](double value) {
      return value >= part * ROWS / 10 && value < (part + 1) * ROWS / 10;
    });
    EXPECT_NEAR(200, static_cast<double>(inPart), 68);
  }
  EXPECT_EQ(static_cast<double>(ROWS - 1), table.columns[0].Numbers().Maximum());
  EXPECT_EQ(static_cast<double>(ROWS - 1) / 2, table.columns[0].Numbers().Mean());
}

TEST(Relations, ofColumnsThatHangTogether) {
  std::string bytes = "a,b,c,d,e\n";
  std::mt19937 random(17);
  for (int i = 1; i <= 200; ++i) {
    const int noise = static_cast<int>(random() % 1000);
    bytes += std::to_string(i) + "," + std::to_string(-2 * i) + "," + std::to_string(i * i * i) +
             ",7," + (i % 3 == 0 ? "" : std::to_string(noise)) + "\n";
  }
  const InputFile file(bytes);
  const Relations relations = FindRelations(Read(file));
  EXPECT_EQ((std::vector<std::size_t>{0, 1, 2, 3}), relations.columns);
  EXPECT_EQ(1u, relations.leftOut);
  EXPECT_EQ(200u, relations.rows);
  EXPECT_NEAR(-1, relations.pearson[1], 1e-14);
  EXPECT_LT(relations.pearson[2], 0.95);
  EXPECT_NEAR(1, relations.spearman[2], 1e-14);
  EXPECT_TRUE(std::isnan(relations.pearson[3]));
  EXPECT_EQ((std::vector<std::size_t>{0, 1, 2}), relations.components);
  ASSERT_EQ(3u, relations.eigenvalues.size());
  double trace = 0;
  for (const double value : relations.eigenvalues) trace += value;
  EXPECT_NEAR(3, trace, 1e-12);
  // Vectors of unit length whose largest element is positive, and the trace's parts fall.
  EXPECT_TRUE(std::is_sorted(relations.eigenvalues.rbegin(), relations.eigenvalues.rend()));
  for (std::size_t j = 0; j < 3; ++j) {
    double length = 0;
    double largest = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const double value = relations.loadings[i * 3 + j];
      length += value * value;
      if (std::abs(value) > std::abs(largest)) largest = value;
    }
    EXPECT_NEAR(1, length, 1e-12);
    EXPECT_GT(largest, 0);
  }
  const InputFile single("a,b\n1,x\n2,y\n3,z\n");
  EXPECT_TRUE(FindRelations(Read(single)).columns.empty());
}
