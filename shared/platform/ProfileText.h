// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The text of a configuration file: its lines, finding entries in it, and the bytes that it has
/// after a change (docs/configuration-files.md).
///
/// Knows nothing of files; those are the business of each platform. Any bytes are a text:
/// what is neither a header nor an entry is a line that nobody asks for.
///
///     ProfileText text("[Map]\r\nTitle=Lakes\r\n");
///     text.FindValue(L"map", L"title");                  // L"Lakes"
///     text.WithValue(L"Map", L"Title", L"Rivers");       // "[Map]\r\nTitle=Rivers\r\n"
///
/// Names are compared without the blanks around them and in any letter case. Of several sections or
/// entries of a name the first one counts. The section "" is what stands before the first header.
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shared/Export.h"

namespace shr::platform {

/// How the bytes of a text are to be read; told by its mark.
enum class ProfileEncoding { Ansi, Utf8, Utf16LittleEndian, Utf16BigEndian };

class SHARED_API ProfileText {
public:
  /// Cost: linear; memory of a constant times the size.
  explicit ProfileText(std::string bytes);
  ProfileText(const ProfileText&) = delete;
  ProfileText& operator=(const ProfileText&) = delete;

  const std::string& Bytes() const noexcept { return bytes_; }

  /// Returns the value of an entry without the quotation marks around it; empty when there is none.
  /// Valid as long as the text. Cost: constant but for the first call, which makes an index.
  std::wstring_view FindValue(std::wstring_view section, std::wstring_view key);

  /// Calls `visit` with the lines of a section but for comments and empty ones; entries have no
  /// blanks around their parts and keep their quotation marks.
  void VisitLines(std::wstring_view section,
                  const std::function<void(std::wstring_view line)>& visit) const;

  /// Returns whether the encoding has all of `text`, so that it would be read as it was written.
  bool CanHold(std::wstring_view text) const;

  /// Returns the bytes of the whole text as UTF-16, little endian, with its mark; nothing when the
  /// text has bytes that mean nothing in its encoding and would be lost.
  std::optional<std::string> AsUtf16() const;

  // Changes. All return the bytes of the changed text, or nothing when it need not change. Lines
  // that are not concerned stay as they are, byte for byte.

  /// Sets the value of an entry, adding it behind the section's last line and the section at the
  /// end of the text where they are missing.
  std::optional<std::string> WithValue(std::wstring_view section, std::wstring_view key,
                                       std::wstring_view value) const;
  std::optional<std::string> WithoutEntry(std::wstring_view section, std::wstring_view key) const;
  std::optional<std::string> WithoutSection(std::wstring_view section) const;
  /// Replaces the content of every section of that name by `lines` in the first one and nothing in
  /// the others. Lines without "=" are left out.
  std::optional<std::string> WithSection(std::wstring_view section,
                                         const std::vector<std::wstring_view>& lines) const;

private:
  enum class LineKind { Blank, Comment, Header, Entry, Bare };
  /// A line in `bytes_`, and its parts in `text_`.
  struct Line {
    LineKind kind = LineKind::Blank;
    std::size_t begin = 0;
    std::size_t end = 0;   ///< before its line end
    std::size_t next = 0;  ///< behind its line end
    std::wstring_view name;
    std::wstring_view value;

    bool IsNamed() const { return kind == LineKind::Entry || kind == LineKind::Bare; }
  };
  struct NameHash {
    std::size_t operator()(std::wstring_view name) const noexcept;
  };
  struct NameEqual {
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
  };
  template <typename Value>
  using NameMap = std::unordered_map<std::wstring_view, Value, NameHash, NameEqual>;
  /// Lines [first, last) belong to a section; its header, if it has one, is the line before.
  struct Section {
    std::wstring_view name;
    std::size_t first = 0;
    std::size_t last = 0;
    bool indexed = false;
    NameMap<const Line*> entries;  ///< once indexed
  };

  void SplitLines();
  void DecodeLines();
  void ParseLine(std::wstring_view text, Line& line);
  void AddSection(std::wstring_view name, std::size_t first);
  const Section* FindSection(std::wstring_view name) const;
  const Line* FindEntry(const Section& section, std::wstring_view key) const;

  std::size_t UnitSize() const;
  char32_t UnitAt(std::size_t pos) const;
  std::size_t ContentBegin(const Section& section) const;
  std::size_t FilledEnd(const Section& section) const;
  std::string LineEnd() const;
  std::string LineEndBefore(std::size_t pos) const;
  std::string RawName(const Line& line) const;
  std::string Encode(std::wstring_view text) const;
  std::string EncodeLine(std::wstring_view text) const;
  std::optional<std::string> Replaced(std::size_t begin, std::size_t end,
                                      const std::string& inserted) const;
  std::optional<std::string> Finished(std::string changed) const;
  std::optional<std::string> WithNewSection(std::wstring_view name,
                                            const std::string& content) const;

  std::string bytes_;
  ProfileEncoding encoding_ = ProfileEncoding::Ansi;
  std::size_t content_ = 0;  ///< behind the mark
  std::size_t limit_ = 0;    ///< behind the last whole unit
  std::wstring text_;        ///< the lines one behind the other
  std::vector<Line> lines_;
  std::vector<Section> sections_;
  NameMap<std::size_t> sectionIndex_;
};

}  // namespace shr::platform
