// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CColorTable`, the process-wide list of named colors, which users extend in the file
/// "Colors.ini".
///
/// The file is looked for with `LocateFile`, so a copy in a folder of
/// `CSystemInfo::SetSearchFolders` wins over the one beside the program and that over the one
/// installed with the library; docs/color-table.md tells where that is. For colors known when a
/// program is compiled take the constants of shared/color/Color4b.h.
///
///     const CColorTable& table = CColorTable::Instance();
///     std::size_t index = 0;
///     if (table.IndexFromColor(GString(L"sky blue"), index)) Fill(table[index].Color());
///
/// Threads: the first use makes the table on any thread; afterwards it never changes.

#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/Singleton.h"
#include "shared/text/GString.h"

namespace shr {

/// A color, packed as 0x00BBGGRR like a `COLORREF`, and its name.
class CColorTableEntry {
public:
  CColorTableEntry() = default;
  CColorTableEntry(std::uint32_t color, const GString& name) : color_(color), name_(name) {}

  std::uint32_t Color() const noexcept { return color_; }
  const GString& Name() const noexcept { return name_; }

  friend bool operator==(const CColorTableEntry& a, const CColorTableEntry& b) = default;

private:
  std::uint32_t color_ = 0;
  GString name_;
};

/// Reads a line of the form "name = red green blue" into `entry`. The line is split at its first
/// "="; white space around the name is dropped. Missing numbers, and what follows the first that is
/// none, count as 0; of each number the low 8 bits remain, whatever its size or sign. Returns
/// false, `entry` unchanged, when there is no "=" or nothing behind it.
SHARED_API bool ParseColorLine(const GString& line, CColorTableEntry& entry);

/// Returns the entries of the section "Colors" of the configuration file `fileName` in the order of
/// their lines; none when there is no such file or section. Lines that `ParseColorLine` refuses are
/// skipped. Errors: an internal error when `fileName` is empty.
SHARED_API std::vector<CColorTableEntry> ReadColorTable(const GString& fileName);

/// Returns the entries of the "Colors.ini" that comes with the library, as they are compiled into
/// it: the 140 names of CSS Color Module Level 3.
SHARED_API std::vector<CColorTableEntry> BuiltInColorTable();

/// The entries of the first "Colors.ini" found, in file order, duplicates included; those of
/// `BuiltInColorTable` when there is none or it cannot be read.
class SHARED_API CColorTable : public Singleton<CColorTable> {
public:
  using const_iterator = std::vector<CColorTableEntry>::const_iterator;
  using const_reverse_iterator = std::vector<CColorTableEntry>::const_reverse_iterator;

  std::size_t size() const noexcept { return entries_.size(); }
  bool empty() const noexcept { return entries_.empty(); }
  const CColorTableEntry& operator[](std::size_t index) const { return entries_[index]; }
  const_iterator begin() const noexcept { return entries_.begin(); }
  const_iterator end() const noexcept { return entries_.end(); }
  const_iterator cbegin() const noexcept { return entries_.begin(); }
  const_iterator cend() const noexcept { return entries_.end(); }
  const_reverse_iterator rbegin() const noexcept { return entries_.rbegin(); }
  const_reverse_iterator rend() const noexcept { return entries_.rend(); }
  const_reverse_iterator crbegin() const noexcept { return entries_.rbegin(); }
  const_reverse_iterator crend() const noexcept { return entries_.rend(); }

  /// Stores the index of the first entry of that color and returns true, or returns false and
  /// leaves `index` alone. Cost: O(size).
  bool IndexFromColor(std::uint32_t color, std::size_t& index) const;
  /// The same by name, case-insensitively (both sides as `GString::ToLower` makes them).
  bool IndexFromColor(const GString& name, std::size_t& index) const;

private:
  friend class Singleton<CColorTable>;

  CColorTable();
  ~CColorTable();

  void Load();

  std::vector<CColorTableEntry> entries_;
  std::vector<GString> lowerNames_;
};

template <>
SHARED_API CColorTable& Singleton<CColorTable>::GetInstance();

}  // namespace shr
