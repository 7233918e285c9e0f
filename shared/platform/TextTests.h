// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Statistical tests that tell wide text from narrow text by a sample of its bytes.
///
/// The Windows side asks the system, the other side applies the rule in
/// shared/platform/TextTestRule.h. The tests only hint: shared/files/FileUtility.h turns their
/// answers into a confidence.
///
///     const std::uint32_t fired = TestText(sample, TEXT_TEST_NULL_BYTES);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>
#include <string_view>

#include "shared/Export.h"

namespace shr::platform {

/// Only characters below 128, each zero-extended to a unit.
inline constexpr std::uint32_t TEXT_TEST_ASCII16 = 0x0001;
/// Most units are small.
inline constexpr std::uint32_t TEXT_TEST_STATISTICS = 0x0002;
/// Holds a control unit: tab, line feed, carriage return, space or ideographic space.
inline constexpr std::uint32_t TEXT_TEST_CONTROLS = 0x0004;
/// Starts with the byte-order mark.
inline constexpr std::uint32_t TEXT_TEST_SIGNATURE = 0x0008;
/// The same four for units whose bytes are swapped.
inline constexpr std::uint32_t TEXT_TEST_REVERSE_ASCII16 = 0x0010;
inline constexpr std::uint32_t TEXT_TEST_REVERSE_STATISTICS = 0x0020;
inline constexpr std::uint32_t TEXT_TEST_REVERSE_CONTROLS = 0x0040;
inline constexpr std::uint32_t TEXT_TEST_REVERSE_SIGNATURE = 0x0080;
/// Holds a unit that text never holds.
inline constexpr std::uint32_t TEXT_TEST_ILLEGAL_CHARS = 0x0100;
/// The number of bytes is odd.
inline constexpr std::uint32_t TEXT_TEST_ODD_LENGTH = 0x0200;
/// Holds zero bytes.
inline constexpr std::uint32_t TEXT_TEST_NULL_BYTES = 0x1000;

/// Applies the tests named by the set `tests` to `bytes` and returns the set of those that fired.
SHARED_API std::uint32_t TestText(std::string_view bytes, std::uint32_t tests) noexcept;

}  // namespace shr::platform
