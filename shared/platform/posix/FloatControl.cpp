// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/FloatControl.h"

namespace shr {

bool IsX87PrecisionDouble() noexcept {
#if defined(__x86_64__) || defined(__i386__)
  unsigned short word = 0;
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return (word & 0x300u) == 0x200u;
#else
  return true;  // no such unit: doubles round to 53 bits everywhere
#endif
}

}  // namespace shr
