// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The catalogue of code pages that applications offer, and the language-driver bytes of dBASE
/// files.
///
/// The catalogue names pages whether or not this machine can convert them; `IsServed` tells.
/// Converting is for shared/text/CodePageConversion.h.
///
///     CodePageInfo pages;
///     for (std::size_t i = 0; i < pages.GetCount(); ++i) {
///       chooser.Add(pages.GetNameByIndex(i), pages.IsServedByIndex(i));
///     }
///     std::uint32_t chosen = pages.GetPageNumberByIndex(chooser.Selection());
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// An ordered list of the code pages; every object holds the same entries, only their order
/// differs.
///
/// Errors: an index at or past the count, a page number above 65535 and an unknown order raise the
/// error "Invalid parameter passed to subroutine or function" of the unit "CodePageInfo"; the list
/// is unchanged.
class SHARED_API CodePageInfo {
public:
  enum CPIOrder : int {
    CPI_ORDER_BY_NUMBER = 0,
    /// Names compare without regard to the case of ASCII letters.
    CPI_ORDER_BY_NAME = 1,
    /// The active ANSI and OEM pages and UTF-8, then the rest by name.
    CPI_ORDER_COMMON_FIRST = 2
  };

  CodePageInfo(CPIOrder order = CPI_ORDER_COMMON_FIRST);
  CodePageInfo(const CodePageInfo&) = default;
  CodePageInfo(CodePageInfo&&) noexcept = default;
  CodePageInfo& operator=(const CodePageInfo&) = default;
  CodePageInfo& operator=(CodePageInfo&&) noexcept = default;
  ~CodePageInfo() = default;

  void SetOrder(CPIOrder order);

  std::size_t GetCount() const noexcept { return entries_.size(); }
  GString GetNameByIndex(std::size_t index) const;
  std::uint32_t GetPageNumberByIndex(std::size_t index) const;

  /// Returns true when text in the page can be converted on this machine; for any number, listed or
  /// not. Choosers leave out or grey out the others. The first question about a page may load its
  /// tables.
  static bool IsServed(std::uint32_t number);
  bool IsServedByIndex(std::size_t index) const;

  /// Find the entry of a number, or of a name without regard to case. They return false, and set
  /// `index` to 0, when there is none. Cost: linear.
  bool GetIndexFromPageNumber(std::uint32_t number, std::size_t& index) const;
  bool GetIndexFromName(const GString& name, std::size_t& index) const;

protected:
  /// Fills the list in the catalogue's own order.
  void InitInternalList();
  /// Errors: the internal error of the unit "CodePageInfo" when the number is not in the list.
  void MoveCodePageToListTop(std::uint32_t number);
  void SortListByNumber();
  void SortListByName();

private:
  struct Entry {
    std::uint32_t number;
    GString name;
  };

  const Entry& EntryAt(std::size_t index) const;

  std::vector<Entry> entries_;
};

/// Returns the code page of the language-driver byte of a dBASE file, 0 when the byte names none.
SHARED_API int MapDBFLangIDtoCodePage(unsigned char langId);

/// Returns the language-driver byte to write for a code page, 0 when there is none. Several bytes
/// may name one page; this is the chosen one, so the two maps are not inverses of each other.
SHARED_API unsigned char MapCodePageToDBFLangID(int codePage);

}  // namespace shr
