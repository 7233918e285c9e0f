// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GString`, the library's one string type: a value class around one `std::wstring`.
///
/// A unit is a UTF-16 code unit on Windows and a code point on Linux; nothing checks that
/// surrogates pair. Narrow text without a code page is read in the active ANSI code page
/// (`CODE_PAGE_ANSI`), never as UTF-8, for which there are `FromUtf8`, `ToUtf8` and `u8""`.
/// Whole-text functions on standard strings are in shared/text/StringUtility.h, conversion objects
/// in shared/text/CodePageConversion.h, `std::format` in shared/text/GStringFormatter.h.
///
///     GString name = GString::FromUtf8(bytes);
///     name.Trim();
///     GString text;
///     text.FormatString(L"%s has %d points", name, 12);
///     if (text.starts_with(L"Layer")) Write(text.ToUtf8());
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <compare>
#include <concepts>
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
#include "shared/text/CodePage.h"
#include "shared/text/PrintfArguments.h"
#include "shared/text/StringCompare.h"
#include "shared/text/TextConcepts.h"

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
  GString(std::wstring_view text) : text_(text) {}
  GString(const wchar_t* text, size_type count) : text_(text, count) {}
  GString(std::initializer_list<wchar_t> units) : text_(units) {}
  template <std::input_iterator Iterator>
  GString(Iterator first, Iterator last) : text_(first, last) {}

  /// Convert narrow text from the active ANSI code page.
  GString(const char* text);
  GString(const std::string& text);
  /// Convert UTF-8; bad sequences become U+FFFD.
  GString(const char8_t* text);
  GString(const std::u8string& text);
  GString(std::u8string_view text);
  /// Takes the text of a path as it is, nothing turned round in it.
  template <FilesystemPath Path>
  GString(const Path& path);
  GString(std::nullptr_t) = delete;

  GString& operator=(const std::wstring& text);
  GString& operator=(std::wstring&& text) noexcept;
  GString& operator=(const wchar_t* text);
  GString& operator=(std::wstring_view text);
  template <FilesystemPath Path>
  GString& operator=(const Path& path);
  GString& operator=(wchar_t ch);
  /// Replaces the text with one byte, read in the active ANSI code page.
  GString& operator=(char ch);
  GString& operator=(std::nullptr_t) = delete;

  GString& operator+=(const GString& text);
  GString& operator+=(const wchar_t* text);
  template <WideTextClass Text>
  GString& operator+=(const Text& text);
  GString& operator+=(wchar_t ch);
  /// Appends one byte, read in the active ANSI code page.
  GString& operator+=(char ch);
  GString& append(const wchar_t* text);
  GString& append(const wchar_t* text, size_type count);
  GString& append(size_type count, wchar_t ch);
  GString& append(std::wstring_view text);
  GString& assign(const wchar_t* text, size_type count);
  GString& assign(size_type count, wchar_t ch);
  GString& assign(std::wstring_view text);

  // Conversions.

  /// Replaces the text with the conversion of `text` from `codePage`; a page that cannot be used
  /// gives the empty text.
  void FromNarrow(const char* text, std::uint32_t codePage);
  void FromNarrow(std::string_view text, std::uint32_t codePage);

  /// Returns the text in `codePage`. Characters that the page lacks become its default character; a
  /// page that cannot be used gives the empty string. Units behind a zero unit are converted too.
  std::string ToNarrow(std::uint32_t codePage) const;

  /// Returns the text that UTF-8 stands for; bad sequences become U+FFFD.
  [[nodiscard]] static GString FromUtf8(std::string_view text);
  /// Returns the text in UTF-8, unpaired surrogates as U+FFFD.
  std::string ToUtf8() const;

  /// Replaces the text; the code page is accepted for symmetry and ignored.
  void FromWide(const wchar_t* text, std::uint32_t codePage);
  /// Return the held text; the code page is ignored.
  const std::wstring& ToWide(std::uint32_t codePage) const&;
  std::wstring ToWide(std::uint32_t codePage) &&;

  /// Return the held string itself, of a temporary object its value.
  std::wstring& String() & noexcept { return text_; }
  const std::wstring& String() const& noexcept { return text_; }
  std::wstring String() && noexcept { return std::move(text_); }
  std::wstring String() const&& { return text_; }

  /// The same as conversions, so that a reference made from a temporary object holds a value of its
  /// own. That needs two turns: a member for `const&` alone would be taken for temporary objects,
  /// too, hence `volatile`, to which they do not bind; and g++ weighs conversions to a value for a
  /// reference only when they are templates.
  operator std::wstring&() & noexcept { return text_; }
  operator const std::wstring&() const volatile& noexcept {
    return const_cast<const GString*>(this)->text_;
  }
  template <std::same_as<std::wstring> String>
  operator String() && noexcept {
    return std::move(text_);
  }
  template <std::same_as<std::wstring> String>
  operator String() const&& {
    return text_;
  }
  operator std::wstring_view() const noexcept { return text_; }

  /// Converts to a path of the same text.
  template <FilesystemPath Path>
  operator Path() const;

  /// Returns an ASCII rendering for logs and crash reports: a unit below 128 as one byte, any other
  /// as "\U+" and its value in upper-case hexadecimal of at least four digits.
  std::string WtoAForDiagnostics() const;

  /// Returns the terminated text. Valid until the next change.
  const wchar_t* c_str() const noexcept { return text_.c_str(); }
  const wchar_t* data() const noexcept { return text_.data(); }

  // Access and editing, with the meaning of the standard wide string.

  reference operator[](size_type pos) { return text_[pos]; }
  const_reference operator[](size_type pos) const { return text_[pos]; }
  /// Errors: `std::out_of_range` when `pos` is at or past the end.
  reference at(size_type pos) { return text_.at(pos); }
  const_reference at(size_type pos) const { return text_.at(pos); }
  /// Requires: the text is not empty.
  reference front() { return text_.front(); }
  const_reference front() const { return text_.front(); }
  reference back() { return text_.back(); }
  const_reference back() const { return text_.back(); }
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
  size_type capacity() const noexcept { return text_.capacity(); }
  void reserve(size_type count) { text_.reserve(count); }
  void shrink_to_fit() { text_.shrink_to_fit(); }
  /// New units are zero.
  void resize(size_type count) { text_.resize(count); }
  void resize(size_type count, wchar_t ch) { text_.resize(count, ch); }
  void push_back(wchar_t ch) { text_.push_back(ch); }
  void pop_back() { text_.pop_back(); }
  GString& erase(size_type pos = 0, size_type count = npos);
  iterator erase(const_iterator where) { return text_.erase(where); }
  iterator erase(const_iterator first, const_iterator last) { return text_.erase(first, last); }
  /// Errors of `insert`, `replace` and `compare` at a position: `std::out_of_range` past the end.
  GString& insert(size_type pos, std::wstring_view text);
  GString& insert(size_type pos, size_type count, wchar_t ch);
  iterator insert(const_iterator where, wchar_t ch) { return text_.insert(where, ch); }
  GString& replace(size_type pos, size_type count, std::wstring_view text);
  GString& replace(size_type pos, size_type count, size_type newCount, wchar_t ch);
  GString& replace(const_iterator first, const_iterator last, std::wstring_view text);

  size_type find(const GString& text, size_type pos = 0) const noexcept;
  size_type find(wchar_t ch, size_type pos = 0) const noexcept { return text_.find(ch, pos); }
  template <WideText Text>
  size_type find(const Text& text, size_type pos = 0) const noexcept;
  size_type rfind(std::wstring_view text, size_type pos = npos) const noexcept;
  size_type rfind(wchar_t ch, size_type pos = npos) const noexcept;
  size_type find_first_of(std::wstring_view units, size_type pos = 0) const noexcept;
  size_type find_first_of(wchar_t ch, size_type pos = 0) const noexcept;
  size_type find_first_not_of(std::wstring_view units, size_type pos = 0) const noexcept;
  size_type find_first_not_of(wchar_t ch, size_type pos = 0) const noexcept;
  size_type find_last_of(std::wstring_view units, size_type pos = npos) const noexcept;
  size_type find_last_of(wchar_t ch, size_type pos = npos) const noexcept;
  size_type find_last_not_of(std::wstring_view units, size_type pos = npos) const noexcept;
  size_type find_last_not_of(wchar_t ch, size_type pos = npos) const noexcept;
  bool starts_with(std::wstring_view text) const noexcept { return text_.starts_with(text); }
  bool starts_with(wchar_t ch) const noexcept { return text_.starts_with(ch); }
  bool ends_with(std::wstring_view text) const noexcept { return text_.ends_with(text); }
  bool ends_with(wchar_t ch) const noexcept { return text_.ends_with(ch); }
  /// The empty text is contained in every text, unlike for `Contains` of
  /// shared/text/StringUtility.h.
  bool contains(std::wstring_view text) const noexcept;
  bool contains(wchar_t ch) const noexcept { return find(ch) != text_.npos; }
  /// Returns a negative value, zero or a positive value in the order of the code units.
  int compare(std::wstring_view text) const noexcept { return text_.compare(text); }
  int compare(size_type pos, size_type count, std::wstring_view text) const;
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
  /// narrow overloads, whose format alone is converted from the active ANSI code page. Texts may be
  /// pointers or objects; what is wrong with objects is told at `FormatString` of
  /// shared/text/StringUtility.h.
  bool FormatString(const wchar_t* format, ...);
  bool FormatString(const char* format, ...);
  bool FormatStringVA(const wchar_t* format, va_list arguments);
  bool FormatStringVA(const char* format, va_list arguments);
  /// The same, appending the result.
  bool AppendFormatString(const wchar_t* format, ...);
  bool AppendFormatString(const char* format, ...);

  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  bool FormatString(const wchar_t* format, const Arguments&... arguments);
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  bool FormatString(const char* format, const Arguments&... arguments);
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  bool AppendFormatString(const wchar_t* format, const Arguments&... arguments);
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  bool AppendFormatString(const char* format, const Arguments&... arguments);
  template <typename Format, typename... Arguments>
  requires NoFormatObjects<Arguments...>
  bool FormatString(const Format& format, const Arguments&... arguments) = delete;
  template <typename Format, typename... Arguments>
  requires NoFormatObjects<Arguments...>
  bool AppendFormatString(const Format& format, const Arguments&... arguments) = delete;

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
  friend GString operator+(wchar_t a, const GString& b) { return GString(1, a) += b; }
  template <WideTextClass Text>
  requires(!std::derived_from<Text, GString>) friend GString operator+(GString a, const Text& b) {
    return std::move(a += b);
  }
  template <WideTextClass Text>
  requires(!std::derived_from<Text, GString>) friend GString operator+(const Text& a,
                                                                       const GString& b) {
    return GString(std::wstring_view(a)) += b;
  }
  /// One byte, read in the active ANSI code page.
  template <std::same_as<char> Byte>
  friend GString operator+(GString a, Byte b) {
    return std::move(a += b);
  }

  friend void swap(GString& a, GString& b) noexcept { a.swap(b); }

