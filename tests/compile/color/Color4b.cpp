// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: one number is no color, neither when constructing nor when setting.

#include "shared/color/Color4b.h"

namespace {

void zeroIsNoColor() {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted constructor
  const shr::Color4b color(0);
#else
  const shr::Color4b color(0, 0);
#endif
}

void oneNumberSetsNoColor(shr::Color4b& color) {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted member function
  color.Set(0);
#else
  color.Set(0, 255);
#endif
}

}  // namespace
