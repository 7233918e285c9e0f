// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Objects that convert terminated text between wide and a numbered code page while they are made,
/// for calls that take C strings. Counted text is for shared/platform/CodePages.h, held text for
/// `GString`.
///
///     std::fputs(WtoA(name, 65001), stream);
///     SetTitle(AtoWV("%d points", count));
///
/// The text lives as long as the object: until the end of the full expression for a temporary.
/// Threads: const calls may run together.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "shared/Export.h"

namespace shr {

/// Narrow text of a code page as wide text.
///
/// Null text is held as null. A page that cannot be used gives the empty text. A conversion whose
/// size changes between asking and converting raises the internal error of the unit
/// "StringUtility".
class SHARED_API AtoW {
public:
  AtoW(const char* text, std::uint32_t codePage);
  /// Converts up to the first zero byte.
  AtoW(const std::string& text, std::uint32_t codePage);
  AtoW(const AtoW&) = delete;
  AtoW& operator=(const AtoW&) = delete;

  operator const wchar_t*() const noexcept { return text_.get(); }

private:
  std::unique_ptr<wchar_t[]> text_;
};

/// Wide text as narrow text of a code page.
///
/// Null text is held as null; characters that the page lacks become its best-fit letter or its
/// default character; a page that cannot be used gives the empty text.
class SHARED_API WtoA {
public:
  WtoA(const wchar_t* text, std::uint32_t codePage);
  WtoA(const WtoA&) = delete;
  WtoA& operator=(const WtoA&) = delete;

  operator const char*() const noexcept { return text_.get(); }

private:
  std::unique_ptr<char[]> text_;
};

/// Narrow text formatted like `FormatString` (shared/text/StringUtility.h) and read in the active
/// ANSI page.
///
/// A null format is held as null, a result that the formatter refuses as the empty text.
class SHARED_API AtoWV {
public:
  AtoWV(const char* format, ...);
  AtoWV(const AtoWV&) = delete;
  AtoWV& operator=(const AtoWV&) = delete;

  operator const wchar_t*() const noexcept { return text_.get(); }

private:
  std::unique_ptr<wchar_t[]> text_;
};

/// A byte array that receives wide text in the active ANSI page again and again.
class SHARED_API WtoAArray {
public:
  /// Holds the empty text.
  WtoAArray();
  WtoAArray(const WtoAArray&) = delete;
  WtoAArray& operator=(const WtoAArray&) = delete;

  /// Replaces the text; null empties it.
  void SetArray(const wchar_t* text);

  /// Returns the terminated text. Valid until the next change.
  const char* c_str() const noexcept { return bytes_.data(); }

private:
  std::vector<char> bytes_;
};

}  // namespace shr
