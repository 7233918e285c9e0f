// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: exact rational references (tools/make_statistics_rows.py) from tiny to 40000 numbers, with
// overflow, underflow, cancellation and offsets; the NIST reference sets; a plain sort as oracle of
// all that is selected, for many sizes and patterns; NaN and infinities; what is NaN for which
// counts; laws (order, shift, scale); the histogram and its overflow; the text.

#include "shared/numerics/statistics/UnivariateStatistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include "tests/numerics/ExactRows.h"

namespace shr {
namespace {

using test::FromImage;
using test::Generate;
using test::ReadRows;
using test::SplitText;
using test::UlpsBetween;
using Sample = std::vector<double>;
using Statistics = CUnivariateStatistics;

constexpr double INFINITE = std::numeric_limits<double>::infinity();

const std::map<std::string, double Statistics::*> FIELDS{
    {"percentile01", &Statistics::percentile01},
    {"percentile05", &Statistics::percentile05},
    {"percentile10", &Statistics::percentile10},
    {"percentile25", &Statistics::percentile25},
    {"percentile50", &Statistics::percentile50},
    {"percentile75", &Statistics::percentile75},
    {"percentile90", &Statistics::percentile90},
    {"percentile95", &Statistics::percentile95},
    {"percentile99", &Statistics::percentile99},
    {"minimum", &Statistics::minimum},
    {"maximum", &Statistics::maximum},
    {"mean", &Statistics::mean},
    {"median", &Statistics::median},
    {"geometricMean", &Statistics::geometricMean},
    {"harmonicMean", &Statistics::harmonicMean},
    {"rootMeanSquare", &Statistics::rootMeanSquare},
    {"trimMean", &Statistics::trimMean},
    {"interQuartileMean", &Statistics::interQuartileMean},
    {"midrange", &Statistics::midrange},
    {"winsorizedMean", &Statistics::winsorizedMean},
    {"triMean", &Statistics::triMean},
    {"variance", &Statistics::variance},
    {"stdDev", &Statistics::stdDev},
    {"interQuartileRange", &Statistics::interQuartileRange},
    {"range", &Statistics::range},
    {"meanDiff", &Statistics::meanDiff},
    {"medianAbsDev", &Statistics::medianAbsDev},
    {"avgAbsDev", &Statistics::avgAbsDev},
    {"quartileCoefDisp", &Statistics::quartileCoefDisp},
    {"relativeMeanDiff", &Statistics::relativeMeanDiff},
    {"stdError", &Statistics::stdError},
    {"coefVariation", &Statistics::coefVariation},
    {"skewness", &Statistics::skewness},
    {"kurtosis", &Statistics::kurtosis},
    {"sum", &Statistics::sum},
    {"sumAbs", &Statistics::sumAbs},
    {"sumSquare", &Statistics::sumSquare},
    {"meanSquare", &Statistics::meanSquare},
};

Statistics Of(Sample sample) {
  Statistics statistics;
  Load(statistics, sample.begin(), sample.end());
  return statistics;
}

Sample ReadSample(const std::string& text) {
  const std::vector<std::string> words = SplitText(text, ' ');
  if (words[0] == "lcg") {
    return Generate(std::stoul(words[1]), std::stoul(words[2]), FromImage(words[3]),
                    FromImage(words[4]));
  }
  Sample sample;
  for (const std::string& word : words) sample.push_back(FromImage(word));
  return sample;
}

TEST(UnivariateStatistics, sumsAndMomentsAreWithinFourUnitsOfTheExactValue) {
  constexpr double MAXIMUM_ULPS = 4.0;
  const auto rows = ReadRows("univariate-exact.txt");
  ASSERT_EQ(rows.size(), 28u);
  for (const auto& row : rows) {
    const Sample sample = ReadSample(row[1]);
    const Statistics statistics = Of(sample);
    for (const std::string& field : SplitText(row[2], ' ')) {
      const std::vector<std::string> parts = SplitText(field, '=');
      const double exact = FromImage(parts[1]), value = statistics.*FIELDS.at(parts[0]);
      const bool isSmall =
          parts[0] == "skewness" &&
          std::fabs(value - exact) < std::ldexp(std::sqrt(static_cast<double>(sample.size())), -96);
      EXPECT_TRUE(isSmall || UlpsBetween(value, exact) <= MAXIMUM_ULPS)
          << row[0] << ": " << parts[0] << " is off by " << UlpsBetween(value, exact) << " from "
          << exact;
    }
  }
}

TEST(UnivariateStatistics, certifiedValuesAreReached) {
  // Correct decimal digits; where the decimals cannot be stored exactly and the deviations are
  // small, the stored numbers have no more.
  const std::map<std::string, double> deviationDigits{
      {"Mavro", 13.1}, {"Michelso", 13.8}, {"NumAcc3", 9.4}, {"NumAcc4", 8.2}};
  const auto digits = [](double value, double certified) {
    return value == certified ? 15.0
                              : -std::log10(std::fabs(value - certified) / std::fabs(certified));
  };
  const auto rows = ReadRows("nist-univariate.txt");
  ASSERT_EQ(rows.size(), 8u);
  for (const auto& row : rows) {
    Sample sample;
    for (const std::string& word : SplitText(row[3], ' ')) sample.push_back(std::stod(word));
    const Statistics statistics = Of(sample);
    const auto limit = deviationDigits.find(row[0]);
    const double meanDigits = digits(statistics.mean, std::stod(row[1]));
    const double spreadDigits = digits(statistics.stdDev, std::stod(row[2]));
    EXPECT_GE(meanDigits, 14.8) << row[0];
    EXPECT_GE(spreadDigits, limit == deviationDigits.end() ? 14.5 : limit->second) << row[0];
    RecordProperty(row[0], std::to_string(meanDigits) + " " + std::to_string(spreadDigits));
  }
}

double MedianOf(Sample sample) {
  std::sort(sample.begin(), sample.end());
  const std::size_t n = sample.size();
  return n % 2 == 1 ? sample[n / 2] : (sample[n / 2 - 1] + sample[n / 2]) / 2;
}

/// Compares what is selected with the same taken from the sorted sample.
void ExpectSelectedAsSorted(const Sample& sample, const std::string& name) {
  const Statistics statistics = Of(sample);
  Sample sorted = sample;
  std::sort(sorted.begin(), sorted.end());
  const auto at = [&](std::size_t percent) { return sorted[(sorted.size() - 1) * percent / 100]; };
  const double percentiles[]{
      statistics.percentile01, statistics.percentile05, statistics.percentile10,
      statistics.percentile25, statistics.percentile50, statistics.percentile75,
      statistics.percentile90, statistics.percentile95, statistics.percentile99};
  std::size_t i = 0;
  for (const std::size_t percent : {1u, 5u, 10u, 25u, 50u, 75u, 90u, 95u, 99u}) {
    ASSERT_EQ(percentiles[i++], at(percent)) << name << ", " << sample.size() << ", " << percent;
  }
  ASSERT_EQ(statistics.minimum, sorted.front()) << name << ", " << sample.size();
  ASSERT_EQ(statistics.maximum, sorted.back()) << name << ", " << sample.size();
  const double median = MedianOf(sample);
  ASSERT_EQ(statistics.median, median) << name << ", " << sample.size();
  for (double& value : sorted) value = std::fabs(value - median);
  ASSERT_EQ(statistics.medianAbsDev, MedianOf(sorted)) << name << ", " << sample.size();
}

TEST(UnivariateStatistics, whatIsSelectedIsWhatSortingGives) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  const std::map<std::string, std::function<double(std::size_t, std::size_t)>> patterns{
      {"normal", [&](std::size_t, std::size_t) { return normal(random); }},
      {"skewed", [&](std::size_t, std::size_t) { return std::exp(3 * normal(random)); }},
      {"equal", [](std::size_t, std::size_t) { return 4.5; }},
      {"two values", [&](std::size_t, std::size_t) { return random() % 2 == 0 ? 1.0 : 2.0; }},
      {"few values", [&](std::size_t, std::size_t) { return static_cast<double>(random() % 7); }},
      {"rising", [](std::size_t i, std::size_t) { return static_cast<double>(i); }},
      {"falling", [](std::size_t i, std::size_t n) { return static_cast<double>(n - i); }},
      {"organ pipe",
       [](std::size_t i, std::size_t n) { return static_cast<double>(std::min(i, n - i)); }},
      {"saw", [](std::size_t i, std::size_t) { return static_cast<double>(i % 1000); }},
      {"one outlier", [](std::size_t i, std::size_t) { return i == 3 ? 1e300 : 1.0; }},
      {"mostly one value",
       [&](std::size_t, std::size_t) { return random() % 3 != 0 ? 0.0 : normal(random); }},
      {"last bits",
       [&](std::size_t, std::size_t) {
         return 1.0 + 2.220446049250313e-16 * static_cast<double>(random() % 100);
       }},
  };
  for (const auto& [name, pattern] : patterns) {
    for (const std::size_t size : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 19u, 20u, 99u, 100u, 101u, 102u,
                                   1003u, 25001u, 25002u, 25003u, 40000u}) {
      Sample sample;
      for (std::size_t i = 0; i < size; ++i) sample.push_back(pattern(i, size));
      ExpectSelectedAsSorted(sample, name);
    }
  }
}

