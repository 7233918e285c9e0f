// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What falling back from one font to others needs: which characters a font has, without opening it
/// to draw, and the order in which the system would try fonts.
///
/// Programs ask shared/fonts/TextLayout.h; this is what it stands on.
///
///     const std::vector<std::size_t> order = RankFonts(missing, fonts);
///     const std::vector<CharacterRange> has = ReadCoverage(*fonts[order[0]]);
///
/// Threads: any.

#pragma once

#include <cstddef>
#include <vector>

#include "shared/Export.h"
#include "shared/platform/Fonts.h"

namespace shr::platform {

/// Characters from the first to the last.
struct CharacterRange {
  char32_t first = 0, last = 0;
};

/// Returns the characters of a font of the last `ListFonts`, in order; none when it is not there.
/// Linux: what Fontconfig knows, no file is read. Windows: what GDI says and, beyond U+FFFF, the
/// font's table "cmap".
SHARED_API std::vector<CharacterRange> ReadCoverage(const FontDescription& font);

/// Returns the places in `fonts`, each once, those first that the system takes first where
/// `missing` lacks a character. `fonts` are sorted, the fittest first, and stay so where the system
/// does not care. Linux: Fontconfig's sorting for the family, weight and slant of `missing` and the
/// user's language. Windows: the fonts linked with the family, with Segoe UI and with Tahoma come
/// first.
SHARED_API std::vector<std::size_t> RankFonts(const FontDescription& missing,
                                              const std::vector<const FontDescription*>& fonts);

}  // namespace shr::platform
