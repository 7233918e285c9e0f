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

/// Replace (`PrintfFormat`) or extend (`PrintfAppend`) `text` with the result; arguments may point
/// into it. They return false and leave it unchanged when the format is malformed or the result
/// reaches `FORMAT_RESULT_LIMIT` units. Owns: `arguments` is copied; the caller ends its own list.
/// Cost: no allocation when `text` can hold the result.
bool PrintfFormat(std::string& text, const char* format, va_list arguments);
bool PrintfFormat(std::wstring& text, const wchar_t* format, va_list arguments);
bool PrintfAppend(std::string& text, const char* format, va_list arguments);
bool PrintfAppend(std::wstring& text, const wchar_t* format, va_list arguments);

}  // namespace shr
