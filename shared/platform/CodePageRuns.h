// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The form in which code page mappings are compiled into the library: runs shared by sets of
/// pages. Internal to the platform layer; tools/codepages/generate.py writes the data.

#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "shared/platform/CodePageTable.h"

namespace shr::platform {

/// `count` consecutive keys that map to consecutive values in every page of a set.
struct CodePageRun {
  std::uint16_t set;
  std::uint16_t key;
  std::uint16_t value;
  std::uint16_t count;
};

/// The value that makes a byte the first of a pair.
inline constexpr std::uint16_t LEAD_VALUE = 0xFFFF;

struct CodePageRuns {
  /// Page numbers, ascending; a set is a mask over them.
  std::span<const std::uint32_t> pages;
  std::span<const std::uint64_t> sets;
  /// Byte or pair to unit.
  std::span<const CodePageRun> decode;
  /// Unit to byte or pair.
  std::span<const CodePageRun> encode;

  bool Has(std::uint32_t page) const {
    return std::binary_search(pages.begin(), pages.end(), page);
  }
};

/// Calls `visit(key, value)` for every mapping of `runs` that `page` has.
template <typename Visit>
void ForEachMapping(const CodePageRuns& data, std::span<const CodePageRun> runs, std::uint32_t page,
                    Visit visit) {
  const auto found = std::lower_bound(data.pages.begin(), data.pages.end(), page);
  if (found == data.pages.end() || *found != page) return;
  const std::uint64_t bit = std::uint64_t{1} << (found - data.pages.begin());
  for (const CodePageRun& run : runs) {
    if ((data.sets[run.set] & bit) == 0) continue;
    for (std::uint32_t i = 0; i < run.count; ++i) {
      visit(static_cast<std::uint16_t>(run.key + i), static_cast<std::uint16_t>(run.value + i));
    }
  }
}

/// Sets one decoding of `table`: a lead byte, a single byte or a pair.
inline void SetDecoding(CodePageTable& table, std::uint16_t key, std::uint16_t value) {
  if (value == LEAD_VALUE) {
    table.SetLead(static_cast<unsigned char>(key));
  } else if (key > 0xFF) {
    table.SetLead(static_cast<unsigned char>(key >> 8));
    table.SetPair(key, static_cast<char16_t>(value));
  } else {
    table.SetSingle(static_cast<unsigned char>(key), static_cast<char16_t>(value));
  }
}

}  // namespace shr::platform
