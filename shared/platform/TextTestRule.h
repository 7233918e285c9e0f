// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The rule behind the text tests of targets whose system has none.
///
/// The rule gives what the Windows function `IsTextUnicode` gives under Wine, found by asking it
/// about random buffers; tests/platform/TextTestsTest.cpp compares the two. Internal: callers use
/// shared/platform/TextTests.h.
/// Threads: the function may be called on any thread.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/platform/TextTests.h"

namespace shr::platform {

namespace text_test_rule {

/// Only so many units of a sample are looked at.
inline constexpr std::size_t MAX_UNITS = 256;

inline std::uint32_t UnitAt(std::string_view bytes, std::size_t index) noexcept {
  const auto low = static_cast<unsigned char>(bytes[2 * index]);
  const auto high = static_cast<unsigned char>(bytes[2 * index + 1]);
  return static_cast<std::uint32_t>(low | high << 8);
}

inline bool IsControl(std::uint32_t unit) noexcept {
  return unit == 0 || unit == 0x0009 || unit == 0x000A || unit == 0x000D || unit == 0x0020 ||
         unit == 0x3000;
}

inline bool IsSwappedControl(std::uint32_t unit) noexcept {
  return unit == 0 || unit == 0x0900 || unit == 0x0A00 || unit == 0x0D00 || unit == 0x2000;
}

/// What a single unit shows by itself.
inline std::uint32_t TestUnit(std::uint32_t unit) noexcept {
  std::uint32_t fired = 0;
  if ((unit & 0x00FF) == 0 || (unit & 0xFF00) == 0) fired |= TEXT_TEST_NULL_BYTES;
  if (IsControl(unit)) fired |= TEXT_TEST_CONTROLS;
  if (IsSwappedControl(unit)) fired |= TEXT_TEST_REVERSE_CONTROLS;
  return fired;
}

}  // namespace text_test_rule

/// Answers like `TestText`. The ASCII, reverse-statistics and illegal-characters tests never fire.
inline std::uint32_t ApplyTextTestRule(std::string_view bytes, std::uint32_t tests) noexcept {
  using namespace text_test_rule;
  if (bytes.size() < 2) return 0;
  std::uint32_t fired = bytes.size() % 2 != 0 ? TEXT_TEST_ODD_LENGTH : 0;
  const std::uint32_t first = UnitAt(bytes, 0);
  if (first == 0xFEFF) fired |= TEXT_TEST_SIGNATURE;
  if (first == 0xFFFE) fired |= TEXT_TEST_REVERSE_SIGNATURE;

  // A last zero byte may be half of a unit that the sample cut, so it does not count.
  if (bytes.back() == '\0') bytes.remove_suffix(1);
  const std::size_t unitCount = std::min(bytes.size() / 2, MAX_UNITS);
  std::size_t smallUnits = 0;
  for (std::size_t i = 0; i < unitCount; ++i) {
    const std::uint32_t unit = UnitAt(bytes, i);
    if (unit <= 0x00FF) ++smallUnits;
    fired |= TestUnit(unit);
  }
  if (smallUnits > unitCount / 2) fired |= TEXT_TEST_STATISTICS;
  return fired & tests;
}

}  // namespace shr::platform
