// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: means and covariances against exact rational references (tools/make_statistics_rows.py);
// correlations, also of constant columns; ranks against counting, with ties, NaN, infinities and
// both zeros, below and above the size that is sorted by digits; principal components; tables
// without rows, columns or finite numbers; shapes that do not fit.

#include "shared/numerics/statistics/MultivariateStatistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/numerics/ExactRows.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::FromImage;
using test::SplitText;
using test::UlpsBetween;

constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NAN_VALUE = std::nan("");

std::vector<double> Elements(const RVector& vector) {
  return {vector.begin(), vector.end()};
}

RMatrix TableOf(const std::string& text) {
  const std::vector<std::string> words = SplitText(text, ' ');
  const std::size_t columns = std::stoul(words[0]);
  RMatrix table((words.size() - 1) / columns, columns);
  for (std::size_t i = 0; i < table.size(); ++i) table.data()[i] = FromImage(words[i + 1]);
  return table;
}

TEST(MultivariateStatistics, meansAndCovariancesAreWithinFourUnitsOfTheExactValue) {
  constexpr double MAXIMUM_ULPS = 4.0;
  const auto rows = test::ReadRows("covariance-exact.txt");
  ASSERT_EQ(rows.size(), 7u);
  for (const auto& row : rows) {
    CMultivariateStatistics statistics;
    Load(statistics, TableOf(row[1]));
    std::vector<double> values = Elements(statistics.mean);
    values.insert(values.end(), statistics.covariance.begin(), statistics.covariance.end());
    const std::vector<std::string> fields = SplitText(row[2], ' ');
    ASSERT_EQ(values.size(), fields.size()) << row[0];
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double exact = FromImage(SplitText(fields[i], '=')[1]);
      EXPECT_LE(UlpsBetween(values[i], exact), MAXIMUM_ULPS)
          << row[0] << ": " << fields[i] << " " << values[i] << ", not " << exact;
    }
  }
}

TEST(MultivariateStatistics, covarianceIsAboutTheMeanThatIsGiven) {
  const RMatrix data{{1.0, 2.0}, {3.0, 5.0}, {5.0, 5.0}};
  const RMatrix covariance = ComputeCovariance(data, RVector{0.0, 4.0});
  EXPECT_EQ(covariance(0, 0), 35.0 / 2.0);
  EXPECT_EQ(covariance(0, 1), 6.0 / 2.0);
  EXPECT_EQ(covariance(1, 1), 6.0 / 2.0);
  EXPECT_EQ(ComputeCovariance(data, RVector{3.0, 4.0})(1, 0), ComputeCovariance(data)(0, 1));
}

TEST(MultivariateStatistics, correlationOfAConstantIsNan) {
  const RMatrix data{{1.0, -2.0, 7.0, 0.0}, {2.0, -4.0, 7.0, 5.0}, {3.0, -6.0, 7.0, 4.0}};
  const RMatrix correlation = ComputeCorrelation(data);
  EXPECT_DOUBLE_EQ(correlation(0, 1), -1.0);
  EXPECT_DOUBLE_EQ(correlation(3, 3), 1.0);
  EXPECT_EQ(correlation(0, 3), correlation(3, 0));
  EXPECT_DOUBLE_EQ(correlation(0, 3), 2.0 / std::sqrt(7.0));
  for (std::uint64_t i = 0; i < 4; ++i) EXPECT_TRUE(std::isnan(correlation(2, i)));
}

/// Counts the numbers below and those equal; what is NaN follows in its order.
std::vector<double> RanksByCounting(const std::vector<double>& values) {
  std::vector<double> ranks;
  std::size_t numbers = 0, nans = 0;
  for (const double value : values) numbers += value == value ? 1 : 0;
  for (const double value : values) {
    double below = 0.0, equal = 0.0;
    for (const double other : values) {
      below += other < value ? 1.0 : 0.0;
      equal += other == value ? 1.0 : 0.0;
    }
    ranks.push_back(value == value ? below + (equal + 1.0) / 2.0
                                   : static_cast<double>(numbers + ++nans));
  }
  return ranks;
}

TEST(MultivariateStatistics, tiesShareTheMeanOfTheirRanks) {
  const std::vector<std::vector<double>> rows{
      {},
      {3.0},
      {10, 20, 20, 30},
      {1, 1, 1},
      {NAN_VALUE, 2, NAN_VALUE, 1},
      {0.0, -0.0, 5e-324, -5e-324, INFINITE, -INFINITE, 1e308, -1e308},
      {-NAN_VALUE, INFINITE, NAN_VALUE, -INFINITE},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Elements(ComputeTiedRank(RVector(std::span(row)))), RanksByCounting(row));
  }
  EXPECT_EQ(Elements(ComputeTiedRank(RVector{10, 20, 20, 30})),
            (std::vector<double>{1, 2.5, 2.5, 4}));
  std::mt19937 random(3);
  std::normal_distribution<double> normal;
  for (const std::size_t size : {100u, 1499u, 1500u, 3000u}) {
    for (const unsigned int kinds : {1u, 2u, 50u, 0u}) {
      std::vector<double> values;
      for (std::size_t i = 0; i < size; ++i) {
        const double draw = kinds == 0 ? std::exp(40 * normal(random)) * normal(random)
                                       : static_cast<double>(random() % kinds) - 20.0;
        values.push_back(i % 97 == 96 ? NAN_VALUE : draw);
      }
      ASSERT_EQ(Elements(ComputeTiedRank(RVector(std::span(values)))), RanksByCounting(values))
          << size << ", " << kinds;
    }
  }
  const RMatrix ranks = ComputeTiedRank(RMatrix{{3.0, 1.0}, {1.0, 1.0}, {2.0, 0.0}});
  const double expected[]{3.0, 2.5, 1.0, 2.5, 2.0, 1.0};
  EXPECT_TRUE(std::equal(ranks.begin(), ranks.end(), expected));
}

