// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Estimates how wide text will be set, for layout where no face is at hand: whoever looks at an
/// SVG picture brings the faces along.
///
///     double width = EstimateTextWidth(L"Depth (km)", 12);   // 12 user units high
///
/// Threads: any.

#pragma once

#include <string_view>

#include "shared/Export.h"

namespace shr {

/// Returns about how wide `text` is set in a sans-serif face of `size`, in the unit of `size`: a
/// sum over its characters by script. Error bound: none; within a sixth for common faces and
/// ordinary words. Cost: O(length).
SHARED_API double EstimateTextWidth(std::wstring_view text, double size);

}  // namespace shr
