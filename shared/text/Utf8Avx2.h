// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The decoder of UTF-8 blocks for processors with AVX2. Not installed; shared/text/Utf.h chooses.

#pragma once

#include <cstddef>

namespace shr {

/// How far a decoder came: the input is read up to a character's first byte.
struct Utf8Place {
  const unsigned char* in;
  wchar_t* out;
};

/// Bytes that are decoded together.
inline constexpr std::ptrdiff_t UTF8_AVX2_BLOCK = 64;
/// Bytes that must stand before the first block, whatever they are.
inline constexpr std::ptrdiff_t UTF8_AVX2_HEAD = 2;

/// Decodes whole blocks from `in` on while they are well-formed and hold no sequence of four bytes.
/// With `leavesAscii` it also stops at the second block of ASCII in a row. Requires: `HasAvx2()`,
/// `UTF8_AVX2_HEAD` bytes before `in`, no continuation byte at `in`, and room for a unit a byte.
Utf8Place DecodeUtf8Avx2(const unsigned char* in, const unsigned char* end, wchar_t* out,
                         bool leavesAscii) noexcept;

}  // namespace shr
