// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The same loops as in Kernels.cpp, compiled for wider registers.

#include "shared/numerics/linear/KernelLoops.h"
#include "shared/numerics/linear/Kernels.h"

namespace shr {

const LinearKernels& Avx2Kernels() noexcept {
  static constexpr LinearKernels KERNELS = MakeKernels();
  return KERNELS;
}

}  // namespace shr
