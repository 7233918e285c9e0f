// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/Counter.h"

#include "shared/diagnostics/ThrowError.h"

namespace shr {

void Counter::Add(std::wstring_view word) {
  if (word.empty()) ThrowErrorImpl(L"Counter", __LINE__, L"An empty word cannot be counted.");
  ++times_[std::wstring(word)];
}

std::size_t Counter::TimesOf(std::wstring_view word) const {
  const auto found = times_.find(word);
  return found == times_.end() ? 0 : found->second;
}

}  // namespace shr
