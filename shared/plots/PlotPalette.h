// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Colors of plots that people with any kind of color vision can tell apart.
///
///     Color4b line = SeriesColor(0);                     // blue
///     Color4b cell = SequentialColor(0.75);              // from dark violet to yellow
///     Color4b tie = DivergingColor(-1);                  // blue, white in the middle, vermilion
///
/// Threads: any.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/color/Color4b.h"

namespace shr {

/// How many colors tell series apart; more series begin anew.
inline constexpr std::size_t SERIES_COLORS = 8;

/// Returns the color of the series `index`, from 0: blue, vermilion, bluish green, reddish purple,
/// orange, sky blue, yellow, black. Where the ground is dark, blue and sky blue change places, and
/// black is white.
/// Source: M. Okabe, K. Ito, "Color Universal Design (CUD)", 2002, revised 2008, in an order that
/// puts what contrasts with paper first.
SHARED_API Color4b SeriesColor(std::size_t index, bool onDark = false);

/// Returns the color of `share` (0 to 1, clamped; NaN is gray) on a scale that rises in lightness
/// at an even pace, also when printed without color.
/// Source: ten samples of "viridis", S. van der Walt, N. Smith, "A Better Default Colormap for
/// Matplotlib", SciPy 2015, joined by straight lines in sRGB.
SHARED_API Color4b SequentialColor(double share);

/// Returns the color of `share` (-1 to 1, clamped; NaN is gray): the blue of the series through
/// near-white at 0 to their vermilion.
SHARED_API Color4b DivergingColor(double share);

/// Returns whether black text is easier to read on `ground` than white text, by the contrast ratio
/// of WCAG 2.1.
SHARED_API bool WantsDarkText(const Color4b& ground);

}  // namespace shr