std::set<std::string> Missing(const Statistics& statistics) {
  std::set<std::string> missing;
  for (const auto& [name, field] : FIELDS) {
    if (statistics.*field != statistics.*field) missing.insert(name);
  }
  return missing;
}

TEST(UnivariateStatistics, valuesThatDoNotApplyAreNan) {
  std::set<std::string> all;
  for (const auto& [name, field] : FIELDS) all.insert(name);
  EXPECT_EQ(Missing(Statistics()), all);
  EXPECT_EQ(Missing(Of({})), all);
  Statistics statistics = Of({1.0, 2.0});
  statistics.Clear();
  EXPECT_EQ(Missing(statistics), all);
  EXPECT_EQ(statistics.count, 0u);

  const std::set<std::string> spread{"variance", "stdDev",   "stdError", "coefVariation",
                                     "skewness", "kurtosis", "meanDiff", "relativeMeanDiff"};
  std::set<std::string> missing = spread;
  missing.insert("trimMean");
  EXPECT_EQ(Missing(Of({5.5})), missing);
  const std::set<std::string> ofPositive{"geometricMean", "harmonicMean", "quartileCoefDisp"};
  missing = ofPositive;
  missing.insert("trimMean");
  EXPECT_EQ(Missing(Of({0.0, 1.0, 3.0})), missing);
  missing.merge(std::set<std::string>{"relativeMeanDiff", "coefVariation"});
  EXPECT_EQ(Missing(Of({-1.0, 1.0, 3.0})), missing);
  // Equal values: no positive variance.
  EXPECT_EQ(Missing(Of(Sample(20, 3.0))),
            (std::set<std::string>{"stdDev", "stdError", "coefVariation", "skewness", "kurtosis"}));
  EXPECT_EQ(Missing(Of(Generate(25000, 1, 1.0, 1.0))), std::set<std::string>{});
  EXPECT_EQ(Missing(Of(Generate(25001, 1, 1.0, 1.0))),
            (std::set<std::string>{"meanDiff", "relativeMeanDiff"}));
}

