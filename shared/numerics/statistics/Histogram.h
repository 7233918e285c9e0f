// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CHistogram`, counts of numbers in bins of equal width. For the histogram of a sample whose
/// limits are not known before see shared/numerics/statistics/UnivariateStatistics.h.
///
///     CHistogram histogram(0.0, 10.0, 5);
///     histogram.Add(10.0);                          // into the last bin
///     bool isCounted = histogram.Add(10.5);         // false
///     double share = histogram.GetProbability(4);   // 1
///
/// Threads: a histogram and its copies share their counts by a plain reference count, so they must
/// stay on one thread; const calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "shared/Export.h"

namespace shr {

/// Bins from a minimum to a maximum with a count each. A copy shares the counts until one of both
/// is changed. The default reaches from 0 to 1 and has no bins.
class SHARED_API CHistogram {
public:
  CHistogram() = default;
  /// Like `Init`.
  CHistogram(double minimum, double maximum, std::uint64_t binCount);
  CHistogram(const CHistogram& other) noexcept;
  /// Leaves `other` as the default is.
  CHistogram(CHistogram&& other) noexcept;
  CHistogram& operator=(const CHistogram& other) noexcept;
  CHistogram& operator=(CHistogram&& other) noexcept;
  ~CHistogram();

  /// Starts again with other limits and bins, the counts 0. Bins have the width (maximum - minimum)
  /// / binCount; one bin has its lower limit, the last one both. Errors: an `Exception` with line
  /// 136, "Out of global memory", where there is no room for the counts; nothing is changed then.
  void Init(double minimum, double maximum, std::uint64_t binCount);
  /// Starts again with the counts of `counts`, as many as bins, and their sum as the total.
  void Init(double minimum, double maximum, std::uint64_t binCount, const std::uint32_t counts[]);
  /// Makes all counts and the total 0. Errors: as of `Init`, where the counts were shared.
  void Reset();

  /// Counts x in its bin and returns true; returns false where x is outside the limits or NaN, and
  /// where there are no bins. A count wraps at 2^32, the total does not. Where the width is 0, or
  /// the limits are not finite and x has no place between them, x goes into the last bin. Errors:
  /// as of `Init`, where the counts were shared. Cost: O(1), O(bins) where they were.
  bool Add(double x);

  double GetMinimum() const { return minimum_; }
  double GetMaximum() const { return maximum_; }
  /// Returns 0 without bins.
  double GetBinWidth() const { return binWidth_; }
  std::uint64_t GetBinCount() const { return binCount_; }
  std::uint64_t GetTotalCount() const { return totalCount_; }
  /// Returns the counts, null without bins. Lifetime: until the histogram is changed or destroyed.
  const std::uint32_t* GetCounts() const { return block_ == nullptr ? nullptr : block_ + 1; }
  /// The same counts as a range.
  std::span<const std::uint32_t> Counts() const { return {GetCounts(), binCount_}; }
  /// Returns the count of a bin. Requires bin < `GetBinCount()`.
  std::uint32_t operator[](std::size_t bin) const { return block_[bin + 1]; }
  /// Returns the share of a bin in the total, NaN where that is 0. Requires bin < `GetBinCount()`.
  double GetProbability(std::size_t bin) const {
    return static_cast<double>((*this)[bin]) / static_cast<double>(totalCount_);
  }

private:
  void CopyOnWrite();
  void Release() noexcept;
  bool IsShared() const { return block_ != nullptr && block_[0] > 1; }

  double minimum_ = 0.0;
  double maximum_ = 1.0;
  double binWidth_ = 0.0;
  std::uint64_t binCount_ = 0;
  std::uint64_t totalCount_ = 0;
  std::uint32_t* block_ = nullptr;  // the number of owners, then the counts
};

}  // namespace shr
