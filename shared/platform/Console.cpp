// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What is the same on both targets.

#include "shared/platform/Console.h"

#include "shared/platform/RawFile.h"

namespace shr::platform {

int WriteResult(const GString& program, const GString& text) {
  ClearLastError();
  if (WriteText(stdout, text)) return 0;
  const GString reason = LastErrorText();
  WriteText(stderr, program + L": Unable to write the standard output. " + reason + L"\n");
  return 1;
}

}  // namespace shr::platform
