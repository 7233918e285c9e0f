// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the value of an option is text or a boost::any.

#include "shared/commands/Command.h"

namespace {

void zeroIsNoValueOfAnOption(shr::Command& command) {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted member function
  command.Option(L"Radius", 0);
#else
  command.Option(L"Radius", L"0");
#endif
}

void noPointerIsNoValueOfAnOption(shr::Command& command, const shr::GString& key) {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted member function
  command.Option(key, nullptr);
#else
  command.Option(key, L"");
#endif
}

}  // namespace
