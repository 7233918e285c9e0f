// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The engine behind the format functions; callers use shared/text/StringUtility.h, where the
/// meaning of the conversions is written down.
///
/// It parses the format once and writes every conversion itself, so that a format gives the same
/// text on both targets and under every locale of the process. Threads: the functions may be called
/// on any thread.

#pragma once

#include <cstdarg>
#include <string>

namespace shr {

/// Formats into `result`, which is overwritten and unspecified on failure. Returns false when the
/// format is malformed or the result reaches `FORMAT_RESULT_LIMIT` units. Owns: `arguments` is
/// copied; the caller ends its own list.
bool PrintfFormat(std::string& result, const char* format, va_list arguments);
bool PrintfFormat(std::wstring& result, const wchar_t* format, va_list arguments);

}  // namespace shr
