// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Order and shapes of a line of text: where its directions and scripts change, and which glyphs of
/// a font stand for a stretch of it.
///
/// Programs ask shared/fonts/TextLayout.h; this is what it stands on. Linux answers by FriBidi and
/// HarfBuzz, Windows by Uniscribe, all loaded by the first call and not before.
///
///     std::vector<TextItem> items;
///     if (ItemizeText(line, false, items)) {
///       const std::unique_ptr<Shaper> shaper = OpenShaper(font);
///       ShapedText shaped;
///       if (shaper != nullptr) shaper->Shape(line, items[0], shaped);
///     }
///
/// Units: lengths are fractions of the em, x to the right from the left end of the stretch and y
/// upwards from the baseline; nothing is hinted. Places are code units of the line. Threads: the
/// functions may be called on any thread; one thread a `Shaper`.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/platform/Fonts.h"

namespace shr::platform {

/// A stretch of a line in one direction and one script.
struct TextItem {
  std::size_t begin = 0, length = 0;
  unsigned char level = 0;   ///< of embedding; odd from right to left
  std::uint32_t script = 0;  ///< as the system calls it

  bool IsRightToLeft() const noexcept { return level % 2 != 0; }
};

/// Cuts a line into items, in logical order, by the Unicode bidirectional algorithm with the given
/// direction of the paragraph. Returns false, `items` empty, where the system has no means for it.
/// Cost: memory of some dozen bytes a character; long lines are better cut before.
SHARED_API bool ItemizeText(std::wstring_view line, bool isRightToLeft,
                            std::vector<TextItem>& items);

/// A glyph of shaped text.
struct ShapedGlyph {
  std::uint32_t glyph = 0;  ///< its number in the font
  std::size_t begin = 0;    ///< first code unit of the line that it stands for
  double x = 0, y = 0;      ///< of its origin
};

struct ShapedText {
  std::vector<ShapedGlyph> glyphs;  ///< in visual order
  double advance = 0;
};

/// Shapes text in one font.
class SHARED_API Shaper {
public:
  virtual ~Shaper();
  Shaper(const Shaper&) = delete;
  Shaper& operator=(const Shaper&) = delete;

  /// Shapes an item of `ItemizeText` or a piece of one, with ligatures, marks and forms as its
  /// script wants them; letters of Latin, Greek and Cyrillic without kerning and ligatures, as far
  /// as the system can be told. Characters that the font lacks show `MISSING_GLYPH`. Returns false,
  /// `shaped` in no particular state, on failure.
  virtual bool Shape(std::wstring_view line, const TextItem& item, ShapedText& shaped) = 0;

protected:
  Shaper();
};

/// Opens a font of `ListFonts` for shaping; null when that fails or the system has no shaping.
SHARED_API std::unique_ptr<Shaper> OpenShaper(const FontDescription& description);

}  // namespace shr::platform
