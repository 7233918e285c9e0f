// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Counts the characters of any text: each is found as often as it stands there.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/text/Counter.h"

// [entry]
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  shr::Counter counter;
  for (std::size_t i = 0; i < size; ++i)
    counter.Add(std::wstring(1, static_cast<wchar_t>(data[i])));
  for (std::size_t i = 0; i < size; ++i) {
    const std::wstring word(1, static_cast<wchar_t>(data[i]));
    const auto times = std::count(data, data + size, data[i]);
    if (counter.TimesOf(word) != static_cast<std::size_t>(times)) std::abort();
  }
  return 0;
}
// [end]
