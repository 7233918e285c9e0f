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
/// "%s" takes wide text. A description that does not fit the formatter's buffer is replaced by the
/// bare format.
[[noreturn]] SHARED_API void ThrowErrorImpl(const wchar_t* sourceFile, int line,
                                            const wchar_t* format, ...);

/// Throws an `Exception` of the given module; otherwise like `ThrowErrorImpl`.
[[noreturn]] SHARED_API void ThrowSharedError(const wchar_t* module, const wchar_t* sourceFile,
                                              int line, const wchar_t* format, ...);

/// Throws like `ThrowSharedError` with an argument list that the caller has started and will end.
[[noreturn]] SHARED_API void ThrowSharedErrorVA(const wchar_t* module, const wchar_t* sourceFile,
                                                int line, const wchar_t* format, va_list arguments);

/// Reports a broken invariant: calls the handler held by `CSystemInfo` with an
/// `InternalErrorException`, and throws a copy of that exception when the handler returns.
[[noreturn]] SHARED_API void ThrowInternalError(const wchar_t* module, const wchar_t* sourceFile,
                                                int line);

}  // namespace shr
