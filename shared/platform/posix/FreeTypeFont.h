// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One font file by FreeType: what it says of itself, and its glyphs.
///
/// Where each value comes from is told at the fields of shared/platform/Fonts.h; tables that a font
/// lacks are made up for by "hhea" and "head". Threads: as FontLibraries.h tells.

#pragma once

#include <memory>

#include "shared/platform/Fonts.h"

namespace shr::platform {

/// Reads what the font at `index` of `file` says of itself: name, style, weight, slant, character
/// sets, pitch, family and first character. Returns false, `font` unchanged, when the file cannot
/// be read or is no outline font in the tables of TrueType or OpenType.
bool DescribeFont(const char* file, int index, FontDescription& font);

/// Opens a font, or returns null.
std::unique_ptr<Font> OpenFreeTypeFont(const char* file, int index);

}  // namespace shr::platform