private:
  std::wstring text_;
};

/// Writes the text; a narrow stream receives UTF-8. Width and fill apply to the wide stream only.
SHARED_API std::wostream& operator<<(std::wostream& out, const GString& text);
SHARED_API std::ostream& operator<<(std::ostream& out, const GString& text);

// Implementation details follow.

template <FilesystemPath Path>
GString::GString(const Path& path) {
  if constexpr (std::same_as<typename Path::value_type, wchar_t>) {
    text_ = path.native();
  } else {
    *this = FromUtf8(path.native());
  }
}

template <FilesystemPath Path>
GString& GString::operator=(const Path& path) {
  return *this = GString(path);
}

template <FilesystemPath Path>
GString::operator Path() const {
  if constexpr (std::same_as<typename Path::value_type, wchar_t>) {
    return Path(text_);
  } else {
    return Path(ToUtf8());
  }
}

template <WideTextClass Text>
GString& GString::operator+=(const Text& text) {
  return append(std::wstring_view(text));
}

template <WideText Text>
GString::size_type GString::find(const Text& text, size_type pos) const noexcept {
  return text_.find(std::wstring_view(text), pos);
}

template <typename... Arguments>
requires FormatObjects<Arguments...>
bool GString::FormatString(const wchar_t* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         FormatString(format, CArgument(ToFormatArgument(arguments))...);
}

template <typename... Arguments>
requires FormatObjects<Arguments...>
bool GString::FormatString(const char* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         FormatString(format, CArgument(ToFormatArgument(arguments))...);
}

template <typename... Arguments>
requires FormatObjects<Arguments...>
bool GString::AppendFormatString(const wchar_t* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         AppendFormatString(format, CArgument(ToFormatArgument(arguments))...);
}

template <typename... Arguments>
requires FormatObjects<Arguments...>
bool GString::AppendFormatString(const char* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         AppendFormatString(format, CArgument(ToFormatArgument(arguments))...);
}

}  // namespace shr

/// Equal texts hash equally, also to `std::hash<std::wstring>` of the same text.
template <>
struct std::hash<shr::GString> {
  std::size_t operator()(const shr::GString& text) const noexcept {
    return std::hash<std::wstring>()(text.String());
  }
};
