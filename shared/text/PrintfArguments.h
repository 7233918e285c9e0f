// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the printf-like functions take besides numbers and pointers: objects that hold text.
///
/// A C variadic function takes objects of any class and reads garbage. Each printf-like function of
/// the library therefore has two overloads beside its C entry: one that takes text objects
/// (`GString`, `std::wstring`, `std::wstring_view`; for narrow text `std::string`,
/// `std::string_view`) where a text conversion stands, and a deleted one for every other class.
/// Calls without objects go straight to the C entry, as ever. This header is for writers of such
/// functions; callers read `FormatString` (shared/text/StringUtility.h).
///
///     int Print(const wchar_t* format, ...);
///     template <typename... Arguments> requires FormatObjects<Arguments...>
///     int Print(const wchar_t* format, const Arguments&... arguments) {
///       if (!FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...})) return -1;
///       return Print(format, CArgument(ToFormatArgument(arguments))...);
///     }
///     template <typename... Arguments> requires NoFormatObjects<Arguments...>
///     int Print(const wchar_t* format, const Arguments&... arguments) = delete;
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>

#include "shared/Export.h"
#include "shared/text/TextConcepts.h"

namespace shr {

/// Classes whose objects a printf-like function takes as text.
template <typename T>
concept FormatText = WideTextClass<T> || NarrowTextClass<T>;

/// Enumerations that a C variadic function takes without promoting them.
template <typename T>
concept ScopedEnumeration = std::is_enum_v<T> && !std::is_convertible_v<T, long long>;

/// What no printf-like function takes.
template <typename T>
concept NoFormatArgument = (std::is_class_v<T> && !FormatText<T>) || std::is_union_v<T>;

/// Argument lists that cannot go to a C variadic function as they are but can be made to. Scoped
/// enumerations among them go as their values.
template <typename... Arguments>
concept FormatObjects = (!NoFormatArgument<Arguments> && ...) &&
                        ((FormatText<Arguments> || ScopedEnumeration<Arguments>) || ...);

/// Argument lists that do not compile.
template <typename... Arguments>
concept NoFormatObjects = (NoFormatArgument<Arguments> || ...);

/// What an argument is to a format.
enum class FormatKind : char { Plain, WideText, NarrowText };

template <typename T>
inline constexpr FormatKind FormatKindOf = FormatKind::Plain;
template <WideTextClass T>
inline constexpr FormatKind FormatKindOf<T> = FormatKind::WideText;
template <NarrowTextClass T>
inline constexpr FormatKind FormatKindOf<T> = FormatKind::NarrowText;

/// Returns true when every text object among the arguments stands where the format takes text of
/// its width, and the format asks for no more arguments than there are. `plainText` is what "%s"
/// without a length takes. Numbers and pointers are not checked. Cost: O(length of the format).
SHARED_API bool FormatTakes(const wchar_t* format, FormatKind plainText,
                            std::initializer_list<FormatKind> arguments);
SHARED_API bool FormatTakes(const char* format, FormatKind plainText,
                            std::initializer_list<FormatKind> arguments);

/// Returns what stands for an argument during a call: the pointer to the text of an object that
/// terminates it, a terminated copy of a view, the value of a scoped enumeration, anything else as
/// it is. A text ends for the formatter at its first zero unit.
template <typename T>
auto ToFormatArgument(const T& argument) {
  if constexpr (requires { argument.c_str(); }) {
    return argument.c_str();
  } else if constexpr (WideTextClass<T>) {
    return std::wstring(std::wstring_view(argument));
  } else if constexpr (NarrowTextClass<T>) {
    return std::string(std::string_view(argument));
  } else if constexpr (ScopedEnumeration<T>) {
    return static_cast<std::underlying_type_t<T>>(argument);
  } else {
    return static_cast<std::decay_t<const T>>(argument);
  }
}

/// Return what the C entry gets of it.
template <typename T>
T CArgument(const T& argument) {
  return argument;
}
inline const wchar_t* CArgument(const std::wstring& copy) {
  return copy.c_str();
}
inline const char* CArgument(const std::string& copy) {
  return copy.c_str();
}

}  // namespace shr
