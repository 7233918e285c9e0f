// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What font files say of themselves, kept between programs in the user's cache folder, so that a
/// start opens new files only.
///
/// The file is "shared/faces-1" below XDG_CACHE_HOME or ~/.cache: a line "shared-faces 1", then a
/// line a font with its fields between tabs: time (nanoseconds) and size of the file, weight,
/// italic, character sets (hexadecimal), pitch and family, first character, family, style, index,
/// path. Weight 0 marks a file that cannot be read. A line that is not of this form counts as
/// missing. Threads: one thread an object.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "shared/platform/Fonts.h"

namespace shr::platform {

/// Which state of a file a line speaks of.
struct FontFileStamp {
  std::int64_t time = 0;  ///< of its last change, nanoseconds
  std::int64_t size = 0;
};

class FontCache {
public:
  /// What is known of a font: not (or no longer), what it says, or that it cannot be read.
  enum class Answer { Unknown, Known, Broken };

  /// Reads the cache of the user.
  FontCache();
  ~FontCache();

  /// Looks the font at `index` of `path` up.
  Answer Find(const std::string& path, int index, const FontFileStamp& stamp,
              FontDescription& font) const;

  /// Keeps what was found out; `font` is null for a file that cannot be read.
  void Add(const std::string& path, int index, const FontFileStamp& stamp,
           const FontDescription* font);

  /// Writes the cache if there is anything new: the whole file or nothing.
  void Save();

private:
  void Index();

  std::string file_;  // empty: nowhere to keep it
  std::string text_;  // the lines, as they are in the file; `lines_` looks into it
  std::string added_;
  std::unordered_map<std::string_view, std::string_view> lines_;  // from "index TAB path"
};

}  // namespace shr::platform
