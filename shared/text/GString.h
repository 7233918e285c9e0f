// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GString`, the library's one string type: a value class around one `std::wstring`.
///
/// A unit is a UTF-16 code unit on Windows and a code point on Linux; nothing checks that
/// surrogates pair. Narrow text without a code page is read in the active ANSI code page (number
/// 0), never as UTF-8; give 65001 to `FromNarrow` and `ToNarrow` for UTF-8. Whole-text functions on
/// standard strings are in shared/text/StringUtility.h, conversion objects in
/// shared/text/CodePageConversion.h.
///
///     GString name(L"  Layer  ");
///     name.Trim();
///     GString text;
///     text.FormatString(L"%s has %d points", name.c_str(), 12);
///     std::string utf8 = text.ToNarrow(65001);
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "shared/Export.h"
#include "shared/text/StringCompare.h"

namespace shr {

/// Wide text with value semantics: copies are deep, moves take the buffer over.
///
/// Requires: narrow and wide C strings handed in are not null. A text longer than the standard
/// string can hold raises `std::length_error`.
class SHARED_API GString {
public:
  using value_type = wchar_t;
  using size_type = std::wstring::size_type;
  using difference_type = std::wstring::difference_type;
  using reference = std::wstring::reference;
  using const_reference = std::wstring::const_reference;
  using iterator = std::wstring::iterator;
  using const_iterator = std::wstring::const_iterator;
  using reverse_iterator = std::wstring::reverse_iterator;
  using const_reverse_iterator = std::wstring::const_reverse_iterator;

  /// No position, or to the end.
  static const size_type npos;

  // Construction and assignment.

  GString() = default;
  GString(size_type count, wchar_t ch) : text_(count, ch) {}
  GString(const std::wstring& text) : text_(text) {}
  GString(std::wstring&& text) noexcept : text_(std::move(text)) {}
  GString(const wchar_t* text) : text_(text) {}
  explicit GString(std::wstring_view text) : text_(text) {}
  GString(const wchar_t* text, size_type count) : text_(text, count) {}
  GString(std::initializer_list<wchar_t> units) : text_(units) {}
  template <std::input_iterator Iterator>
  GString(Iterator first, Iterator last) : text_(first, last) {}

  /// Convert narrow text from the active ANSI code page.
  GString(const char* text);
  GString(const std::string& text);
  GString(std::nullptr_t) = delete;

  GString& operator=(const std::wstring& text);
  GString& operator=(std::wstring&& text) noexcept;
  GString& operator=(const wchar_t* text);
  GString& operator=(wchar_t ch);
  /// Replaces the text with one byte, read in the active ANSI code page.
  GString& operator=(char ch);
  GString& operator=(std::nullptr_t) = delete;

  GString& operator+=(const GString& text);
  GString& operator+=(const wchar_t* text);
  GString& operator+=(wchar_t ch);
  /// Appends one byte, read in the active ANSI code page.
  GString& operator+=(char ch);
  GString& append(const wchar_t* text);
  GString& append(const wchar_t* text, size_type count);
  GString& append(size_type count, wchar_t ch);
  GString& assign(const wchar_t* text, size_type count);

  // Conversions.

  /// Replaces the text with the conversion of `text` from `codePage`; a page that cannot be used
  /// gives the empty text.
  void FromNarrow(const char* text, std::uint32_t codePage);
  void FromNarrow(std::string_view text, std::uint32_t codePage);

  /// Returns the text in `codePage`. Characters that the page lacks become its default character; a
  /// page that cannot be used gives the empty string. Units behind a zero unit are converted too.
  std::string ToNarrow(std::uint32_t codePage) const;

  /// Replaces the text; the code page is accepted for symmetry and ignored.
  void FromWide(const wchar_t* text, std::uint32_t codePage);
  /// Returns the held text; the code page is ignored.
  const std::wstring& ToWide(std::uint32_t codePage) const;

  std::wstring& String() noexcept { return text_; }
  const std::wstring& String() const noexcept { return text_; }
  operator std::wstring&() noexcept { return text_; }
  operator const std::wstring&() const noexcept { return text_; }
  operator std::wstring_view() const noexcept { return text_; }

  /// Returns an ASCII rendering for logs and crash reports: a unit below 128 as one byte, any other
  /// as "\U+" and its value in upper-case hexadecimal of at least four digits.
  std::string WtoAForDiagnostics() const;

  /// Returns the terminated text. Valid until the next change.
  const wchar_t* c_str() const noexcept { return text_.c_str(); }
  const wchar_t* data() const noexcept { return text_.data(); }

  // Access and editing, with the meaning of the standard wide string.

