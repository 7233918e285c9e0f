// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The visual order of a line whose directions may be mixed.
///
///     for (const platform::TextItem& item : OrderText(text, TextDirection::Auto)) Place(item);
///
/// Threads: any.

#pragma once

#include <string_view>
#include <vector>

#include "shared/fonts/TextLayout.h"
#include "shared/platform/TextShaping.h"

namespace shr {

/// Returns the stretches of a text in one direction and one script, from left to right. They cover
/// the text. Where the system cannot order text, letters from right to left are turned around
/// together with what stands between them, which the log tells once.
std::vector<platform::TextItem> OrderText(std::wstring_view text, TextDirection direction);

}  // namespace shr
