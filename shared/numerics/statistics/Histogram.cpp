// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/statistics/Histogram.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr const wchar_t* SOURCE_NAME = L"Histogram";
constexpr int OUT_OF_MEMORY_LINE = 136;

/// Returns a block of one owner with all counts 0, null without bins.
std::uint32_t* MakeBlock(std::uint64_t binCount) {
  if (binCount == 0) return nullptr;
  constexpr std::uint64_t LIMIT =
      static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()) /
      sizeof(std::uint32_t);
  void* memory = nullptr;
  if (binCount < LIMIT) {
    memory = std::calloc(static_cast<std::size_t>(binCount) + 1, sizeof(std::uint32_t));
  }
  if (memory == nullptr) ThrowErrorImpl(SOURCE_NAME, OUT_OF_MEMORY_LINE, OUT_OF_MEMORY_TEXT);
  auto* const block = static_cast<std::uint32_t*>(memory);
  block[0] = 1;
  return block;
}

}  // namespace

CHistogram::CHistogram(double minimum, double maximum, std::uint64_t binCount) {
  Init(minimum, maximum, binCount);
}

CHistogram::CHistogram(const CHistogram& other) noexcept
    : minimum_(other.minimum_),
      maximum_(other.maximum_),
      binWidth_(other.binWidth_),
      binCount_(other.binCount_),
      totalCount_(other.totalCount_),
      block_(other.block_) {
  if (block_ != nullptr) ++block_[0];
}

CHistogram::CHistogram(CHistogram&& other) noexcept {
  *this = std::move(other);
}

CHistogram& CHistogram::operator=(const CHistogram& other) noexcept {
  CHistogram copy(other);
  return *this = std::move(copy);
}

CHistogram& CHistogram::operator=(CHistogram&& other) noexcept {
  if (this == &other) return *this;
  Release();
  minimum_ = std::exchange(other.minimum_, 0.0);
  maximum_ = std::exchange(other.maximum_, 1.0);
  binWidth_ = std::exchange(other.binWidth_, 0.0);
  binCount_ = std::exchange(other.binCount_, 0);
  totalCount_ = std::exchange(other.totalCount_, 0);
  block_ = std::exchange(other.block_, nullptr);
  return *this;
}

CHistogram::~CHistogram() {
  Release();
}

void CHistogram::Init(double minimum, double maximum, std::uint64_t binCount) {
  std::uint32_t* const block = MakeBlock(binCount);
  Release();
  block_ = block;
  minimum_ = minimum;
  maximum_ = maximum;
  binCount_ = binCount;
  binWidth_ = binCount == 0 ? 0.0 : (maximum - minimum) / static_cast<double>(binCount);
  totalCount_ = 0;
}

void CHistogram::Init(double minimum, double maximum, std::uint64_t binCount,
                      const std::uint32_t counts[]) {
  CHistogram histogram(minimum, maximum, binCount);  // `counts` may be our own
  if (binCount != 0) std::copy_n(counts, binCount, histogram.block_ + 1);
  const auto all = histogram.Counts();
  histogram.totalCount_ = std::accumulate(all.begin(), all.end(), std::uint64_t{0});
  *this = std::move(histogram);
}

void CHistogram::Reset() {
  if (IsShared()) {
    std::uint32_t* const block = MakeBlock(binCount_);
    Release();
    block_ = block;
  } else if (block_ != nullptr) {
    std::fill_n(block_ + 1, binCount_, 0u);
  }
  totalCount_ = 0;
}

bool CHistogram::Add(double x) {
  if (binCount_ == 0 || !(x >= minimum_ && x <= maximum_)) return false;
  CopyOnWrite();
  const double place = (x - minimum_) / binWidth_;
  const std::uint64_t bin =
      place < static_cast<double>(binCount_) ? static_cast<std::uint64_t>(place) : binCount_ - 1;
  ++block_[bin + 1];
  ++totalCount_;
  return true;
}

/// Gives the histogram counts of its own.
void CHistogram::CopyOnWrite() {
  if (!IsShared()) return;
  std::uint32_t* const block = MakeBlock(binCount_);
  std::copy_n(block_ + 1, binCount_, block + 1);
  Release();
  block_ = block;
}

void CHistogram::Release() noexcept {
  if (block_ != nullptr && --block_[0] == 0) std::free(block_);
  block_ = nullptr;
}

}  // namespace shr