TEST(UnivariateStatistics, oneToFourHasAMedianBetween) {
  const Statistics statistics = Of({4.0, 1.0, 3.0, 2.0});
  EXPECT_EQ(statistics.count, 4u);
  EXPECT_EQ(statistics.median, 2.5);
  EXPECT_EQ(statistics.percentile50, 2.0);
  EXPECT_EQ(statistics.kurtosis, 0.9225);
  EXPECT_NEAR(statistics.geometricMean, std::pow(24.0, 0.25), 1e-15);
}

TEST(UnivariateStatistics, nanCountAboveAllNumbers) {
  for (const std::size_t size : {10u, 30000u}) {
    Sample sample = Generate(size, 3, 1.0, 1.0);
    Sample numbers(sample.begin() + 3, sample.end());
    std::fill(sample.begin(), sample.begin() + 3, std::numeric_limits<double>::quiet_NaN());
    const Statistics statistics = Of(sample);
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(statistics.count, size);
    EXPECT_EQ(statistics.minimum, numbers.front());
    EXPECT_EQ(statistics.percentile50, numbers[(size - 1) / 2]);
    EXPECT_EQ(statistics.percentile25, numbers[(size - 1) / 4]);
    const double median = (numbers[size / 2 - 1] + numbers[size / 2]) / 2;
    EXPECT_EQ(statistics.median, median);
    for (double& number : numbers) number = std::fabs(number - median);
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(statistics.medianAbsDev, (numbers[size / 2 - 1] + numbers[size / 2]) / 2);
    for (const char* name : {"maximum", "mean", "sum", "sumAbs", "variance", "geometricMean",
                             "range", "meanDiff", "avgAbsDev", "skewness"}) {
      EXPECT_TRUE(std::isnan(statistics.*FIELDS.at(name))) << name;
    }
    EXPECT_TRUE(statistics.histogram.empty());
  }
  const Statistics statistics = Of(Sample(12, std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(Missing(statistics).size(), FIELDS.size());
  EXPECT_EQ(statistics.count, 12u);
}

TEST(UnivariateStatistics, infinitiesGiveWhatArithmeticGives) {
  Statistics statistics = Of({1.0, INFINITE, 4.0, 2.0});
  EXPECT_EQ(statistics.sum, INFINITE);
  EXPECT_EQ(statistics.mean, INFINITE);
  EXPECT_EQ(statistics.median, 3.0);
  EXPECT_EQ(statistics.medianAbsDev, 1.5);
  EXPECT_EQ(statistics.geometricMean, INFINITE);
  EXPECT_DOUBLE_EQ(statistics.harmonicMean, 4.0 / 1.75);
  EXPECT_EQ(statistics.meanDiff, INFINITE);
  EXPECT_EQ(statistics.avgAbsDev, INFINITE);
  EXPECT_TRUE(std::isnan(statistics.variance));
  statistics = Of({-INFINITE, INFINITE, 4.0});
  EXPECT_TRUE(std::isnan(statistics.sum));
  EXPECT_TRUE(std::isnan(statistics.mean));
  EXPECT_EQ(statistics.sumAbs, INFINITE);
  EXPECT_EQ(statistics.median, 4.0);
  Sample sample = Generate(30000, 9, 1.0, 1.0);
  sample[7] = -INFINITE;
  statistics = Of(sample);
  EXPECT_EQ(statistics.minimum, -INFINITE);
  EXPECT_EQ(statistics.mean, -INFINITE);
  EXPECT_TRUE(std::isfinite(statistics.trimMean));
  EXPECT_TRUE(std::isfinite(statistics.medianAbsDev));
}

TEST(UnivariateStatistics, orderShiftAndScaleChangeNothingButThemselves) {
  std::mt19937 random(11);
  for (const std::size_t size : {7u, 500u, 26000u}) {
    Sample sample;
    for (std::size_t i = 0; i < size; ++i)
      sample.push_back(static_cast<double>(random() % 1000000));
    const Statistics first = Of(sample);
    std::shuffle(sample.begin(), sample.end(), random);
    const Statistics shuffled = Of(sample);
    for (const auto& [name, field] : FIELDS) {
      EXPECT_LE(UlpsBetween(first.*field, shuffled.*field), 1.0) << name << ", " << size;
    }
    // Neither rounds: the sample consists of integers below 2^20.
    Sample shifted = sample, scaled = sample;
    for (double& value : shifted) value += 1099511627776.0;
    for (double& value : scaled) value *= std::ldexp(1.0, -40);
    const Statistics far = Of(shifted), small = Of(scaled);
    for (const char* name : {"variance", "stdDev", "skewness", "kurtosis", "medianAbsDev",
                             "avgAbsDev", "meanDiff", "range"}) {
      EXPECT_LE(UlpsBetween(first.*FIELDS.at(name), far.*FIELDS.at(name)), 1.0) << name << size;
    }
    EXPECT_EQ(first.histogram, far.histogram);
    for (const char* name : {"skewness", "kurtosis"}) {
      EXPECT_EQ(first.*FIELDS.at(name), small.*FIELDS.at(name)) << name << size;
    }
    EXPECT_EQ(std::ldexp(first.variance, -80), small.variance);
    EXPECT_EQ(std::ldexp(first.winsorizedMean, -40), small.winsorizedMean);
  }
}

TEST(UnivariateStatistics, histogramHasAPlaceForEachElement) {
  const auto bins = [](std::size_t size) { return Of(Generate(size, 5, 0.0, 1.0)).histogram; };
  EXPECT_EQ(bins(10).size(), 0u);
  EXPECT_EQ(bins(11).size(), 20u);
  EXPECT_EQ(bins(600).size(), 24u);
  EXPECT_EQ(bins(5000).size(), 100u);
  Sample sample;
  for (int i = 0; i <= 500; ++i) sample.push_back(i);
  std::vector<std::uint32_t> expected(20, 25);
  expected.back() = 26;
  EXPECT_EQ(Of(sample).histogram, expected);
  // The differences overflow, and with them what is divided by the range: no place, the first bin.
  std::vector<std::uint32_t> first(20);
  sample.assign(12, 1e308);
  sample[0] = -1e308;
  first[0] = 12;
  EXPECT_EQ(Of(sample).histogram, first);
}

TEST(UnivariateStatistics, aPlaceOutsideTheIntegersIsTheOverflowOfAConversion) {
  Sample sample(12, 7e307);
  sample[5] = -1e308;
  CUnivariateStatistics statistics;
  try {
    Load(statistics, sample.begin(), sample.end());
    FAIL();
  } catch (const std::bad_cast& error) {
    EXPECT_STREQ(error.what(), "bad numeric conversion: positive overflow");
  }
  EXPECT_TRUE(statistics.histogram.empty());
  EXPECT_EQ(statistics.maximum, 7e307);
  EXPECT_EQ(statistics.range, 1.7e308);
}

TEST(UnivariateStatistics, textHasALineForEachValue) {
  std::ostringstream stream;
  stream.width(40);
  stream << Of({0.1, -2.0});
  const std::vector<std::string> lines = SplitText(stream.str(), '\n');
  ASSERT_EQ(lines.size(), 44u);
  EXPECT_EQ(lines[0], "Count               2");
  EXPECT_EQ(lines[1], "Minimum             -2");
  EXPECT_EQ(lines[2], "Maximum             0.1");
  EXPECT_EQ(lines[6], "Percentile_01       -2");
  EXPECT_EQ(lines[18], "Median              -0.95");
  EXPECT_EQ(lines[19], "GeometricMean       nan");
  EXPECT_EQ(lines[43], "MeanSquare          2.005");
  std::ostringstream ofMany;
  ofMany << Of(Generate(11, 1, 0.0, 1.0));
  EXPECT_NE(ofMany.str().find("\nHistogram           "), std::string::npos);
}

}  // namespace
}  // namespace shr
