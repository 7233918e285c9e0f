// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Checked walks over the flat form of polygons, shared by the sources of this folder. Not
/// installed.

#pragma once

#include <cstddef>
#include <numeric>
#include <span>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Returns the array as a span; a null array with a count above 0 is an internal error of `unit`.
template <class T>
std::span<const T> CheckedSpan(const T* values, std::size_t count, const wchar_t* unit) {
  if (values == nullptr && count > 0) ThrowInternalError(SHARED_MODULE, unit, __LINE__);
  return {values, count};
}

/// Returns the sum of the counts.
inline std::size_t SumOfCounts(std::span<const unsigned int> counts) {
  return std::accumulate(counts.begin(), counts.end(), std::size_t{0});
}

/// Raises an internal error of `unit` when the counts ask for more points than there are.
inline void CheckCounts(std::span<const Vec2d> points, std::span<const unsigned int> counts,
                        const wchar_t* unit) {
  if (SumOfCounts(counts) > points.size()) ThrowInternalError(SHARED_MODULE, unit, __LINE__);
}

/// Calls `function` with the points of every contour in turn.
template <class Function>
void ForEachContour(const Vec2d* points, const unsigned int* counts, std::size_t numContours,
                    const wchar_t* unit, Function function) {
  for (const unsigned int count : CheckedSpan(counts, numContours, unit)) {
    function(CheckedSpan(points, count, unit));
    if (count > 0) points += count;
  }
}

}  // namespace shr
