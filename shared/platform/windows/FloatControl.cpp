// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/FloatControl.h"

#if !defined(__GNUC__)
#include <cfloat>
#endif

namespace shr {

bool IsX87PrecisionDouble() noexcept {
#if defined(__GNUC__)
  // The 64-bit runtimes tell of the other unit.
  unsigned short word = 0;
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return (word & 0x300u) == 0x200u;
#else
  return (_control87(0, 0) & 0x30000u) == 0x10000u;
#endif
}

}  // namespace shr
