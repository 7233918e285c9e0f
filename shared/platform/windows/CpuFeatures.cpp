// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CpuFeatures.h"

#include <windows.h>

namespace shr {
namespace {

/// PF_AVX2_INSTRUCTIONS_AVAILABLE, which older headers lack.
constexpr DWORD AVX2_INSTRUCTIONS = 40;

}  // namespace

bool HasAvx2() noexcept {
  static const bool HAS_AVX2 = IsProcessorFeaturePresent(AVX2_INSTRUCTIONS) != FALSE;
  return HAS_AVX2;
}

}  // namespace shr
