// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/IHelp.h"

namespace shr {

IHelp::~IHelp() = default;

}  // namespace shr
