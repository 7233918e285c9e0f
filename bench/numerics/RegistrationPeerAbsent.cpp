// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/numerics/RegistrationPeer.h"

namespace registration_bench {

bool HasGdal() {
  return false;
}

std::unique_ptr<Peer> MakeGdalSpline(const shr::RPoints&, const shr::RPoints&) {
  return nullptr;
}

std::unique_ptr<Peer> MakeGdalPolynomial(const shr::RPoints&, const shr::RPoints&, int) {
  return nullptr;
}

}  // namespace registration_bench
