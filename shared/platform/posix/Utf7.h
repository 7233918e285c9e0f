// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// UTF-7 (RFC 2152) in the manner of Windows: only the characters that every mail path carries
/// stand for themselves, an encoded run always ends with "-", and a reader takes any other byte as
/// the character of its value. Internal to the platform layer.
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <string>
#include <string_view>

namespace shr::platform {

/// Append the conversion. Bits at the end of a run that make no whole unit are dropped.
void AppendWideFromUtf7(std::string_view bytes, std::wstring& wide);
void AppendNarrowToUtf7(std::wstring_view text, std::string& narrow);

}  // namespace shr::platform
