// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The sum of bytes modulo 65536, by which archives check what they load.
///
///     std::uint16_t sum = 0;
///     sum += ByteSum(head, headSize);
///     sum += ByteSum(body, bodySize);   // the sum of both
///
/// It finds any single changed byte, but not bytes that changed places. Threads: all functions may
/// be called on any thread.

#pragma once

#include <cstddef>
#include <cstdint>

#include "shared/Export.h"

namespace shr {

/// Returns the sum of `size` bytes, each taken as 0 to 255, modulo 65536.
/// Degenerate: 0 for no bytes, for which `bytes` may be null. Cost: a fraction of reading memory.
SHARED_API std::uint16_t ByteSum(const void* bytes, std::size_t size) noexcept;

/// Returns what `ByteSum` returns, without vector instructions; `ByteSum` is this function where
/// there are none.
SHARED_API std::uint16_t PortableByteSum(const void* bytes, std::size_t size) noexcept;

/// Copies `size` bytes, which do not overlap, and returns their `ByteSum`. Cost: little more than
/// copying.
SHARED_API std::uint16_t CopyAndSum(void* to, const void* from, std::size_t size) noexcept;

}  // namespace shr
