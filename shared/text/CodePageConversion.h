// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Objects that convert terminated text between wide and a numbered code page while they are made,
/// for calls that take C strings. Counted text is for shared/platform/CodePages.h, held text for
/// `GString`.
///
///     std::fputs(WtoA(name, CODE_PAGE_UTF8), stream);
///     SetTitle(AtoWV("%d points", count));
///
/// The text lives as long as the object: until the end of the full expression for a temporary.
/// Threads: const calls may run together.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/text/CodePage.h"
#include "shared/text/PrintfArguments.h"

namespace shr {

/// Sets the page behind `CODE_PAGE_ANSI` for the whole program where the system has none of its own
/// (Linux), in place of what the environment variable SHARED_ACP names, and returns true. UTF-8
/// and every page of one or two bytes that can be converted will do; UTF-16, UTF-7 and pages of
/// shifts (ISO-2022, HZ) will not.
///
/// Returns false and changes nothing for another page, and on Windows, where the page is the
/// system's, unless it is that very page. Threads: may be called on any thread; text that is
/// converted meanwhile is converted by one of the two pages. Best called first of all in `main`.
SHARED_API bool SetDefaultCodePage(std::uint32_t codePage);

/// Returns the number of the page behind `CODE_PAGE_ANSI`, never 0.
SHARED_API std::uint32_t GetDefaultCodePage();

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
  /// Converts a `GString`, a standard string or a view, zero units in it, too.
  WtoA(std::wstring_view text, std::uint32_t codePage);
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
  template <typename... Arguments>
  requires FormatObjects<Arguments...> AtoWV(const char* format, const Arguments&... arguments)
      : AtoWV(Checked(format, {FormatKindOf<Arguments>...}),
              CArgument(ToFormatArgument(arguments))...) {}
  template <typename Format, typename... Arguments>
  requires NoFormatObjects<Arguments...> AtoWV(const Format& format, const Arguments&... arguments)
  = delete;
  AtoWV(const AtoWV&) = delete;
  AtoWV& operator=(const AtoWV&) = delete;

  operator const wchar_t*() const noexcept { return text_.get(); }

private:
  /// Returns a format that is refused in place of one that does not take the arguments.
  static const char* Checked(const char* format, std::initializer_list<FormatKind> arguments);

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
