// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bits that the operators give, for every length around the blocks, for wide and
// cancelling numbers, for infinities and numbers that overflow when split among others, in place;
// lengths that differ.

#include "shared/numerics/doubledouble/DoubleDoubleSpans.h"

#include <gtest/gtest.h>

#include <random>

#include "shared/diagnostics/Exception.h"

namespace shr {
namespace {

using Numbers = std::vector<doubledouble>;
using Span = std::span<const doubledouble>;

constexpr std::size_t PARTIAL_SUMS = 16;

/// The order of summation that the header tells.
template <class Term>
doubledouble SumInTold(std::size_t count, const Term& term) {
  doubledouble sums[PARTIAL_SUMS];
  for (std::size_t i = 0; i < count; ++i) sums[i % PARTIAL_SUMS] += term(i);
  for (std::size_t half = PARTIAL_SUMS / 2; half > 0; half /= 2) {
    for (std::size_t i = 0; i < half; ++i) sums[i] += sums[i + half];
  }
  return sums[0];
}

bool IsSame(const doubledouble& a, const doubledouble& b) {
  return a == b || (isnan(a) && isnan(b));
}

enum class Kind { Plain, Cancelling, Extreme };

Numbers MakeNumbers(std::size_t count, Kind kind, std::mt19937_64& random) {
  Numbers numbers;
  for (std::size_t i = 0; i < count; ++i) {
    const double head = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                   static_cast<int>(random() % 120) - 120);
    const double tail = head * std::ldexp(static_cast<double>(random() >> 11), -107);
    numbers.push_back(normalize({head, tail}));
    if (kind == Kind::Cancelling && i % 2 == 1) numbers[i] = -numbers[i - 1] * (1 + 1e-25 * head);
    const double extremes[] = {std::numeric_limits<double>::infinity(), 1e306, -1e307,
                               std::numeric_limits<double>::quiet_NaN(), 0.0};
    if (kind == Kind::Extreme && random() % 20 == 0) {
      numbers[i] = extremes[random() % std::size(extremes)];
    }
  }
  return numbers;
}

TEST(DoubleDoubleSpans, giveTheBitsOfTheOperators) {
  std::mt19937_64 random(8);
  const std::size_t sizes[] = {0, 1, 3, 4, 5, 15, 16, 31, 32, 33, 47, 48, 64, 100, 1000, 1023};
  for (const Kind kind : {Kind::Plain, Kind::Cancelling, Kind::Extreme}) {
    for (const std::size_t size : sizes) {
      const Numbers x = MakeNumbers(size, kind, random), y = MakeNumbers(size, kind, random);
      std::vector<double> xHeads, yHeads;
      for (std::size_t i = 0; i < size; ++i) {
        xHeads.push_back(x[i].head);
        yHeads.push_back(y[i].head);
      }
      EXPECT_TRUE(IsSame(Sum(x), SumInTold(size, [&](std::size_t i) { return x[i]; })));
      EXPECT_TRUE(IsSame(
          Sum(xHeads), SumInTold(size, [&](std::size_t i) -> doubledouble { return xHeads[i]; })));
      EXPECT_TRUE(
          IsSame(DotProduct(x, y), SumInTold(size, [&](std::size_t i) { return x[i] * y[i]; })));
      EXPECT_TRUE(IsSame(DotProduct(xHeads, yHeads), SumInTold(size, [&](std::size_t i) {
                           return Multiply(xHeads[i], yHeads[i]);
                         })));
      Numbers sum(size), difference(size), product = x, quotient(size);
      Add(x, y, sum);
      Subtract(x, y, difference);
      Multiply(product, y, product);
      Divide(x, y, quotient);
      for (std::size_t i = 0; i < size; ++i) {
        EXPECT_TRUE(IsSame(sum[i], x[i] + y[i]) && IsSame(difference[i], x[i] - y[i]) &&
                    IsSame(product[i], x[i] * y[i]) && IsSame(quotient[i], x[i] / y[i]))
            << i << " of " << size;
      }
    }
  }
}

TEST(DoubleDoubleSpans, sumWhatDoublesLose) {
  const std::vector<double> parts = {1e16, 1.0, -1e16}, ones(3, 1.0);
  EXPECT_EQ(Sum(parts), 1);
  EXPECT_EQ(DotProduct(parts, ones), 1);
  std::vector<double> tenths(1000000, 0.1);
  EXPECT_EQ(Sum(tenths), doubledouble(0.1) * 1000000);
}

TEST(DoubleDoubleSpans, refuseLengthsThatDiffer) {
  const Numbers two(2), three(3);
  Numbers result(2, 7);
  EXPECT_THROW(static_cast<void>(DotProduct(two, three)), InternalErrorException);
  EXPECT_THROW(Add(two, three, result), InternalErrorException);
  EXPECT_THROW(Divide(three, three, result), InternalErrorException);
  EXPECT_EQ(result, Numbers(2, 7));
}

}  // namespace
}  // namespace shr
