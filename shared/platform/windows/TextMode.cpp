// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/TextMode.h"

namespace shr::platform {

bool TextModeTranslatesLineEnds() noexcept {
  return true;
}

}  // namespace shr::platform
