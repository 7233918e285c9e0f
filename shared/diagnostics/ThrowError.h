// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The only ways in which the library raises its own errors.
///
/// This header needs no `GString`, so the string classes themselves may include it. The types that
/// are thrown are declared in shared/diagnostics/Exception.h. Threads: all functions may be called
/// on any thread.

#pragma once

#include <cstdarg>

#include "shared/Export.h"
#include "shared/text/PrintfArguments.h"

namespace shr {

/// Module name that the library's own errors carry.
inline constexpr const wchar_t* SHARED_MODULE = L"Shared";

/// Description of an error whose cause is an argument outside its documented range.
inline constexpr const wchar_t* INVALID_PARAMETER_TEXT =
    L"Invalid parameter passed to subroutine or function";

/// Description of an error whose cause is a failed allocation.
inline constexpr const wchar_t* OUT_OF_MEMORY_TEXT = L"Out of global memory";

/// Throws an `Exception` of module "Shared".
/// `format` and the arguments follow the rules of `FormatString` (shared/text/StringUtility.h):
/// "%s" takes wide text, a pointer or an object. A description that the formatter refuses is
/// replaced by the bare format.
[[noreturn]] SHARED_API void ThrowErrorImpl(const wchar_t* sourceFile, int line,
                                            const wchar_t* format, ...);

/// Throws an `Exception` of the given module; otherwise like `ThrowErrorImpl`.
[[noreturn]] SHARED_API void ThrowSharedError(const wchar_t* module, const wchar_t* sourceFile,
                                              int line, const wchar_t* format, ...);

template <typename... Arguments>
requires FormatObjects<Arguments...>
[[noreturn]] void ThrowErrorImpl(const wchar_t* sourceFile, int line, const wchar_t* format,
                                 const Arguments&... arguments) {
  if (!FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...})) {
    ThrowErrorImpl(sourceFile, line, L"%s", format);
  }
  ThrowErrorImpl(sourceFile, line, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename... Arguments>
requires FormatObjects<Arguments...>
[[noreturn]] void ThrowSharedError(const wchar_t* module, const wchar_t* sourceFile, int line,
                                   const wchar_t* format, const Arguments&... arguments) {
  if (!FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...})) {
    ThrowSharedError(module, sourceFile, line, L"%s", format);
  }
  ThrowSharedError(module, sourceFile, line, format, CArgument(ToFormatArgument(arguments))...);
}
template <typename File, typename Format, typename... Arguments>
requires NoFormatObjects<Arguments...>
void ThrowErrorImpl(const File& sourceFile, int line, const Format& format,
                    const Arguments&... arguments) = delete;
template <typename Module, typename File, typename Format, typename... Arguments>
requires NoFormatObjects<Arguments...>
void ThrowSharedError(const Module& module, const File& sourceFile, int line, const Format& format,
                      const Arguments&... arguments) = delete;

/// Throws like `ThrowSharedError` with an argument list that the caller has started and will end.
[[noreturn]] SHARED_API void ThrowSharedErrorVA(const wchar_t* module, const wchar_t* sourceFile,
                                                int line, const wchar_t* format, va_list arguments);

/// Reports a broken invariant: calls the handler held by `CSystemInfo` with an
/// `InternalErrorException`, and throws a copy of that exception when the handler returns.
[[noreturn]] SHARED_API void ThrowInternalError(const wchar_t* module, const wchar_t* sourceFile,
                                                int line);

}  // namespace shr
