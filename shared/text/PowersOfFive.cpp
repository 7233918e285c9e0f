// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/PowersOfFive.h"

namespace shr {

constexpr Product128 POWERS_OF_FIVE[] = {
#include "shared/text/PowersOfFive.inc"
};

}  // namespace shr
