// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CopyAndSum` for processors with AVX2; for shared/archive/ByteSum.cpp only. Threads: any.

#pragma once

#include <cstddef>
#include <cstdint>

namespace shr {

/// Copies `blocks` times 128 bytes and returns their sum. Requires: `HasAvx2()`.
std::uint64_t CopyAndSumAvx2(unsigned char* to, const unsigned char* from,
                             std::size_t blocks) noexcept;

}  // namespace shr
