// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Takes the place of libqd on a target that lacks it: there is no such peer.

#include "bench/numerics/DoubleDoublePeerQd.h"

namespace shr::bench {

bool HasQd() {
  return false;
}

void QdAdd(const double*, const double*, std::size_t, double*) {}
void QdMultiply(const double*, const double*, std::size_t, double*) {}
void QdDivide(const double*, const double*, std::size_t, double*) {}
void QdDotProduct(const double*, const double*, std::size_t, double*) {}
void QdRead(const char*, double*) {}
std::size_t QdWrite(const double*, char*) {
  return 0;
}
void QdFunction(char, const double*, std::size_t, double*) {}

}  // namespace shr::bench
