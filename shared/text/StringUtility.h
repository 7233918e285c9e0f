// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Free functions on standard narrow and wide strings: trimming, case, formatting, parsing,
/// matching.
///
/// `GString` (shared/text/GString.h) forwards to the wide ones. Functions take views where they
/// only read, so literals, standard strings and `GString` all fit. Apart from the trim functions
/// nothing here depends on the locale of the process. Conversions between code pages are in
/// shared/text/CodePageConversion.h.
///
///     double value = 0;
///     if (StringToDouble(L" 2.5e3 ", value)) ...     // 2500
///     std::wstring line;
///     FormatString(line, L"%s: %.3f", L"depth", value);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/text/PrintfArguments.h"

namespace shr {

// Trimming and case.

/// Remove leading, trailing or both white space in place and return the string. White space is what
/// the global C++ locale (`std::locale()`) classifies as space.
SHARED_API std::string& TrimLeft(std::string& text);
SHARED_API std::wstring& TrimLeft(std::wstring& text);
SHARED_API std::string& TrimRight(std::string& text);
SHARED_API std::wstring& TrimRight(std::wstring& text);
SHARED_API std::string& Trim(std::string& text);
SHARED_API std::wstring& Trim(std::wstring& text);

/// Removes trailing copies of `ch` and returns the string.
SHARED_API std::wstring& TrimRight(std::wstring& text, wchar_t ch);

/// Map the ASCII letters in place; every other unit stays.
SHARED_API void MakeLower(std::string& text);
SHARED_API void MakeLower(std::wstring& text);
SHARED_API void MakeUpper(std::string& text);
SHARED_API void MakeUpper(std::wstring& text);

/// Return a copy whose ASCII letters are mapped.
[[nodiscard]] SHARED_API std::string ToLower(std::string_view text);
[[nodiscard]] SHARED_API std::wstring ToLower(std::wstring_view text);
[[nodiscard]] SHARED_API std::string ToUpper(std::string_view text);
[[nodiscard]] SHARED_API std::wstring ToUpper(std::wstring_view text);

// Formatting.

/// Results of this many units or more, the terminator not counted, are refused by the format
/// functions.
inline constexpr std::size_t FORMAT_RESULT_LIMIT = 8192;

/// Replace (`FormatString`) or extend (`AppendFormatString`) `text` with the printf-style result.
///
/// The meaning of a format is the same on both targets:
/// - In wide formats `%s` `%ls` `%ws` take wide text and `%S` `%hs` narrow text in the active
///   ANSI code page; in narrow formats `%s` `%hs` take narrow and `%S` `%ls` `%ws` wide text.
///   Characters (`%c` `%C`) likewise. The precision counts units of the argument; a null pointer
///   prints "(null)".
/// - `d i u x X o` with `hh h l ll j z t I32 I64 I`; `%ld` reads a `long` of the target.
/// - `e E f F g G a A`: correctly rounded, at least two exponent digits, always with a point;
///   infinities and NaN as "inf" and "nan". `L` reads a `long double` and prints it as a double.
/// - `%p` prints sixteen upper-case hexadecimal digits.
/// Units of value zero that `%c` makes are kept as part of the result. Arguments may point into
/// `text`.
///
/// Where wide text is taken, `GString`, `std::wstring` and `std::wstring_view` may be given in
/// place of a pointer, where narrow text is taken, `std::string` and `std::string_view`; up to
/// their first zero unit. Objects of other classes do not compile.
///
/// Errors: returns false, leaving `text` unchanged, when the result reaches `FORMAT_RESULT_LIMIT`
/// units, when the format is malformed ("%" at the end, an unknown conversion, or `%n`), and, in
/// calls with a text object, when an object stands where no text of its width is taken or an
/// argument is missing.
SHARED_API bool FormatString(std::string& text, const char* format, ...);
SHARED_API bool FormatString(std::wstring& text, const wchar_t* format, ...);
SHARED_API bool FormatStringVA(std::string& text, const char* format, va_list arguments);
SHARED_API bool FormatStringVA(std::wstring& text, const wchar_t* format, va_list arguments);
SHARED_API bool AppendFormatString(std::string& text, const char* format, ...);
SHARED_API bool AppendFormatString(std::wstring& text, const wchar_t* format, ...);
SHARED_API bool AppendFormatStringVA(std::string& text, const char* format, va_list arguments);
SHARED_API bool AppendFormatStringVA(std::wstring& text, const wchar_t* format, va_list arguments);

template <typename... Arguments>
requires FormatObjects<Arguments...>
bool FormatString(std::string& text, const char* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::NarrowText, {FormatKindOf<Arguments>...}) &&
         FormatString(text, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename... Arguments>
requires FormatObjects<Arguments...>
bool FormatString(std::wstring& text, const wchar_t* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         FormatString(text, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename... Arguments>
requires FormatObjects<Arguments...>
bool AppendFormatString(std::string& text, const char* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::NarrowText, {FormatKindOf<Arguments>...}) &&
         AppendFormatString(text, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename... Arguments>
requires FormatObjects<Arguments...>
bool AppendFormatString(std::wstring& text, const wchar_t* format, const Arguments&... arguments) {
  return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
         AppendFormatString(text, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename Text, typename Format, typename... Arguments>
requires NoFormatObjects<Arguments...>
bool FormatString(Text& text, const Format& format, const Arguments&... arguments) = delete;
template <typename Text, typename Format, typename... Arguments>
requires NoFormatObjects<Arguments...>
bool AppendFormatString(Text& text, const Format& format, const Arguments&... arguments) = delete;

// Values to text.

/// Return a standard string copy of a terminated text. Requires: `text` is not null.
SHARED_API std::string ToString(const char* text);
SHARED_API std::wstring ToString(const wchar_t* text);

/// Return "True" or "False".
SHARED_API std::string BoolToString(bool value);
SHARED_API std::wstring BoolToStringW(bool value);

/// Return the value in fixed notation with exactly `precision` digits behind the point, without a
/// point when that is 0, correctly rounded. Infinities and NaN give "inf", "-inf", "nan" and
/// "-nan".
SHARED_API std::string DoubleToString(double value, std::size_t precision);
SHARED_API std::wstring DoubleToStringW(double value, std::size_t precision);

// Text to values.

/// Reads "t", "1", "true" as true and "f", "0", "false" as false, ignoring ASCII case, without
/// trimming. Any other text sets `value` to false and returns false.
SHARED_API bool StringToBool(std::string_view text, bool& value);
SHARED_API bool StringToBool(std::wstring_view text, bool& value);

/// Parse the whole text as one decimal integer between ASCII white space. A signed value may carry
/// "-" or "+", an unsigned one no sign. Any other text, and a value out of range, sets `value` to 0
/// and returns false. Cost: one pass, no allocation.
SHARED_API bool StringToInt(std::string_view text, int& value);
SHARED_API bool StringToInt(std::wstring_view text, int& value);
SHARED_API bool StringToInt64(std::string_view text, std::int64_t& value);
SHARED_API bool StringToInt64(std::wstring_view text, std::int64_t& value);
SHARED_API bool StringToUnsigned(std::string_view text, unsigned int& value);
SHARED_API bool StringToUnsigned(std::wstring_view text, unsigned int& value);

/// Parses the whole text as one real number between ASCII white space: an optional sign, digits
/// with an optional "." (one side may be empty), an optional exponent "e" or "E" with its own sign;
/// or "nan", "inf", "infinity" in any case. "nan" may be followed by a remark in parentheses.
/// Exponents have any number of digits.
///
/// The value is the double nearest to the number written, ties to even, for every input. Numbers
/// too small give a denormal or a zero with the sign written; numbers that round beyond the largest
/// double fail. On failure `value` is 0 and the result false. Cost: one pass, no allocation.
SHARED_API bool StringToDouble(std::string_view text, double& value);
SHARED_API bool StringToDouble(std::wstring_view text, double& value);

// Tokens and matching.

/// Returns the token that begins at `pos` and moves `pos` behind the delimiter that ends it, or to
/// the end.
///
/// White space before and behind a token is dropped (see shared/text/WhiteSpace.h for the set). A
/// token in double quotes is taken as it stands; what lies between its closing quote and the
/// delimiter is dropped. At or past the end the token is empty and `pos` stays.
SHARED_API std::string ParseToken(std::string_view text, std::size_t& pos, char delimiter);
SHARED_API std::wstring ParseToken(std::wstring_view text, std::size_t& pos, wchar_t delimiter);

/// Returns true when the whole text matches the pattern: "*" stands for any run of units, also an
/// empty one, "?" for any one unit. Without `caseSensitive` the ASCII letters fold. A null pointer
/// gives false; a zero unit of counted text is a unit like any other. Cost: at most length of
/// pattern times length of text; no allocation, no recursion.
SHARED_API bool WildCmp(const char* pattern, const char* text, bool caseSensitive);
SHARED_API bool WildCmp(const wchar_t* pattern, const wchar_t* text, bool caseSensitive);
SHARED_API bool WildCmp(std::string_view pattern, std::string_view text, bool caseSensitive);
SHARED_API bool WildCmp(std::wstring_view pattern, std::wstring_view text, bool caseSensitive);

/// Returns true when both are non-empty and `part` occurs in `text`, case-sensitive.
SHARED_API bool Contains(std::string_view text, std::string_view part);
SHARED_API bool Contains(std::wstring_view text, std::wstring_view part);

/// Returns true when `part` is not empty and occurs in what is still to be read from the stream.
///
/// On true the stream stands directly behind the first occurrence, so that a second call finds the
/// next one; on false it has been read to its end. An empty `part` gives false and reads nothing.
/// Cost: linear in what is read; memory proportional to `part` alone.
SHARED_API bool Contains(std::istream& in, const std::string& part);
SHARED_API bool Contains(std::wistream& in, const std::wstring& part);

/// Splits a terminated text into lines and returns their number. Lines end at CR, LF or CR LF; a
/// break at the very end adds no empty line. The old content of `lines` is dropped; a null text
/// gives 0.
SHARED_API std::size_t BreakIntoSubstrings(const char* text, std::vector<std::string>& lines);
SHARED_API std::size_t BreakIntoSubstrings(const wchar_t* text, std::vector<std::wstring>& lines);

// Escapes.

/// Return a copy in which &quot; &apos; &lt; &gt; and last &amp; are replaced, so that "&amp;lt;"
/// gives "&lt;".
SHARED_API std::string ReplaceHTMLSpecialEntities(std::string_view text);
SHARED_API std::wstring ReplaceHTMLSpecialEntities(std::wstring_view text);

/// Return a copy in which each "_xH_", H being one to four hexadecimal digits, is replaced by the
/// unit of that value, from left to right.
///
/// Where wide units are code points, two neighbouring escapes that form a surrogate pair give the
/// one character. The narrow function leaves escapes above FF as they are, since no byte can hold
/// them.
SHARED_API std::string ReplaceHTMLHexCodes(std::string_view text);
SHARED_API std::wstring ReplaceHTMLHexCodes(std::wstring_view text);

}  // namespace shr
