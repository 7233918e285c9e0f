// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/CommandOptions.h"

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr int EMPTY_KEY_LINE = 24;

}  // namespace

CommandOptions::CommandOptions(const GString& key) : key_(key) {
  if (key.empty()) {
    ThrowErrorImpl(L"CommandOptions", EMPTY_KEY_LINE, L"Command key must be non-empty.");
  }
}

}  // namespace shr
