// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/TextTests.h"

#include <windows.h>

#include <algorithm>
#include <climits>

namespace shr::platform {

static_assert(TEXT_TEST_ASCII16 == IS_TEXT_UNICODE_ASCII16);
static_assert(TEXT_TEST_STATISTICS == IS_TEXT_UNICODE_STATISTICS);
static_assert(TEXT_TEST_CONTROLS == IS_TEXT_UNICODE_CONTROLS);
static_assert(TEXT_TEST_SIGNATURE == IS_TEXT_UNICODE_SIGNATURE);
static_assert(TEXT_TEST_REVERSE_ASCII16 == IS_TEXT_UNICODE_REVERSE_ASCII16);
static_assert(TEXT_TEST_REVERSE_STATISTICS == IS_TEXT_UNICODE_REVERSE_STATISTICS);
static_assert(TEXT_TEST_REVERSE_CONTROLS == IS_TEXT_UNICODE_REVERSE_CONTROLS);
static_assert(TEXT_TEST_REVERSE_SIGNATURE == IS_TEXT_UNICODE_REVERSE_SIGNATURE);
static_assert(TEXT_TEST_ILLEGAL_CHARS == IS_TEXT_UNICODE_ILLEGAL_CHARS);
static_assert(TEXT_TEST_ODD_LENGTH == IS_TEXT_UNICODE_ODD_LENGTH);
static_assert(TEXT_TEST_NULL_BYTES == IS_TEXT_UNICODE_NULL_BYTES);

std::uint32_t TestText(std::string_view bytes, std::uint32_t tests) noexcept {
  INT flags = static_cast<INT>(tests);
  const std::size_t count = std::min<std::size_t>(bytes.size(), INT_MAX);
  IsTextUnicode(bytes.data(), static_cast<int>(count), &flags);
  return static_cast<std::uint32_t>(flags);
}

}  // namespace shr::platform
