// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `WideCharacterMap`, the characters above U+FFFF of a font, for which GDI has no function: format
/// 12 of the table "cmap".
///
///     const WideCharacterMap map(font.GetDevice());
///     const std::uint32_t glyph = map.GetGlyph(0x1F30B);
///
/// What the table claims is checked against its length. Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/platform/FontFallback.h"
#include "shared/platform/WindowsTypes.h"

namespace shr::platform {

class WideCharacterMap {
public:
  /// Reads the map of the font that is selected into a device context.
  explicit WideCharacterMap(HDC device);

  /// Returns the glyph of a character, `MISSING_GLYPH` for one that is not in the map.
  std::uint32_t GetGlyph(char32_t character) const;

  /// Appends the characters of the map.
  void AddRangesTo(std::vector<CharacterRange>& ranges) const;

private:
  struct Group {
    char32_t first, last;
    std::uint32_t glyph;  // of the first
  };
  std::vector<Group> groups_;  // in order
};

}  // namespace shr::platform
