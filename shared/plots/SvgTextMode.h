// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How text gets into SVG pictures; shared/plots/SvgTextIF.h draws it so.

#pragma once

namespace shr {

enum class SvgTextMode {
  /// `<text>`, which can be searched and takes the faces of whoever looks at it. From
  /// `CMTSvgTextIF`: with the requested family, those that stand in for it here and a generic one,
  /// as wide as it was measured; text in symbol sets is drawn as outlines.
  Text,
  /// Each glyph once as a path in `<defs>` and `<use>`d where it stands: the same everywhere, also
  /// on a machine without any font.
  Outlines
};

}  // namespace shr
