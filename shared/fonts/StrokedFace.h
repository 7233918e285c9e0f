// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CSYMSetInfo` and `CStrokedFace`: symbol sets, the library's own fonts of lines and curves, and
/// the files that hold them. docs/symbol-sets.md has the format.
///
///     const CStrokedFace markers = CStrokedFace::FromFile(L"Symbols/Markers.sym");
///     if (const CStrokedFace::Glyph* glyph = markers.FindGlyph(L"volcano")) Draw(glyph->vectors);
///
/// For measuring and matching like other faces take shared/fonts/SymbolFaceInfo.h.
/// Units: lengths are fractions of the em, as in shared/fonts/FaceInfo.h. Threads: const calls may
/// run together.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/text/GString.h"

namespace shr {

/// One entry of the table of symbol sets: the name of the face and the file that holds it, with
/// what requests for a face are compared with, so that no file is read before a face is used.
class SHARED_API CSYMSetInfo {
public:
  CSYMSetInfo(const GString& displayName, const GString& fileName,
              unsigned char charset = platform::SYMBOL_CHARACTERS,
              unsigned char pitchAndFamily = platform::PITCH_VARIABLE |
                                             platform::FAMILY_DECORATIVE);

  const GString& GetDisplayName() const noexcept { return displayName_; }
  const GString& GetFileName() const noexcept { return fileName_; }
  unsigned char GetCharset() const noexcept { return charset_; }
  unsigned char GetPitchAndFamily() const noexcept { return pitchAndFamily_; }

  /// Returns the table: the sets that come with the library, unless a program has set its own.
  static std::vector<CSYMSetInfo> GetTable();

  /// Returns one entry of the table. Errors: an index behind it is an invalid parameter.
  static CSYMSetInfo GetEntry(std::size_t index);

  /// Replaces the table. `CSystemFaceInfo` reads it when it is made and by `Refresh`.
  static void SetTable(const std::vector<CSYMSetInfo>& table);

  /// Puts the sets of the library back: first the text face, then the markers.
  static void ResetTable();

private:
  GString displayName_;
  GString fileName_;
  unsigned char charset_;
  unsigned char pitchAndFamily_;
};

/// Names of the sets that come with the library.
inline constexpr const wchar_t* STROKED_TEXT_FACE = L"Shared Stroke";
inline constexpr const wchar_t* MARKER_FACE = L"Shared Markers";

/// Index of a face that is in no table.
inline constexpr std::size_t NO_SYMBOL_SET = static_cast<std::size_t>(-1);

/// Returns the path of a symbol-set file. When both environment variables KvSRC and KvSUBVER are
/// set: their folder, <KvSRC>\Subsystems\<KvSUBVER>\Symbol. Otherwise the folder Symbols beside the
/// program, or, when the file is not there, the first that `LocateFile` finds or that is beside the
/// library. The path of a file that is nowhere is the one beside the program.
SHARED_API GString LocateSymbolSet(const GString& fileName);

/// A stroked font, read from a symbol-set file.
class SHARED_API CStrokedFace {
public:
  struct Glyph {
    char32_t code = 0;
    GString name;          ///< empty when the file gives none
    GlyphMetrics metrics;  ///< the box holds the ink, so half the pen around strokes
    GlyphVectors vectors;
  };

  /// Reads the set at `setIndex` of the table. Errors: "Symbol set file: %s\ndoes not exist or is
  /// not readable." with the path; "Symbol set file: %s\nLine %d: ..." for a file that is not of
  /// the format; an index behind the table is an invalid parameter.
  explicit CStrokedFace(std::size_t setIndex);

  /// Reads a file. Errors: as the constructor.
  static CStrokedFace FromFile(const GString& path);
  /// Reads a set from its text; errors speak of it as `path`.
  static CStrokedFace FromText(std::string_view text, const GString& path);

  CStrokedFace(CStrokedFace&&) noexcept;
  CStrokedFace& operator=(CStrokedFace&&) noexcept;
  ~CStrokedFace();

  /// Returns the index of the set in the table, `NO_SYMBOL_SET` for a face that is not from there.
  std::size_t GetSetIndex() const noexcept { return setIndex_; }

  /// Returns the name that the file gives the face.
  const GString& GetFaceName() const noexcept { return faceName_; }
  const OutlineTextMetrics& GetTextMeasures() const noexcept { return otm_; }
  double GetPenWidth() const noexcept { return penWidth_; }

  /// Returns the glyphs, by code.
  const std::vector<Glyph>& GetGlyphs() const noexcept { return glyphs_; }
  /// Returns the glyph of a character, or null. Cost: O(log n). Lifetime: as the face.
  const Glyph* FindGlyph(char32_t code) const;
  /// Returns the first glyph of that name, ignoring case, or null. Cost: O(n).
  const Glyph* FindGlyph(std::wstring_view name) const;
  /// Returns the glyph that the file has for missing characters, or null.
  const Glyph* GetMissingGlyph() const;

private:
  friend class SymbolSetReader;
  CStrokedFace();

  /// Reads the file into the face.
  void BuildGlyphMetricsAndVector(const GString& path);
  /// Reads the text of a file into the face; the face is unchanged when that fails.
  void GenVectors(std::string_view text, const GString& path);

  std::size_t setIndex_ = NO_SYMBOL_SET;
  GString faceName_;
  OutlineTextMetrics otm_;
  double penWidth_ = 0;
  std::vector<Glyph> glyphs_;
  char32_t missing_ = 0;
};

}  // namespace shr