  reference operator[](size_type pos) { return text_[pos]; }
  const_reference operator[](size_type pos) const { return text_[pos]; }
  iterator begin() noexcept { return text_.begin(); }
  const_iterator begin() const noexcept { return text_.begin(); }
  iterator end() noexcept { return text_.end(); }
  const_iterator end() const noexcept { return text_.end(); }
  const_iterator cbegin() const noexcept { return text_.cbegin(); }
  const_iterator cend() const noexcept { return text_.cend(); }
  reverse_iterator rbegin() noexcept { return text_.rbegin(); }
  const_reverse_iterator rbegin() const noexcept { return text_.rbegin(); }
  reverse_iterator rend() noexcept { return text_.rend(); }
  const_reverse_iterator rend() const noexcept { return text_.rend(); }
  size_type length() const noexcept { return text_.length(); }
  size_type size() const noexcept { return text_.size(); }
  [[nodiscard]] bool empty() const noexcept { return text_.empty(); }
  void clear() noexcept { text_.clear(); }
  void reserve(size_type count) { text_.reserve(count); }
  /// New units are zero.
  void resize(size_type count) { text_.resize(count); }
  void push_back(wchar_t ch) { text_.push_back(ch); }
  GString& erase(size_type pos = 0, size_type count = npos);
  iterator erase(const_iterator where) { return text_.erase(where); }
  iterator erase(const_iterator first, const_iterator last) { return text_.erase(first, last); }
  size_type find(const GString& text, size_type pos = 0) const noexcept;
  size_type find(wchar_t ch, size_type pos = 0) const noexcept { return text_.find(ch, pos); }
  size_type find_last_of(wchar_t ch, size_type pos = npos) const noexcept;
  /// Errors: `std::out_of_range` when `pos` is past the end.
  GString substr(size_type pos = 0, size_type count = npos) const;
  void swap(GString& other) noexcept { text_.swap(other.text_); }

  // Text operations; each behaves as the function of its name in shared/text/StringUtility.h.

  GString& MakeLower();
  GString& MakeUpper();
  GString ToLower() const;
  GString ToUpper() const;
  GString& TrimLeft();
  GString& TrimRight();
  GString& Trim();

  /// Replace the text with the formatted result, or leave it unchanged and return false when the
  /// result has 8,192 units or more, or the format is malformed. "%s" takes wide text, also in the
  /// narrow overloads, whose format alone is converted from the active ANSI code page.
  bool FormatString(const wchar_t* format, ...);
  bool FormatString(const char* format, ...);
  bool FormatStringVA(const wchar_t* format, va_list arguments);
  bool FormatStringVA(const char* format, va_list arguments);
  /// The same, appending the result.
  bool AppendFormatString(const wchar_t* format, ...);
  bool AppendFormatString(const char* format, ...);

  /// Returns true when the whole text matches `pattern` with its wildcards "*" and "?".
  bool WildCmp(const GString& pattern, bool caseSensitive) const;

  /// Returns the next token from `pos` and moves `pos` past it and its delimiter.
  GString ParseToken(size_type& pos, wchar_t delimiter) const;

  /// Parse the whole text. They return false, and set the value to 0 or false, when the text is not
  /// exactly one value of the kind.
  bool ToBool(bool& value) const;
  bool ToInt(int& value) const;
  bool ToInt64(std::int64_t& value) const;
  bool ToUnsignedInt(unsigned int& value) const;
  bool ToDouble(double& value) const;

  // Comparison by code unit; a `std::map<GString, T>` orders by it.

  friend bool operator==(const GString& a, const GString& b) noexcept { return a.text_ == b.text_; }
  friend bool operator==(const GString& a, const wchar_t* b) noexcept { return a.text_ == b; }
  friend bool operator==(const GString& a, const std::wstring& b) noexcept { return a.text_ == b; }
  friend bool operator==(const GString& a, std::wstring_view b) noexcept { return a.text_ == b; }
  friend auto operator<=>(const GString& a, const GString& b) noexcept {
    return a.text_ <=> b.text_;
  }
  friend auto operator<=>(const GString& a, const wchar_t* b) noexcept { return a.text_ <=> b; }
  friend auto operator<=>(const GString& a, const std::wstring& b) noexcept {
    return a.text_ <=> b;
  }
  friend auto operator<=>(const GString& a, std::wstring_view b) noexcept {
    return std::wstring_view(a.text_) <=> b;
  }

  friend GString operator+(GString a, const GString& b) { return std::move(a += b); }
  friend GString operator+(GString a, const wchar_t* b) { return std::move(a += b); }
  friend GString operator+(GString a, wchar_t b) { return std::move(a += b); }
  friend GString operator+(const wchar_t* a, const GString& b) { return GString(a) += b; }

  friend void swap(GString& a, GString& b) noexcept { a.swap(b); }

private:
  std::wstring text_;
};

/// Writes the text; a narrow stream receives UTF-8. Width and fill apply to the wide stream only.
SHARED_API std::wostream& operator<<(std::wostream& out, const GString& text);
SHARED_API std::ostream& operator<<(std::ostream& out, const GString& text);

}  // namespace shr

/// Equal texts hash equally, also to `std::hash<std::wstring>` of the same text.
template <>
struct std::hash<shr::GString> {
  std::size_t operator()(const shr::GString& text) const noexcept {
    return std::hash<std::wstring>()(text.String());
  }
};
