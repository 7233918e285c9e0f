// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Counts how often each word of a text occurs. For splitting a text into words see
/// shared/text/StringUtility.h.
///
///     Counter counter;
///     counter.Add(L"map");
///     std::size_t times = counter.TimesOf(L"map");   // 1
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "shared/Export.h"

namespace shr {

/// Words and how often each was added. Case matters.
class SHARED_API Counter {
public:
  /// Counts one more `word`. Errors: the empty word raises an `Exception`, nothing is counted.
  /// Cost: O(log n) comparisons.
  void Add(std::wstring_view word);

  /// Returns how often `word` was added, 0 for a word never seen.
  [[nodiscard]] std::size_t TimesOf(std::wstring_view word) const;

private:
  std::map<std::wstring, std::size_t, std::less<>> times_;
};

}  // namespace shr
