// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: exact rational references (tools/make_statistics_rows.py) for points far from zero, nearly
// on a line and nearly on a plane, and for sums whose products cancel or overflow; what is NaN for
// few points, points on a line and equal ones; sums that are not finite.

#include "shared/numerics/statistics/PlanarRegression.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/numerics/ExactRows.h"

namespace shr {
namespace {

using test::FromImage;
using test::SplitText;
using test::UlpsBetween;
using Regression = CPlanarRegression;

const std::map<std::string, double Regression::*> FIELDS{
    {"a", &Regression::a},
    {"errorA", &Regression::errorA},
    {"b", &Regression::b},
    {"errorB", &Regression::errorB},
    {"c", &Regression::c},
    {"errorC", &Regression::errorC},
    {"regressionSumSquares", &Regression::regressionSumSquares},
    {"residualSumSquares", &Regression::residualSumSquares},
    {"totalSumSquares", &Regression::totalSumSquares},
    {"regressionMeanSquare", &Regression::regressionMeanSquare},
    {"residualMeanSquare", &Regression::residualMeanSquare},
    {"fRatio", &Regression::fRatio},
    {"determination", &Regression::determination},
    {"correlationAB", &Regression::correlationAB},
    {"correlationAC", &Regression::correlationAC},
    {"correlationBC", &Regression::correlationBC},
    {"correlationXY", &Regression::correlationXY},
    {"correlationXZ", &Regression::correlationXZ},
    {"correlationYZ", &Regression::correlationYZ},
};

std::set<std::string> Missing(const Regression& regression) {
  std::set<std::string> missing;
  for (const auto& [name, field] : FIELDS) {
    if (regression.*field != regression.*field) missing.insert(name);
  }
  return missing;
}

Regression Of(const std::vector<Vec3d>& points) {
  Regression regression;
  Load(regression, points);
  return regression;
}

Regression OfRow(const std::string& text) {
  const std::vector<std::string> words = SplitText(text, ' ');
  std::vector<double> numbers;
  const bool isSums = words[0] == "sums";
  for (std::size_t i = isSums ? 2 : 0; i < words.size(); ++i)
    numbers.push_back(FromImage(words[i]));
  if (!isSums) {
    std::vector<Vec3d> points;
    for (std::size_t i = 0; i < numbers.size(); i += 3) points.emplace_back(&numbers[i]);
    return Of(points);
  }
  Regression regression;
  Load(regression, std::stoull(words[1]), numbers[0], numbers[1], numbers[2], numbers[3],
       numbers[4], numbers[5], numbers[6], numbers[7], numbers[8]);
  return regression;
}

TEST(PlanarRegression, resultsAreWithinFourUnitsOfTheExactValue) {
  constexpr double MAXIMUM_ULPS = 4.0;
  const auto rows = test::ReadRows("regression-exact.txt");
  ASSERT_EQ(rows.size(), 11u);
  for (const auto& row : rows) {
    const Regression regression = OfRow(row[1]);
    for (const std::string& field : SplitText(row[2], ' ')) {
      const std::vector<std::string> parts = SplitText(field, '=');
      const double exact = FromImage(parts[1]), value = regression.*FIELDS.at(parts[0]);
      // A plane through three points leaves nothing but what rounding does.
      const bool isNothing = exact == 0.0 && std::fabs(value) < 1e-60 * regression.totalSumSquares;
      EXPECT_TRUE(isNothing || UlpsBetween(value, exact) <= MAXIMUM_ULPS)
          << row[0] << ": " << parts[0] << " = " << value << ", not " << exact;
    }
  }
}

TEST(PlanarRegression, valuesThatDoNotApplyAreNan) {
  std::set<std::string> all;
  for (const auto& [name, field] : FIELDS) all.insert(name);
  EXPECT_EQ(Missing(Regression()), all);
  EXPECT_EQ(Missing(Of({})), all);
  Regression regression;
  Load(regression, 0, 1, 1, 1, 1, 0, 0, 0, 1, 1);
  EXPECT_EQ(Missing(regression), all);
  Load(regression, 3, 0, 0, 0, 2, 1, 1, 1, 2, 3);
  EXPECT_EQ(Missing(regression),
            (std::set<std::string>{"residualMeanSquare", "fRatio", "errorA", "errorB", "errorC",
                                   "correlationAB", "correlationAC", "correlationBC"}));
  regression.Clear();
  EXPECT_EQ(Missing(regression), all);
  EXPECT_EQ(regression.count, 0u);

  // On a line: the samples correlate, no plane is found.
  regression = Of({{0, 0, 1}, {1, 2, 2}, {2, 4, 4}, {3, 6, 8}});
  EXPECT_EQ(regression.count, 4u);
  EXPECT_EQ(Missing(regression).size(), FIELDS.size() - 3);
  EXPECT_EQ(regression.correlationXY, 1.0);
  EXPECT_EQ(Missing(Of({{1, 1, 1}, {1, 1, 1}})), all);
  EXPECT_EQ(Missing(Of({{1, 2, 3}})), all);
  // Level: nothing to explain.
  const auto level = Missing(Of({{0, 0, 5}, {1, 0, 5}, {0, 1, 5}, {1, 1, 5}}));
  EXPECT_TRUE(level.contains("determination") && level.contains("fRatio") && !level.contains("a"));
}

TEST(PlanarRegression, sumsThatAreNotFiniteGiveNan) {
  const double infinite = std::numeric_limits<double>::infinity();
  Regression regression;
  Load(regression, 9, 0, 0, 0, infinite, 1, 1, 1, 2, 3);
  EXPECT_TRUE(std::isnan(regression.a) || regression.a == 0.0);
  Load(regression, 9, 0, 0, 0, std::nan(""), 1, 1, 1, 2, 3);
  EXPECT_TRUE(std::isnan(regression.a));
  EXPECT_TRUE(std::isnan(Of({{0, 0, 0}, {1, infinite, 2}, {5, 1, 1}}).a));
}

}  // namespace
}  // namespace shr