TEST(MultivariateStatistics, rankCorrelationSeesOnlyTheOrder) {
  RMatrix data(50, 3);
  for (std::uint64_t i = 0; i < 50; ++i) {
    const auto x = static_cast<double>(i);
    data(i, 0) = x;
    data(i, 1) = std::exp(x);
    data(i, 2) = -x * x * x;
  }
  const RMatrix correlation = ComputeRankCorrelation(data);
  EXPECT_DOUBLE_EQ(correlation(0, 1), 1.0);
  EXPECT_DOUBLE_EQ(correlation(0, 2), -1.0);
}

TEST(MultivariateStatistics, principalComponentsDiagonalizeTheCovariance) {
  const RMatrix diagonal{{2.0, 0.0}, {0.0, -5.0}};
  const RMatrix sorted = ComputePrincipalComponents(diagonal);
  EXPECT_EQ(sorted(0, 2), -5.0);
  EXPECT_EQ(sorted(1, 2), 2.0);
  EXPECT_EQ(std::fabs(sorted(1, 0)), 1.0);

  std::mt19937 random(9);
  RMatrix data(200, 4);
  for (std::uint64_t i = 0; i < 200; ++i) {
    for (std::uint64_t j = 0; j < 4; ++j) {
      data(i, j) = static_cast<double>(random() % 1000) + (j > 0 ? 0.7 * data(i, j - 1) : 0.0);
    }
  }
  CMultivariateStatistics statistics;
  Load(statistics, data);
  EXPECT_EQ(statistics.count, 200u);
  const RMatrix& covariance = statistics.covariance;
  const RMatrix& components = statistics.principalComponents;
  ASSERT_EQ(components.Columns(), 5u);
  const double scale = std::fabs(components(0, 4));
  for (std::uint64_t k = 0; k < 4; ++k) {
    for (std::uint64_t i = 0; i < 4; ++i) {
      double image = 0.0;
      for (std::uint64_t j = 0; j < 4; ++j) image += covariance(i, j) * components(j, k);
      EXPECT_NEAR(image, components(k, 4) * components(i, k), 1e-13 * scale);
    }
    if (k > 0) {
      EXPECT_GE(std::fabs(components(k - 1, 4)), std::fabs(components(k, 4)));
    }
  }
  statistics.Clear();
  EXPECT_EQ(statistics.count, 0u);
  EXPECT_TRUE(statistics.principalComponents.empty());
}

TEST(MultivariateStatistics, tablesWithoutResultsGiveNan) {
  const auto isAllNan = [](const auto& numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isnan(x); });
  };
  CMultivariateStatistics statistics;
  Load(statistics, RMatrix());
  EXPECT_TRUE(statistics.mean.empty() && statistics.covariance.empty());
  EXPECT_TRUE(ComputePrincipalComponents(RMatrix()).empty());
  Load(statistics, RMatrix(0, 2));
  EXPECT_EQ(statistics.mean.size(), 2u);
  EXPECT_TRUE(isAllNan(statistics.mean) && isAllNan(statistics.covariance));
  EXPECT_TRUE(isAllNan(statistics.principalComponents));
  Load(statistics, RMatrix{{1.0, 2.0}});
  EXPECT_EQ(statistics.mean(1), 2.0);
  EXPECT_TRUE(isAllNan(statistics.covariance) && isAllNan(statistics.correlation));
  for (const double odd : {NAN_VALUE, INFINITE}) {
    Load(statistics, RMatrix{{1.0, 2.0}, {odd, 3.0}, {4.0, 7.0}});
    EXPECT_TRUE(std::isnan(statistics.covariance(0, 1)));
    EXPECT_EQ(statistics.covariance(1, 1), 7.0);
    EXPECT_EQ(statistics.mean(1), 4.0);
    EXPECT_TRUE(isAllNan(statistics.principalComponents));
    EXPECT_DOUBLE_EQ(statistics.rankCorrelation(0, 1), 0.5);
  }
}

TEST(MultivariateStatistics, shapesThatDoNotFitAreInternalErrors) {
  const RMatrix data(3, 2);
  EXPECT_EQ(test::Failure([&] { (void)ComputeCovariance(data, RVector(3)); }), L"[Statistics]");
  EXPECT_EQ(test::Failure([&] { (void)ComputeCorrelation(data, data); }), L"[Statistics]");
  EXPECT_EQ(test::Failure([&] { (void)ComputePrincipalComponents(data); }), L"[Statistics]");
}

}  // namespace
}  // namespace shr
