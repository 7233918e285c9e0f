// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/IProgress.h"

namespace shr {

IProgress::~IProgress() = default;

}  // namespace shr
