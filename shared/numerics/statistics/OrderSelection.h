// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `SelectInPlace`, which brings one order statistic to its place. Not installed.
///
///     SelectInPlace(values, middle, lower);      // the median, smaller values before it
///
/// A round takes a random sample and from it a pivot that lies a little to the side of the wanted
/// rank, on the side where more values are: dividing by it removes that side, and what is left has
/// the wanted rank at its very end, so that the next round removes nearly all of the rest.
///
/// Dividing moves each value unconditionally and advances the border by the outcome of the
/// comparison (N. Lomuto's scheme without a branch): there is nothing that a processor could
/// mispredict, which is what dividing random data costs most.
///
/// Threads: no state.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace shr {

/// Moves the values that `belongs` holds of to the front and returns their number.
template <class T, class Predicate>
std::size_t Divide(std::span<T> values, Predicate belongs) {
  T* const data = values.data();
  std::size_t border = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const T value = data[i];
    data[i] = data[border];
    data[border] = value;
    border += static_cast<std::size_t>(belongs(value));
  }
  return border;
}

/// Reorders `values` so that the NaN stand at the end, and returns the others.
inline std::span<double> MoveNanToEnd(std::span<double> values) {
  const auto isNumber = [](double value) { return value == value; };
  std::size_t first = 0;
  while (first < values.size() && isNumber(values[first])) ++first;
  return values.first(first + Divide(values.subspan(first), isNumber));
}

/// One selection; see `SelectInPlace`.
template <class T, class Less>
class Selection {
public:
  Selection(std::span<T> values, std::size_t rank, Less less)
      : values_(values), rank_(rank), less_(less), random_(values.size()) {}

  void Run() {
    constexpr std::size_t SMALL_SIZE = 256;  // std::nth_element is as fast below
    /// Rounds that may remove less than a quarter before the library's selection takes over.
    int patience = 8;
    while (values_.size() > SMALL_SIZE && patience > 0) {
      const std::size_t before = values_.size();
      Narrow(ChoosePivot());
      if (isFound_) return;
      if (values_.size() > before / 4 * 3) --patience;
    }
    const auto first = values_.begin();
    std::nth_element(first, first + static_cast<std::ptrdiff_t>(rank_), values_.end(), less_);
  }

private:
  /// Returns a value that is likely on the side of the rank where more values are, close to it.
  T ChoosePivot() {
    constexpr std::size_t SAMPLE_SIZE = 512;
    std::array<T, SAMPLE_SIZE> sample;
    const std::size_t size = std::min(SAMPLE_SIZE, values_.size() / 16);
    const auto range = static_cast<double>(values_.size());
    for (std::size_t i = 0; i < size; ++i) {
      random_ = random_ * 6364136223846793005u + 1442695040888963407u;
      const double fraction = static_cast<double>(random_ >> 32) / 4294967296.0;
      sample[i] = values_[static_cast<std::size_t>(fraction * range)];
    }
    const double fraction = static_cast<double>(rank_) / range;
    const auto samples = static_cast<double>(size);
    const double spread = 1.0 + std::sqrt(2.0 * samples * fraction * (1.0 - fraction));
    const double wanted = samples * fraction + (fraction >= 0.5 ? -spread : spread);
    const auto place = static_cast<std::ptrdiff_t>(std::clamp(wanted, 0.0, samples - 1.0));
    const auto first = sample.begin();
    std::nth_element(first, first + place, first + static_cast<std::ptrdiff_t>(size), less_);
    return *(first + place);
  }

  /// Removes what is on the other side of `pivot`, one of the values.
  void Narrow(const T& pivot) {
    const auto isBelow = [&](const T& value) { return less_(value, pivot); };
    const bool fromBelow = rank_ >= values_.size() / 2;
    const std::size_t below = fromBelow ? Divide(values_, isBelow) : 0;
    if (below != 0) return KeepSideOf(below);
    const std::size_t notAbove =
        Divide(values_, [&](const T& value) { return !less_(pivot, value); });
    if (rank_ >= notAbove || (!fromBelow && notAbove < values_.size())) {
      return KeepSideOf(notAbove);
    }
    // The pivot is the smallest or the largest of them.
    const std::size_t less = fromBelow ? 0 : Divide(values_, isBelow);
    if (rank_ < less) return KeepSideOf(less);
    isFound_ = true;
  }

  void KeepSideOf(std::size_t border) {
    if (rank_ < border) {
      values_ = values_.first(border);
    } else {
      values_ = values_.subspan(border);
      rank_ -= border;
    }
  }

  std::span<T> values_;  // what is left of the search
  std::size_t rank_;     // in them
  Less less_;
  std::uint64_t random_;
  bool isFound_ = false;
};

/// Reorders `values` so that `values[rank]` is what it would be after sorting, values before it are
/// not above it and values after it not below. Does what `std::nth_element` does, at about an
/// eighth of its time for many doubles, and the same on every machine. Requires rank < size; a
/// strict weak order, so no NaN without an order of theirs. Cost: about 1.6 passes over data in any
/// order; O(n log n) in the worst case. Source: R. W. Floyd and R. L. Rivest, "Expected time bounds
/// for selection", 1975, with pivots of a random sample.
template <class T, class Less = std::less<T>>
void SelectInPlace(std::span<T> values, std::size_t rank, Less less = {}) {
  Selection<T, Less>(values, rank, less).Run();
}

}  // namespace shr
