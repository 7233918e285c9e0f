// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/Kernels.h"

#include "shared/numerics/linear/KernelLoops.h"
#include "shared/platform/CpuFeatures.h"

namespace shr {

const LinearKernels& BaselineKernels() noexcept {
  static constexpr LinearKernels KERNELS = MakeKernels();
  return KERNELS;
}

const LinearKernels& Kernels() noexcept {
  return HasAvx2() ? Avx2Kernels() : BaselineKernels();
}

}  // namespace shr
