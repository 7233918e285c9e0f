// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The powers of ten that fit 64 bits. For the library's own use.
///
///     const std::uint64_t thousand = POWERS_OF_TEN[3];
///
/// Threads: constants.

#pragma once

#include <cstdint>

namespace shr {

inline constexpr std::uint64_t POWERS_OF_TEN[] = {1,
                                                  10,
                                                  100,
                                                  1'000,
                                                  10'000,
                                                  100'000,
                                                  1'000'000,
                                                  10'000'000,
                                                  100'000'000,
                                                  1'000'000'000,
                                                  10'000'000'000,
                                                  100'000'000'000,
                                                  1'000'000'000'000,
                                                  10'000'000'000'000,
                                                  100'000'000'000'000,
                                                  1'000'000'000'000'000,
                                                  10'000'000'000'000'000,
                                                  100'000'000'000'000'000,
                                                  1'000'000'000'000'000'000,
                                                  10'000'000'000'000'000'000U};

}  // namespace shr
