// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/TextTests.h"

#include "shared/platform/TextTestRule.h"

namespace shr::platform {

std::uint32_t TestText(std::string_view bytes, std::uint32_t tests) noexcept {
  return ApplyTextTestRule(bytes, tests);
}

}  // namespace shr::platform
