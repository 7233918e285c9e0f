// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Which of the library's radial functions a spline has. Internal.
///
///     if (const auto kernel = RadialKernelOf(spline)) ...
///
/// Threads: no state.

#pragma once

#include <optional>

#include "shared/numerics/registration/RadialBasisFunction.h"
#include "shared/numerics/registration/WarpMath.h"

namespace shr {

/// Returns the function of one of the five classes; nothing for a class derived from them, or from
/// their base, whose `Phi` may be any.
std::optional<RadialKernel> RadialKernelOf(const CRadialBasisFunction& spline);

}  // namespace shr
