// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/TextLines.h"

namespace shr::platform {

const wchar_t* const TEXT_LINE_END = L"\n";

}  // namespace shr::platform
