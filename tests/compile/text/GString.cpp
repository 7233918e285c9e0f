// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what a text is not made of.

#include "shared/text/GString.h"

namespace {

void noPointerIsNoText() {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted constructor
  const shr::GString text(nullptr);
#else
  const shr::GString text(L"");
#endif
}

void aNumberIsNoText() {
#ifdef MUST_NOT_COMPILE  // could not convert|no viable conversion|conversion from|no matching
                         // function
  const shr::GString text = 7;
#else
  const shr::GString text = L"7";
#endif
}

}  // namespace
