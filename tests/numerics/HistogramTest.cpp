// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: borders of bins, what is outside, degenerate limits; sharing of counts between copies;
// counts near 2^32; sizes that cannot be had.

#include "shared/numerics/statistics/Histogram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "shared/diagnostics/Exception.h"

namespace shr {
namespace {

using Counts = std::vector<std::uint32_t>;

Counts CountsOf(const CHistogram& histogram) {
  const auto counts = histogram.Counts();
  return Counts(counts.begin(), counts.end());
}

TEST(Histogram, theDefaultHasNoBins) {
  CHistogram histogram;
  EXPECT_EQ(histogram.GetMinimum(), 0.0);
  EXPECT_EQ(histogram.GetMaximum(), 1.0);
  EXPECT_EQ(histogram.GetBinWidth(), 0.0);
  EXPECT_EQ(histogram.GetBinCount(), 0u);
  EXPECT_EQ(histogram.GetCounts(), nullptr);
  EXPECT_FALSE(histogram.Add(0.5));
  histogram.Reset();
  const CHistogram copy = histogram;
  EXPECT_EQ(copy.GetTotalCount(), 0u);
  histogram.Init(1.0, 2.0, 0);
  EXPECT_EQ(histogram.GetBinWidth(), 0.0);
}

TEST(Histogram, eachNumberHasOneBin) {
  constexpr double INFINITE = std::numeric_limits<double>::infinity();
  constexpr double NAN_VALUE = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* name;
    double minimum, maximum;
    std::uint64_t bins;
    double x;
    int bin;  // -1: outside
  } rows[] = {
      {"lower limit", 0, 10, 5, 0, 0},
      {"border of two bins", 0, 10, 5, 2, 1},
      {"below a border", 0, 10, 5, std::nextafter(2.0, 0.0), 0},
      {"upper limit", 0, 10, 5, 10, 4},
      {"above", 0, 10, 5, 10.0001, -1},
      {"below", 0, 10, 5, -1e-300, -1},
      {"minus zero", 0, 10, 5, -0.0, 0},
      {"infinity", 0, 10, 5, INFINITE, -1},
      {"NaN", 0, 10, 5, NAN_VALUE, -1},
      {"tenths", 0, 1, 10, 0.7, 6},  // 0.7 / 0.1 is 6.999...
      {"limits the wrong way round", 10, 0, 5, 5, -1},
      {"no width", 3, 3, 4, 3, 3},
      {"width below all doubles", 0, 5e-324, 4, 5e-324, 3},
      {"infinite limits", -INFINITE, INFINITE, 4, 0, 3},
  };
  for (const auto& row : rows) {
    CHistogram histogram(row.minimum, row.maximum, row.bins);
    Counts expected(row.bins);
    if (row.bin >= 0) expected[static_cast<std::size_t>(row.bin)] = 1;
    EXPECT_EQ(histogram.Add(row.x), row.bin >= 0) << row.name;
    EXPECT_EQ(CountsOf(histogram), expected) << row.name;
    EXPECT_EQ(histogram.GetTotalCount(), row.bin >= 0 ? 1u : 0u) << row.name;
  }
}

TEST(Histogram, copiesShareUntilOneIsChanged) {
  CHistogram first(0.0, 4.0, 4);
  first.Add(1.5);
  CHistogram second = first, third;
  third = second;
  EXPECT_EQ(first.GetCounts(), third.GetCounts());
  EXPECT_TRUE(third.Add(3.5));
  EXPECT_EQ(first.GetCounts(), second.GetCounts());
  EXPECT_NE(first.GetCounts(), third.GetCounts());
  EXPECT_EQ(CountsOf(first), (Counts{0, 1, 0, 0}));
  EXPECT_EQ(CountsOf(third), (Counts{0, 1, 0, 1}));
  second.Reset();
  EXPECT_EQ(first.GetTotalCount(), 1u);
  EXPECT_EQ(CountsOf(first), (Counts{0, 1, 0, 0}));
  EXPECT_EQ(CountsOf(second), (Counts{0, 0, 0, 0}));
  const std::uint32_t* own = third.GetCounts();
  third.Add(0.0);
  EXPECT_EQ(third.GetCounts(), own);  // nobody shares it: no copy
  const CHistogram& self = third;
  third = self;
  EXPECT_EQ(third.GetTotalCount(), 3u);
  first = std::move(third);
  EXPECT_EQ(first.GetCounts(), own);
  EXPECT_EQ(third.GetCounts(), nullptr);  // NOLINT: moved from
  first.Init(0.0, 1.0, 1);
  EXPECT_EQ(CountsOf(first), Counts{0});
}

TEST(Histogram, countsMayBeGiven) {
  const Counts counts{1, 0xFFFFFFFF, 0xFFFFFFFF};
  CHistogram histogram;
  histogram.Init(0.0, 3.0, 3, counts.data());
  EXPECT_EQ(histogram.GetTotalCount(), 0x1FFFFFFFFu);
  EXPECT_EQ(histogram[2], 0xFFFFFFFFu);
  EXPECT_DOUBLE_EQ(histogram.GetProbability(1), 4294967295.0 / 8589934591.0);
  EXPECT_TRUE(histogram.Add(1.5));  // the count wraps, the total does not
  EXPECT_EQ(histogram[1], 0u);
  EXPECT_EQ(histogram.GetTotalCount(), 0x200000000u);
  histogram.Init(0.0, 1.0, 2, histogram.GetCounts());
  EXPECT_EQ(CountsOf(histogram), (Counts{1, 0}));
  EXPECT_EQ(histogram.GetTotalCount(), 1u);
  histogram.Reset();
  EXPECT_TRUE(std::isnan(histogram.GetProbability(0)));
}

TEST(Histogram, moreBinsThanMemoryAreRefused) {
  CHistogram histogram(0.0, 4.0, 2);
  histogram.Add(1.0);
  for (const std::uint64_t bins : {~std::uint64_t{0}, std::uint64_t{1} << 62}) {
    try {
      histogram.Init(0.0, 1.0, bins);
      FAIL();
    } catch (const Exception& error) {
      EXPECT_EQ(error.GetSrcLine(), 136);
      EXPECT_EQ(error.GetSrcFile(), L"Histogram");
      EXPECT_EQ(error.GetDescription(), L"Out of global memory");
    }
    EXPECT_EQ(CountsOf(histogram), (Counts{1, 0}));
  }
}

}  // namespace
}  // namespace shr
