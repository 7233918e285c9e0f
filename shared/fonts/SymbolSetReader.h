// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the text of a symbol set, line by line (docs/symbol-sets.md has the grammar).
///
///     SymbolSetReader(text, path).ReadInto(face);
///
/// What is taken of memory is bounded by the length of the text: the number of glyphs that it
/// announces is checked against what it can hold before room is made. Threads: one thread an
/// object.

#pragma once

#include <string_view>

#include "shared/fonts/StrokedFace.h"

namespace shr {

class SymbolSetReader {
public:
  /// Requires: `text` and `path` outlive the reader.
  SymbolSetReader(std::string_view text, const GString& path);

  /// Reads everything. Errors: an `Exception` with path and line.
  void ReadInto(CStrokedFace& face);

private:
  bool NextLine();
  std::string_view Word();
  bool AtLineEnd();
  double Number(double lowest, double highest);
  double Length();
  GString Quoted();
  char32_t Code();
  void EndLine();
  [[noreturn]] void Fail(const wchar_t* what) const;

  void ReadHead(CStrokedFace& face);
  bool ReadHeadLine(std::string_view keyword, CStrokedFace& face);
  void ReadGlyph(CStrokedFace& face);
  bool ReadGlyphLine(std::string_view keyword, CStrokedFace::Glyph& glyph);
  void ReadPath(CStrokedFace::Glyph& glyph);
  void ReadStep(char letter, GlyphOutline& outline);
  void AddArc(GlyphOutline& outline);
  void FinishGlyph(CStrokedFace::Glyph& glyph, double penWidth) const;
  void Finish(CStrokedFace& face);

  std::string_view rest_;  // lines not yet begun
  std::string_view line_;  // what is left of the current one
  const GString& path_;
  int lineNumber_ = 0;
  double em_ = 1;
  bool hasEm_ = false;
  bool inFill_ = false;
  bool isOpen_ = false;  // a contour has begun and was not closed
  bool hasBounds_ = false;
  bool hasAdvance_ = false;
  std::size_t announced_ = 0;
  std::size_t missingLine_ = 0;
};

}  // namespace shr
