// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CpuFeatures.h"

namespace shr {

bool HasAvx2() noexcept {
  static const bool HAS_AVX2 = __builtin_cpu_supports("avx2") != 0;
  return HAS_AVX2;
}

}  // namespace shr
