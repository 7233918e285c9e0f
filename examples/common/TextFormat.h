// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Finds out how a text file is encoded, so that it can be opened with exactly that encoding.
///
/// The byte-order mark decides when there is one. Without it a file that is UTF-8 throughout is
/// read as UTF-8, one whose zero bytes show UTF-16 as that, and anything else in the code page that
/// the caller names. The whole file is looked at once in constant memory, which also finds what no
/// table holds: zero characters, lines without end, and text that is damaged or cut off inside a
/// character.

#pragma once

#include <cstdint>
#include <optional>

#include "shared/files/EncodedBufferedFile.h"
#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// Code page of files whose encoding neither a mark nor their bytes tell.
inline constexpr std::uint32_t DEFAULT_CODE_PAGE = 1252;

/// Lines longer than this are refused; no table has them, and reading one would take its size in
/// memory.
inline constexpr std::size_t LONGEST_LINE = 1 << 20;

struct TextFormat {
  shr::TextEncoding encoding = shr::EncodingUTF8;
  std::uint32_t codePage = DEFAULT_CODE_PAGE;  ///< of `EncodingANSI`
  bool hasMark = false;
  bool isAscii = false;  ///< UTF-8 of nothing but ASCII

  /// Returns the encoding in words: "UTF-16LE with mark", "code page 1252".
  GString Describe() const;
};

/// Returns the format of the file.
/// `codePage`, when given, is the page of a file without a mark, whatever its bytes look like.
/// Errors: the library's exception when the file cannot be read; `ThrowInputError` with the line
/// when it is empty, holds a zero character or a line longer than `LONGEST_LINE`, or is damaged
/// UTF-8 or UTF-16.
TextFormat DetectTextFormat(const GString& path, std::optional<std::uint32_t> codePage);

}  // namespace examples
