// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Takes the place of the peers on a target that lacks them.

#include "bench/xml/XMLContender.h"

namespace shr::bench {

std::vector<XMLContender> XMLPeers() {
  return {};
}

}  // namespace shr::bench
