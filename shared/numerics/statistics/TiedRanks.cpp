// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The bits of a double, with all of them reversed for negative numbers and the sign bit for others,
// are an integer of the same order. Integers are sorted digit by digit from the lowest, which keeps
// the order of equal ones (D. E. Knuth, "The Art of Computer Programming 3", 5.2.5); the counts of
// all digits are taken in one pass, and a digit that is the same for all is passed over.

#include "shared/numerics/statistics/TiedRanks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace shr {
namespace {

constexpr std::size_t DIGIT_BITS = 11;
constexpr std::size_t DIGIT_COUNT = 6;
constexpr std::size_t DIGIT_VALUES = std::size_t{1} << DIGIT_BITS;
/// Fewer are sorted faster by comparisons.
constexpr std::size_t RADIX_SIZE = 1500;
/// NaN are above all numbers.
constexpr std::uint64_t NAN_KEY = ~std::uint64_t{0};

struct Keyed {
  std::uint64_t key;
  std::uint64_t index;
};

std::uint64_t KeyOf(double value) {
  if (value != value) return NAN_KEY;
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);  // 0 for -0, too
  const std::uint64_t sign = bits >> 63;
  return bits ^ ((0 - sign) | std::uint64_t{1} << 63);
}

std::size_t DigitOf(std::uint64_t key, std::size_t digit) {
  return key >> (digit * DIGIT_BITS) & (DIGIT_VALUES - 1);
}

void RadixSort(std::vector<Keyed>& items) {
  std::vector<std::array<std::size_t, DIGIT_VALUES>> counts(DIGIT_COUNT);
  for (const Keyed& item : items) {
    for (std::size_t digit = 0; digit < DIGIT_COUNT; ++digit) {
      ++counts[digit][DigitOf(item.key, digit)];
    }
  }
  std::vector<Keyed> sorted(items.size());
  for (std::size_t digit = 0; digit < DIGIT_COUNT; ++digit) {
    auto& next = counts[digit];
    if (next[DigitOf(items[0].key, digit)] == items.size()) continue;
    std::size_t sum = 0;
    for (std::size_t& place : next) {
      const std::size_t count = place;
      place = sum;
      sum += count;
    }
    for (const Keyed& item : items) sorted[next[DigitOf(item.key, digit)]++] = item;
    items.swap(sorted);
  }
}

}  // namespace

void FindTiedRanks(const double* values, std::size_t stride, std::size_t count, double* ranks) {
  std::vector<Keyed> items(count);
  for (std::size_t i = 0; i < count; ++i) items[i] = {KeyOf(values[i * stride]), i};
  if (count >= RADIX_SIZE) {
    RadixSort(items);
  } else {
    std::sort(items.begin(), items.end(), [](const Keyed& a, const Keyed& b) {
      return a.key != b.key ? a.key < b.key : a.index < b.index;
    });
  }
  for (std::size_t start = 0; start < count;) {
    std::size_t end = start + 1;
    const std::uint64_t key = items[start].key;
    if (key != NAN_KEY) {
      while (end < count && items[end].key == key) ++end;
    }
    const double rank = static_cast<double>(start) + (static_cast<double>(end - start) + 1.0) / 2.0;
    for (std::size_t i = start; i < end; ++i) ranks[items[i].index * stride] = rank;
    start = end;
  }
}

}  // namespace shr
